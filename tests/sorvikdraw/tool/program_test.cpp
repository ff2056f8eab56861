// The tool as a process: exit statuses, its one line, and what becomes of files.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "program_run.h"

namespace sorvik::draw::test {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr std::string_view drawing =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="20"><rect width="5" height="20" fill="red"/></svg>)";

class Program : public testing::Test {
protected:
    Program() { writeFile(folder_ / "in.svg", drawing); }

    /// In the test's folder, after a shell command such as "ulimit -f 1".
    [[nodiscard]] ProgramRun run(const Words& arguments, const std::string& before = ":") const {
        Words words{"-c", "cd \"$1\" && shift && " + before + " && exec \"$@\"", "sh", (folder_ / "").string()};
        words.push_back(drawingTool());
        words.insert(words.end(), arguments.begin(), arguments.end());
        return runProgram("/bin/sh", words);
    }
    /// What the folder holds besides the input, the names sorted.
    [[nodiscard]] Words others() const {
        Words names;
        for (const auto& entry : fs::directory_iterator(folder_ / "")) {
            names.push_back(entry.path().filename());
        }
        std::erase(names, "in.svg");
        std::ranges::sort(names);
        return names;
    }
    [[nodiscard]] bool isPNG(const char* name) const { return contentsOf(folder_ / name).starts_with("\x89PNG"); }

    Folder folder_;
};

/// One line about one failure, of the tool or of the engine below it.
void expectFailure(const ProgramRun& run, int status, const std::string& sentence) {
    EXPECT_EQ(run.status, status) << run.error;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(std::ranges::count(run.error, '\n'), 1) << run.error;
    EXPECT_TRUE(run.error.ends_with('\n'));
    EXPECT_NE(run.error.find(sentence), std::string::npos) << run.error;
}

TEST_F(Program, WritesTheOutputAndSaysNothing) {
    for (const Words& arguments :
         {Words{"in.svg", "--format", "png", "--scale", "2x"},
          Words{"in.svg", "--format", "jpeg", "--output", "./picture"}, Words{"./x/../in.svg", "--format", "pdf"}}) {
        const ProgramRun done = run(arguments);
        EXPECT_EQ(done.status, 0);
        EXPECT_EQ(done.output + done.error, "");
    }
    EXPECT_EQ(others(), (Words{"in.pdf", "in@2x.png", "picture"}));
    EXPECT_TRUE(isPNG("in@2x.png"));
}

