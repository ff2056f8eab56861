#include "bundle/magick/postscript_source.h"

#include <gtest/gtest.h>

#include <string>

namespace sorvik::bundle {
namespace {

using namespace std::string_literals;

TEST(FindPostScript, KnowsItByContent) {
    const std::string dos = "\xC5\xD0\xD3\xC6\x20\0\0\0\x10\x01\0\0"s + std::string(20, '\0');
    EXPECT_EQ(findPostScript(dos, 5000), (PostScriptSection{32, 272, true}));
    EXPECT_EQ(findPostScript(dos, 303), (PostScriptSection{32, 272, false})) << "the file ends inside";
    EXPECT_EQ(findPostScript(dos.substr(0, 8), 8), (PostScriptSection{0, 8, false}));
    EXPECT_EQ(findPostScript("%!PS-Adobe-3.0", 9000), (PostScriptSection{0, 9000, true}));
    EXPECT_EQ(findPostScript("\x04\r\n%!PS", 90), (PostScriptSection{0, 90, true}));
    EXPECT_EQ(findPostScript("\xEF\xBB\xBF%!", 90), (PostScriptSection{0, 90, true}));
    EXPECT_EQ(findPostScript("\x89PNG", 90), std::nullopt);
    EXPECT_EQ(findPostScript("", 0), std::nullopt);
}

TEST(FindExtent, ReadsTheStructuringComments) {
    struct Row {
        std::string head;
        std::string tail;
        Extent extent;
    };
    const std::optional<BoundingBox> coarse = BoundingBox{1, 2, 10, 20};
    const std::optional<BoundingBox> fine = BoundingBox{1.5, 2.25, 9.75, 19.5};
    for (const Row& row : {
             Row{"%!PS\n%%BoundingBox: 1 2 10 20\n%%EndComments\n", "", {coarse}},
             Row{"%!PS\r%%BoundingBox:1 2 +10 20\r%%HiResBoundingBox: 1.5 2.25 9.75 19.5\r", "", {fine}},
             Row{"%!PS\n%%BoundingBox: (atend)\n%%EndComments\n",
                 "%%BoundingBox: 0 0 1 1\n%%BoundingBox: 1 2 10 20",
                 {coarse}},
             Row{"%!PS\n%%BoundingBox: (atend)\n%%EndComments\n", "0 0 moveto", {std::nullopt, true}},
             Row{"%!PS\n%%EndComments\n%%BoundingBox: 1 2 10 20\n", "", {}},  // that of a drawing inside
             Row{"%!PS\n/x 1 def\n%%BoundingBox: 1 2 10 20\n", "", {}},
             Row{"%!PS\n%%BoundingBox: 1 2 1 20\n", "", {}},
             Row{"%!PS\n%%BoundingBox: 1 2 nan 20\n", "", {}},
             Row{"%!PS\n%%BoundingBox: 1 2", "", {}},
         }) {
        EXPECT_EQ(findExtent(row.head, row.tail), row.extent) << row.head;
    }
}

TEST(SaysItEnds, NearTheEndOnly) {
    EXPECT_TRUE(saysItEnds("showpage\r%%EOF\r\n\x04"));
    EXPECT_TRUE(saysItEnds("%%Trailer\nend"));
    EXPECT_FALSE(saysItEnds("%%EOF\n" + std::string(2000, ' ')));
    EXPECT_FALSE(saysItEnds("(%%EOF) show"));
}

}  // namespace
}  // namespace sorvik::bundle
