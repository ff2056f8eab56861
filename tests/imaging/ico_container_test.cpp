#include "imaging/ico_container.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QtEndian>

#include <algorithm>

namespace sorvik::imaging {
namespace {

constexpr qsizetype headerSize = 6;
constexpr qsizetype entrySize = 16;

QByteArray readData(const QString& name) {
    QFile file(QStringLiteral(SORVIK_TEST_DATA "/ico/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

void put32(QByteArray& bytes, qsizetype offset, quint32 value) { qToLittleEndian(value, bytes.data() + offset); }

// Enough of a PNG for its size to be read.
QByteArray pngOf(quint32 width, quint32 height) {
    QByteArray png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    png.append(17, '\0');
    qToBigEndian(width, png.data() + 16);
    qToBigEndian(height, png.data() + 20);
    return png;
}

// An icon of one bitmap whose header says what is given; a directory byte says nothing.
QByteArray bitmapIcon(quint32 width, quint32 height) {
    // A depth of 0 takes rows of nothing; the mask below them has room.
    QByteArray icon = writeIco({{1, 1, QByteArray(4096, '\0')}});
    put32(icon, headerSize + entrySize, 40);
    put32(icon, headerSize + entrySize + 4, width);
    put32(icon, headerSize + entrySize + 8, height);
    return icon;
}

std::vector<std::uint32_t> widthsOf(const QByteArray& icon) {
    std::vector<std::uint32_t> widths;
    for (const auto& frame : readIco(icon)) {
        widths.push_back(frame.width);
    }
    return widths;
}

TEST(IcoContainer, ReadsTheFramesOfRealIcons) {
    EXPECT_EQ(widthsOf(readData(QStringLiteral("pillow.ico"))), (std::vector<std::uint32_t>{256, 48, 32, 24, 16}));
    EXPECT_EQ(widthsOf(readData(QStringLiteral("favicon.ico"))), (std::vector<std::uint32_t>{16, 32, 48}));
    const auto frames = readIco(readData(QStringLiteral("black_and_white.ico")));
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(frames[0].height, 16U);
    EXPECT_EQ(frames[0].bitsPerPixel, 1);
    EXPECT_FALSE(frames[0].isPng);
}

TEST(IcoContainer, TakesTheSizeFromTheImageItself) {
    const auto frames = readIco(writeIco({{16, 16, pngOf(512, 300)}}));
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(frames[0].area(), 512U * 300U);
    EXPECT_TRUE(frames[0].isPng);

    for (const auto& [stored, height] : {std::pair{64U, 32U}, {static_cast<quint32>(-64), 32U}, {65U, 32U}}) {
        const auto bitmap = readIco(bitmapIcon(300, stored));
        ASSERT_EQ(bitmap.size(), 1U);
        EXPECT_EQ(bitmap[0].width, 300U);
        EXPECT_EQ(bitmap[0].height, height);
    }
}

TEST(IcoContainer, LeavesOutFramesThatMakeNoSense) {
    for (const auto& [width, height] :
         {std::pair{0U, 64U}, {64U, 1U}, {65536U, 64U}, {64U, 0x80000000U}, {0xffffffffU, 64U}}) {
        EXPECT_TRUE(readIco(bitmapIcon(width, height)).empty()) << width << " x " << height;
    }
    EXPECT_TRUE(readIco(writeIco({{1, 1, pngOf(70000, 1)}})).empty());

    QByteArray outside = writeIco({{1, 1, pngOf(8, 8)}, {1, 1, pngOf(9, 9)}});
    put32(outside, headerSize + 12, 0xfffffff0U);
    EXPECT_EQ(widthsOf(outside), std::vector<std::uint32_t>{9});
    put32(outside, headerSize + entrySize + 8, 0xffffffffU);
    EXPECT_TRUE(readIco(outside).empty());

    QByteArray cursor = writeIco({{1, 1, pngOf(8, 8)}});
    cursor[2] = 2;
    EXPECT_TRUE(readIco(cursor).empty());
}

TEST(IcoContainer, ThousandsOfEntriesOfTheSameDataStaySmall) {
    constexpr quint16 count = 65535;
    constexpr quint32 size = 1'000'000;
    QByteArray entry = writeIco({{8, 8, {}}}).sliced(headerSize);
    put32(entry, 8, size);
    put32(entry, 12, headerSize + count * entrySize);
    const QByteArray icon =
        QByteArray("\0\0\1\0\xff\xff", headerSize) + entry.repeated(count) + pngOf(8, 8).leftJustified(size, '\0');
    qsizetype total = 0;
    for (const auto& frame : readIco(icon)) {
        total += frame.data.size();
    }
    EXPECT_GE(total, qsizetype{size});
    EXPECT_LE(total, 4 * icon.size());
}

TEST(IcoContainer, SurvivesEveryCutAndWrongByte) {
    const QByteArray bitmap = readData(QStringLiteral("black_and_white.ico"));
    const QByteArray png = writeIco({{8, 8, pngOf(8, 8)}, {9, 9, pngOf(9, 9)}});
    for (const QByteArray& whole : {bitmap, png}) {
        for (qsizetype size = 0; size < whole.size(); ++size) {
            EXPECT_LE(readIco(whole.first(size)).size(), readIco(whole).size());
        }
        for (qsizetype offset = 0; offset < whole.size(); ++offset) {
            for (int value = 0; value < 256; ++value) {
                QByteArray damaged = whole;
                damaged[offset] = static_cast<char>(value);
                for (const auto& frame : readIco(damaged)) {
                    EXPECT_LE(frame.data.size(), damaged.size());
                }
            }
        }
    }
}

TEST(IcoContainer, LeavesOutABitmapWhosePixelsAreNotAllThere) {
    const QByteArray whole = readData(QStringLiteral("hopper_256x256.ico"));
    ASSERT_EQ(readIco(whole).size(), 1U);
    QByteArray shrunk = whole;
    const quint32 third = static_cast<quint32>(whole.size()) / 3;
    shrunk.replace(headerSize + 8, 4, QByteArray(reinterpret_cast<const char*>(&third), 4));
    EXPECT_TRUE(readIco(shrunk).empty());
}

TEST(IcoContainer, StandaloneFilesHoldTheSameFrame) {
    for (const char* const name : {"favicon.ico", "pillow.ico", "black_and_white.ico"}) {
        for (const auto& frame : readIco(readData(QString::fromLatin1(name)))) {
            const QByteArray file = standaloneFile(frame);
            if (frame.isPng) {
                EXPECT_EQ(file, frame.data);
                continue;
            }
            const auto again = readIco(file);
            ASSERT_EQ(again.size(), 1U);
            EXPECT_EQ(again[0].data, frame.data);
            EXPECT_EQ(again[0].bitsPerPixel, frame.bitsPerPixel);
        }
    }
}

TEST(IcoContainer, WritesADirectoryThatAgreesWithItsImages) {
    const std::vector<IcoImage> images{{16, 16, pngOf(16, 16)}, {256, 100, pngOf(256, 100)}};
    const QByteArray icon = writeIco(images);
    EXPECT_EQ(icon.first(headerSize), QByteArray("\0\0\1\0\2\0", headerSize));
    EXPECT_EQ(icon.sliced(headerSize + entrySize, 8), QByteArray("\0\x64\0\0\1\0\x20\0", 8));
    const auto frames = readIco(icon);
    ASSERT_EQ(frames.size(), images.size());
    EXPECT_EQ(frames[1].data, images[1].png);
    EXPECT_TRUE(writeIco({}).isEmpty());
}

}  // namespace
}  // namespace sorvik::imaging
