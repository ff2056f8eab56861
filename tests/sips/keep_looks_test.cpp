// What a picture gets back after a step that has dropped all metadata: what it looks by, and nothing else.

#include <gtest/gtest.h>

#include <exiv2/exiv2.hpp>

#include "imaging/sips/icc_profile.h"
#include "pictures.h"
#include "tool.h"

namespace sorvik::sips::test {
namespace {

namespace fs = std::filesystem;
using vips::VImage;

void keepLooks(const fs::path& from, const fs::path& to) {
    const Outcome outcome = runSips({"--keep-looks", from.string(), to.string()});
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(outcome.output + outcome.error, "");
}

std::size_t profileSize(const fs::path& file) {
    const VImage picture = VImage::new_from_file(file.c_str());
    std::size_t size = 0;
    if (picture.get_typeof(VIPS_META_ICC_NAME) != 0) {
        picture.get_blob(VIPS_META_ICC_NAME, &size);
    }
    return size;
}

int orientationIn(const fs::path& file) {
    const VImage picture = VImage::new_from_file(file.c_str());
    return picture.get_typeof("orientation") == 0 ? 1 : picture.get_int("orientation");
}

/// How a picture is stored, whatever it looks like.
VImage stored(const fs::path& file) { return withoutProfile(VImage::new_from_file(file.c_str()).copy_memory()); }

void saveStripped(const fs::path& from, const fs::path& to) {
    // webpsave keeps what it is told to strip: only pixels without fields are bare.
    const VImage pixels = VImage::new_from_file(from.c_str()).copy_memory();
    std::size_t size = 0;
    void* samples = pixels.write_to_memory(&size);
    const VImage bare =
        VImage::new_from_memory(samples, size, pixels.width(), pixels.height(), pixels.bands(), pixels.format())
            .copy(VImage::option()->set("interpretation", pixels.interpretation()));
    bare.write_to_file(to.c_str(), VImage::option()->set("strip", true));
    g_free(samples);
    if (to.extension() == ".webp") {  // webpsave writes EXIF whatever it is told
        const auto image = Exiv2::ImageFactory::open(to.string());
        image->readMetadata();
        image->clearExifData();
        image->writeMetadata();
    }
}

/// A photograph in Display P3, lying on its side.
fs::path lyingPhoto(const Folder& folder, const std::string& extension) {
    const fs::path file = folder / ("photo." + extension);
    VImage pixels = read(sample("jpeg/iptc.jpg")).icc_transform("p3", VImage::option()->set("input_profile", "srgb"));
    pixels.set("orientation", 6);
    pixels.write_to_file(file.c_str());
    if (extension == "png") {
        return file;  // Exiv2 would put the orientation into a text chunk
    }
    const auto image = Exiv2::ImageFactory::open(file.string());
    image->readMetadata();
    image->exifData()["Exif.Image.Orientation"] = std::uint16_t{6};
    image->exifData()["Exif.Image.Model"] = "Box 3";
    image->writeMetadata();
    return file;
}

TEST(KeepLooks, OrientationAndProfileComeBackAlone) {
    for (const char* extension : {"jpg", "png", "tif", "webp"}) {
        SCOPED_TRACE(extension);
        const Folder folder;
        const fs::path from = lyingPhoto(folder, extension);
        const fs::path to = folder / (std::string("small.") + extension);
        saveStripped(from, to);
        ASSERT_EQ(profileSize(to), 0U);
        const VImage before = stored(to);
        keepLooks(from, to);
        EXPECT_EQ(likeness(stored(to), before), 100);
        EXPECT_EQ(profileSize(to), profileSize(from));
        EXPECT_GT(likeness(stored(to), stored(from)), 35);
        EXPECT_EQ(folder.entries(), 2U);
        const auto image = Exiv2::ImageFactory::open(to.string());
        image->readMetadata();
        // A TIFF that says how it lies is believed.
        const char* expected = to.extension() == ".tif" ? "1" : "6";
        EXPECT_EQ(image->exifData()["Exif.Image.Orientation"].toString(), expected);
        EXPECT_EQ(image->exifData().findKey(Exiv2::ExifKey("Exif.Image.Model")), image->exifData().end());

        const std::string once = contentsOf(to);
        keepLooks(from, to);
        EXPECT_EQ(contentsOf(to), once) << "nothing is lacking any more";
    }
}

TEST(KeepLooks, AHeicGetsItsProfile) {
    const Folder folder;
    const fs::path from = folder / "a.heic";
    const fs::path to = folder / "b.heic";
    ASSERT_EQ(convert(lyingPhoto(folder, "jpg"), from, "heic").status, 0);
    ASSERT_EQ(convert(sample("jpeg/iptc.jpg"), to, "heic").status, 0);
    ASSERT_EQ(profileSize(to), 0U);
    const VImage before = stored(to);
    keepLooks(from, to);
    EXPECT_EQ(profileSize(to), profileSize(from));
    EXPECT_EQ(likeness(stored(to), before), 100);
}

TEST(KeepLooks, EachPageOfATiffGetsItsOwn) {
    const Folder folder;
    const VImage page = read(sample("tiff/hopper_bigtiff.tif"));
    const VImage pages =
        page.join(page, VIPS_DIRECTION_VERTICAL).icc_transform("p3", VImage::option()->set("input_profile", "srgb"));
    for (const bool big : {false, true}) {
        const auto options = [&](bool strip) {
            return VImage::option()->set("page_height", page.height())->set("strip", strip)->set("bigtiff", big);
        };
        pages.tiffsave((folder / "from.tif").c_str(), options(false));
        pages.tiffsave((folder / "to.tif").c_str(), options(true));
        keepLooks(folder / "from.tif", folder / "to.tif");
        for (int i = 0; i < 2; ++i) {
            const VImage kept =
                VImage::tiffload((folder / "to.tif").c_str(), VImage::option()->set("page", i)).copy_memory();
            EXPECT_NE(kept.get_typeof(VIPS_META_ICC_NAME), 0U) << big << i;
            EXPECT_EQ(likeness(kept, VImage::tiffload((folder / "from.tif").c_str(), VImage::option()->set("page", i))),
                      100);
        }
    }
}

TEST(KeepLooks, CmykStaysDescribed) {
    const Folder folder;
    read(sample("jpeg/iptc.jpg"))
        .icc_transform("cmyk", VImage::option()->set("input_profile", "srgb"))
        .jpegsave((folder / "from.jpg").c_str());
    saveStripped(folder / "from.jpg", folder / "to.jpg");
    keepLooks(folder / "from.jpg", folder / "to.jpg");
    EXPECT_GT(profileSize(folder / "to.jpg"), 65536U) << "in several segments";
    EXPECT_EQ(profileSize(folder / "to.jpg"), profileSize(folder / "from.jpg"));
}

TEST(KeepLooks, WhatLooksTheSameStaysAsItIs) {
    const Folder folder;
    const fs::path to = folder / "to";
    const auto expectUntouched = [&](const fs::path& from, const fs::path& kept) {
        SCOPED_TRACE(from);
        fs::copy_file(kept, to, fs::copy_options::overwrite_existing);
        const auto time = fs::last_write_time(to);
        keepLooks(from, to);
        EXPECT_EQ(contentsOf(to), contentsOf(kept));
        EXPECT_EQ(fs::last_write_time(to), time);
    };
    // sRGB needs no profile; a grey picture can't have one of colours.
    const fs::path srgb = folder / "srgb.png";
    read(sample("jpeg/iptc.jpg"))
        .icc_transform("srgb", VImage::option()->set("input_profile", "srgb"))
        .pngsave(srgb.c_str());
    ASSERT_GT(profileSize(srgb), 0U);
    expectUntouched(srgb, sample("png/pil123rgba.png"));
    expectUntouched(lyingPhoto(folder, "jpg"), sample("jpeg/hopper_gray.jpg"));
    // Pixels that were turned upright have other sides; a frame or page of another kind is left alone.
    const fs::path upright = folder / "upright.jpg";
    read(sample("jpeg/orientation/Landscape_6.jpg"))
        .jpegsave(upright.c_str(), VImage::option()->set("strip", true)->set("profile", "srgb"));
    fs::copy_file(upright, to, fs::copy_options::overwrite_existing);
    keepLooks(sample("jpeg/orientation/Landscape_6.jpg"), to);
    EXPECT_EQ(orientationIn(to), 1);
    expectUntouched(sample("gif/cogs.gif"), sample("gif/cramps.gif"));
    expectUntouched(sample("avif/hopper.avif"), sample("avif/sunrise.avif"));
}

TEST(KeepLooks, FaultsLeaveTheFileAsItWas) {
    const Folder folder;
    const fs::path from = lyingPhoto(folder, "jpg");
    const fs::path to = folder / "to.jpg";
    saveStripped(from, to);
    const std::string before = contentsOf(to);
    const Outcome full = runSips({"--keep-looks", from.string(), to.string()}, 1000);
    EXPECT_EQ(full.status, code(codecs::SipsStatus::noSpace)) << full.error;
    EXPECT_EQ(contentsOf(to), before);
    EXPECT_EQ(folder.entries(), 2U);
    EXPECT_EQ(runSips({"--keep-looks", (folder / "none").string(), to.string()}).status,
              code(codecs::SipsStatus::noSuchFile));
}

TEST(IccProfile, OnlyARealSrgbIsTakenForIt) {
    const auto profile = [](const char* name) {
        const VImage picture =
            read(sample("jpeg/iptc.jpg")).icc_transform(name, VImage::option()->set("input_profile", "srgb"));
        std::size_t size = 0;
        const auto* data = static_cast<const std::byte*>(picture.get_blob(VIPS_META_ICC_NAME, &size));
        return std::vector<std::byte>(data, data + size);
    };
    const auto srgb = profile("srgb");
    EXPECT_TRUE(isSrgbProfile(srgb));
    EXPECT_FALSE(isSrgbProfile(profile("p3")));
    EXPECT_EQ(profileChannels(profile("cmyk")), 4);
    for (std::size_t size = 0; size < srgb.size(); size += 7) {  // no cut profile is read beyond its end
        static_cast<void>(isSrgbProfile(std::span(srgb).first(size)));
    }
    EXPECT_EQ(profileChannels(std::span(srgb).first(20)), 0);
}

}  // namespace
}  // namespace sorvik::sips::test
