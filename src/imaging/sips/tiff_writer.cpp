#include "imaging/sips/tiff_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string_view>
#include <vector>

#include "codecs/samples.h"
#include "imaging/sips/byte_reader.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/tiff_directory.h"

namespace sorvik::sips {

namespace {

using Bytes = std::vector<std::byte>;

enum Type : std::uint16_t { byteType = 1, shortType = 3, longType = 4, rationalType = 5, undefinedType = 7 };

/// Tags of an EXIF block's first directory that describe the photograph, not the pixels that it came
/// with. Exif 2.32, tables 4 and 5; TIFF 6.0.
constexpr std::array<std::uint16_t, 21> carriedTags = {
    270,    // ImageDescription
    271,    // Make
    272,    // Model
    305,    // Software
    306,    // DateTime
    315,    // Artist
    316,    // HostComputer
    318,    // WhitePoint
    319,    // PrimaryChromaticities
    18246,  // Rating
    18249,  // RatingPercent
    33432,  // Copyright
    34665,  // pointer to the EXIF directory
    34853,  // pointer to the GPS directory
    40091,  // XPTitle
    40092,  // XPComment
    40093,  // XPAuthor
    40094,  // XPKeywords
    40095,  // XPSubject
    50341,  // PrintImageMatching
    59932,  // Padding
};
static_assert(std::ranges::is_sorted(carriedTags));

struct Field {
    std::uint16_t tag;
    std::uint16_t type;
    std::uint32_t count;
    Bytes value;       ///< in the file's byte order
    bool raw = false;  ///< `value` is the four bytes of the entry itself
};

class Serializer {
public:
    explicit Serializer(std::endian order) : order_(order) {}

    void append(Bytes& bytes, std::uint32_t value, unsigned size) const {
        for (unsigned i = 0; i < size; ++i) {
            const unsigned shift = 8 * (order_ == std::endian::big ? size - 1 - i : i);
            bytes.push_back(std::byte(value >> shift & 0xFF));
        }
    }
    [[nodiscard]] Field shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values) const {
        Field field{tag, shortType, static_cast<std::uint32_t>(values.size()), {}};
        for (const std::uint16_t value : values) {
            append(field.value, value, 2);
        }
        return field;
    }
    [[nodiscard]] Field longs(std::uint16_t tag, const std::vector<std::uint32_t>& values) const {
        Field field{tag, longType, static_cast<std::uint32_t>(values.size()), {}};
        for (const std::uint32_t value : values) {
            append(field.value, value, 4);
        }
        return field;
    }
    [[nodiscard]] Field rational(std::uint16_t tag, double value) const {
        constexpr std::uint32_t denominator = 1000;
        Field field{tag, rationalType, 1, {}};
        append(field.value, static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.001, 1e6) * denominator)), 4);
        append(field.value, denominator, 4);
        return field;
    }

private:
    std::endian order_;
};

/// How the rows are cut into strips, all of one size but the last.
struct Strips {
    Strips(const codecs::PixelLayout& layout, std::uint64_t limit)
        : rows(static_cast<std::uint32_t>(
              std::clamp<std::uint64_t>(preferredSize / layout.rowBytes(), 1, layout.height))),
          count((layout.height + rows - 1) / rows),
          rowBytes(layout.rowBytes()),
          total(rowBytes * layout.height) {
        if (total > limit) {
            throw Failure(Status::tooLarge, "the picture is too large for TIFF");
        }
    }
    [[nodiscard]] std::uint32_t sizeOf(std::uint32_t strip) const {
        const std::uint64_t start = std::uint64_t{strip} * rows * rowBytes;
        return static_cast<std::uint32_t>(std::min<std::uint64_t>(rows * rowBytes, total - start));
    }

    static constexpr std::uint64_t preferredSize = 0x40000;
    std::uint32_t rows;
    std::uint32_t count;
    std::uint64_t rowBytes;
    std::uint64_t total;
};

