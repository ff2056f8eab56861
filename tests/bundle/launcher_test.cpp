// The launcher as it stands in the bundle, with the real tools behind it.

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "bundle/magick/child.h"
#include "bundle/magick/decoded_run.h"
#include "bundle/magick/svg_wrapper.h"

namespace sorvik::bundle {
namespace {

namespace fs = std::filesystem;

std::string drawing(const std::string& body) {
    return "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 100 200 150 220\n%%EndComments\n" + body + "\n";
}

class Launcher : public testing::Test {
protected:
    Launcher() { fs::create_directory(path("tmp")), setenv("TMPDIR", path("tmp").c_str(), 1); }
    ~Launcher() override {
        EXPECT_TRUE(fs::is_empty(path("tmp"))) << "something was left behind";
        unsetenv("TMPDIR");
    }
    void SetUp() override {
        if (fs::is_symlink(invocation({}).program)) {
            GTEST_SKIP() << "the system has ImageMagick 7, which needs no launcher";
        }
    }
    Launcher(const Launcher&) = delete;
    Launcher& operator=(const Launcher&) = delete;

    [[nodiscard]] std::string path(const std::string& name) const { return folder_.file(name.c_str()); }
    [[nodiscard]] static std::string data(const std::string& name) { return SORVIK_TEST_DATA "/" + name; }

    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

