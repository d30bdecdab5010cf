#include "platform/services/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

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

TEST_F(UserDefaultsTest, what_can_not_be_the_file_is_neither_waited_for_nor_read_nor_changed) {
    const QString fifo = folder.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const QString huge = folder.filePath(QStringLiteral("huge"));
    QFile file(huge);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(qint64{1} << 40));
    file.close();
    const QString endless = folder.filePath(QStringLiteral("endless"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), endless));
    for (const QString& place : {fifo, huge, endless, folder.path()}) {
        SCOPED_TRACE(place.toStdString());
        UserDefaults defaults(place);
        EXPECT_TRUE(defaults.allKeys().isEmpty());
        defaults.setInteger(3, QStringLiteral("number"));
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_EQ(defaults.integerForKey(QStringLiteral("number")), 3);
    }
    EXPECT_EQ(QFileInfo(huge).size(), qint64{1} << 40);
}

TEST_F(UserDefaultsTest, the_users_own_file_is_looked_at_before_it_is_read) {
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("Varnholt")));
    const QString fifo = folder.filePath(QStringLiteral("Varnholt/Tobrimax.conf"));
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_TRUE(UserDefaults().allKeys().isEmpty());
    ASSERT_TRUE(QFile::remove(fifo));
    {
        UserDefaults defaults;
        defaults.setInteger(3, QStringLiteral("number"));
        EXPECT_TRUE(defaults.synchronize());
    }
    EXPECT_EQ(UserDefaults().integerForKey(QStringLiteral("number")), 3);
    EXPECT_TRUE(QFileInfo::exists(fifo)) << "where the check looks";
    qunsetenv("XDG_CONFIG_HOME");
}

TEST_F(UserDefaultsTest, values_of_other_kinds_read_as_nothing) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\na=@Variant(\\0\\0\\0\\x7f\\xff\\xff\\xff\\xff)\nb=@ByteArray(\\xff)\n"
               "c=99999999999999999999999\nd=@Rect(1 2)\n[" +
               QByteArray(100000, '[') + "]\n" + QByteArray(100000, '\xff') + "=\\x\n");
    file.close();
    const UserDefaults defaults(path);
    for (const char* key : {"a", "b", "c", "d"})
        EXPECT_EQ(defaults.integerForKey(QLatin1String(key)), 0) << key;
}

TEST_F(UserDefaultsTest, a_file_that_cannot_be_written_is_reported) {
    UserDefaults defaults(QStringLiteral("/dev/null/settings.ini"));
    defaults.setInteger(3, QStringLiteral("number"));
    EXPECT_FALSE(defaults.synchronize());
}

} // namespace
