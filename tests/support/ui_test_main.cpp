#include <gtest/gtest.h>

#include "platform/log.h"
#include "support/watched_application.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    sorvik::setLogSink({});
    const sorvik::WatchedApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
