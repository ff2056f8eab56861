// Exiv2 looks for what travelled with the picture.

#include <gtest/gtest.h>

#include <exiv2/exiv2.hpp>

#include "pictures.h"
#include "tool.h"

namespace sorvik::sips::test {
namespace {

using vips::VImage;

struct Found {
    std::string model;
    std::string caption;
    std::string title;
    std::size_t profileSize = 0;
    std::string orientation;
};

template <typename Data, typename Key>
std::string valueOf(Data& data, const char* key) {
    const auto entry = data.findKey(Key(key));
    return entry == data.end() ? std::string() : entry->toString();
}

Found foundIn(const std::filesystem::path& file) {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::enableBMFF();
    const std::string bytes = contentsOf(file);
    const auto image =
        Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.data()), static_cast<long>(bytes.size()));
    image->readMetadata();
    const VImage picture = VImage::new_from_file(file.c_str());
    Found found;
    found.model = valueOf<Exiv2::ExifData, Exiv2::ExifKey>(image->exifData(), "Exif.Image.Model");
    found.orientation = valueOf<Exiv2::ExifData, Exiv2::ExifKey>(image->exifData(), "Exif.Image.Orientation");
    found.caption = valueOf<Exiv2::IptcData, Exiv2::IptcKey>(image->iptcData(), "Iptc.Application2.Caption");
    found.title = valueOf<Exiv2::XmpData, Exiv2::XmpKey>(image->xmpData(), "Xmp.dc.source");
    if (picture.get_typeof(VIPS_META_ICC_NAME) != 0) {
        picture.get_blob(VIPS_META_ICC_NAME, &found.profileSize);
    }
    return found;
}

/// A photograph with all four kinds, lying on its side.
std::filesystem::path loadedPhoto(const Folder& folder) {
    const auto plain = folder / "plain.jpg";
    const VImage pixels =
        read(sample("jpeg/iptc.jpg")).icc_transform("p3", VImage::option()->set("input_profile", "srgb"));
    pixels.jpegsave(plain.c_str(), VImage::option()->set("strip", false));
    const auto image = Exiv2::ImageFactory::open(plain.string());
    image->readMetadata();
    image->exifData()["Exif.Image.Model"] = "Box 3";
    image->exifData()["Exif.Image.Orientation"] = std::uint16_t{6};
    image->exifData()["Exif.Photo.FNumber"] = Exiv2::Rational(28, 10);
    image->iptcData()["Iptc.Application2.Caption"] = "Quay";
    image->xmpData()["Xmp.dc.source"] = "Negative 12";
    image->writeMetadata();
    return plain;
}

struct Expectation {
    const char* format;
    bool iptc;
    bool readByExiv2;
};

constexpr std::array expectations = {Expectation{"jpeg", true, true}, Expectation{"png", true, true},
                                     Expectation{"tiff", true, true}, Expectation{"webp", false, true}};

void expectAll(const Found& found, const Expectation& expected) {
    EXPECT_EQ(found.model, "Box 3");
    EXPECT_EQ(found.orientation, "1");
    EXPECT_EQ(found.caption, expected.iptc ? "Quay" : "");
    EXPECT_EQ(found.title, "Negative 12");
    EXPECT_GT(found.profileSize, 300U);
}

TEST(Metadata, TravelsDirectlyAndThroughAnIntermediate) {
    const Folder folder;
    const auto photo = loadedPhoto(folder);
    const Outcome step = convert(photo, folder / "i.png", "png", {"-s", "purpose", "intermediate"});
    ASSERT_EQ(step.status, 0) << step.error;
    EXPECT_EQ(step.output, "metadata: exif icc iptc xmp\n");
    for (const Expectation& expected : expectations) {
        for (const auto& input : {photo, folder / "i.png"}) {
            SCOPED_TRACE(std::string(expected.format) + " from " + input.string());
            ASSERT_EQ(convert(input, folder / "o", expected.format).status, 0);
            expectAll(foundIn(folder / "o"), expected);
        }
    }
    ASSERT_EQ(convert(folder / "i.png", folder / "o.heic", "heic").status, 0);
    const VImage heic = VImage::new_from_file((folder / "o.heic").c_str());
    EXPECT_NE(heic.get_typeof("exif-data"), 0U);
    EXPECT_NE(heic.get_typeof(VIPS_META_ICC_NAME), 0U);
    EXPECT_NE(contentsOf(folder / "o.heic").find("Negative 12"), std::string::npos);
}

