#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace sorvik {

// What was under way when the program was killed. While a file stands behind its backup a note about it lies in the
// user's state folder, locked by the process that replaces the file; a note that nobody holds tells the next start
// where an original was left.

/// A replacement that is about to begin.
struct Replacement {
    QString original;          ///< absolute, without links
    QString backup;            ///< where the original stands meanwhile
    std::int64_t newSize = 0;  ///< bytes of the content that takes its place
    bool operator==(const Replacement&) const = default;
};

/// The note, as long as the object lives. Where none can be written the replacement goes on without one: its
/// backup can still be found by its name.
class ReplacementNote {
public:
    explicit ReplacementNote(const Replacement& replacement);
    ~ReplacementNote();
    ReplacementNote(const ReplacementNote&) = delete;
    ReplacementNote& operator=(const ReplacementNote&) = delete;

    /// Leaves the note to the next start: the original is still in its backup.
    void keep() { kept_ = true; }

private:
    QString path_;
    int file_ = -1;  // holds the lock
    bool kept_ = false;
};

/// What became of a replacement that was cut short.
enum class Recovery {
    notBegun,   ///< there is no backup
    restored,   ///< the original was put back from its backup
    completed,  ///< the new content is in place, whole; the backup was removed
    leftAlone,  ///< something else stands in the original's place, or it can't be reached: the backup stays
};

/// Brings one such replacement to an end, and removes what killed processes have half written beside it. A place that
/// holds a file of another size than the new content's was taken by somebody else.
[[nodiscard]] Recovery recover(const Replacement& replacement);

/// Goes through the notes of runs that were killed, recovers what they tell of, and logs each file by name. Notes
/// of running processes are left alone. To be called at the start of the program. Blocks.
void recoverReplacements();

/// The folder of the notes.
[[nodiscard]] QString replacementNotesFolder();

}  // namespace sorvik
