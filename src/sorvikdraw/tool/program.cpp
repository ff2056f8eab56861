#include "sorvikdraw/tool/program.h"

#include <unistd.h>

#include <cstddef>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>

#include "codecs/descriptor_io.h"
#include "sorvikdraw/dom/parsing_log.h"
#include "sorvikdraw/dom/printable_text.h"
#include "sorvikdraw/engine/drawing_error.h"
#include "sorvikdraw/tool/command_line.h"
#include "sorvikdraw/tool/error.h"
#include "sorvikdraw/tool/help_text.h"
#include "sorvikdraw/tool/output_file.h"
#include "sorvikdraw/tool/process_image.h"

namespace sorvik::draw::command_line {
namespace {

using Arguments = std::span<const std::string_view>;

constexpr std::size_t longestLine = 5000;  // characters; the longest path leaves room for what is said of it

void reportSentence(std::string_view sentence) {
    if (!sentence.empty()) {
        StandardErrorStream::write("sorvikdraw: " + printable(sentence, longestLine) + "\n");
    }
}

ExitStatus printHelp() {
    const std::string text = helpText();
    codecs::writeAll(STDOUT_FILENO, std::as_bytes(std::span(text)));
    return ExitStatus::written;
}

ExitStatus makeImage(const Configuration& configuration) {
    requireInput(configuration.input);
    const OutputFile output(configuration.output, configuration.input);
    try {
        output.write(processImage(configuration));
    } catch (const DrawingError& error) {
        throw std::runtime_error(configuration.input.string() + ": " + error.what());
    }
    return ExitStatus::written;
}

ExitStatus runOrThrow(Arguments arguments) {
    if (asksForHelp(arguments)) {
        return printHelp();
    }
    Configuration configuration;
    try {
        configuration = parseConfiguration(arguments, std::filesystem::current_path());
    } catch (const Error& error) {
        reportSentence(error.what());
        return ExitStatus::badUsage;
    }
    return makeImage(configuration);
}

void reportCurrentException() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        reportSentence(error.what());
    }
}

}  // namespace

ExitStatus run(Arguments arguments) noexcept {
    try {
        return runOrThrow(arguments);
    } catch (...) {
        try {
            reportCurrentException();
        } catch (...) {
            StandardErrorStream::write("sorvikdraw: out of memory\n");
        }
        return ExitStatus::failed;
    }
}

}  // namespace sorvik::draw::command_line
