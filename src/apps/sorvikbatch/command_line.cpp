#include "apps/sorvikbatch/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace sorvik {
namespace {

struct Commands {
    ConvertOptions convert;
    CompressOptions compress;
    MetadataOptions metadata;
};

void describe(CLI::App& app, Commands& commands, const QString& folder) {
    app.set_help_flag("-h,--help", "Print this help and end");  // the commands inherit it
    app.set_help_all_flag("--help-all", "Print the help of all commands and end");
    app.set_version_flag("--version", std::string("sorvikbatch ") + SORVIK_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 when every file succeeded, 1 when one failed, 2 for bad usage.");
    describeConvert(*app.add_subcommand("convert", "Convert pictures to another format"), commands.convert, folder);
    describeCompress(*app.add_subcommand("compress", "Make pictures smaller in their own format"), commands.compress,
                     folder);
    describeMetadata(*app.add_subcommand("metadata", "Show what is known of a picture: camera, place, author"),
                     commands.metadata, folder);
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

CommandLine chosen(const CLI::App& app, Commands commands) {
    if (app.got_subcommand("convert")) {
        return std::move(commands.convert);
    }
    if (app.got_subcommand("compress")) {
        return std::move(commands.compress);
    }
    return std::move(commands.metadata);
}

}  // namespace

CommandLine parseCommandLine(const QStringList& arguments, const QString& folder) {
    CLI::App app("Works many pictures off at a time, without a window.", "sorvikbatch");
    Commands commands;
    describe(app, commands, folder);
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
    return chosen(app, std::move(commands));
}

}  // namespace sorvik
