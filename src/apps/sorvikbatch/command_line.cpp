#include "apps/sorvikbatch/batch_options.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace sorvik {
namespace {

std::map<std::string, ImageFormat> formatNames() {
    std::map<std::string, ImageFormat> names;
    for (const ImageFormat format : allImageFormats()) {
        names[rawValue(format).toLower().toStdString()] = format;
        names[fileExtension(format).toStdString()] = format;
    }
    names["tif"] = ImageFormat::tiff;
    return names;
}

std::string formatList() {
    QStringList names;
    for (const ImageFormat format : allImageFormats()) {
        names << rawValue(format).toLower();
    }
    return names.join(QStringLiteral(", ")).toStdString();
}

struct RawOptions {
    std::string to;
    std::string outputPrefix;
    std::string outputSuffix;
    std::vector<std::string> files;
};

void describe(CLI::App& app, CLI::App& convert, RawOptions& raw, ConvertOptions& options) {
    app.set_help_flag("-h,--help", "Print this help and end");
    app.set_help_all_flag("--help-all", "Print the help of all commands and end");
    app.set_version_flag("--version", std::string("sorvikbatch ") + SORVIK_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 when every file succeeded, 1 when one failed, 2 for bad usage.");
    convert.set_help_flag("-h,--help", "Print this help and end");
    convert.add_option("--to", raw.to, "The format to convert to: " + formatList())->required()->type_name("FORMAT");
    convert.add_flag("--strip-metadata", options.stripMetadata, "Leave EXIF, XMP and IPTC out of the results");
    convert.add_option("--output-prefix", raw.outputPrefix, "Put before each result's name")->type_name("TEXT");
    convert.add_option("--output-suffix", raw.outputSuffix, "Put behind each result's name, before the extension")
        ->type_name("TEXT");
    convert.add_flag("--json", options.json, "Print one JSON object a file");
    convert.add_flag("--verbose", options.verbose, "Print the engines' log lines on standard error");
    convert.add_option("files", raw.files, "The files to convert; results lie beside them")
        ->required()
        ->type_name("FILE");
    convert.footer(
        "Each result is written beside its source and replaces what stands there under its name.\n"
        "One line is printed a file as it ends: name, from, to, outcome, size. The summary comes last.\n"
        "Exit status: 0 when every file succeeded, 1 when one failed, 2 for bad usage.");
}

/// CLI11 reads the words from the last to the first, and takes "--option=" for an option without a value where
/// scripts mean an empty one.
std::vector<std::string> reversedWords(const QStringList& arguments) {
    std::vector<std::string> words;
    bool optionsEnded = false;
    for (const QString& argument : arguments.mid(1)) {
        optionsEnded = optionsEnded || argument == u"--";
        const bool emptyValue = !optionsEnded && argument.startsWith(u"--") && argument.endsWith(u'=');
        words.push_back((emptyValue ? argument.chopped(1) : argument).toStdString());
        if (emptyValue) {
            words.emplace_back();
        }
    }
    std::ranges::reverse(words);
    return words;
}

Answer badUsage(const std::string& reason) {
    return {QStringLiteral("sorvikbatch: %1\nTry 'sorvikbatch --help'.").arg(QString::fromStdString(reason)),
            statusBadUsage};
}

}  // namespace

std::variant<ConvertOptions, Answer> parseCommandLine(const QStringList& arguments, const QString& folder) {
    CLI::App app("Converts pictures, many at a time, without a window.", "sorvikbatch");
    CLI::App* convert = app.add_subcommand("convert", "Convert pictures to another format");
    RawOptions raw;
    ConvertOptions options;
    describe(app, *convert, raw, options);
    try {
        app.parse(reversedWords(arguments));
    } catch (const CLI::CallForVersion& version) {
        return Answer{QString::fromUtf8(version.what()), statusSuccess};
    } catch (const CLI::CallForAllHelp&) {
        return Answer{QString::fromStdString(app.help("", CLI::AppFormatMode::All)).trimmed(), statusSuccess};
    } catch (const CLI::CallForHelp&) {
        return Answer{QString::fromStdString(app.help()).trimmed(), statusSuccess};
    } catch (const CLI::ParseError& error) {
        return badUsage(error.what());
    }
    const auto names = formatNames();
    const auto format = names.find(QString::fromStdString(raw.to).toLower().toStdString());
    if (format == names.end()) {
        return badUsage("--to: '" + raw.to + "' is no format to convert to; it can be " + formatList());
    }
    if (std::ranges::find(raw.files, std::string()) != raw.files.end()) {
        return badUsage("an empty name is no file");
    }
    options.to = format->second;
    options.outputPrefix = QString::fromStdString(raw.outputPrefix);
    options.outputSuffix = QString::fromStdString(raw.outputSuffix);
    std::ranges::transform(raw.files, std::back_inserter(options.files), [&](const std::string& file) {
        return QDir::cleanPath(QDir(folder).absoluteFilePath(QString::fromStdString(file)));
    });
    return options;
}

}  // namespace sorvik