TEST_F(Program, AnswersEveryFailureWithAStatusAndOneLine) {
    fs::create_directory(folder_ / "folder");
    ::mkfifo((folder_ / "fifo").c_str(), 0600);
    writeFile(folder_ / "broken.svg", "<svg width='1' height='1'><g></svg>");
    writeFile(folder_ / "empty.svg", "");
    writeFile(folder_ / "none.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="0" height="0"/>)");
    const Words before = others();
    const struct {
        Words arguments;
        int status;
        const char* sentence;
    } rows[] = {
        {{}, 2, "sorvikdraw: no input"},
        {{"in.svg"}, 2, "--format is missing"},
        {{"in.svg", "--format", "svg"}, 2, "--format svg: expected jpeg, pdf, png, swift or sfsymbol"},
        {{"in.svg", "--format", "png", "--format", "jpeg"}, 2, "--format: given twice"},
        {{"in.svg", "--format", "png", "--size", "10"}, 2, "--size 10: expected WIDTHxHEIGHT"},
        {{"in.svg", "--format", "png", "--insets", "1,auto,3,4"}, 1, "--insets"},
        {{"in.svg", "--format", "swift"}, 1, "--format swift: not built yet"},
        {{"in.svg", "--format", "sfsymbol"}, 1, "--format sfsymbol: not built yet"},
        {{"gone.svg", "--format", "png"}, 1, "gone.svg: file not found"},
        {{std::string(3000, 'n'), "--format", "png"}, 1, "File name too long"},
        {{"in.svg", "--format", "png", std::string(100'000, 'x')}, 2, "…: no such option"},
        {{"in.svg", "--format", "png", "--size", std::string(100'000, '1')}, 2, "…: expected WIDTHxHEIGHT"},
        {{"gone\n.svg", "--format", "png"}, 1, "gone\\u{a}.svg: file not found"},
        {{"in.svg/in.svg", "--format", "png"}, 1, "file not found"},
        {{"folder", "--format", "png"}, 1, "the input is a folder"},
        {{"fifo", "--format", "png"}, 1, "the input is no regular file"},
        {{"broken.svg", "--format", "png"}, 1, "[parsing error] broken.svg"},
        {{"empty.svg", "--format", "png"}, 1, "[parsing error] empty.svg"},
        {{"in.svg", "--format", "png", "--size", "2147483647x2147483647"}, 1, "in.svg: "},
        {{"none.svg", "--format", "png"}, 1, "none.svg"},
        {{"in.svg", "--format", "png", "--output", "folder"}, 1, "the output is a folder"},
        {{"in.svg", "--format", "png", "--output", "gone/out.png"}, 1, "No such file or directory"},
        {{"in.svg", "--format", "png", "--output", "/dev/null"}, 1, "the output is no regular file"},
        {{"in.svg", "--format", "png", "--output", std::string(300, 'n')}, 1, "File name too long"},
    };
    for (const auto& row : rows) {
        expectFailure(run(row.arguments), row.status, row.sentence);
    }
    EXPECT_EQ(others(), before);
}

TEST_F(Program, RefusesTheInputAsOutputUnderWhateverName) {
    fs::create_hard_link(folder_ / "in.svg", folder_ / "twin.png");
    fs::create_symlink("in.svg", folder_ / "link.png");
    fs::create_symlink("in.svg", folder_ / "in.png");
    for (const char* output : {"in.svg", "./folder/../in.svg", "twin.png", "link.png"}) {
        expectFailure(run({"in.svg", "--format", "png", "--output", output}), 1, "the output is the input");
    }
    expectFailure(run({"in.svg", "--format", "png"}), 1, "the output is the input");
    EXPECT_EQ(contentsOf(folder_ / "in.svg"), drawing);
}

TEST_F(Program, ReplacesAFileAndKeepsItsModeAndItsLink) {
    writeFile(folder_ / "target.png", "old");
    fs::permissions(folder_ / "target.png", fs::perms(0604));
    fs::create_symlink("target.png", folder_ / "link.png");
    EXPECT_EQ(run({"in.svg", "--format", "png", "--output", "link.png"}, "umask 077").status, 0);
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.png"));
    EXPECT_TRUE(isPNG("target.png"));
    EXPECT_EQ(fs::status(folder_ / "target.png").permissions(), fs::perms(0604));

    EXPECT_EQ(run({"in.svg", "--format", "png"}, "umask 027").status, 0);
    EXPECT_EQ(fs::status(folder_ / "in.png").permissions(), fs::perms(0640));

    fs::create_symlink("gone.png", folder_ / "dangling.png");
    expectFailure(run({"in.svg", "--format", "png", "--output", "dangling.png"}), 1, "a link to nothing");
}

TEST_F(Program, LeavesAnExistingOutputAloneWhenItFails) {
    writeFile(folder_ / "out.png", "old");
    // More than the kilobyte that the process may write into a file.
    const Words arguments{"in.svg", "--format", "jpeg", "--size", "900x900", "--output", "out.png"};
    expectFailure(run(arguments, "ulimit -f 1"), 1, "out.png: File too large");
    writeFile(folder_ / "in.svg", "<svg>");
    expectFailure(run(arguments), 1, "[parsing error]");
    EXPECT_EQ(contentsOf(folder_ / "out.png"), "old");
    EXPECT_EQ(others(), Words{"out.png"});
}

TEST_F(Program, TellsAFullDisk) {
    const std::string mount = "mkdir disk && mount -t tmpfs -o size=4k none disk && echo old >disk/out.png";
    const std::string script = mount + " && (\"$@\"; echo $? >status; ls -A disk >left; cat disk/out.png >kept) #";
    const Words arguments{"in.svg", "--format", "png", "--output", "disk/out.png"};
    Words words{"-rm", "/bin/sh", "-c", "cd \"$1\" && shift && " + script, "sh", (folder_ / "").string()};
    words.push_back(drawingTool());
    words.insert(words.end(), arguments.begin(), arguments.end());
    const ProgramRun done = runProgram("unshare", words);
    if (!fs::exists(folder_ / "status")) {
        GTEST_SKIP() << "no file system of a test's own here: " << done.error;
    }
    EXPECT_EQ(contentsOf(folder_ / "status"), "1\n");
    EXPECT_EQ(contentsOf(folder_ / "left"), "out.png\n");
    EXPECT_EQ(contentsOf(folder_ / "kept"), "old\n");
    EXPECT_NE(done.error.find("out.png: No space left on device\n"), std::string::npos) << done.error;
}

TEST_F(Program, TellsAFolderThatMayNotBeWritten) {
    fs::create_directory(folder_ / "closed");
    writeFile(folder_ / "closed/in.svg", drawing);
    fs::permissions(folder_ / "closed", fs::perms(0555));
    fs::permissions(folder_ / "", fs::perms(0755));
    // To root every folder is open.
    Words words{drawingTool(), (folder_ / "closed/in.svg").string(), "--format", "png"};
    if (::geteuid() == 0) {
        words.insert(words.begin(), {"setpriv", "--reuid=65534", "--clear-groups"});
    }
    const ProgramRun done = runProgram(words.front(), Words(words.begin() + 1, words.end()));
    expectFailure(done, 1, "closed/in.png: Permission denied");
    EXPECT_FALSE(fs::exists(folder_ / "closed/in.png"));
}

TEST_F(Program, PrintsHelpOnStandardOutput) {
    for (const Words& arguments : {Words{"--help"}, Words{"in.svg", "--help"}}) {
        const ProgramRun help = run(arguments);
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.error, "");
        EXPECT_TRUE(help.output.starts_with("Usage: sorvikdraw ")) << help.output;
    }
    EXPECT_EQ(others(), Words{});
    EXPECT_EQ(runProgram("/bin/sh", {"-c", "\"$1\" --help >/dev/full", "sh", drawingTool()}).status, 1);
}

TEST_F(Program, WarnsInTheWordsOfItsOptions) {
    writeFile(folder_ / "blurred.svg", R"x(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9">
        <filter id="f"><feGaussianBlur stdDeviation="1"/></filter>
        <rect width="9" height="9" filter="url(#f)"/></svg>)x");
    const ProgramRun warned = run({"blurred.svg", "--format", "png"});
    EXPECT_EQ(warned.status, 0);
    EXPECT_NE(warned.output.find("[--hideUnsupportedFilters]"), std::string::npos) << warned.output;
    EXPECT_EQ(run({"blurred.svg", "--format", "png", "--hide-unsupported-filters"}).output, "");
}

TEST_F(Program, WorksWithoutStandardStreams) {
    writeFile(folder_ / "broken.svg", "<svg>");
    const std::string closed = "exec <&- >&- 2>&-";
    EXPECT_EQ(run({"in.svg", "--format", "png"}, closed).status, 0);
    EXPECT_TRUE(isPNG("in.png"));
    EXPECT_EQ(run({"broken.svg", "--format", "png"}, closed).status, 1);
    EXPECT_EQ(runProgram("/bin/sh", {"-c", "(sleep 0.1; \"$1\"; echo $? >\"$2\") 2>&1 | :", "sh", drawingTool(),
                                     (folder_ / "status").string()})
                  .status,
              0);
    EXPECT_EQ(run({"in.svg"}, "mkdir gone && cd gone && rmdir ../gone").status, 1);
}

}  // namespace
}  // namespace sorvik::draw::test
