#include "imaging/imaging_client.h"

#include <algorithm>
#include <utility>

namespace sorvik::imaging {
namespace {

QStringList job(const QStringList& options, const QString& input, const QString& destination) {
    return options + QStringList{input, QStringLiteral("--out"), destination};
}

QStringList colorOptions(Colors colors, Metadata metadata) {
    QStringList options;
    if (colors == Colors::sRGB || metadata == Metadata::stripped) {
        options += option("colorSpace", QStringLiteral("sRGB"));
    }
    if (metadata == Metadata::stripped) {
        options += option("stripMetadata", QStringLiteral("yes"));
    }
    return options;
}

QStringList wholeJob(const char* format, const Picture& picture, const QString& destination, Metadata metadata) {
    return job(option("format", QString::fromLatin1(format)) + colorOptions(Colors::asTheyAre, metadata), picture.path,
               destination);
}

}  // namespace

QStringList option(const char* key, const QString& value) {
    return {QStringLiteral("-s"), QString::fromLatin1(key), value};
}

codecs::SipsStatus jobStatus(const ChildResult& child) {
    const bool known = child.started && !child.crashed && child.exitStatus >= 0 &&
                       static_cast<std::size_t>(child.exitStatus) < codecs::sipsStatuses.size();
    return known ? static_cast<codecs::SipsStatus>(child.exitStatus) : codecs::SipsStatus::failed;
}

QStringList intermediateArguments(const Picture& picture, const QString& destination, Colors colors,
                                  Metadata metadata) {
    return job(option("format", QStringLiteral("png")) + option("purpose", QStringLiteral("intermediate")) +
                   colorOptions(colors, metadata),
               picture.path, destination);
}

QStringList pngArguments(const Picture& picture, const QString& destination, Metadata metadata) {
    return wholeJob("png", picture, destination, metadata);
}

QStringList heicArguments(const Picture& picture, const QString& destination, Metadata metadata) {
    return wholeJob("heic", picture, destination, metadata);
}

QStringList pdfArguments(const Picture& picture, const QString& destination, Metadata metadata) {
    return wholeJob("pdf", picture, destination, metadata);
}

QStringList iconArguments(const Picture& picture, const QString& destination, const std::vector<int>& sizes,
                          Metadata metadata) {
    QStringList words;
    std::ranges::transform(sizes, std::back_inserter(words), [](int size) { return QString::number(size); });
    return job(option("format", QStringLiteral("png")) + option("iconSizes", words.join(u',')) +
                   colorOptions(Colors::asTheyAre, metadata),
               picture.path, destination);
}

QStringList frameArguments(const Picture& frame, const QString& toolFormat, bool stripMetadata,
                           std::optional<double> jpegQuality, const QString& destination) {
    QStringList options = option("format", toolFormat);
    if (jpegQuality) {
        options += option("formatOptions", QString::number(static_cast<int>(*jpegQuality * 100.0)));
    }
    options += colorOptions(Colors::asTheyAre, stripMetadata ? Metadata::stripped : Metadata::kept);
    return job(options, frame.path, destination);
}

QStringList carryMetadataArguments(const QString& intermediate, const QString& finished, std::optional<int> quality) {
    QStringList arguments{QStringLiteral("--carry-metadata"), intermediate, finished};
    if (quality) {
        arguments << QString::number(*quality);
    }
    return arguments;
}

QStringList keepLooksArguments(const QString& from, const QString& to) {
    return {QStringLiteral("--keep-looks"), from, to};
}

QStringList recodeArguments(const QString& from, const QString& to) {
    return {QStringLiteral("--recode-jpeg"), from, to};
}

ImagingClient::ImagingClient(QString toolPath) : toolPath_(std::move(toolPath)) {}

JobOutcome ImagingClient::run(const QStringList& arguments) const {
    ChildSetup setup;
    setup.executable = toolPath_;
    setup.arguments = arguments;
    const ChildResult child = runChild(setup);
    return {jobStatus(child), child.started ? QString::fromUtf8(child.output).trimmed() : child.launchError};
}

}  // namespace sorvik::imaging
