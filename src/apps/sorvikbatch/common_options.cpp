#include "apps/sorvikbatch/common_options.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <string>
#include <vector>

namespace sorvik {
namespace {

QStringList absolutePaths(const std::vector<std::string>& files, const QString& folder) {
    QStringList paths;
    for (const std::string& file : files) {
        if (file.empty()) {
            throw CLI::ValidationError("an empty name is no file");
        }
        paths << QDir::cleanPath(QDir(folder).absoluteFilePath(QString::fromStdString(file)));
    }
    return paths;
}

}  // namespace

void describeCommon(CLI::App& command, CommonOptions& options, const char* filesHelp, const QString& folder) {
    command.add_flag("--json", options.json, "Print one JSON object a file");
    command.add_flag("--verbose", options.verbose, "Print the engines' log lines on standard error");
    const auto take = [&options, folder](const std::vector<std::string>& files) {
        options.files = absolutePaths(files, folder);
    };
    command.add_option_function<std::vector<std::string>>("files", take, filesHelp)->required()->type_name("FILE");
}

void describeText(CLI::App& command, const char* option, QString& text, const char* help) {
    const auto take = [&text](const std::string& word) { text = QString::fromStdString(word); };
    command.add_option_function<std::string>(option, take, help)->type_name("TEXT");
}

}  // namespace sorvik
