// Names, files, sizes and disks that mean no good.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "pictures.h"
#include "tool.h"

namespace sorvik::sips::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;
using codecs::SipsStatus;

constexpr std::array allFormats = {"jpeg", "png", "tiff", "gif", "bmp", "heic", "pdf", "webp"};

void expectRefusal(const Outcome& outcome, SipsStatus status, const fs::path& output) {
    EXPECT_EQ(outcome.status, code(status)) << outcome.error;
    EXPECT_TRUE(isOneSentence(outcome.error)) << outcome.error;
    EXPECT_FALSE(fs::exists(output));
}

TEST(Hostile, NamesAreOnlyNames) {
    const Folder folder;
    for (const std::string_view name : {"a[0].png"sv, "png:a"sv, "%d.jpg"sv, "*?{}"sv, "-s"sv, "--out"sv, "a\nb.tif"sv,
                                        "\xFF\xFE.gif"sv, "$(x) `x` 'x'"sv, "o[Q=1,strip].jpg"sv, " "sv}) {
        SCOPED_TRACE(name);
        for (const char* source : {"jpeg/Canon_40D.jpg", "gif/transparent.gif", "bmp/pal1.bmp"}) {
            const fs::path input = folder / name;
            const fs::path output = folder / (std::string(name) + ".out");
            fs::copy_file(sample(source), input);
            for (const char* format : {"jpeg", "webp"}) {
                const Outcome outcome = convert(input, output, format);
                EXPECT_EQ(outcome.status, 0) << outcome.error;
                EXPECT_EQ(folder.entries(), 2U) << "nothing but input and output";
                EXPECT_GT(fs::file_size(output), 100U);
                fs::remove(output);
            }
            fs::remove(input);
        }
    }
}

TEST(Hostile, OnlyRegularFilesAreOpened) {
    const Folder folder;
    const fs::path output = folder / "o";
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder / "zero");
    fs::create_symlink("loop", folder / "loop");
    write(folder / "empty", "");
    expectRefusal(convert(folder / "pipe", output, "png"), SipsStatus::notARegularFile, output);
    expectRefusal(convert(folder / "zero", output, "png"), SipsStatus::notARegularFile, output);
    expectRefusal(convert(folder / ".", output, "png"), SipsStatus::notARegularFile, output);
    expectRefusal(convert(folder / "loop", output, "png"), SipsStatus::noSuchFile, output);
    expectRefusal(convert(folder / "none", output, "png"), SipsStatus::noSuchFile, output);
    expectRefusal(convert(folder / "empty", output, "png"), SipsStatus::failed, output);

    const Outcome ontoDevice = convert(sample("jpeg/Canon_40D.jpg"), "/dev/full", "png");
    EXPECT_EQ(ontoDevice.status, code(SipsStatus::notARegularFile));
    EXPECT_TRUE(fs::exists("/dev/full"));
}

TEST(Hostile, TheInputIsNeverTheOutput) {
    const Folder folder;
    const fs::path input = folder / "i.jpg";
    fs::copy_file(sample("jpeg/iptc.jpg"), input);
    fs::create_hard_link(input, folder / "same");
    for (const fs::path& output : {input, folder / "same"}) {
        EXPECT_EQ(convert(input, output, "jpeg").status, code(SipsStatus::badUsage));
        EXPECT_EQ(contentsOf(output), contentsOf(sample("jpeg/iptc.jpg")));
    }
}

TEST(Hostile, WhatIsNoPictureIsRefused) {
    const Folder folder;
    const fs::path output = folder / "o";
    for (const char* name : {"jpeg/truncated_jpeg.jpg", "jpeg/testimgl.jpg", "heic/iphone.heic", "psd/indexed.psd"}) {
        SCOPED_TRACE(name);
        expectRefusal(convert(sample(name), output, "png"), SipsStatus::failed, output);
    }
    for (const std::string_view content :
         {"push graphic-context\nimage over 0,0 0,0 'x'"sv, "BM"sv, "8BPS\0\1"sv, "GIF89a"sv, "\0\0\1\0\1\0"sv,
          "\xFF\xD8\xFF\xE0"sv, "\x89PNG\r\n\x1A\n"sv, "II*\0\x08\0\0\0"sv, "RIFF\x10\0\0\0WEBPVP8 "sv,
          "\0\0\0\x18"
          "ftypheic"sv,
          "%PDF-1.4"sv, "<svg"sv}) {
        write(folder / "i.png", content);
        expectRefusal(convert(folder / "i.png", output, "jpeg"), SipsStatus::failed, output);
    }
}

