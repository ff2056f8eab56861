// The road of a drawing through the tool of its own: finding it, its vector, the lines, and real runs.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "captured_log.h"
#include "engines/image_signature.h"
#include "engines/sips_converter.h"
#include "engines/svg_route.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromLatin1(literal); }

class SVGRoute : public testing::Test {
protected:
    SVGRoute() {
        QDir(folder_.path()).mkpath(text("Contents/Resources"));
        write(picture(),
              R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"><rect width="8" height="8"/></svg>)");
    }
    /// A bundle's tool that is a script; without any there is none.
    void haveTool(const QByteArray& script, QFile::Permissions permissions = QFile::ReadOwner | QFile::ExeOwner) const {
        write(tool(), "#!/bin/sh\n" + script);
        QFile(tool()).setPermissions(permissions);
    }
    [[nodiscard]] bool convert(const QString& input, const char* format) const {
        return convertSVGWithSorvikDraw(ProcessConfigCache(Bundle(folder_.path())), input, output(), text(format));
    }
    [[nodiscard]] QString tool() const { return folder_.filePath(text("Contents/Resources/sorvikdraw")); }
    [[nodiscard]] QString picture() const { return folder_.filePath(text("T i.SVG")); }
    [[nodiscard]] QString output() const { return folder_.filePath(text("out")); }

    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir folder_;
    CapturedLog log_;
};

TEST_F(SVGRoute, FindsTheFirstCandidateThatExistsAnewEachTime) {
    const QStringList candidates{tool(), picture()};
    EXPECT_EQ(findSorvikDraw({}), std::nullopt);
    EXPECT_EQ(findSorvikDraw(candidates), picture());
    haveTool("");
    EXPECT_EQ(findSorvikDraw(candidates), tool());
    QFile::remove(tool());
    EXPECT_EQ(findSorvikDraw(candidates), picture());
}

TEST_F(SVGRoute, TellsWhatIsMissingTheToolFirst) {
    const QString gone = folder_.filePath(text("gone.svg"));
    EXPECT_FALSE(convert(gone, "png"));
    haveTool("exit 0\n");
    EXPECT_FALSE(convert(gone, "png"));
    EXPECT_EQ(log_.lines(),
              (QStringList{text("sorvikdraw CLI not found."), text("Input SVG file does not exist: ") + gone}));
}

TEST_F(SVGRoute, GivesTheToolItsVectorAndBelievesItsStatus) {
    haveTool("printf '%s|' \"$@\" >\"$5\"\n");
    EXPECT_TRUE(convert(picture(), "jpg"));
    QFile written(output());
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(written.readAll()), picture() + text("|--format|jpg|--output|") + output() + u'|');

    haveTool("exit 0\n");
    QFile::remove(output());
    EXPECT_TRUE(convert(picture(), "png")) << "whether there is a file is the caller's to find out";
    EXPECT_EQ(log_.lines(), QStringList()) << "a silent tool is passed on silently";
}

TEST_F(SVGRoute, PassesTheToolsWordsOnAndTellsItsFailure) {
    haveTool("echo warning; echo more >&2; exit 2\n");
    EXPECT_FALSE(convert(picture(), "png"));
    haveTool("printf '\\377'; exit 3\n");
    EXPECT_FALSE(convert(picture(), "png"));
    haveTool("yes words | head -c 1000000; exit 4\n");
    EXPECT_FALSE(convert(picture(), "png")) << "more than a pipe holds";
    ASSERT_EQ(log_.lines().size(), 5);
    EXPECT_EQ(log_.lines()[0], text("sorvikdraw output: warning\nmore\n"));
    EXPECT_EQ(log_.lines()[1], text("sorvikdraw failed with exit code 2"));
    EXPECT_EQ(log_.lines()[2], text("sorvikdraw failed with exit code 3")) << "output that is no UTF-8 is not printed";
    EXPECT_EQ(log_.lines()[4], text("sorvikdraw failed with exit code 4"));
}

TEST_F(SVGRoute, TellsALaunchThatFailed) {
    haveTool("", QFile::ReadOwner);
    EXPECT_FALSE(convert(picture(), "png"));
    ASSERT_EQ(log_.lines().size(), 1);
    EXPECT_TRUE(log_.lines().front().startsWith(text("Failed to run sorvikdraw: ")))
        << log_.lines().front().toStdString();
}

TEST_F(SVGRoute, IsTakenForDrawingsInsteadOfTheSystemTool) {
    auto& tools = ProcessConfigCache::shared();
    for (const auto& [format, kind] : {std::pair("png", ImageFormat::png), std::pair("PDF", ImageFormat::pdf)}) {
        const SipsConversion done = convertWithSips(tools, picture(), text(format), 0, true, true);
        EXPECT_TRUE(done.success);
        EXPECT_EQ(done.outputPath, folder_.filePath(text("T i.") + text(format).toLower()));
        EXPECT_TRUE(isValidImageFile(done.outputPath, kind));
    }
    EXPECT_EQ(log_.lines(), QStringList());

    EXPECT_FALSE(convertWithSips(tools, picture(), text("svg"), 0, true, false).success);
    ASSERT_EQ(log_.lines().size(), 2) << "the tool's word and its status; no second try, no line of the system tool";
    EXPECT_TRUE(log_.lines()[0].startsWith(text("sorvikdraw output: sorvikdraw: --format svg: expected ")));
    EXPECT_EQ(log_.lines()[1], text("sorvikdraw failed with exit code 2"));
}

}  // namespace
}  // namespace sorvik