// Leaves room for the metadata below the 4 GiB that offsets reach.
constexpr std::uint64_t largestPixelData = 0xF0000000;

Bytes beginningOf(const codecs::PictureMetadata& metadata) {
    const auto directory = readTiffDirectory(metadata.exif);
    if (directory && !directory->big) {
        Bytes bytes = metadata.exif;
        bytes.resize(bytes.size() + bytes.size() % 2);
        return bytes;
    }
    return {std::byte{'I'}, std::byte{'I'}, std::byte{42}, {}, {}, {}, {}, {}};
}

/// Readers complain of an EXIF or GPS directory without entries.
bool pointsNowhere(std::span<const std::byte> beginning, const TiffDirectory& directory, const TiffEntry& entry) {
    if (entry.tag != 34665 && entry.tag != 34853) {
        return false;
    }
    const auto pointed =
        readTiffDirectoryAt(beginning, directory.order, false, firstNumber(beginning, directory, entry.tag));
    return !pointed || pointed->entries.empty();
}

std::vector<Field> carriedFields(std::span<const std::byte> beginning, const TiffDirectory& directory) {
    std::vector<Field> fields;
    for (const TiffEntry& entry : directory.entries) {
        if (std::ranges::binary_search(carriedTags, entry.tag) && !pointsNowhere(beginning, directory, entry)) {
            const auto value = beginning.subspan(static_cast<std::size_t>(entry.place) + 8, 4);
            fields.push_back({entry.tag, entry.type, static_cast<std::uint32_t>(entry.count),
                              Bytes(value.begin(), value.end()), true});
        }
    }
    return fields;
}

void addPixelFields(std::vector<Field>& fields, const Serializer& make, const codecs::PixelLayout& layout,
                    const Strips& strips) {
    const auto channels = static_cast<std::uint16_t>(layout.channels);
    const auto bits = static_cast<std::uint16_t>(layout.bitsPerSample);
    const std::uint16_t photometric = layout.channels >= 3 ? 2 : 1;
    std::vector<std::uint32_t> sizes(strips.count);
    for (std::uint32_t i = 0; i < strips.count; ++i) {
        sizes[i] = strips.sizeOf(i);
    }
    fields.push_back(make.longs(256, {layout.width}));
    fields.push_back(make.longs(257, {layout.height}));
    fields.push_back(make.shorts(258, std::vector<std::uint16_t>(channels, bits)));
    fields.push_back(make.shorts(259, {1}));  // no compression
    fields.push_back(make.shorts(262, {photometric}));
    fields.push_back(make.longs(273, std::vector<std::uint32_t>(strips.count)));  // offsets, filled in at the end
    fields.push_back(make.shorts(274, {1}));                                      // upright
    fields.push_back(make.shorts(277, {channels}));
    fields.push_back(make.longs(278, {strips.rows}));
    fields.push_back(make.longs(279, sizes));
    fields.push_back(make.shorts(284, {1}));  // samples interleaved
    if (layout.hasAlpha()) {
        fields.push_back(make.shorts(338, {2}));  // unassociated alpha
    }
}

void addMetadataFields(std::vector<Field>& fields, const Serializer& make, const codecs::PictureMetadata& metadata) {
    if (metadata.dotsPerInchX > 0 && metadata.dotsPerInchY > 0) {
        fields.push_back(make.rational(282, metadata.dotsPerInchX));
        fields.push_back(make.rational(283, metadata.dotsPerInchY));
        fields.push_back(make.shorts(296, {2}));  // dots an inch
    }
    const auto addBytes = [&](std::uint16_t tag, std::uint16_t type, const Bytes& content) {
        if (!content.empty()) {
            fields.push_back({tag, type, static_cast<std::uint32_t>(content.size()), content});
        }
    };
    addBytes(700, byteType, metadata.xmp);
    if (!metadata.iptc.empty()) {  // declared as whole numbers by custom, yet kept as bytes
        Bytes iptc = metadata.iptc;
        iptc.resize((iptc.size() + 3) / 4 * 4);
        const auto count = static_cast<std::uint32_t>(iptc.size() / 4);
        fields.push_back({33723, longType, count, std::move(iptc)});
    }
    addBytes(34675, undefinedType, metadata.icc);
}

