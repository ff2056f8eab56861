#include "imaging/sips/full/exiv2_metadata.h"

#include <exiv2/exiv2.hpp>

namespace sorvik::sips {

namespace {

std::vector<std::byte> bytesOf(const Exiv2::DataBuf& buffer) {
    const auto bytes = std::as_bytes(std::span(buffer.pData_, static_cast<std::size_t>(buffer.size_)));
    return {bytes.begin(), bytes.end()};
}

std::vector<std::byte> encodedExif(Exiv2::ExifData& data) {
    if (data.empty()) {
        return {};
    }
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, Exiv2::littleEndian, data);
    const auto bytes = std::as_bytes(std::span(blob));
    return {bytes.begin(), bytes.end()};
}

}  // namespace

codecs::PictureMetadata readWithExiv2(std::span<const std::byte> file) {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    codecs::PictureMetadata metadata;
    try {
        const auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(file.data()),
                                                     static_cast<long>(file.size()));
        image->readMetadata();
        metadata.exif = encodedExif(image->exifData());
        if (!image->iptcData().empty()) {
            metadata.iptc = bytesOf(Exiv2::IptcParser::encode(image->iptcData()));
        }
        const auto packet = std::as_bytes(std::span(image->xmpPacket()));
        metadata.xmp.assign(packet.begin(), packet.end());
    } catch (const std::exception&) {
        // Damaged metadata never stops a picture: what was found up to here is used.
    }
    return metadata;
}

}  // namespace sorvik::sips
