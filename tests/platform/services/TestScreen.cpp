#include "platform/services/Screen.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

/// A process has one display scale from its start to its end. Each scale therefore has a child process, which
/// exits with the screen's answer as its status.
class ScreenDeathTest : public testing::Test {
  protected:
    ScreenDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
    ~ScreenDeathTest() override { qunsetenv("QT_SCALE_FACTOR"); }
};

TEST_F(ScreenDeathTest, the_scale_is_1_or_2_whatever_the_display_has) {
    struct Case {
        const char* display;
        int scale;
    };
    for (const Case& expected : {Case{"0.5", 1}, Case{"1", 1}, Case{"1.25", 2}, Case{"1.5", 2}, Case{"2", 2},
                                 Case{"2.5", 2}, Case{"3", 2}}) {
        SCOPED_TRACE(expected.display);
        qputenv("QT_SCALE_FACTOR", expected.display);
        EXPECT_EXIT(std::exit(Screen().scale()), testing::ExitedWithCode(expected.scale), "");
    }
}

} // namespace
