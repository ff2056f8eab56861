// A reference, and the data that it may hold.

#include "sorvikdraw/dom/url.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace sorvik::draw::dom;
    const auto url = makeURL({reinterpret_cast<const char*>(data), size});
    if (!url) {
        return 0;
    }
    const auto again = makeURL(url->absoluteString);
    const auto held = urlData(*url);
    const bool sound = held ? held->bytes.size() < size && !held->bytes.empty() && !held->mimeType.empty() : true;
    if (again != url || !sound || url->fragment().value_or("").size() >= url->absoluteString.size()) {
        __builtin_trap();
    }
    return 0;
}
