#pragma once

#include <string>

#include "test_pictures.h"

namespace sorvik::codecs::testing {

/// What libpng makes of a file.
struct DecodedPng {
    std::string complaint;  ///< its first warning or error; empty when it is content
    TestPicture picture;    ///< palettes turned into colours
    bool palette = false;
    int bitDepth = 0;  ///< in the file
    PictureMetadata metadata;
};

[[nodiscard]] DecodedPng decodePng(const Bytes& file);

}  // namespace sorvik::codecs::testing
