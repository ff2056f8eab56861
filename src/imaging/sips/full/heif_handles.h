#pragma once

#include <libheif/heif.h>

#include <memory>

namespace sorvik::sips {

template <auto release>
struct HeifReleaser {
    template <typename T>
    void operator()(T* object) const {
        release(object);
    }
};

using HeifContext = std::unique_ptr<heif_context, HeifReleaser<heif_context_free>>;
using HeifImage = std::unique_ptr<heif_image, HeifReleaser<heif_image_release>>;
using HeifEncoder = std::unique_ptr<heif_encoder, HeifReleaser<heif_encoder_release>>;
using HeifHandle = std::unique_ptr<heif_image_handle, HeifReleaser<heif_image_handle_release>>;
using HeifOptions = std::unique_ptr<heif_encoding_options, HeifReleaser<heif_encoding_options_free>>;

}  // namespace sorvik::sips
