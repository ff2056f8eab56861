#include "platform/bundle.h"
#include "platform/byte_count.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <array>
#include <limits>

namespace sorvik {
namespace {

TEST(ByteCount, RoundsAndNeverShowsAFullUnit) {
    constexpr std::int64_t kb = 1024;
    constexpr std::int64_t mb = kb * kb;
    constexpr std::int64_t gb = mb * kb;
    const std::array<std::pair<std::int64_t, const char*>, 18> rows{{
        {0, "0 bytes"},
        {-5, "0 bytes"},
        {1, "1 byte"},
        {875, "875 bytes"},
        {kb - 1, "1023 bytes"},
        {kb, "1 KB"},
        {kb + kb / 2 - 1, "1 KB"},
        {kb + kb / 2, "2 KB"},
        {12 * kb, "12 KB"},
        {mb - kb / 2 - 1, "1023 KB"},
        {mb - 1, "1 MB"},
        {mb, "1 MB"},
        {3'565'158, "3.4 MB"},
        {mb + mb / 20, "1 MB"},
        {mb + mb / 20 + 1, "1.1 MB"},
        {gb - 1, "1 GB"},
        {5 * gb + gb / 2, "5.5 GB"},
        {std::numeric_limits<std::int64_t>::max(), "8589934592 GB"},
    }};
    for (const auto& [bytes, text] : rows) {
        EXPECT_EQ(formatByteCount(bytes).toStdString(), text) << bytes;
    }
}

TEST(Bundle, FindsOnlyWhatIsThere) {
    const QTemporaryDir folder;
    const Bundle bundle(folder.path() + QStringLiteral("/x/../bundle/"));
    EXPECT_EQ(bundle.root(), folder.path() + QStringLiteral("/bundle"));
    EXPECT_EQ(bundle.frameworksDirectory(), bundle.root() + QStringLiteral("/Contents/Frameworks"));
    EXPECT_FALSE(bundle.resourceDirectory());
    EXPECT_FALSE(bundle.resource(QStringLiteral("gs")));

    const QString resources = bundle.root() + QStringLiteral("/Contents/Resources");
    QDir().mkpath(resources);
    EXPECT_EQ(bundle.resourceDirectory(), resources);
    EXPECT_FALSE(bundle.resource(QStringLiteral("gs")));
    const QString tool = resources + QStringLiteral("/gs");
    QFile::link(QStringLiteral("/proc/self/exe"), tool);
    QFile::link(QStringLiteral("/nowhere"), resources + QStringLiteral("/dangling"));
    EXPECT_EQ(bundle.resource(QStringLiteral("gs")), tool);
    EXPECT_FALSE(bundle.resource(QStringLiteral("dangling")));
}

TEST(Bundle, ReadsItsInformationWhateverTheFileHolds) {
    const QTemporaryDir folder;
    const Bundle bundle(folder.path());
    const auto read = [&](const QByteArray& content) {
        QDir().mkpath(folder.filePath(QStringLiteral("Contents")));
        QFile file(folder.filePath(QStringLiteral("Contents/Info.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return bundle.info(QStringLiteral("Name")).toStdString();
    };
    EXPECT_TRUE(bundle.info(QStringLiteral("Name")).isEmpty()) << "no file";
    EXPECT_EQ(read(R"({"Name": "Sörvik", "Other": 1})"), "Sörvik");
    for (const char* damaged :
         {"", "{\"Name\": \"cut", "[\"Name\"]", "{\"Name\": {}}", "{\"Other\": \"x\"}", "\xff\xfe"}) {
        EXPECT_EQ(read(damaged), "") << damaged;
    }
}

}  // namespace
}  // namespace sorvik
