// What becomes of a vector of `magick`: which tools run, and with what. Vectors are compared whole.

#include "bundle/magick/decode_steps.h"

#include <gtest/gtest.h>

#include <sstream>

namespace sorvik::bundle {
namespace {

std::vector<std::string> words(const std::string& line) {
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

MagickInvocation invocation(const std::string& line) { return {words(line).front(), words(line)}; }

TEST(InputOperand, StandsBehindTheOptionsOfOurVectors) {
    struct Row {
        const char* vector;
        std::optional<std::size_t> operand;
    };
    for (const Row& row : {
             Row{"", std::nullopt},
             Row{"/i.eps -quality 85 /o.png", 0},
             Row{"-density 300 /i.eps /o.png", 2},
             Row{"-define raw:no-crop -define raw:use-camera-wb=true -density 300 /i.nef /o.png", 6},
             Row{"identify -verbose /i.nef", 2},
             Row{"identify", std::nullopt},
             Row{"-density 300", std::nullopt},
             Row{"-resize 50% /i.eps /o.png", std::nullopt},  // not ours: passed on as it stands
             Row{"-list policy", std::nullopt},
         }) {
        EXPECT_EQ(inputOperand(words(row.vector)), row.operand) << row.vector;
    }
}

TEST(DecodingOf, GoesByTheExtension) {
    EXPECT_EQ(decodingOf("/a.b/IMG.NEF"), Decoding::cameraRaw);
    EXPECT_EQ(decodingOf("/x.raw"), Decoding::cameraRaw);
    EXPECT_EQ(decodingOf("/x.ePs"), Decoding::postScript);
    EXPECT_EQ(decodingOf("/x.ps"), Decoding::postScript);
    EXPECT_EQ(decodingOf("/x.eps/y"), Decoding::none);
    EXPECT_EQ(decodingOf("/x.tiff"), Decoding::none);
    EXPECT_EQ(decodingOf("eps"), Decoding::none);
}

TEST(WantsSvg, OfAPictureOnly) {
    EXPECT_TRUE(wantsSvg(words("/i.jpg -quality 100 /o.SVG")));
    EXPECT_FALSE(wantsSvg(words("/i.svg -strip /o.svg")));
    EXPECT_FALSE(wantsSvg(words("/o.svg")));
    EXPECT_FALSE(wantsSvg(words("identify -verbose /i.svg")));
}

TEST(MayBeSvg, ByExtensionOrContent) {
    EXPECT_TRUE(mayBeSvg("/x.SVGZ", "\x1f"));
    EXPECT_TRUE(mayBeSvg("/x.eps", "<"));
    EXPECT_FALSE(mayBeSvg("/x.png", "\x89"));
    EXPECT_FALSE(mayBeSvg("/x.jpg", ""));
}

TEST(RawDecoder, TurnsTheDefinesIntoItsOptions) {
    struct Row {
        const char* vector;
        const char* decoder;
    };
    for (const Row& row : {
             Row{"-define raw:use-camera-wb=true -define raw:auto-gamma=true -density 300 /i.raf -quality 100 /o.jpg",
                 "/usr/bin/dcraw_emu -w -g 2.4 12.92 -T -Z /t.tiff /i"},
             Row{"-define raw:use-camera-wb=true -define raw:auto-gamma=true -define raw:interpolation-quality=1 "
                 "-define raw:no-crop -define raw:no-auto-bright -density 300 /i.raf /o.tiff",
                 "/usr/bin/dcraw_emu -w -g 2.4 12.92 -q 1 -W -6 -T -Z /t.tiff /i"},
             Row{"-define raw:use-camera-wb=false /i.raf /o.PNG", "/usr/bin/dcraw_emu -6 -T -Z /t.tiff /i"},
             Row{"identify -verbose /i.raf", "/usr/bin/dcraw_emu -T -Z /t.tiff /i"},
         }) {
        EXPECT_EQ(rawDecoder(words(row.vector), "/i", "/t.tiff"), invocation(row.decoder)) << row.vector;
    }
}

TEST(RasterOf, FollowsDensityAndBox) {
    const BoundingBox box{251.3386, 331.5616, 370.5213, 511.775};
    EXPECT_EQ(rasterOf(words("-density 300 /i.eps /o.png"), box), (Raster{300, 497, 751, 251.3386, 331.5616}));
    EXPECT_EQ(rasterOf(words("/i.eps /o.png"), BoundingBox{0, 0, 0.1, 10}), (Raster{72, 1, 10, 0, 0}));
    EXPECT_EQ(rasterOf(words("-density 150x150 /i.eps /o.png"), std::nullopt), (Raster{150, 0, 0, 0, 0}));
    EXPECT_EQ(rasterOf(words("-density x /i.eps /o.png"), std::nullopt), Raster());
    EXPECT_FALSE(rasterOf({}, BoundingBox{0, 0, 16000, 1}).tooLarge());
    EXPECT_TRUE(rasterOf({}, BoundingBox{0, 0, 1, 1e300}).tooLarge());
}

TEST(PostScriptRenderer, IsFencedAndCropped) {
    const MagickInvocation cropped = postScriptRenderer({300, 497, 751, 251.3386, -3}, false, "/i.eps", "/p.png");
    const auto& vector = cropped.arguments;
    ASSERT_EQ(vector.size(), 24U);
    const auto fixed = words(
        "/usr/bin/gs -q -sstdout=%stderr -dSAFER -dBATCH -dNOPAUSE -dNOPROMPT -dNOEPS -dMaxBitmap=500000000 "
        "-dAlignToPixels=0 -dGridFitTT=2 -dTextAlphaBits=4 -dGraphicsAlphaBits=4 -sDEVICE=pngalpha -r300.0000 "
        "-g497x751 -dFIXEDMEDIA -sOutputFile=/p.png -c");
    EXPECT_TRUE(std::equal(fixed.begin(), fixed.end(), vector.begin())) << ::testing::PrintToString(vector);
    EXPECT_TRUE(vector[19].starts_with("<</Install {-251.3386 3.0000 translate}>> setpagedevice ")) << vector[19];
    EXPECT_EQ(vector[20], "-f");
    EXPECT_EQ(vector[21], "/i.eps");
    EXPECT_EQ(vector[22], "-c");
    EXPECT_NE(vector[23].find("vmstatus"), std::string::npos) << "what looks whether the text was whole";
    EXPECT_EQ(postScriptRenderer({}, true, "/i.eps", "/p.png").arguments.back(),
              "currentpagedevice /PageCount get 0 eq {systemdict /showpage get exec} if");
}

TEST(CameraReporter, NamesThePropertiesAsACamerasFileDoes) {
    EXPECT_TRUE(wantsCameraReport(words("identify -verbose /i.nef")));
    EXPECT_FALSE(wantsCameraReport(words("identify -verbose /i.tiff")));
    EXPECT_FALSE(wantsCameraReport(words("identify -format %w /i.nef")));
    EXPECT_EQ(cameraReporter("/c.jpg", false, "/r"),
              invocation("/usr/bin/convert /c.jpg -set dng:make %[exif:Make] -set dng:camera.model.name %[exif:Model] "
                         "-set dng:create.date %[exif:DateTime] -verbose info:/r"));
    EXPECT_EQ(cameraReporter("/d.tiff", true, "/r"),
              invocation("/usr/bin/convert /d.tiff -set dng:make %[tiff:make] -set dng:camera.model.name %[tiff:model] "
                         "-set dng:create.date %[tiff:timestamp] -verbose info:/r"));
}

TEST(Continuation, HandsTheRestToThePreviousVersion) {
    struct Row {
        const char* vector;
        Decoding decoding;
        const char* svgPicture;
        const char* expected;
    };
    for (const Row& row : {
             Row{"-define raw:use-camera-wb=true -define raw:auto-gamma=true -density 300 /i.nef -strip -define "
                 "png:exclude-chunk=tIME /o.png",
                 Decoding::cameraRaw, "",
                 "/usr/bin/convert -density 300 /d -units PixelsPerInch +profile icc "
                 "-profile /usr/share/color/icc/ghostscript/srgb.icc -strip -define png:exclude-chunk=tIME /o.png"},
             Row{"-define raw:use-camera-wb=true /i.nef /o.png", Decoding::cameraRaw, "",
                 "/usr/bin/convert /d -units PixelsPerInch /o.png"},
             Row{"-density 300 /i.eps -define png:compression-level=9 /o.png", Decoding::postScript, "",
                 "/usr/bin/convert -density 300 /d -units PixelsPerInch -define png:compression-level=9 /o.png"},
             Row{"-density 300 /i.eps -quality 100 /o.JPG", Decoding::postScript, "",
                 "/usr/bin/convert -density 300 /d -units PixelsPerInch -quality 100 "
                 "-background white -alpha remove -alpha off /o.JPG"},
             Row{"identify -verbose /i.eps", Decoding::postScript, "", "/usr/bin/identify -verbose /d"},
             Row{"/i.jpg -quality 100 /o.svg", Decoding::none, "/p.png", "/usr/bin/convert /i.jpg -quality 100 /p.png"},
         }) {
        EXPECT_EQ(continuation(words(row.vector), row.decoding, "/d", row.svgPicture), invocation(row.expected))
            << row.vector;
    }
}

}  // namespace
}  // namespace sorvik::bundle
