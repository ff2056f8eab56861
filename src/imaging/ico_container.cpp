#include "imaging/ico_container.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <optional>

namespace sorvik::imaging {
namespace {

constexpr qsizetype headerSize = 6;
constexpr qsizetype entrySize = 16;
constexpr quint16 iconType = 1;
constexpr std::int64_t largestSide = 65535;

// Entries may share data, but thousands of them that all claim the whole file must not fill the memory.
constexpr qsizetype largestOverlap = 4;
constexpr std::array<char, 8> pngSignature{'\x89', 'P', 'N', 'G', '\r', '\n', '\x1a', '\n'};

// What a directory entry says besides the size of the picture, which is read from the data instead.
struct Entry {
    quint16 bitsPerPixel = 0;
    quint32 size = 0;    ///< bytes
    quint32 offset = 0;  ///< in the file
};

struct Size {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

template <typename Integer>
Integer readLittle(const QByteArray& bytes, qsizetype offset) {
    return qFromLittleEndian<Integer>(bytes.constData() + offset);
}

template <typename Integer>
void appendLittle(QByteArray& bytes, Integer value) {
    const Integer little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

bool isPng(const QByteArray& data) {
    return data.startsWith(QByteArrayView(pngSignature.data(), static_cast<qsizetype>(pngSignature.size())));
}

std::optional<Size> checkedSize(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1 || width > largestSide || height > largestSide) {
        return std::nullopt;
    }
    return Size{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
}

// IHDR is the first chunk: length, type, width, height, most significant byte first.
std::optional<Size> pngSize(const QByteArray& data) {
    constexpr qsizetype typeOffset = 12;
    if (data.size() < 33 || data.sliced(typeOffset, 4) != QByteArrayView("IHDR")) {
        return std::nullopt;
    }
    return checkedSize(qFromBigEndian<quint32>(data.constData() + 16), qFromBigEndian<quint32>(data.constData() + 20));
}

// A BITMAPINFOHEADER or one of its longer successors; its height counts the colours and the mask below
// them, and is negative where rows go from the top down.
std::optional<Size> bitmapSize(const QByteArray& data) {
    constexpr quint32 smallestHeader = 40;
    if (data.size() < smallestHeader || readLittle<quint32>(data, 0) < smallestHeader) {
        return std::nullopt;
    }
    const std::int64_t doubled = readLittle<qint32>(data, 8);
    return checkedSize(readLittle<qint32>(data, 4), (doubled < 0 ? -doubled : doubled) / 2);
}

/// Whether a bitmap's palette, rows and mask can all be there, so that no decoder has to fill anything up. A
/// compressed bitmap is left to the decoder.
bool holdsItsPixels(const QByteArray& data, Size size) {
    const auto compression = readLittle<quint32>(data, 16);
    if (compression != 0) {
        return true;
    }
    const std::uint64_t depth = readLittle<quint16>(data, 14);
    const std::uint64_t used = readLittle<quint32>(data, 32);
    const std::uint64_t colors = depth > 8 ? 0 : used != 0 ? used : std::uint64_t{1} << depth;
    const auto rowBytes = [&](std::uint64_t bits) { return (size.width * bits + 31) / 32 * 4; };
    // The mask of a 32-bit frame is often left out: alpha says it all.
    const std::uint64_t mask = depth == 32 ? 0 : rowBytes(1) * size.height;
    return readLittle<quint32>(data, 0) + colors * 4 + rowBytes(depth) * size.height + mask <=
           static_cast<std::uint64_t>(data.size());
}

std::optional<IcoFrame> readFrame(const QByteArray& file, const Entry& entry) {
    if (entry.offset > static_cast<quint64>(file.size()) ||
        entry.size > static_cast<quint64>(file.size()) - entry.offset) {
        return std::nullopt;
    }
    IcoFrame frame;
    frame.data = file.sliced(entry.offset, entry.size);
    frame.isPng = isPng(frame.data);
    frame.bitsPerPixel = entry.bitsPerPixel;
    const auto size = frame.isPng ? pngSize(frame.data) : bitmapSize(frame.data);
    if (!size || (!frame.isPng && !holdsItsPixels(frame.data, *size))) {
        return std::nullopt;
    }
    frame.width = size->width;
    frame.height = size->height;
    return frame;
}

void appendHeader(QByteArray& bytes, qsizetype count) {
    appendLittle<quint16>(bytes, 0);
    appendLittle<quint16>(bytes, iconType);
    appendLittle<quint16>(bytes, static_cast<quint16>(count));
}

// A side is a byte, in which 0 stands for 256 and for whatever is larger.
char sideByte(std::uint32_t side) { return side < 256 ? static_cast<char>(side) : '\0'; }

void appendEntry(QByteArray& bytes, Size size, const Entry& entry) {
    bytes.append(sideByte(size.width)).append(sideByte(size.height));
    bytes.append(2, '\0');  // colours of a palette, reserved
    appendLittle<quint16>(bytes, 1);
    appendLittle(bytes, entry.bitsPerPixel);
    appendLittle(bytes, entry.size);
    appendLittle(bytes, entry.offset);
}

}  // namespace

std::vector<IcoFrame> readIco(const QByteArray& file) {
    if (file.size() < headerSize || readLittle<quint16>(file, 0) != 0 || readLittle<quint16>(file, 2) != iconType) {
        return {};
    }
    const qsizetype entries = std::min<qsizetype>(readLittle<quint16>(file, 4), (file.size() - headerSize) / entrySize);
    std::vector<IcoFrame> frames;
    qsizetype left = largestOverlap * file.size();
    for (qsizetype i = 0; i < entries; ++i) {
        const qsizetype start = headerSize + i * entrySize;
        const Entry entry{readLittle<quint16>(file, start + 6), readLittle<quint32>(file, start + 8),
                          readLittle<quint32>(file, start + 12)};
        if (entry.size > left) {
            continue;
        }
        if (auto frame = readFrame(file, entry)) {
            left -= frame->data.size();
            frames.push_back(*std::move(frame));
        }
    }
    return frames;
}

QByteArray standaloneFile(const IcoFrame& frame) {
    if (frame.isPng) {
        return frame.data;
    }
    QByteArray bytes;
    appendHeader(bytes, 1);
    appendEntry(bytes, {frame.width, frame.height},
                {frame.bitsPerPixel, static_cast<quint32>(frame.data.size()), quint32{headerSize + entrySize}});
    return bytes + frame.data;
}

QByteArray writeIco(const std::vector<IcoImage>& images) {
    constexpr quint16 bitsPerPixel = 32;
    if (images.empty()) {
        return {};
    }
    const auto count = static_cast<qsizetype>(images.size());
    QByteArray bytes;
    appendHeader(bytes, count);
    qsizetype offset = headerSize + count * entrySize;
    for (const auto& image : images) {
        appendEntry(bytes, {static_cast<std::uint32_t>(image.width), static_cast<std::uint32_t>(image.height)},
                    {bitsPerPixel, static_cast<quint32>(image.png.size()), static_cast<quint32>(offset)});
        offset += image.png.size();
    }
    for (const auto& image : images) {
        bytes += image.png;
    }
    return bytes;
}

}  // namespace sorvik::imaging
