// The list of default targets as it is edited.

#include <gtest/gtest.h>

#include "core/format_mappings.h"

namespace sorvik {
namespace {

const FormatMapping& mappingOf(const FormatMappings& mappings, InputFormat input) {
    return *std::ranges::find(mappings.all(), input, &FormatMapping::inputFormat);
}

TEST(FormatMappings, AddInTheOrderOfDeclarationUntilAllInputsAreMapped) {
    MemoryDefaultsStore store;
    const FormatMappingReader reader(store);
    reader.setMapping(ImageFormat::png, InputFormat::gif);
    FormatMappings mappings(store);
    mappings.addNewMapping();
    mappings.addNewMapping();
    ASSERT_EQ(mappings.all().size(), 3U);
    EXPECT_EQ(mappings.all()[1].inputFormat, InputFormat::bmp);
    EXPECT_EQ(mappings.all()[1].outputFormat, ImageFormat::jpeg);
    EXPECT_EQ(mappings.all()[2].inputFormat, InputFormat::heic);
    for (int i = 0; i < 20; ++i) {
        mappings.addNewMapping();
    }
    EXPECT_FALSE(mappings.canAddNewMapping());
    EXPECT_EQ(reader.allMappings().size(), inputFormatCount);
    EXPECT_EQ(reader.mapping(InputFormat::ico), ImageFormat::bmp);
    EXPECT_EQ(mappings.inputsFor(mappings.all()[0]), std::vector{InputFormat::gif});
    mappings.removeMapping(mappingOf(mappings, InputFormat::ai).id);
    EXPECT_EQ(mappings.inputsFor(mappings.all()[0]), (std::vector{InputFormat::gif, InputFormat::ai}));
}

TEST(FormatMappings, KeepStoreAndListTheSameThroughUpdates) {
    MemoryDefaultsStore store;
    const FormatMappingReader reader(store);
    reader.setMapping(ImageFormat::webp, InputFormat::jpeg);
    reader.setMapping(ImageFormat::gif, InputFormat::png);
    FormatMappings mappings(store);
    const QUuid id = mappingOf(mappings, InputFormat::jpeg).id;
    mappings.updateMapping(id, InputFormat::png, ImageFormat::webp);  // another line's input
    mappings.updateMapping(QUuid::createUuid(), InputFormat::bmp, ImageFormat::png);
    mappings.removeMapping(QUuid::createUuid());
    EXPECT_EQ(reader.allMappings(),
              (std::map{std::pair(InputFormat::jpeg, ImageFormat::webp), {InputFormat::png, ImageFormat::gif}}));
    mappings.updateMapping(id, InputFormat::pdf, ImageFormat::webp);  // not on offer for PDF
    EXPECT_EQ(reader.allMappings(),
              (std::map{std::pair(InputFormat::pdf, ImageFormat::png), {InputFormat::png, ImageFormat::gif}}));
    EXPECT_EQ(mappingOf(mappings, InputFormat::pdf).outputFormat, ImageFormat::png);
    EXPECT_EQ(mappingOf(mappings, InputFormat::pdf).id, id);
}

}  // namespace
}  // namespace sorvik