TEST(Metadata, AnIntermediateTellsOfTransparencyThatCanBeSeen) {
    const Folder folder;
    const auto told = [&](const std::filesystem::path& input) {
        return convert(input, folder / "i.png", "png", {"-s", "purpose", "intermediate"}).output;
    };
    const VImage opaque = read(sample("webp/1.webp")).bandjoin(255.0);
    opaque.pngsave((folder / "opaque.png").c_str());
    EXPECT_EQ(told(folder / "opaque.png"), "metadata: none\n");
    // One pixel, in the last row.
    VImage almost = opaque.copy_memory();
    almost.draw_rect({1, 2, 3, 254}, opaque.width() - 1, opaque.height() - 1, 1, 1);
    almost.pngsave((folder / "almost.png").c_str());
    EXPECT_EQ(told(folder / "almost.png"), "metadata: alpha\n");
    almost.colourspace(VIPS_INTERPRETATION_RGB16).pngsave((folder / "deep.png").c_str());
    EXPECT_EQ(told(folder / "deep.png"), "metadata: alpha\n");
    EXPECT_EQ(told(sample("gif/transparent.gif")), "metadata: alpha\n");
}

TEST(Metadata, ComesOutOfTiffAndHeicToo) {
    const Folder folder;
    const auto photo = loadedPhoto(folder);
    for (const char* format : {"tiff", "png", "webp", "heic"}) {
        SCOPED_TRACE(format);
        ASSERT_EQ(convert(photo, folder / "middle", format).status, 0);
        ASSERT_EQ(convert(folder / "middle", folder / "o.jpg", "jpeg").status, 0);
        const bool iptc = std::string_view(format) == "tiff" || std::string_view(format) == "png";
        expectAll(foundIn(folder / "o.jpg"), {"jpeg", iptc, true});
    }
}

TEST(Metadata, IsStrippedWhenAsked) {
    const Folder folder;
    const auto photo = loadedPhoto(folder);
    for (const char* format : {"jpeg", "tiff", "webp"}) {
        ASSERT_EQ(convert(photo, folder / "o", format, {"-s", "stripMetadata", "yes"}).status, 0);
        const Found found = foundIn(folder / "o");
        EXPECT_EQ(found.model + found.caption + found.title, "") << format;
        EXPECT_GT(found.profileSize, 300U) << "colours need their profile";
    }
    ASSERT_EQ(convert(sample("jpeg/iptc.jpg"), folder / "o.pdf", "pdf", {"-s", "stripMetadata", "yes"}).status, 0);
    EXPECT_EQ(contentsOf(folder / "o.pdf").find("Exif"), std::string::npos);
}

TEST(Metadata, AProfileIsUsedUpForSrgb) {
    const Folder folder;
    const auto photo = loadedPhoto(folder);
    ASSERT_EQ(convert(photo, folder / "o.png", "png", {"-s", "colorSpace", "sRGB"}).status, 0);
    EXPECT_EQ(foundIn(folder / "o.png").profileSize, 0U);
    const VImage turned = read(sample("jpeg/iptc.jpg")).rot90();
    const double converted = likeness(VImage::new_from_file((folder / "o.png").c_str()), turned);
    ASSERT_EQ(convert(photo, folder / "raw.png", "png", {"-s", "stripMetadata", "yes"}).status, 0);
    EXPECT_GT(converted, likeness(withoutProfile(read(folder / "raw.png")), turned) + 3);
}

TEST(Metadata, AProfileThatDoesNotFitIsDropped) {
    const Folder folder;
    VImage grey = read(sample("jpeg/hopper_gray.jpg"));
    const VImage rgb = read(sample("jpeg/iptc.jpg")).icc_export(VImage::option()->set("output_profile", "srgb"));
    std::size_t size = 0;
    const void* profile = rgb.get_blob(VIPS_META_ICC_NAME, &size);
    grey = grey.copy();
    vips_image_set_blob_copy(grey.get_image(), VIPS_META_ICC_NAME, profile, size);
    grey.jpegsave((folder / "i.jpg").c_str());
    for (const char* format : {"png", "tiff", "heic"}) {
        ASSERT_EQ(convert(folder / "i.jpg", folder / "o", format).status, 0);
        EXPECT_EQ(VImage::new_from_file((folder / "o").c_str()).get_typeof(VIPS_META_ICC_NAME), 0U) << format;
    }
}

TEST(CarryMetadata, FillsWhatAWebpLacks) {
    const Folder folder;
    const auto photo = loadedPhoto(folder);
    ASSERT_EQ(convert(photo, folder / "i.png", "png", {"-s", "purpose", "intermediate"}).status, 0);
    for (const char* name : {"webp/1.webp", "webp/transparent.webp"}) {
        SCOPED_TRACE(name);
        const auto target = folder / "o.webp";
        std::filesystem::copy_file(sample(name), target, std::filesystem::copy_options::overwrite_existing);
        const Outcome outcome = runSips({"--carry-metadata", (folder / "i.png").string(), target.string()});
        ASSERT_EQ(outcome.status, 0) << outcome.error;
        expectAll(foundIn(target), {"webp", false, true});
        EXPECT_EQ(likeness(withoutProfile(read(target)), read(sample(name))), 100);
        EXPECT_EQ(folder.entries(), 3U) << "no temporary file stays";
    }
    write(folder / "o.webp", "no webp");
    EXPECT_EQ(runSips({"--carry-metadata", (folder / "i.png").string(), (folder / "o.webp").string()}).status, 1);
    EXPECT_EQ(contentsOf(folder / "o.webp"), "no webp");
}

