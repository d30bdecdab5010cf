#include "base/SystemError.h"
#include "tests/cli/CliTest.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>

namespace {

/// Failures during a run: all other files are written, and the failed ones are reported.
class WriteFailures : public CliTest {
  protected:
    /// Runs with a limit of 4096 bytes for each file, as on a full disk.
    ProcessResult generateShort(const QString& platform) const {
        return runProcess(u"/bin/sh"_s,
                          {u"-c"_s, u"ulimit -f 8; exec \"$0\" \"$@\""_s, QStringLiteral(TOBRIMAX_CLI),
                           u"generate"_s, sample(u"png"_s), u"--out"_s, out(), u"--platform"_s, platform});
    }
};

} // namespace

TEST_F(WriteFailures, a_file_that_grows_too_long_is_named_and_the_others_are_written) {
    const ProcessResult result = generateShort(u"iphone"_s);
    expectOneError(result, u"Icon-App-1024x1024@1x.png"_s);
    EXPECT_TRUE(result.errors.contains(systemSentence(EFBIG).toUtf8()));
    EXPECT_FALSE(result.errors.contains("Icon-App-20x20@2x.png"));
    EXPECT_EQ(tree(), std::vector<std::string>{"iphone/AppIcon.appiconset/Icon-App-20x20@2x.png"});
    EXPECT_EQ(icon(u"iphone/AppIcon.appiconset/Icon-App-20x20@2x.png"_s).size(), QSize(40, 40));
}

TEST_F(WriteFailures, a_container_that_grows_too_long_is_named) {
    const ProcessResult result = generateShort(u"mac"_s);
    expectOneError(result, u"mac/Application.icns"_s);
    EXPECT_THAT(tree(), testing::Each(testing::MatchesRegex(
                            "mac/AppIcon.appiconset/icon_(16x16|16x16@2x|32x32)[.]png")));
    EXPECT_EQ(tree().size(), 3U);
}

TEST_F(WriteFailures, an_older_file_stays_whole_where_the_new_one_fails) {
    const QString older =
        file(u"icons/iphone/AppIcon.appiconset/Icon-App-1024x1024@1x.png"_s, "an older icon");
    EXPECT_EQ(generateShort(u"iphone"_s).exitStatus, 1);
    EXPECT_EQ(content(older), QByteArray("an older icon"));
}

TEST_F(WriteFailures, a_folder_in_the_place_of_an_icon_fails_that_icon_alone) {
    ASSERT_TRUE(QDir().mkpath(out() + u"/iphone/AppIcon.appiconset/Icon-App-29x29@2x.png"_s));
    const ProcessResult result = generate(sample(u"svg"_s), {u"--platform"_s, u"iphone"_s});
    expectOneError(result, u"iphone/AppIcon.appiconset/Icon-App-29x29@2x.png: "_s + systemSentence(EISDIR));
    EXPECT_EQ(tree().size(), 9U);
    EXPECT_TRUE(QFileInfo(out() + u"/iphone/AppIcon.appiconset/Icon-App-29x29@2x.png"_s).isDir());
    EXPECT_TRUE(result.output.contains("8 files"));
}

TEST_F(WriteFailures, a_file_in_the_place_of_a_platforms_folder_fails_that_platform_in_one_line) {
    file(u"icons/watch"_s, "in the way");
    const ProcessResult result = generate(sample(u"svg"_s));
    expectOneError(result, u"17 files not written: "_s);
    EXPECT_EQ(tree().size(), 54U - 17U + 1U);
}

TEST_F(WriteFailures, standard_output_that_takes_nothing_is_told) {
    if (!QFileInfo::exists(u"/dev/full"_s))
        GTEST_SKIP() << "this system has no /dev/full";
    for (const QString& form : {u"--json"_s, u"--verbose"_s}) {
        const ProcessResult result =
            runProcess(u"/bin/sh"_s, {u"-c"_s, u"exec \"$0\" \"$@\" > /dev/full"_s,
                                      QStringLiteral(TOBRIMAX_CLI), u"generate"_s, sample(u"svg"_s),
                                      u"--out"_s, out(), u"--platform"_s, u"iphone"_s, form});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_TRUE(result.errors.endsWith("tobrimax-cli: error: standard output can't be written\n"))
            << result.errors.toStdString();
        EXPECT_EQ(tree().size(), 9U);
    }
}