    [[nodiscard]] static std::string read(const std::string& name) {
        std::ifstream file(name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static MagickInvocation invocation(const std::vector<std::string>& arguments) {
        const std::string magick = std::string(std::getenv("SORVIK_BUNDLE")) + "/Contents/Resources/magick";
        MagickInvocation result{magick, {magick}};
        result.arguments.insert(result.arguments.end(), arguments.begin(), arguments.end());
        return result;
    }

    static int magick(const std::vector<std::string>& arguments) { return runTool(invocation(arguments), true); }

    /// What `identify` says of a file by a format.
    [[nodiscard]] std::string look(const std::string& file, const std::string& format) const {
        const std::string said = path("said");
        EXPECT_EQ(runTool({"/usr/bin/identify", {"identify", "-format", format, file}}, false, said), 0);
        return read(said);
    }

private:
    const PrivateFolder folder_;
};

TEST_F(Launcher, CropsADrawingToItsBox) {
    const std::string red = "1 0 0 setrgbcolor 100 200 25 20 rectfill";
    const std::string out = path("o.png");
    for (const auto& [text, box] : std::vector<std::pair<std::string, std::string>>{
             {drawing(red + " showpage"), "208x83"},
             {drawing(red), "208x83"},                                                       // never shown, but whole
             {drawing("gsave 9 dict begin /showpage {} def " + red + "\n%%EOF"), "208x83"},  // by its own word
             {"%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: (atend)\n" + red + " showpage\n%%BoundingBox: 100 200 150 220\n",
              "208x83"},
             {"%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 100 200 151 221\n%%HiResBoundingBox: 100.5 200.25 150.75 "
              "220.5\n" +
                  red + " showpage\n",
              "209x84"},
         }) {
        ASSERT_EQ(magick({"-density", "300", write("d.eps", text), out}), 0) << text;
        EXPECT_EQ(look(out, "%wx%h %[pixel:p{40,40}] %[fx:p{180,40}.a]"), box + " srgba(255,0,0,1) 0");
    }
    ASSERT_EQ(magick({"-density", "300", path("d.eps"), "-quality", "100", path("o.jpg")}), 0);
    EXPECT_EQ(look(path("o.jpg"), "%x %U %[pixel:p{180,40}]"), "300 PixelsPerInch srgb(255,255,255)")
        << "what is transparent lies on white where the target can't hold it";
}

TEST_F(Launcher, ReadsTheDrawingBesideAPreview) {
    ASSERT_EQ(magick({"-density", "300", data("eps/1.eps"), path("o.png")}), 0);
    EXPECT_EQ(look(path("o.png"), "%wx%h"), "300x201");
}

TEST_F(Launcher, RefusesWhatCanNotBecomeAPicture) {
    const std::string out = path("o.png");
    const std::string logo = read(data("eps/logo.eps"));
    const std::string cmyk = read(data("eps/pil_sample_cmyk.eps"));
    const std::string preview = read(data("eps/1.eps"));
    for (const std::string& text : {
             logo.substr(0, logo.size() * 6 / 10),
             cmyk.substr(0, cmyk.size() * 95 / 100),
             preview.substr(0, preview.size() * 95 / 100),
             drawing(""),
             drawing("gsave 100 200 25 20 rectfill"),
             std::string("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: (atend)\n0 0 5 5 rectfill showpage\n"),
             std::string("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 99999 99999\n0 0 5 5 rectfill showpage\n"),
         }) {
        EXPECT_EQ(magick({"-density", "300", write("d.eps", text), out}), statusSourceRefused) << text.substr(0, 200);
        EXPECT_FALSE(fs::exists(out));
    }
}

TEST_F(Launcher, LetsPostScriptReachNoFile) {
    const std::string secret = write("secret", "secret");
    for (const std::string& body : {
             "(" + path("written") + ") (w) file closefile showpage",
             "(" + path("tmp/written") + ") (w) file closefile showpage",
             "(" + secret + ") (r) file closefile showpage",
             "(" + secret + ") deletefile showpage",
             "(" + secret + ") (" + path("written") + ") renamefile showpage",
             "(%pipe%touch " + path("written") + ") (w) file closefile showpage",
         }) {
        const std::string source = write("d.eps", drawing("0 0 999 999 rectfill " + body));
        EXPECT_EQ(magick({"-density", "300", source, path("o.png")}), statusSourceRefused) << body;
        EXPECT_FALSE(fs::exists(path("written"))) << body;
        EXPECT_TRUE(fs::exists(secret)) << body;
    }
}

TEST_F(Launcher, TakesNamesAsTheyAre) {
    for (const std::string name : {"-dash.eps", "x%d.eps", "@a b.eps", "$(id);'\".eps"}) {
        const std::string source = write(name, drawing("100 200 25 20 rectfill"));
        EXPECT_EQ(magick({"-density", "72", source, path("o.png")}), 0) << name;
    }
}

TEST_F(Launcher, DecodesCameraRawUprightAtTheCamerasSize) {
    ASSERT_EQ(magick({"-define", "raw:use-camera-wb=true", data("raw/colorchart.dng"), path("o.tiff")}), 0);
    EXPECT_EQ(look(path("o.tiff"), "%wx%h %z %[orientation]"), "1734x1156 16 TopLeft");

    // The same camera, held on its side: IFD0's orientation, the only SHORT of that tag, becomes 6.
    std::string turned = read(data("raw/colorchart.dng"));
    const std::string tag("\x12\x01\x03\0\x01\0\0\0\x01", 9);
    const std::size_t place = turned.find(tag);
    ASSERT_NE(place, std::string::npos);
    turned[place + tag.size() - 1] = '\x06';
    ASSERT_EQ(magick({write("turned.dng", turned), path("o.jpg")}), 0);
    EXPECT_EQ(look(path("o.jpg"), "%wx%h %z"), "1156x1734 8");

    ASSERT_EQ(runTool(invocation({"identify", "-verbose", data("raw/colorchart.dng")}), false, path("verbose")), 0);
    EXPECT_NE(read(path("verbose")).find("dng:camera.model.name: Canon EOS Kiss X4"), std::string::npos);
}

TEST_F(Launcher, DevelopsCameraRawAsSrgbWithAndWithoutItsProfile) {
    const std::vector<std::string> developed{
        "-define", "raw:use-camera-wb=true",  "-define", "raw:auto-gamma=true", "-density",
        "300",     data("raw/colorchart.dng")};
    std::vector<std::string> stripped = developed;
    stripped.insert(stripped.end(), {"-strip", path("plain.png")});
    ASSERT_EQ(magick(stripped), 0);
    std::vector<std::string> tagged = developed;
    tagged.push_back(path("tagged.png"));
    ASSERT_EQ(magick(tagged), 0);
    EXPECT_NE(look(path("tagged.png"), "%[profile:icc]").find("sRGB"), std::string::npos);

    // As whoever heeds profiles shows the one, and whoever has none to heed shows the other.
    const std::string shown = path("shown.png");
    ASSERT_EQ(magick({path("tagged.png"), "-profile", "/usr/share/color/icc/ghostscript/srgb.icc", "-strip", shown}),
              0);
    (void)runTool({"/usr/bin/compare", {"compare", "-metric", "PSNR", shown, path("plain.png"), "null:"}}, false,
                  path("said"));
    EXPECT_GT(std::strtod(read(path("said")).c_str(), nullptr), 45) << read(path("said"));
}

TEST_F(Launcher, ExcludesEveryChunkThatIsNamed) {
    ASSERT_EQ(magick({"-size", "2x2", "xc:red", "-set", "Artist", "somebody", "-define", "png:exclude-chunk=tIME",
                      "-define", "png:exclude-chunk=tEXt", "-define", "png:exclude-chunk=zTXt", path("o.png")}),
              0);
    EXPECT_EQ(read(path("o.png")).find("tEXt"), std::string::npos);
}

TEST_F(Launcher, LeavesNothingOfAnSvgUnderAnyName) {
    const std::string svg = read(data("svg/logo.svg"));
    for (const char* name : {"d.svg", "d.eps", "d.png"}) {
        EXPECT_EQ(magick({write(name, svg), path("o.png")}), 0) << name;
        EXPECT_TRUE(fs::is_empty(path("tmp"))) << name;
    }
}

TEST_F(Launcher, FailsOnTruncatedCameraRaw) {
    const std::string whole = read(data("raw/colorchart.dng"));
    write("cut.dng", whole.substr(0, whole.size() - 5000));
    for (const std::string& source :
         {path("cut.dng"), data("raw/FujiFilm.raf"), data("raw/sample.cr2"), data("raw/sample.nef")}) {
        EXPECT_EQ(magick({"-density", "300", source, path("o.png")}), 1) << source;
        EXPECT_FALSE(fs::exists(path("o.png"))) << source;
    }
}

TEST_F(Launcher, TellsOfACameraWhatExiftoolReads) {
    for (const char* sample : {"raw/sample.nef", "raw/sample.cr2", "raw/FujiFilm.raf"}) {
        const std::string file = write("x[1]*%d {}" + fs::path(sample).extension().string(), read(data(sample)));
        ASSERT_EQ(runTool(invocation({"identify", "-verbose", file}), false, path("verbose")), 0) << sample;
        const std::string verbose = read(path("verbose"));
        const std::vector<std::string> look{"exiftool", "-q", "-p",
                                            "exif:ExposureTime: $ExposureTime\nexif:FNumber: ${FNumber#}\nexif:Make: "
                                            "$Make\nexif:Model: $Model\nexif:DateTimeOriginal: $DateTimeOriginal",
                                            file};
        ASSERT_EQ(runTool({"/usr/bin/exiftool", look}, false, path("said")), 0) << sample;
        std::istringstream lines(read(path("said")));
        int count = 0;
        for (std::string line; std::getline(lines, line); ++count) {
            EXPECT_NE(verbose.find("    " + line + "\n"), std::string::npos) << line << " in\n" << verbose;
        }
        EXPECT_EQ(count, 5) << sample;
    }

    // Without a maker in it the file is developed, and none of the decoder's placeholders is told.
    std::string nameless = read(data("raw/colorchart.dng"));
    nameless.replace(nameless.find(std::string("\x0F\x01\x02\0", 4)), 1, "\x0E");
    ASSERT_EQ(runTool(invocation({"identify", "-verbose", write("x.dng", nameless)}), false, path("verbose")), 0);
    const std::string verbose = read(path("verbose"));
    EXPECT_NE(verbose.find("dng:camera.model.name: Canon EOS Kiss X4"), std::string::npos) << verbose;
    for (const char* invented : {"exif:ExposureTime", "exif:FNumber", "1970", "1969", "icc:"}) {
        EXPECT_EQ(verbose.find(invented), std::string::npos) << verbose;
    }
}

TEST_F(Launcher, WritesAnSvgThatHoldsThePicture) {
    EXPECT_NE(svgAround("Ma\xFF", 3, 2).find("data:image/png;base64,TWH/\"/>"), std::string::npos);
    EXPECT_NE(svgAround("M", 3, 2).find("base64,TQ==\""), std::string::npos);
    EXPECT_NE(svgAround("Ma", 3, 2).find("base64,TWE=\""), std::string::npos);
    ASSERT_EQ(magick({data("jpeg/hopper_gray.jpg"), "-quality", "100", path("o.svg")}), 0);
    EXPECT_TRUE(read(path("o.svg")).ends_with("\"/>\n</svg>\n"));
    EXPECT_NE(read(path("o.svg")).find("viewBox=\"0 0 " + look(data("jpeg/hopper_gray.jpg"), "%w %h\"")),
              std::string::npos);
}

TEST_F(Launcher, CleansUpWhenAskedToEnd) {
    const std::string source = write("d.eps", drawing("{} loop"));
    const MagickInvocation endless = invocation({source, path("o.png")});
    const pid_t child = fork();
    if (child == 0) {
        execute(endless);
    }
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (fs::is_empty(path("tmp")) && std::chrono::steady_clock::now() < patience) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    kill(child, SIGTERM);
    int state = 0;
    ASSERT_EQ(waitpid(child, &state, 0), child);
    EXPECT_TRUE(WIFEXITED(state) && WEXITSTATUS(state) != 0);
}

}  // namespace
}  // namespace sorvik::bundle