/// The directory and the values that don't fit into it, as they lie at `place`, followed by the strips.
Bytes serialize(std::vector<Field> fields, const Serializer& make, std::uint32_t place, const Strips& strips) {
    std::ranges::sort(fields, {}, &Field::tag);
    std::uint32_t outside = place + 2 + 12 * static_cast<std::uint32_t>(fields.size()) + 4;
    std::uint32_t pixels = outside;
    for (const Field& field : fields) {
        pixels += field.value.size() > 4 ? static_cast<std::uint32_t>(field.value.size() + field.value.size() % 2) : 0;
    }
    for (Field& field : fields) {
        if (field.tag == 273) {
            field.value.clear();
            for (std::uint32_t i = 0; i < strips.count; ++i) {
                make.append(field.value, pixels + i * strips.rows * static_cast<std::uint32_t>(strips.rowBytes), 4);
            }
        }
    }
    Bytes directory;
    Bytes values;
    make.append(directory, static_cast<std::uint32_t>(fields.size()), 2);
    for (const Field& field : fields) {
        make.append(directory, field.tag, 2);
        make.append(directory, field.type, 2);
        make.append(directory, field.count, 4);
        if (field.value.size() > 4) {
            make.append(directory, outside + static_cast<std::uint32_t>(values.size()), 4);
            values.insert(values.end(), field.value.begin(), field.value.end());
            values.resize(values.size() + values.size() % 2);
        } else {
            directory.insert(directory.end(), field.value.begin(), field.value.end());
            directory.resize(directory.size() + 4 - field.value.size());
        }
    }
    make.append(directory, 0, 4);  // no further directory
    directory.insert(directory.end(), values.begin(), values.end());
    return directory;
}

class TiffWriter final : public codecs::RowWriter {
public:
    TiffWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout, const codecs::PictureMetadata& metadata)
        : sink_(sink), layout_(layout) {
        const Strips strips(layout, largestPixelData);
        Bytes beginning = beginningOf(metadata);
        const auto exif = readTiffDirectory(beginning);
        const std::endian order = exif ? exif->order : std::endian::little;
        const Serializer make(order);
        swap_ = order != std::endian::native && layout.bitsPerSample == 16;

        std::vector<Field> fields = exif ? carriedFields(beginning, *exif) : std::vector<Field>();
        addPixelFields(fields, make, layout, strips);
        addMetadataFields(fields, make, metadata);
        Bytes place;
        make.append(place, static_cast<std::uint32_t>(beginning.size()), 4);
        std::ranges::copy(place, beginning.begin() + 4);
        sink_.write(beginning);
        sink_.write(serialize(std::move(fields), make, static_cast<std::uint32_t>(beginning.size()), strips));
    }

    void writeRows(const std::byte* rows, std::size_t stride, std::uint32_t count) override {
        const std::size_t rowBytes = layout_.rowBytes();
        swapped_.resize(swap_ ? rowBytes : 0);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::byte* row = rows + i * stride;
            if (swap_) {
                codecs::copySwapped16(row, swapped_.data(), rowBytes / 2);
                row = swapped_.data();
            }
            sink_.write({row, rowBytes});
        }
    }

    void finish() override {}

private:
    codecs::ByteSink& sink_;
    codecs::PixelLayout layout_;
    bool swap_ = false;
    Bytes swapped_;
};

}  // namespace

std::unique_ptr<codecs::RowWriter> makeTiffWriter(codecs::ByteSink& sink, const codecs::PixelLayout& layout,
                                                  const codecs::PictureMetadata& metadata) {
    return std::make_unique<TiffWriter>(sink, layout, metadata);
}

}  // namespace sorvik::sips