/// An AVIF like those of an encoder that leaves out alpha and metadata.
void bareAvif(const std::filesystem::path& intermediate, const std::filesystem::path& avif) {
    const VImage picture = withoutProfile(VImage::new_from_file(intermediate.c_str()));
    const VImage colours = picture.has_alpha() ? picture.extract_band(0, VImage::option()->set("n", 3)) : picture;
    colours.heifsave(avif.c_str(), VImage::option()
                                       ->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1)
                                       ->set("Q", 85)
                                       ->set("effort", 2)
                                       ->set("strip", true));
}

TEST(CarryMetadata, BringsTransparencyBackIntoAnAvif) {
    const Folder folder;
    const auto intermediate = folder / "i.png";
    const auto target = folder / "o.avif";
    for (const char* name : {"gif/transparent.gif", "svg/logo.svg", "png/pil123rgba.png", "psd/rgba.psd"}) {
        SCOPED_TRACE(name);
        ASSERT_EQ(convert(sample(name), intermediate, "png", {"-s", "purpose", "intermediate"}).status, 0);
        bareAvif(intermediate, target);
        const Outcome outcome = runSips({"--carry-metadata", intermediate.string(), target.string()});
        ASSERT_EQ(outcome.status, 0) << outcome.error;
        EXPECT_TRUE(read(target).has_alpha());
        EXPECT_GT(likeness(read(target), read(intermediate)), 30);
        EXPECT_EQ(contentsOf(target).substr(4, 8), "ftypavif");
        EXPECT_EQ(folder.entries(), 2U) << "no temporary file stays";
    }
}

TEST(CarryMetadata, FillsWhatAnOpaqueAvifLacks) {
    const Folder folder;
    const auto photo = loadedPhoto(folder);
    const auto intermediate = folder / "i.png";
    const auto target = folder / "o.avif";
    ASSERT_EQ(convert(photo, intermediate, "png", {"-s", "purpose", "intermediate"}).status, 0);
    bareAvif(intermediate, target);
    const VImage before = read(target);
    ASSERT_EQ(runSips({"--carry-metadata", intermediate.string(), target.string()}).status, 0);
    expectAll(foundIn(target), {"avif", false, true});
    EXPECT_EQ(likeness(withoutProfile(read(target)), before), 100) << "not encoded anew";
    EXPECT_EQ(folder.entries(), 3U) << "no temporary file stays";
    const std::string full = contentsOf(target);
    ASSERT_EQ(runSips({"--carry-metadata", intermediate.string(), target.string()}).status, 0);
    EXPECT_EQ(contentsOf(target), full) << "nothing is lacking any more";
}

TEST(CarryMetadata, LeavesADamagedAvifAsItIs) {
    const Folder folder;
    const auto photo = loadedPhoto(folder);
    const auto intermediate = folder / "i.png";
    const auto target = folder / "o.avif";
    ASSERT_EQ(convert(photo, intermediate, "png", {"-s", "purpose", "intermediate"}).status, 0);
    bareAvif(intermediate, target);
    const std::string sound = contentsOf(target);
    const auto carryInto = [&](const std::string& bytes) {
        write(target, bytes);
        const Outcome outcome = runSips({"--carry-metadata", intermediate.string(), target.string()});
        EXPECT_LE(outcome.status, 1);
        if (outcome.status == 1) {
            EXPECT_TRUE(isOneSentence(outcome.error)) << outcome.error;
            EXPECT_EQ(contentsOf(target), bytes);
        }
        return outcome.status;
    };
    constexpr std::size_t boxes = 300;
    for (std::size_t size = 1; size < sound.size(); size += size < boxes ? 19 : sound.size() / 5) {
        EXPECT_EQ(carryInto(sound.substr(0, size)), 1) << size;
    }
    for (std::size_t place = 0; place < boxes; place += 5) {
        SCOPED_TRACE(place);
        std::string flipped = sound;
        flipped[place] = static_cast<char>(flipped[place] ^ (place % 2 == 0 ? 0x80 : 0x01));
        carryInto(flipped);
    }
}

}  // namespace
}  // namespace sorvik::sips::test
