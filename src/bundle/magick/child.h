#pragma once

#include <string>

#include "bundle/magick/magick_invocation.h"

namespace sorvik::bundle {

/// A folder of its own for one run, readable by its owner only, gone with the object. Its name begins as those that
/// the program sweeps away when a run was killed, and holds nothing that a tool would read as syntax.
class PrivateFolder {
public:
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    [[nodiscard]] bool made() const { return !path_.empty(); }
    [[nodiscard]] std::string file(const char* name) const { return path_ + "/" + name; }

    /// Makes it the temporary directory of all that is started from here on. A fenced Ghostscript may do what it
    /// wants there, and nowhere else.
    void becomeTemporaryDirectory() const;

private:
    std::string path_;
};

/// Lets a request to end reach the child that runs, so that this process outlives it and can clean up. Once, before
/// the first child.
void endWithChildren();

/// Whether a request to end has come.
[[nodiscard]] bool askedToEnd();

/// Runs a child to its end and gives its exit status; one that was ended by a signal, or that could not be
/// started, gives a status that is not 0. What it says on standard output goes to standard error, unless
/// `speaks`; with `messages` both go to the file of that name. The child dies with this process.
[[nodiscard]] int runTool(const MagickInvocation& tool, bool speaks, const std::string& messages = {});

}  // namespace sorvik::bundle
