#include "bundle/magick/decoded_run.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

#include "bundle/magick/camera_report.h"
#include "bundle/magick/child.h"
#include "bundle/magick/decode_steps.h"
#include "bundle/magick/rendered_page.h"
#include "bundle/magick/svg_wrapper.h"

namespace sorvik::bundle {

namespace {

constexpr int statusFailed = 1;
constexpr std::uint64_t partLength = 65536;  // of a text, where its structuring comments are looked for

int fail(const std::string& reason, int status = statusFailed) {
    std::fputs(("magick: " + reason + "\n").c_str(), stderr);
    return status;
}

std::string readPart(std::ifstream& file, std::uint64_t offset, std::uint64_t length) {
    std::string part(length, '\0');
    file.clear();
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(part.data(), static_cast<std::streamsize>(part.size()));
    part.resize(static_cast<std::size_t>(file.gcount()));
    return part;
}

/// A PostScript file as far as it has to be known before it is interpreted.
struct Source {
    PostScriptSection section;
    Extent extent;
    bool ended = false;
    std::uint64_t fileSize = 0;

    [[nodiscard]] bool cutOff() const { return !section.complete || extent.missing; }
    [[nodiscard]] bool hasPreview() const { return section.offset != 0 || section.length != fileSize; }
};

/// Absent when the content is no PostScript.
std::optional<Source> lookAtSource(const std::string& path) {
    std::error_code error;
    Source source;
    source.fileSize = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file) {
        return std::nullopt;
    }
    const auto section = findPostScript(readPart(file, 0, std::min(partLength, source.fileSize)), source.fileSize);
    if (!section) {
        return std::nullopt;
    }
    source.section = *section;
    if (section->complete) {
        const std::uint64_t part = std::min(partLength, section->length);
        const std::string tail = readPart(file, section->offset + section->length - part, part);
        source.extent = findExtent(readPart(file, section->offset, part), tail);
        source.ended = saysItEnds(tail);
    }
    return source;
}

/// The interpreter would read the preview too, and take a file that ends behind its text for a whole one.
bool copySection(const std::string& from, const PostScriptSection& section, const std::string& to) {
    std::ifstream file(from, std::ios::binary);
    std::ofstream copy(to, std::ios::binary);
    for (std::uint64_t done = 0; done < section.length && copy;) {
        const std::string part = readPart(file, section.offset + done, std::min(partLength, section.length - done));
        if (part.empty()) {
            return false;
        }
        copy << part;
        done += part.size();
    }
    copy.close();
    return !copy.fail();
}

/// A relative name that begins with a dash would be an option, "%" and "@" have meanings of their own.
std::string absolute(const std::string& path) {
    std::error_code error;
    const std::filesystem::path result = std::filesystem::absolute(path, error);
    return error ? path : result.string();
}

/// Passes on what a tool has said, up to a length that nobody reads beyond.
std::string repeatMessages(const std::string& messages) {
    std::ifstream file(messages, std::ios::binary);
    std::string said = readPart(file, 0, partLength);
    std::fputs(said.c_str(), stderr);
    return said;
}

/// Whether a text of any length holds a word.
bool mentions(const std::string& path, std::string_view word) {
    std::ifstream file(path, std::ios::binary);
    std::string window;
    for (std::string part(partLength, '\0'); file;
         window.erase(0, window.size() - std::min(window.size(), word.size()))) {
        file.read(part.data(), static_cast<std::streamsize>(part.size()));
        window.append(part, 0, static_cast<std::size_t>(file.gcount()));
        if (window.find(word) != std::string::npos) {
            return true;
        }
    }
    return false;
}

// How the interpreter tells that it was stopped at its fence. Deleting and renaming end as errors of the system there.
constexpr std::array<std::string_view, 3> fenceWords{"invalidfileaccess", "in --deletefile--", "in --renamefile--"};

/// A text that was stopped at the fence is no mishap of the interpreter: it must not be tried without one.
int interpret(const MagickInvocation& renderer, const PrivateFolder& folder) {
    const std::string messages = folder.file("messages");
    const int status = runTool(renderer, false, messages);
    repeatMessages(messages);
    if (status == 0) {
        return 0;
    }
    return std::ranges::any_of(fenceWords, [&](auto word) { return mentions(messages, word); })
               ? fail("the PostScript reaches for files it may not have", statusSourceRefused)
               : fail("the PostScript could not be interpreted");
}

int renderPostScript(const std::vector<std::string>& arguments, const std::string& path, const Source& source,
                     const PrivateFolder& folder, const std::string& output) {
    if (source.cutOff()) {
        return fail("the PostScript is cut off", statusSourceRefused);
    }
    const Raster raster = rasterOf(arguments, source.extent.box);
    if (raster.tooLarge()) {
        return fail("the drawing would be " + std::to_string(raster.width) + " by " + std::to_string(raster.height) +
                        " pixels, more than " + std::to_string(Raster::largestSide) + " a side",
                    statusSourceRefused);
    }
    std::string text = absolute(path);
    if (source.hasPreview()) {
        text = folder.file("drawing.eps");
        if (!copySection(path, source.section, text)) {
            return fail("the PostScript could not be copied");
        }
    }
    if (const int status = interpret(postScriptRenderer(raster, source.ended, text, output), folder); status != 0) {
        return status;
    }
    switch (lookAtPage(output)) {
        case Page::missing:
            return fail("the PostScript ends before its drawing does", statusSourceRefused);
        case Page::cut:
            return fail("the interpreter did not finish its picture");
        case Page::blank:
            return fail("the PostScript draws nothing", statusSourceRefused);
        case Page::painted:
            return 0;
    }
    return statusFailed;
}

/// The decoder ends well whatever happened, and writes half of a picture when the disk is full: what counts is
/// that it had nothing to say and that there is a file. ImageMagick fails on a TIFF that is cut.
int decodeRaw(const std::vector<std::string>& arguments, const std::string& path, const PrivateFolder& folder,
              const std::string& output) {
    const std::string messages = folder.file("messages");
    const int status = runTool(rawDecoder(arguments, absolute(path), output), false, messages);
    const std::string said = repeatMessages(messages);
    std::error_code error;
    const bool written = std::filesystem::file_size(output, error) > 0 && !error;
    return status == 0 && said.empty() && written ? 0 : fail("the camera's picture could not be decoded");
}

/// What a report says of the camera; empty when it says nothing.
std::string reportOn(const std::string& picture, bool decoded, const PrivateFolder& folder) {
    const std::string report = folder.file("report");
    const int status = runTool(cameraReporter(picture, decoded, report), false, folder.file("warnings"));
    std::ifstream file(report, std::ios::binary);
    return status == 0 ? cameraProperties(std::string(std::istreambuf_iterator<char>(file), {})) : std::string();
}

/// By the EXIF in the file itself, which is there however few of the pixels are.
std::string reportOnFile(const std::string& path, const PrivateFolder& folder) {
    std::ifstream file(path, std::ios::binary);
    const auto offset = cameraTiffOffset(readPart(file, 0, cameraHeadLength));
    const std::string jpeg = offset ? exifCarrier(readPart(file, *offset, cameraHeadLength)) : std::string();
    const std::string carrier = folder.file("camera.jpg");
    std::ofstream(carrier, std::ios::binary) << jpeg;
    const std::string report = jpeg.empty() ? jpeg : reportOn(carrier, false, folder);
    return report.find(" exif:Make: ") != std::string::npos ? report : std::string();
}

int reportCamera(const std::vector<std::string>& arguments, const std::string& path, const PrivateFolder& folder) {
    std::string report = reportOnFile(path, folder);
    if (report.empty()) {
        const std::string decoded = folder.file("decoded.tiff");
        if (const int status = decodeRaw(arguments, path, folder, decoded); status != 0) {
            return status;
        }
        report = reportOn(decoded, true, folder);
    }
    std::fputs(report.c_str(), stdout);
    return report.empty() || std::fflush(stdout) != 0 ? fail("nothing could be told of the camera's picture") : 0;
}

int runSteps(const std::vector<std::string>& arguments, Decoding decoding, const Source& source, bool svg) {
    endWithChildren();
    const PrivateFolder folder;
    if (!folder.made()) {
        return fail("no temporary folder could be made");
    }
    folder.becomeTemporaryDirectory();
    const std::string& path = arguments[inputOperand(arguments).value_or(0)];
    if (wantsCameraReport(arguments)) {
        return reportCamera(arguments, path, folder);
    }
    const std::string decoded = folder.file(decoding == Decoding::cameraRaw ? "decoded.tiff" : "decoded.png");
    int status = 0;
    if (decoding == Decoding::cameraRaw) {
        status = decodeRaw(arguments, path, folder, decoded);
    } else if (decoding == Decoding::postScript) {
        status = renderPostScript(arguments, path, source, folder, decoded);
    }
    if (status != 0) {
        return status;
    }
    const std::string picture = svg ? folder.file("picture.png") : std::string();
    status = runTool(continuation(arguments, decoding, decoded, picture), true);
    if (status == 0 && svg && !wrapAsSvg(picture, arguments.back())) {
        return fail("the SVG could not be written");
    }
    return status;
}

/// Whether reading the file may leave something in the temporary directory.
bool leavesTraces(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return mayBeSvg(path, readPart(file, 0, 1));
}

/// The configuration beside this program holds for everybody who starts it: it forbids ImageMagick to start other
/// programs for a picture.
void bringConfiguration() {
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    if (!error && std::filesystem::exists(folder / "policy.xml", error)) {
        setenv("MAGICK_CONFIGURE_PATH", folder.c_str(), 0);  // NOLINT(concurrency-mt-unsafe): one thread
    }
}

}  // namespace

int runMagick(const std::vector<std::string>& arguments) {
    bringConfiguration();
    const auto operand = inputOperand(arguments);
    Decoding decoding = operand ? decodingOf(arguments[*operand]) : Decoding::none;
    std::optional<Source> source;
    if (decoding == Decoding::postScript) {
        source = lookAtSource(arguments[*operand]);
        decoding = source ? decoding : Decoding::none;
    }
    const bool svg = wantsSvg(arguments);
    const bool alone = decoding == Decoding::none && !svg;
    if (alone && !(operand && leavesTraces(arguments[*operand]))) {
        execute(magickInvocation(arguments));
    }
    return runSteps(arguments, decoding, source.value_or(Source{}), svg);
}

}  // namespace sorvik::bundle
