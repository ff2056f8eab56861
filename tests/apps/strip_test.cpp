// --strip-metadata on the whole road: exiftool finds nothing, and the picture looks as it did.

#include <array>

#include "batch_run.h"
#include "pictures.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

/// What exiftool finds in the groups that hold metadata; the structure of a TIFF is none.
QString metadataIn(const QString& path) {
    return toolOutput(
        text("/usr/bin/exiftool"),
        {text("-s"), text("-G1"), text("-ExifIFD:all"), text("-GPS:all"), text("-XMP:all"), text("-IPTC:all"),
         text("-Photoshop:all"), text("-MakerNotes:all"), text("-IFD1:all"), text("-ICC_Profile:all"), text("-Make"),
         text("-Model"), text("-Software"), text("-DateTime"), text("-Artist"), text("-Comment"), path});
}

int orientationIn(const QString& path) {
    const QString found = toolOutput(text("/usr/bin/exiftool"), {text("-n"), text("-s3"), text("-Orientation"), path});
    return found.isEmpty() ? 1 : found.toInt();
}

class StripMetadata : public BatchTest {
protected:
    static void tool(const QString& program, const QStringList& arguments) {
        EXPECT_EQ(QProcess::execute(program, arguments), 0) << program.toStdString();
    }

    /// A photograph in Adobe RGB, lying on its side, with metadata of every kind.
    [[nodiscard]] QString ladenPhoto() const {
        const QString profiles = text("/usr/share/color/icc/ghostscript/");
        tool(text("/usr/bin/convert"),
             {text(SORVIK_TEST_DATA "/jpeg/iptc.jpg"), text("-profile"), profiles + text("srgb.icc"), text("-profile"),
              profiles + text("a98.icc"), text("-quality"), text("98"), path(text("laden.jpg"))});
        tool(text("/usr/bin/exiftool"),
             {text("-q"), text("-n"), text("-overwrite_original"), text("-Orientation=6"), text("-Model=Box 3"),
              text("-GPSLatitude=10"), text("-GPSLongitude=20"), text("-XMP:Creator=me"), text("-Comment=c"),
              text("-IPTC:Caption-Abstract=Quay"), path(text("laden.jpg"))});
        EXPECT_TRUE(metadataIn(path(text("laden.jpg"))).contains(text("GPSLatitude")));
        return path(text("laden.jpg"));
    }

    /// What a picture shows: upright, in sRGB, on white, without a profile.
    [[nodiscard]] QString shown(const QString& picture) const {
        const QString result = path(text("shown.png"));
        const QString profile = text("/usr/share/color/icc/ghostscript/srgb.icc");
        tool(text("/usr/bin/convert"), {picture, text("-auto-orient"), text("-profile"), profile, text("-background"),
                                        text("white"), text("-alpha"), text("remove"), text("-strip"), result});
        return result;
    }
};

struct Target {
    const char* format;
    const char* extension;
    double leastLikeness;  // dB: ImageMagick's pass has its own idea of quality
};

constexpr std::array targets{Target{"jpeg", "jpg", 33},  Target{"png", "png", 45},   Target{"tiff", "tiff", 45},
                             Target{"webp", "webp", 33}, Target{"heic", "heic", 33}, Target{"avif", "avif", 33},
                             Target{"bmp", "bmp", 45},   Target{"gif", "gif", 28}};

TEST_F(StripMetadata, LeavesNothingAndLooksTheSame) {
    const QString photo = ladenPhoto();
    const QString reference = shown(photo);
    for (const Target& target : targets) {
        const BatchRun batch =
            convert(text(target.format), {text("--strip-metadata"), text("--output-prefix"), text("o-"), photo});
        EXPECT_EQ(batch.status, 0) << batch.output.toStdString();
        const QString result = path(text("o-laden.") + text(target.extension));
        EXPECT_EQ(metadataIn(result), QString()) << target.format;
        EXPECT_EQ(orientationIn(result), 1) << target.format;
        EXPECT_GT(likeness(result, reference), target.leastLikeness) << target.format;
    }
}

TEST_F(StripMetadata, TakesItFromEveryKindOfSource) {
    const QString photo = ladenPhoto();
    const QString reference = shown(photo);
    for (const char* format : {"png", "tiff", "webp", "heic"}) {
        ASSERT_EQ(convert(text(format), {photo}).status, 0);
    }
    QFile::remove(photo);
    for (const char* name : {"laden.png", "laden.tiff", "laden.webp", "laden.heic"}) {
        ASSERT_NE(metadataIn(path(text(name))), QString()) << name;
        EXPECT_EQ(convert(text("jpeg"), {text("--strip-metadata"), path(text(name))}).status, 0);
        EXPECT_EQ(metadataIn(path(text("laden.jpg"))), QString()) << name;
        EXPECT_GT(likeness(path(text("laden.jpg")), reference), 30) << name;
        QFile::remove(path(text("laden.jpg")));
    }
}

TEST_F(StripMetadata, TransparencyAndIconSizesStay) {
    const QString picture = bring(text("png/pil123rgba.png"));
    const QString reference = shown(picture);
    for (const char* format : {"heic", "avif", "webp", "tiff"}) {
        EXPECT_EQ(convert(text(format), {text("--strip-metadata"), picture}).status, 0);
        const QString result = path(text("pil123rgba.") + text(format));
        EXPECT_EQ(metadataIn(result), QString()) << format;
        // The imaging tool reads it again: ImageMagick 6 shows no transparency of these.
        ASSERT_EQ(convert(text("png"), {text("--output-prefix"), text("back-"), result}).status, 0);
        EXPECT_GT(likeness(path(text("back-pil123rgba.png")), reference), 28) << format;
        QFile::remove(path(text("back-pil123rgba.png")));
    }
    EXPECT_EQ(convert(text("ico"), {text("--strip-metadata"), picture}).status, 0);
    EXPECT_EQ(toolOutput(text("/usr/bin/identify"), {text("-format"), text("%w "), path(text("pil123rgba.ico"))}),
              text("16 32 48"));
}

TEST_F(StripMetadata, APdfHoldsNoneAlthoughNoPassReadsIt) {
    const QString photo = ladenPhoto();
    EXPECT_EQ(convert(text("pdf"), {text("--strip-metadata"), photo}).status, 0);
    EXPECT_EQ(metadataIn(path(text("laden.pdf"))), QString());
    for (const char* name : {"jpeg/DSCN0010.jpg", "jpeg/iptc.jpg"}) {
        const QString plain = bring(text(name), text("plain.jpg"));
        EXPECT_EQ(convert(text("pdf"), {text("--strip-metadata"), plain}).status, 0);
        QFile pdf(path(text("plain.pdf")));
        ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
        const QByteArray bytes = pdf.readAll();
        EXPECT_FALSE(bytes.contains("Exif") || bytes.contains("Photoshop") || bytes.contains("ns.adobe.com")) << name;
        QFile::remove(plain);
        QFile::remove(path(text("plain.pdf")));
    }
}

TEST_F(StripMetadata, AnIconAsSource) {
    for (const char* format : {"jpeg", "png", "heic", "ico"}) {
        const QString icon = bring(text("ico/pillow.ico"));
        EXPECT_EQ(convert(text(format), {text("--strip-metadata"), text("--output-prefix"), text("o-"), icon}).status,
                  0);
        const QString extension = QString::fromLatin1(format) == u"jpeg" ? text("jpg") : text(format);
        EXPECT_EQ(metadataIn(path(text("o-pillow.") + extension)), QString());
        QFile::remove(icon);
    }
}

}  // namespace
}  // namespace sorvik
