// Drawings that need an interpreter and cameras' raw files, with the real program and the real tools.

#include "batch_run.h"
#include "core/vocabulary/failure_messages.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

class Interpreted : public BatchTest {
protected:
    /// "width height" of the result of a row; its error where there is one.
    [[nodiscard]] static QString sizeIn(const BatchRun& batch, const QString& name) {
        const QJsonObject row = batch.row(name);
        const QString error = row[text("error")].toString();
        return !error.isEmpty() ? error
                                : toolOutput(text("/usr/bin/identify"),
                                             {text("-format"), text("%w %h"), row[text("outputPath")].toString()});
    }
    [[nodiscard]] QByteArray sample(const char* name) const {
        QFile file(QStringLiteral(SORVIK_TEST_DATA "/") + text(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    const QString failed = text("Processing failed: ") + userMessage(QString());
};

TEST_F(Interpreted, ComesOutInTheSizeOfItsPage) {
    const QMap<QString, QString> sizes{
        {text("eps/1.eps"), text("300 201")},
        {text("eps/illuCS6_preview.eps"), text("1677 10197")},
        {text("eps/logo.eps"), text("497 751")},
        {text("eps/pil_sample_cmyk.eps"), text("417 417")},
        {text("eps/rgb.eps"), text("133 133")},
        {text("ai/gopher.ai"), text("1675 2331")},
        {text("raw/colorchart.dng"), text("1734 1156")},
    };
    QStringList sources;
    for (const QString& name : sizes.keys()) {
        sources << bring(name);
    }
    for (const char* target : {"png", "jpeg", "tiff"}) {
        const BatchRun batch = convert(text(target), sources);
        EXPECT_EQ(batch.status, 0);
        for (const auto& [name, size] : sizes.asKeyValueRange()) {
            EXPECT_EQ(sizeIn(batch, QFileInfo(name).fileName()), size) << name.toStdString() << " to " << target;
        }
    }
    EXPECT_EQ(sizeIn(convert(text("svg"), {path(text("gopher.ai"))}), text("gopher.ai")), text("1675 2331"));
}

TEST_F(Interpreted, ShowsTheColoursThatTheToolsShowByHand) {
    const auto colour = [](const QString& file) {
        return toolOutput(
            text("/usr/bin/convert"),
            {file, text("-strip"), text("-resize"), text("1x1!"), text("-depth"), text("8"), text("-format"),
             text("%[fx:round(255*p{0,0}.r)] %[fx:round(255*p{0,0}.g)] %[fx:round(255*p{0,0}.b)]"), text("info:")});
    };
    const BatchRun batch = convert(text("jpeg"), {bring(text("eps/pil_sample_cmyk.eps")), bring(text("eps/1.eps"))});
    for (const char* name : {"pil_sample_cmyk", "1"}) {
        const QString byHand = path(text(name)) + text(".png");
        toolOutput(text("/usr/bin/gs"),
                   {text("-q"), text("-dBATCH"), text("-dNOPAUSE"), text("-dEPSCrop"), text("-r300"),
                    text("-sDEVICE=png16m"), text("-sOutputFile=") + byHand, path(text(name)) + text(".eps")});
        EXPECT_EQ(colour(batch.row(text(name) + text(".eps"))[text("outputPath")].toString()), colour(byHand)) << name;
    }
}

TEST_F(Interpreted, FailsCleanlyOnWhatIsCutOffOrNotAccepted) {
    const QByteArray logo = sample("eps/logo.eps");
    const QByteArray preview = sample("eps/1.eps");
    const QByteArray gopher = sample("ai/gopher.ai");
    const QStringList sources{
        write(text("logo.eps"), logo.first(logo.size() * 7 / 10)),
        write(text("preview.eps"), preview.first(preview.size() * 9 / 10)),
        write(text("half.ai"), gopher.first(gopher.size() / 2)),
        write(text("start.ai"), gopher.first(gopher.size() / 20)),
        write(text("junk.eps"), QByteArray(5000, 'j')),
        write(text("junk.dng"), QByteArray(5000, 'j')),
        bring(text("raw/FujiFilm.raf")),
        bring(text("raw/sample.cr2")),
        bring(text("raw/sample.nef")),
    };
    const BatchRun cut = convert(text("png"), sources);
    const BatchRun refused = convert(
        text("avif"), {bring(text("eps/rgb.eps")), bring(text("ai/gopher.ai")), bring(text("raw/colorchart.dng"))});
    ASSERT_EQ(cut.rows().size() + refused.rows().size(), 12U);
    for (const BatchRun& batch : {cut, refused}) {
        for (const QJsonObject& row : batch.rows()) {
            EXPECT_EQ(row[text("error")].toString(), failed) << row[text("name")].toString().toStdString();
        }
    }
    EXPECT_EQ(filesLeft().size(), 12) << "no result stands where none was made";
}

TEST_F(Interpreted, TakesNamesAsTheyAre) {
    QStringList names{text("a b[1].eps"), text("x%d.eps"), text("-dash.eps"), text("$(id)*?.eps")};
    for (const QString& name : names) {
        bring(text("eps/rgb.eps"), name);
    }
    bring(text("ai/gopher.ai"), text("g{1}%03d.ai"));
    const BatchRun batch = convert(text("png"), QStringList{text("--")} + names + QStringList{text("g{1}%03d.ai")});
    EXPECT_EQ(batch.status, 0) << batch.output.toStdString();
    for (const QString& name : names) {
        EXPECT_GT(QFileInfo(path(QFileInfo(name).completeBaseName() + text(".png"))).size(), 4000);
    }
    EXPECT_TRUE(QFile::exists(path(text("g{1}%03d.png"))));
    EXPECT_EQ(filesLeft().size(), 10);
}

}  // namespace
}  // namespace sorvik
