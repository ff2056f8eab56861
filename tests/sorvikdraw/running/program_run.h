#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace sorvik::draw::test {

struct ProgramRun {
    int status = -1;  ///< of the exit, 128 + the signal, or 124 for one that was stopped after a minute
    std::string output;
    std::string error;
    double processorSeconds = 0;  ///< of all its threads
    long peakKilobytes = 0;       ///< resident, and at least what this process held when it started the other
};

/// Runs a program, found along PATH when its name has no "/", and waits.
ProgramRun runProgram(const std::string& program, const std::vector<std::string>& arguments);

/// The built tool, in the bundle that SORVIK_BUNDLE names.
std::string drawingTool();

/// A folder for one test, removed with it.
class Folder {
public:
    Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

std::string contentsOf(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, std::string_view contents);

}  // namespace sorvik::draw::test
