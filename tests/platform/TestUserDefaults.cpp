#include "platform/UserDefaults.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class UserDefaultsTest : public testing::Test {
  protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("settings.ini"));
};

TEST_F(UserDefaultsTest, what_was_never_set_is_zero_false_and_empty) {
    const UserDefaults defaults(path);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("a")), 0);
    EXPECT_FALSE(defaults.boolForKey(QStringLiteral("a")));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("a")), QString());
    EXPECT_TRUE(defaults.allKeys().isEmpty());
}

TEST_F(UserDefaultsTest, values_come_back_in_another_run) {
    {
        UserDefaults defaults(path);
        defaults.setInteger(-7'000'000'000, QStringLiteral("number"));
        defaults.setBool(true, QStringLiteral("flag"));
        defaults.setString(QStringLiteral("Grüße, 100 %"), QStringLiteral("text"));
        EXPECT_TRUE(defaults.synchronize());
    }
    const UserDefaults defaults(path);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("number")), -7'000'000'000);
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("flag")));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("text")), QStringLiteral("Grüße, 100 %"));
    EXPECT_EQ(defaults.allKeys().size(), 3);
}

TEST_F(UserDefaultsTest, a_broken_file_reads_as_empty) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("\0[[[\xff\xfe=\n=x\n\\", 12));
    file.close();
    UserDefaults defaults(path);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("number")), 0);
    defaults.setInteger(3, QStringLiteral("number"));
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("number")), 3);
}

TEST_F(UserDefaultsTest, a_file_that_cannot_be_written_is_reported) {
    UserDefaults defaults(QStringLiteral("/dev/null/settings.ini"));
    defaults.setInteger(3, QStringLiteral("number"));
    EXPECT_FALSE(defaults.synchronize());
}

} // namespace
