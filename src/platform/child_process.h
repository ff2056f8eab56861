#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace sorvik {

using Environment = QMap<QString, QString>;

/// The environment of this process.
[[nodiscard]] Environment processEnvironment();

/// What to start. Never a shell: the arguments reach the child as they stand.
struct ChildSetup {
    enum class Output {
        captured,   ///< standard output and error in one buffer, in the order in which they came
        document,   ///< standard output alone, from its beginning; standard error to the null device
        discarded,  ///< both to the null device
    };

    QString executable{};  ///< absolute path
    QStringList arguments{};
    std::optional<Environment> environment{};  ///< absent: as this process's
    QString workingDirectory{};                ///< empty: as this process's
    Output output = Output::captured;
};

struct ChildResult {
    bool started = false;
    QString launchError;   ///< the system's words, when it was not started
    bool crashed = false;  ///< ended by a signal
    int exitStatus = -1;   ///< meaningful when started and not crashed
    QByteArray output;     ///< the last 64 KiB of what it wrote; of a document the first 16 MiB

    [[nodiscard]] bool succeeded() const { return started && !crashed && exitStatus == 0; }
};

inline constexpr qsizetype childOutputLimit = qsizetype{64} * 1024;
inline constexpr qsizetype childDocumentLimit = qsizetype{16} * 1024 * 1024;

/// Runs a child to its end; blocks the calling thread, which must not be the event loop's. Standard
/// input is the null device; no other descriptor is handed on. The output is drained while the child
/// runs, so that no child ever waits for a reader and none fills the memory. What the child started
/// itself and left behind is not waited for. Arguments reach the child as UTF-8: a file name of other
/// bytes can't be told to it, as no QString holds one. Never throws.
[[nodiscard]] ChildResult runChild(const ChildSetup& setup);

}  // namespace sorvik
