#include "imaging/sips/failure.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>
#include <system_error>

#include "codecs/byte_sink.h"

namespace sorvik::sips {

namespace {

struct ErrnoRow {
    int errorNumber;
    Status status;
    const char* sentence;
};

constexpr std::array errnoRows = {
    ErrnoRow{ENOSPC, Status::noSpace, "no space left on the disk"},
    ErrnoRow{EDQUOT, Status::noSpace, "the disk quota is used up"},
    ErrnoRow{EFBIG, Status::noSpace, "the file would become larger than allowed"},
    ErrnoRow{EACCES, Status::permissionDenied, "permission denied"},
    ErrnoRow{EPERM, Status::permissionDenied, "permission denied"},
    ErrnoRow{EROFS, Status::permissionDenied, "the disk is read-only"},
    ErrnoRow{ENOENT, Status::noSuchFile, "no such file"},
    ErrnoRow{ENOTDIR, Status::noSuchFile, "no such file"},
    ErrnoRow{ELOOP, Status::noSuchFile, "a link that leads nowhere"},
    ErrnoRow{ENAMETOOLONG, Status::noSuchFile, "the name is too long"},
    ErrnoRow{ENXIO, Status::notARegularFile, "not a regular file"},
    ErrnoRow{EISDIR, Status::notARegularFile, "not a regular file"},
    ErrnoRow{ENOMEM, Status::outOfMemory, "out of memory"},
};

void sayLine(int descriptor, const std::string& sentence) {
    const std::string line = "sips: " + sentence + "\n";
    // Nothing is left to be done when standard error itself can't be written.
    [[maybe_unused]] const ssize_t written = ::write(descriptor, line.data(), line.size());
}

Status report(int descriptor, const Failure& failure) {
    sayLine(descriptor, failure.what());
    return failure.status();
}

}  // namespace

Failure failureOf(int errorNumber, const std::string& what) {
    for (const ErrnoRow& row : errnoRows) {
        if (row.errorNumber == errorNumber) {
            return {row.status, what + ": " + row.sentence};
        }
    }
    return {Status::failed, what + ": " + std::system_category().message(errorNumber)};
}

Status reportCurrentException(int standardError) {
    try {
        throw;
    } catch (const Failure& failure) {
        return report(standardError, failure);
    } catch (const codecs::SinkError& error) {
        return report(standardError, failureOf(error.errorNumber(), "the output"));
    } catch (const std::bad_alloc&) {
        return report(standardError, failureOf(ENOMEM, "the picture"));
    } catch (const std::length_error&) {
        return report(standardError, failureOf(ENOMEM, "the picture"));
    } catch (const std::exception&) {
        return report(standardError, {Status::failed, "the picture could not be converted"});
    }
}

}  // namespace sorvik::sips
