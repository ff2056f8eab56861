// The target a file starts with.

#include "core/format_mapping_reader.h"
#include "core/format_resolver.h"
#include "list_fixture.h"

namespace sorvik {
namespace {

QString text(const char* literal) { return QString::fromUtf8(literal); }

TEST(FormatMappingReader, ReadsWhatIsStoredAndOnOffer) {
    struct Row {
        const char* stored;
        InputFormat input;
        std::optional<ImageFormat> read;
        const char* storedAfterwards;
    };
    for (const Row& row : {
             Row{"WEBP", InputFormat::png, ImageFormat::webp, "WEBP"},
             Row{"jpg", InputFormat::png, ImageFormat::jpeg, "JPEG"},
             Row{"Jpg", InputFormat::png, ImageFormat::jpeg, "JPEG"},
             Row{"GIF", InputFormat::jpeg, std::nullopt, "GIF"},
             Row{"gif", InputFormat::jpeg, std::nullopt, "GIF"},
             Row{"garbage", InputFormat::jpeg, std::nullopt, "garbage"},
             Row{"", InputFormat::jpeg, std::nullopt, ""},
             Row{"SVG", InputFormat::ico, ImageFormat::svg, "SVG"},
         }) {
        MemoryDefaultsStore store;
        const QString key = text("defaultOutputFormat_") + fileExtension(row.input);
        store.setValue(key, text(row.stored));
        EXPECT_EQ(FormatMappingReader(store).mapping(row.input), row.read) << row.stored;
        EXPECT_EQ(store.text(key), text(row.storedAfterwards));
    }
}

TEST(FormatMappingReader, KeepsWhatIsOnOffer) {
    MemoryDefaultsStore store;
    const FormatMappingReader reader(store);
    EXPECT_TRUE(reader.allMappings().empty());
    reader.setMapping(ImageFormat::svg, InputFormat::jpeg);
    EXPECT_FALSE(store.contains(text("defaultOutputFormat_jpg")));
    reader.setMapping(ImageFormat::svg, InputFormat::ai);
    reader.setMapping(ImageFormat::pdf, InputFormat::tiff);
    EXPECT_EQ(store.text(text("defaultOutputFormat_tiff")), text("PDF"));
    EXPECT_EQ(reader.allMappings(),
              (std::map{std::pair(InputFormat::ai, ImageFormat::svg), {InputFormat::tiff, ImageFormat::pdf}}));
    reader.setMapping(std::nullopt, InputFormat::ai);
    EXPECT_FALSE(store.contains(text("defaultOutputFormat_ai")));
}

TEST(FormatResolver, TakesTheUsersChoiceOrTheFirstOnOffer) {
    const FormatResolver resolver({{InputFormat::jpeg, ImageFormat::avif}});
    EXPECT_EQ(resolver.defaultFormat(InputFormat::jpeg), ImageFormat::avif);
    EXPECT_EQ(resolver.defaultFormat(InputFormat::heic), ImageFormat::jpeg);
    EXPECT_EQ(resolver.defaultFormat(InputFormat::ico), ImageFormat::bmp);
}

using DefaultFormats = ListTest<FakeEngine>;

TEST_F(DefaultFormats, ReachTheRowsOfADrop) {
    FormatMappingReader(settings.store()).setMapping(ImageFormat::tiff, InputFormat::png);
    drop({write(text("a.png")), write(text("b.jpg"))});
    EXPECT_EQ(row(0).outputFormat, ImageFormat::tiff);
    EXPECT_EQ(row(1).outputFormat, ImageFormat::png);
}

}  // namespace
}  // namespace sorvik
