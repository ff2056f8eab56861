#include "sorvikdraw/engine/image_loader.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "sorvikdraw/engine/drawing_error.h"

namespace sorvik::draw::layer_tree {
namespace {

struct BitmapType {
    std::string_view mimeType;
    Bitmap::Format format;
};
constexpr auto bitmapTypes = std::to_array<BitmapType>({
    {"image/jpeg", Bitmap::Format::jpeg},
    {"image/png", Bitmap::Format::png},
});

}  // namespace

Bitmap loadBitmap(const dom::URL& url) {
    auto data = dom::urlData(url);
    const auto* const type =
        data ? std::ranges::find(bitmapTypes, data->mimeType, &BitmapType::mimeType) : bitmapTypes.end();
    if (type == bitmapTypes.end()) {
        throw DrawingError::invalid("Cannot decode image");
    }
    return {type->format, std::make_shared<const std::vector<std::byte>>(std::move(data->bytes))};
}

}  // namespace sorvik::draw::layer_tree
