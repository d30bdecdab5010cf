#include "files/FileInPlace.h"
#include "tests/support/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(FileInPlace, makes_a_file_and_replaces_what_it_holds) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    ASSERT_TRUE(FileInPlace::write(path, "a long text"));
    EXPECT_EQ(contents(path), "a long text");
    ASSERT_TRUE(QFile::link(path, folder.filePath(QStringLiteral("link"))));
    ASSERT_TRUE(FileInPlace::write(folder.filePath(QStringLiteral("link")), "short"));
    EXPECT_EQ(contents(path), "short");
    ASSERT_TRUE(FileInPlace::write(path, {}));
    EXPECT_EQ(contents(path), "");
}

TEST(FileInPlace, tells_what_could_not_be_written) {
    const QTemporaryDir folder;
    EXPECT_EQ(FileInPlace::write({}, "a").error().code, ErrorCode::NotAPath);
    EXPECT_EQ(FileInPlace::write(QStringLiteral("a") + QChar::Null, "a").error().code, ErrorCode::NotAPath);
    EXPECT_EQ(FileInPlace::write(folder.path(), "a").error().sentence, QStringLiteral("Is a directory"));
    if (QFileInfo::exists(QStringLiteral("/dev/full"))) {
        EXPECT_EQ(FileInPlace::write(QStringLiteral("/dev/full"), "a").error().code, ErrorCode::DiskFull);
    }
}
