#include "sorvikdraw/tool/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>
#include <utility>

#include "codecs/byte_sink.h"
#include "codecs/descriptor_io.h"
#include "sorvikdraw/tool/error.h"

namespace sorvik::draw::command_line {
namespace {

namespace fs = std::filesystem;

constexpr mode_t newFileMode = 0666;  // the umask takes from it
constexpr mode_t permissionBits = 07777;
constexpr int mostNames = 100;

[[noreturn]] void fail(int errorNumber, const fs::path& subject) {
    throw std::system_error(errorNumber, std::generic_category(), subject.string());
}

void check(int result, const fs::path& subject) {
    if (result != 0) {
        fail(errno, subject);
    }
}

/// The target of a link, the path itself where none stands.
fs::path withoutLink(const fs::path& output) {
    std::error_code error;
    if (!fs::is_symlink(output, error)) {
        return output;
    }
    fs::path target = fs::canonical(output, error);
    if (error == std::errc::no_such_file_or_directory) {
        throw Error::invalid(output.string() + ": the output is a link to nothing");
    }
    if (error) {
        throw std::system_error(error, output.string());
    }
    return target;
}

fs::path folderOf(const fs::path& output) { return output.has_parent_path() ? output.parent_path() : fs::path("."); }

bool isSameFile(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

/// Throws unless the file may be replaced.
void requireReplaceable(const struct stat& present, const fs::path& output, const fs::path& input) {
    if (S_ISDIR(present.st_mode)) {
        throw Error::invalid(output.string() + ": the output is a folder");
    }
    if (!S_ISREG(present.st_mode)) {
        throw Error::invalid(output.string() + ": the output is no regular file");
    }
    struct stat source {};
    if (::stat(input.c_str(), &source) == 0 && isSameFile(present, source)) {
        throw Error::invalid(output.string() + ": the output is the input");
    }
    check(::access(output.c_str(), W_OK), output);
}

/// The mode of the file that the output replaces; absent without one.
std::optional<mode_t> modeOfReplaced(const fs::path& output, const fs::path& input) {
    struct stat present {};
    if (::stat(output.c_str(), &present) != 0) {
        return errno == ENOENT ? std::nullopt : (fail(errno, output), std::nullopt);
    }
    requireReplaceable(present, output, input);
    return present.st_mode & permissionBits;
}

/// Holds back what would end the program between the making of a temporary file and its renaming.
class HeldSignals {
public:
    HeldSignals() {
        sigset_t held;
        ::sigemptyset(&held);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
            ::sigaddset(&held, signal);
        }
        ::pthread_sigmask(SIG_BLOCK, &held, &before_);
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

/// A new file under a hidden name, removed again unless it was renamed.
class TemporaryFile {
public:
    TemporaryFile(const Descriptor& folder, const fs::path& subject)
        : folder_(folder), subject_(subject), file_(create(), subject) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!name_.empty()) {
            ::unlinkat(folder_.number(), name_.c_str(), 0);
        }
    }

    void write(std::span<const std::byte> bytes, const std::optional<mode_t>& mode) {
        try {
            codecs::writeAll(file_.number(), bytes);
        } catch (const codecs::SinkError& error) {
            fail(error.errorNumber(), subject_);
        }
        if (mode) {
            check(::fchmod(file_.number(), *mode), subject_);
        }
        check(::fsync(file_.number()), subject_);
        if (const int error = file_.close(); error != 0) {
            fail(error, subject_);
        }
    }
    void renameTo(const fs::path& name) {
        check(::renameat(folder_.number(), name_.c_str(), folder_.number(), name.c_str()), subject_);
        name_.clear();
    }

private:
    /// A descriptor, or -1 with errno. What an earlier process of this number left behind is passed over.
    int create() {
        for (int i = 0; i < mostNames; ++i) {
            name_ = ".sorvikdraw_" + std::to_string(::getpid()) + "_" + std::to_string(i);
            const int number =
                ::openat(folder_.number(), name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode);
            if (number >= 0 || errno != EEXIST) {
                return number;
            }
        }
        return -1;
    }

    const Descriptor& folder_;
    const fs::path& subject_;
    std::string name_;  ///< empty when there is nothing to remove
    Descriptor file_;
};

}  // namespace

Descriptor::Descriptor(int number, const fs::path& subject) : number_(number) {
    if (number < 0) {
        fail(errno, subject);
    }
}

Descriptor::Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor::~Descriptor() {
    if (number_ >= 0) {
        ::close(number_);
    }
}

int Descriptor::close() { return ::close(std::exchange(number_, -1)) == 0 ? 0 : errno; }

OutputFile::OutputFile(const fs::path& output, const fs::path& input)
    : path_(withoutLink(output)),
      folder_(::open(folderOf(path_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), folderOf(path_)),
      mode_(modeOfReplaced(path_, input)) {
    check(::faccessat(folder_.number(), ".", W_OK | X_OK, 0), path_);
}

void OutputFile::write(std::span<const std::byte> bytes) const {
    const HeldSignals held;
    TemporaryFile temporary(folder_, path_);
    temporary.write(bytes, mode_);
    temporary.renameTo(path_.filename());
    // The rename is done and can't be taken back: how its folder fares is not a failure of the output.
    ::fsync(folder_.number());
}

}  // namespace sorvik::draw::command_line
