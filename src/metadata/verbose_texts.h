#pragma once

#include <QHash>
#include <QString>

#include <mutex>
#include <optional>

#include "engines/process_config_cache.h"

namespace sorvik {

/// What `magick identify -verbose` prints for files, each file looked at once. The path is the whole key, so that a
/// file that changes in place keeps its old text; nothing is ever dropped. Any thread; two callers
/// that ask for one new path at a time both run the tool.
class VerboseTexts {
public:
    /// The one of the program.
    static VerboseTexts& shared();

    /// `tools` must outlive the object.
    explicit VerboseTexts(ProcessConfigCache& tools) : tools_(tools) {}

    /// The text for an absolute path; absent, and asked for anew the next time, when the file or the tool is not
    /// there or the tool fails. Output that is not UTF-8 is an empty text. Of a text above 16 MiB
    /// the whole lines that fit are kept. Blocks for the tool's run.
    [[nodiscard]] std::optional<QString> text(const QString& path);

private:
    [[nodiscard]] std::optional<QString> cached(const QString& path);
    [[nodiscard]] std::optional<QString> identify(const QString& magick, const QString& path) const;

    ProcessConfigCache& tools_;
    std::mutex lock_;
    QHash<QString, QString> texts_;  // guarded by the lock
};

/// The environment of an identify run: the tool's folder on PATH, in front of an inherited one that does not name it
/// and else alone; its libraries' folder in front of the library path.
[[nodiscard]] Environment identifyEnvironment(const Environment& inherited, const QString& toolDirectory,
                                              const QString& libraryDirectory);

}  // namespace sorvik
