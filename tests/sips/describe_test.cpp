// The line on a picture file: right for every kind, and never "whole" for one that is cut or damaged.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "codecs/little_endian.h"
#include "pictures.h"
#include "tool.h"

namespace sorvik::sips::test {
namespace {

namespace fs = std::filesystem;
using codecs::SipsStatus;

Outcome describe(const fs::path& file) { return runSips({"--describe", file.string()}); }

std::string lineOf(const fs::path& file) {
    const Outcome outcome = describe(file);
    EXPECT_EQ(outcome.status, 0) << file << ' ' << outcome.error;
    return outcome.output;
}

/// Damage may cost the whole line, but only in one sentence.
void expectNotWhole(const fs::path& file) {
    const Outcome outcome = describe(file);
    if (outcome.status == 0) {
        EXPECT_NE(outcome.output.find(" whole=no\n"), std::string::npos) << outcome.output;
    } else {
        EXPECT_EQ(outcome.status, code(SipsStatus::failed));
        EXPECT_TRUE(isOneSentence(outcome.error)) << outcome.error;
        EXPECT_EQ(outcome.output, "");
    }
}

struct Row {
    const char* sample;
    const char* line;
};

constexpr std::array rows = {
    Row{"jpeg/orientation/Landscape_6.jpg",
        "kind=jpeg width=450 height=600 pages=1 orientation=6 alpha=no extras=no whole=yes\n"},
    Row{"jpeg/jolla.jpg", "kind=jpeg width=3264 height=2448 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"png/sample16.png", "kind=png width=290 height=442 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"gif/animated-loop-3.gif",
        "kind=gif width=370 height=285 pages=10 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"webp/1.webp", "kind=webp width=550 height=368 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"webp/rotating-squares.webp",
        "kind=webp width=80 height=80 pages=9 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"webp/sunrise_lossless.webp",
        "kind=webp width=1024 height=640 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"tiff/g4-multi.tiff", "kind=tiff width=3307 height=4677 pages=3 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"tiff/quad-tile.jpg.tiff",
        "kind=tiff width=512 height=384 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"tiff/hopper_bigtiff.tif",
        "kind=tiff width=128 height=128 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"heic/rgb.heif", "kind=heic width=128 height=128 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"avif/sunrise.avif", "kind=avif width=1024 height=640 pages=1 orientation=1 alpha=no extras=no whole=yes\n"},
    Row{"pdf/optipng.man.pdf", "kind=pdf width=595 height=842 pages=4 orientation=1 alpha=no extras=no whole=yes\n"},
};

TEST(Describe, EveryKindByItsContent) {
    const Folder folder;
    for (const Row& row : rows) {
        fs::copy_file(sample(row.sample), folder / "picture.txt", fs::copy_options::overwrite_existing);
        EXPECT_EQ(lineOf(folder / "picture.txt"), row.line) << row.sample;
    }
}

TEST(Describe, NothingCutOffIsWhole) {
    const Folder folder;
    const fs::path cut = folder / "cut";
    for (const Row& row : rows) {
        const std::string whole = contentsOf(sample(row.sample));
        for (const std::size_t kept : {whole.size() / 20, whole.size() / 2, whole.size() - whole.size() / 8}) {
            SCOPED_TRACE(std::string(row.sample) + ' ' + std::to_string(kept));
            write(cut, whole.substr(0, kept));
            expectNotWhole(cut);
        }
    }
    // The markers of all scans tell.
    const fs::path progressive = folder / "progressive.jpg";
    read(sample("jpeg/iptc.jpg")).jpegsave(progressive.c_str(), vips::VImage::option()->set("interlace", true));
    EXPECT_NE(lineOf(progressive).find("whole=yes"), std::string::npos);
    const std::string bytes = contentsOf(progressive);
    write(cut, bytes.substr(0, bytes.size() - 3));
    expectNotWhole(cut);
}

TEST(Describe, DamageInTheMiddleShows) {
    const Folder folder;
    const fs::path damaged = folder / "damaged";
    std::string png = contentsOf(sample("png/sample16.png"));
    png.replace(png.size() / 2, 16, 16, '\xFE');
    write(damaged, png);
    expectNotWhole(damaged);
    std::string pdf = contentsOf(sample("pdf/optipng.man.pdf"));
    pdf.replace(pdf.rfind("startxref"), 12, "startxref\n99");
    write(damaged, pdf);
    expectNotWhole(damaged);
}

TEST(Describe, APasswordIsSaidSo) {
    const Folder folder;
    const fs::path locked = folder / "locked.pdf";
    const std::string command =
        "gs -q -dBATCH -dNOPAUSE -sDEVICE=pdfwrite -sOwnerPassword=o -sUserPassword=u -sOutputFile=" + locked.string() +
        " " + sample("pdf/optipng.man.pdf").string();
    ASSERT_EQ(std::system(command.c_str()), 0);
    const Outcome outcome = describe(locked);
    EXPECT_EQ(outcome.status, code(SipsStatus::failed));
    EXPECT_EQ(outcome.error, "sips: the PDF asks for a password\n");
}

/// A TIFF of one grey pixel a page, whose last page leads to the directory at `last`.
std::string pagesOf(int count, std::uint32_t last) {
    codecs::LittleEndianBytes tiff;
    tiff.u16('I' | 'I' << 8).u16(42).u32(8);
    for (int page = 0; page < count; ++page) {
        constexpr std::uint32_t directorySize = 2 + 5 * 12 + 4;
        const std::uint32_t start = 8 + static_cast<std::uint32_t>(page) * directorySize;
        tiff.u16(5);
        for (const auto& [tag, value] : {std::pair{256U, 1U}, {257U, 1U}, {262U, 1U}, {273U, 0U}, {279U, 1U}}) {
            tiff.u16(tag).u16(3).u32(1).u32(value);
        }
        tiff.u32(page + 1 == count ? last : start + directorySize);
    }
    return {reinterpret_cast<const char*>(tiff.bytes().data()), tiff.bytes().size()};
}

TEST(Describe, HeadersThatLieCostNothing) {
    const Folder folder;
    const fs::path file = folder / "lie";
    write(file, pagesOf(3, 0));
    EXPECT_EQ(lineOf(file), "kind=tiff width=1 height=1 pages=3 orientation=1 alpha=no extras=no whole=yes\n");
    for (const std::uint32_t last : {8U, 9U, 10000U}) {  // back to the start, into a directory, beyond the end
        write(file, pagesOf(3, last));
        expectNotWhole(file);
    }
    write(file, std::string("GIF89a\xFF\xFF\xFF\xFF\0\0\0;", 14));
    expectNotWhole(file);
    write(file, std::string("RIFF\xFF\xFF\xFF\xFFWEBPVP8X\xFF\xFF\xFF\x7F", 20));
    expectNotWhole(file);
    write(file, "%PDF-1.7\n1 0 obj\n<</Type/Catalog/Pages 1 0 R/Kids[1 0 R]>>\nendobj\ntrailer\n<</Root 1 0 R>>\n");
    expectNotWhole(file);

    EXPECT_EQ(describe(sample("svg/logo.svg")).status, code(SipsStatus::failed));
    EXPECT_EQ(describe(folder / "none").status, code(SipsStatus::noSuchFile));
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(describe(folder / "pipe").status, code(SipsStatus::notARegularFile));
}

}  // namespace
}  // namespace sorvik::sips::test
