#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Its current folder is one of its own.
class FileItemTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(chdir(QFile::encodeName(m_root).constData()), 0); }
    void TearDown() override {
        // Qt, which removes the folder, has no name for this one.
        rmdir((QFile::encodeName(m_root) + "/caf\xe9").constData());
        ASSERT_TRUE(QDir::setCurrent(m_before));
    }

    QTemporaryDir m_folder;
    QString m_root = QDir(m_folder.path()).canonicalPath();
    QString m_before = QDir::currentPath();
};

} // namespace

TEST_F(FileItemTest, names_that_begin_with_a_colon_are_ordinary) {
    const QString name = QStringLiteral(":resources");
    EXPECT_FALSE(FileItem::exists(name));
    EXPECT_EQ(FileItem::absolutePath(name), m_root + QStringLiteral("/:resources"));
    ASSERT_EQ(mkdir(":resources", 0700), 0);
    EXPECT_TRUE(FileItem::isFolder(name));
    EXPECT_EQ(FileItem::canonicalPath(name), m_root + QStringLiteral("/:resources"));
    EXPECT_EQ(fileUrlText(name), QStringLiteral("file://") + m_root + QStringLiteral("/:resources/"));
}

TEST_F(FileItemTest, names_are_bytes) {
    const QString name = PathBytes::decoded("caf\xe9");
    EXPECT_FALSE(FileItem::isThere(name));
    ASSERT_EQ(mkdir("caf\xe9", 0700), 0);
    EXPECT_TRUE(FileItem::isFolder(name));
    EXPECT_EQ(FileItem::canonicalPath(name), m_root + u'/' + name);
    EXPECT_EQ(fileUrlText(name), QStringLiteral("file://") + m_root + QStringLiteral("/caf%E9/"));
    ASSERT_EQ(chdir("caf\xe9"), 0);
    EXPECT_EQ(FileItem::currentFolder(), m_root + u'/' + name);
    EXPECT_EQ(FileItem::absolutePath(QStringLiteral("a/../b")), m_root + u'/' + name + QStringLiteral("/b"));
}

TEST_F(FileItemTest, links_are_told_from_what_they_lead_to) {
    ASSERT_EQ(mkdir("folder", 0700), 0);
    ASSERT_EQ(symlink("folder", "link"), 0);
    ASSERT_EQ(symlink("nothing", "nowhere"), 0);
    const QString link = QStringLiteral("link");
    const QString nowhere = QStringLiteral("nowhere");
    EXPECT_TRUE(FileItem::isLink(link) && FileItem::isFolder(link) && FileItem::exists(link));
    EXPECT_EQ(FileItem::canonicalPath(link), m_root + QStringLiteral("/folder"));
    EXPECT_TRUE(FileItem::isLink(nowhere) && FileItem::isThere(nowhere));
    EXPECT_FALSE(FileItem::exists(nowhere) || FileItem::isFolder(nowhere));
    EXPECT_EQ(FileItem::canonicalPath(nowhere), QString());
    EXPECT_FALSE(FileItem::isLink(QStringLiteral("folder")));
}

TEST_F(FileItemTest, what_is_no_path_is_nothing) {
    for (const QString& path : {QString(), QString(QStringLiteral("/") + QChar::Null)}) {
        EXPECT_FALSE(FileItem::exists(path) || FileItem::isThere(path) || FileItem::isFolder(path) ||
                     FileItem::isLink(path));
        EXPECT_EQ(FileItem::canonicalPath(path), QString());
        EXPECT_FALSE(FileItem::stamp(path).isThere());
    }
}

TEST_F(FileItemTest, a_file_that_is_written_or_replaced_has_another_state) {
    const QString name = QStringLiteral("file");
    const auto write = [](const QString& path, const char* bytes) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    EXPECT_FALSE(FileItem::stamp(name).isThere());
    write(name, "abc");
    const FileItem::Stamp first = FileItem::stamp(name);
    EXPECT_TRUE(first.isThere());
    EXPECT_EQ(FileItem::stamp(name), first);
    write(name, "abcd");
    const FileItem::Stamp longer = FileItem::stamp(name);
    EXPECT_FALSE(longer == first);
    write(QStringLiteral("other"), "abcd");
    ASSERT_EQ(rename("other", "file"), 0);
    EXPECT_FALSE(FileItem::stamp(name) == longer);
}
