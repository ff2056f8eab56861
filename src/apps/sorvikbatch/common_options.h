#pragma once

#include <QString>
#include <QStringList>

namespace CLI {  // NOLINT(readability-identifier-naming): the library's own name
class App;
}

namespace sorvik {

/// What every command takes.
struct CommonOptions {
    QStringList files;  ///< absolute paths
    bool json = false;
    bool verbose = false;
};

// Each describes options to the parser, which fills the object when it parses; the object must outlive it.

/// `filesHelp` says what happens to the files; relative ones are taken from `folder`.
void describeCommon(CLI::App& command, CommonOptions& options, const char* filesHelp, const QString& folder);

/// A free text, empty without the option.
void describeText(CLI::App& command, const char* option, QString& text, const char* help);

}  // namespace sorvik