TEST(Hostile, GiantsAreRefusedByTheirHeaders) {
    const Folder folder;
    const fs::path input = folder / "i";
    const fs::path output = folder / "o";
    const std::string gif("GIF89a\xFF\xFF\xFF\xFF\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0\xFF\xFF\xFF\xFF\0\2\2\x44\1\0;"sv);
    std::string bmp = contentsOf(sample("bmp/rgb24.bmp"));
    bmp.replace(18, 8, "\xFF\xFF\0\0\xFF\xFF\0\0"sv);
    std::string psd = contentsOf(sample("psd/rgba.psd"));
    psd.replace(14, 8, "\0\0\x75\x30\0\0\x75\x30"sv);
    std::string png = contentsOf(sample("png/pil123rgba.png"));
    png.replace(16, 8, "\0\1\0\1\0\0\0\1"sv);
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='60000' height='60000'/>";
    for (const std::string& giant : {gif, bmp, psd, png, svg}) {
        write(input, giant);
        const Outcome outcome = convert(input, output, "png");
        expectRefusal(outcome, SipsStatus::tooLarge, output);
        EXPECT_LT(outcome.peakKilobytes, 120'000);
    }
}

TEST(Hostile, CutFilesFail) {
    const Folder folder;
    const fs::path input = folder / "i";
    const fs::path output = folder / "o";
    for (const char* name :
         {"jpeg/iptc.jpg", "jpeg/icc_profile_big.jpg", "png/indexed.png", "png/pil123rgba.png", "gif/transparent.gif",
          "webp/1.webp", "tiff/quad-lzw-compat.tiff", "bmp/rgb24.bmp", "psd/hopper.psd", "psd/16bit-rle.psd",
          "ico/favicon.ico", "heic/rgb.heif", "avif/hopper.avif", "jpeg/orientation/Landscape_6.jpg"}) {
        const std::string whole = contentsOf(sample(name));
        for (const double part : {0.02, 0.5, 0.95}) {
            SCOPED_TRACE(std::string(name) + " " + std::to_string(part));
            write(input, std::string_view(whole).substr(
                             0, static_cast<std::size_t>(part * static_cast<double>(whole.size()))));
            expectRefusal(convert(input, output, "jpeg"), SipsStatus::failed, output);
        }
    }
}

// A file size limit fails the same calls as a full disk does.
TEST(Hostile, AFullDiskLeavesNothing) {
    const Folder folder;
    const fs::path output = folder / "o";
    for (const char* format : allFormats) {
        SCOPED_TRACE(format);
        write(output, "");
        expectRefusal(
            runSips({"-s", "format", format, sample("png/embedgravitybird.png").string(), "--out", output.string()},
                    1000),
            SipsStatus::noSpace, output);
    }
    write(folder / "o.16", "");
    const Outcome icons = runSips({"-s", "format", "png", "-s", "iconSizes", "16,256",
                                   sample("png/embedgravitybird.png").string(), "--out", output.string()},
                                  4000);
    expectRefusal(icons, SipsStatus::noSpace, folder / "o.16");
}

TEST(Hostile, FoldersWithoutRightsSaySo) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root may write anywhere";
    }
    const Folder folder;
    fs::create_directory(folder / "locked");
    fs::permissions(folder / "locked", fs::perms::owner_read | fs::perms::owner_exec);
    const fs::path output = folder / "locked/o";
    expectRefusal(convert(sample("jpeg/iptc.jpg"), output, "png"), SipsStatus::permissionDenied, output);
}

TEST(Hostile, AnSvgReachesNoOtherFile) {
    const Folder folder;
    fs::copy_file(sample("png/indexed.png"), folder / "secret.png");
    write(folder / "i.svg",
          "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='40' "
          "height='40'><image width='40' height='40' xlink:href='secret.png'/><image width='40' "
          "height='40' xlink:href='file://" +
              (folder / "secret.png").string() + "'/></svg>");
    ASSERT_EQ(convert(folder / "i.svg", folder / "o.png", "png").status, 0);
    EXPECT_EQ(read(folder / "o.png").extract_band(3).max(), 0) << "nothing was drawn";
}

}  // namespace
}  // namespace sorvik::sips::test
