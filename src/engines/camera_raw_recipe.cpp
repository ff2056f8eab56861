#include "engines/camera_raw_recipe.h"

#include <algorithm>
#include <array>
#include <span>

#include "engines/image_magick_recipes.h"
#include "engines/magick_run.h"
#include "engines/path_alias.h"
#include "engines/path_safety.h"
#include "platform/log.h"

namespace sorvik {
namespace {

constexpr std::array rawFormats{"jpg", "jpeg", "png", "tiff", "bmp", "gif", "webp"};

// The first attempt ends before the settings that only the second one has.
constexpr std::size_t firstDefines = 2;
constexpr std::array rawDefines{"raw:use-camera-wb=true", "raw:auto-gamma=true", "raw:interpolation-quality=1",
                                "raw:no-crop", "raw:no-auto-bright"};

struct AttemptText {
    const char* refusal;
    const char* context;
};

constexpr std::array attemptTexts{
    AttemptText{"Unsupported output format for RAW: ", "ImageMagick RAW conversion error"},
    AttemptText{"Unsupported output format for RAF fallback: ", "RAF fallback conversion also failed"},
};

/// What both attempts do; true when the picture is there.
bool tryRAW(ProcessConfigCache& tools, RawAttempt attempt, const GatedPaths& paths, const QString& format,
            bool stripMetadata, double quality) {
    const AttemptText& text = attemptTexts[static_cast<std::size_t>(attempt)];
    const QString key = format.toLower();
    if (std::ranges::none_of(rawFormats, [&](const char* each) { return key == QLatin1StringView(each); })) {
        logLine(QString::fromLatin1(text.refusal) + format);
        return false;
    }
    warnIfOverwriting(paths.output);
    auto task = tools.makeMagickTask();
    if (!task) {
        return false;
    }
    const PathAlias input = PathAlias::forInput(paths.input);
    const PathAlias output = PathAlias::forOutput(paths.output);
    task->arguments = rawArguments(attempt, input.path(), key, stripMetadata, quality, output.path());
    return runMagickTask(*task, output.path(), QString::fromLatin1(text.context)) && output.settle();
}

}  // namespace

QStringList rawArguments(RawAttempt attempt, const QString& input, const QString& format, bool stripMetadata,
                         double quality, const QString& output) {
    QStringList arguments;
    for (const char* define :
         std::span(rawDefines).first(attempt == RawAttempt::first ? firstDefines : rawDefines.size())) {
        arguments << QStringLiteral("-define") << QString::fromLatin1(define);
    }
    arguments << QStringLiteral("-density") << QStringLiteral("300") << input;
    if (stripMetadata) {
        arguments += metadataArguments(format);
    }
    return arguments + qualityArguments(format, quality) + QStringList{output};
}

bool convertRAWFile(ProcessConfigCache& tools, const QString& inputPath, const QString& outputPath,
                    const QString& format, bool stripMetadata, double quality) {
    const auto paths = gatedPaths(inputPath, outputPath);
    if (!paths) {
        return false;
    }
    const auto attempt = [&](RawAttempt which) { return tryRAW(tools, which, *paths, format, stripMetadata, quality); };
    if (attempt(RawAttempt::first)) {
        return true;
    }
    if (!paths->input.toLower().endsWith(QStringLiteral(".raf"))) {
        return false;
    }
    logLine(QStringLiteral("RAF conversion failed, trying fallback method..."));
    return attempt(RawAttempt::second);
}

}  // namespace sorvik
