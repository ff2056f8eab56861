#include "imaging/sips/full/vips_library.h"

#include <dlfcn.h>
#include <gmodule.h>
#include <vips/vips.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "imaging/sips/failure.h"

namespace sorvik::sips {

namespace {

struct Cause {
    std::string_view words;  ///< in libvips' message, lower case
    Status status;
    std::string_view sentence;
};

constexpr std::array causes = {
    Cause{"out of memory", Status::outOfMemory, "out of memory"},
    Cause{"cannot allocate", Status::outOfMemory, "out of memory"},
    Cause{"unable to allocate", Status::outOfMemory, "out of memory"},
    Cause{"too large", Status::tooLarge, "the picture is too large"},
    Cause{"too big", Status::tooLarge, "the picture is too large"},
    Cause{"exceeds", Status::tooLarge, "the picture is too large"},
    Cause{"trunc", Status::failed, "truncated picture"},
    Cause{"premature", Status::failed, "truncated picture"},
    Cause{"unexpected end", Status::failed, "truncated picture"},
    Cause{"end of file", Status::failed, "truncated picture"},
    Cause{"end of stream", Status::failed, "truncated picture"},
    Cause{"insufficient", Status::failed, "truncated picture"},
    Cause{"not enough", Status::failed, "truncated picture"},
    Cause{"read error", Status::failed, "truncated picture"},
};

std::string moduleFolder() {
    Dl_info library{};
    if (::dladdr(reinterpret_cast<void*>(&vips_init), &library) == 0 || library.dli_fname == nullptr) {
        return {};
    }
    const std::string file = library.dli_fname;
    return file.substr(0, file.rfind('/')) + "/vips-modules-" + std::to_string(vips_version(0)) + "." +
           std::to_string(vips_version(1)) + "/";
}

GLogWriterOutput swallow(GLogLevelFlags, const GLogField*, gsize, gpointer) { return G_LOG_WRITER_HANDLED; }

}  // namespace

void startVips() {
    // libvips looks for its modules below this folder, where there are none.
    // Nothing else runs yet that could read the environment.
    // NOLINTBEGIN(concurrency-mt-unsafe)
    ::setenv("VIPSHOME", "/nonexistent", 1);
    ::unsetenv("VIPS_LEAK");
    ::unsetenv("VIPS_INFO");
    // NOLINTEND(concurrency-mt-unsafe)
    g_log_set_writer_func(swallow, nullptr, nullptr);
    if (vips_init("sips") != 0) {
        throw Failure(Status::failed, "the imaging library does not start");
    }
    vips_cache_set_max(0);
    vips_concurrency_set(2);
}

void loadVipsModule(std::string_view name) {
    const std::string path = moduleFolder() + "vips-" + std::string(name) + ".so";
    if (GModule* module = g_module_open(path.c_str(), G_MODULE_BIND_LAZY); module != nullptr) {
        g_module_make_resident(module);
    }
}

void throwVipsFailure() {
    std::string message = vips_error_buffer();
    vips_error_clear();
    std::ranges::transform(message, message.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const Cause& cause : causes) {
        if (message.find(cause.words) != std::string::npos) {
            throw Failure(cause.status, std::string(cause.sentence));
        }
    }
    throw Failure(Status::failed, "not a picture that can be read");
}

}  // namespace sorvik::sips
