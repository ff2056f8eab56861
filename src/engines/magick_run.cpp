#include "engines/magick_run.h"

#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <array>

#include "core/vocabulary/failure_messages.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr std::array fileTroubles{"no such file or directory", "unable to open image", "not a valid file",
                                  "permission denied"};

// What libjpeg says of coded data that are cut off or overwritten; the tool then ends with 0 and a grey picture.
constexpr std::array damages{"premature end of jpeg file", "premature end of data segment", "bad huffman code",
                             "bad arithmetic code", "corrupt jpeg data: found marker"};

template <typename Phrases>
bool holdsAny(const QString& text, const Phrases& phrases) {
    return std::ranges::any_of(
        phrases, [&](const char* phrase) { return text.contains(QLatin1StringView(phrase), Qt::CaseInsensitive); });
}

}  // namespace

bool hasContent(const QString& path) {
    const QFileInfo file(path);
    return file.exists() && file.size() > 0;
}

bool blamesTheFile(const QString& toolOutput) { return holdsAny(toolOutput, fileTroubles); }

QString decodedOutput(const QByteArray& output, const QString& fallback) {
    // The kept tail may begin inside a character: its continuation bytes are not the tool's fault.
    qsizetype start = 0;
    if (output.size() >= childOutputLimit) {
        while (start < 3 && start < output.size() && (static_cast<unsigned char>(output[start]) & 0xC0U) == 0x80U) {
            ++start;
        }
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(QByteArrayView(output).sliced(start));
    return decoder.hasError() ? fallback : text;
}

MagickOutcome magickOutcome(const ChildSetup& task, const QString& outputPath, const QString& context) {
    const ChildResult result = runChild(task);
    if (!result.started) {
        logLine(context + QStringLiteral(" failed: ") + userMessage(result.launchError));
        return MagickOutcome::failed;
    }
    const QString output = decodedOutput(result.output, QStringLiteral("Unknown output"));
    if (result.succeeded() && hasContent(outputPath)) {
        return holdsAny(output, damages) ? MagickOutcome::doneWithDamage : MagickOutcome::done;
    }
    if (!blamesTheFile(output)) {
        logLine(context + QStringLiteral(": ") + output);
    }
    return result.exitStatus == statusSourceRefused ? MagickOutcome::sourceRefused : MagickOutcome::failed;
}

bool runMagickTask(const ChildSetup& task, const QString& outputPath, const QString& context) {
    const MagickOutcome outcome = magickOutcome(task, outputPath, context);
    return outcome == MagickOutcome::done || outcome == MagickOutcome::doneWithDamage;
}

}  // namespace sorvik
