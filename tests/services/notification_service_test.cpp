#include "services/notification_service.h"

#include <gtest/gtest.h>

namespace sorvik {
namespace {

TEST(CompletionBody, CountsFiles) {
    EXPECT_EQ(completionBody(1, 0, false), QStringLiteral("1 file converted successfully."));
    EXPECT_EQ(completionBody(0, 0, false), QStringLiteral("0 files converted successfully."));
    EXPECT_EQ(completionBody(2, 0, false), QStringLiteral("2 files converted successfully."));
    EXPECT_EQ(completionBody(1, 1, false), QStringLiteral("1 files converted successfully, 1 failed."));
    EXPECT_EQ(completionBody(3, 2, true), QStringLiteral("Image conversion was cancelled."));
}

}  // namespace
}  // namespace sorvik
