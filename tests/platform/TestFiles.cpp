#include "platform/AtomicFile.h"
#include "platform/Folder.h"
#include "platform/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

QStringList everythingIn(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace

TEST(AtomicFile, writes_a_file_and_leaves_no_temporary) {
    const QTemporaryDir folder;
    ASSERT_TRUE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "one"));
    EXPECT_EQ(contents(folder.filePath(QStringLiteral("a.png"))), "one");
    EXPECT_EQ(everythingIn(folder.path()), QStringList(QStringLiteral("a.png")));
}

TEST(AtomicFile, replaces_an_existing_file) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    ASSERT_TRUE(AtomicFile::write(path, "a longer text than the next"));
    ASSERT_TRUE(AtomicFile::write(path, "two"));
    EXPECT_EQ(contents(path), "two");
}

TEST(AtomicFile, a_reader_of_the_old_file_keeps_the_old_bytes) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    ASSERT_TRUE(AtomicFile::write(path, "old"));
    QFile reader(path);
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    ASSERT_TRUE(AtomicFile::write(path, "new"));
    EXPECT_EQ(reader.readAll(), "old");
}

TEST(AtomicFile, a_missing_folder_is_an_error_and_nothing_is_made) {
    const QTemporaryDir folder;
    const Result<Done> written = AtomicFile::write(folder.filePath(QStringLiteral("none/a.png")), "x");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, ErrorCode::NotWritable);
    EXPECT_TRUE(everythingIn(folder.path()).isEmpty());
}

TEST(AtomicFile, a_folder_in_the_files_place_is_an_error_and_stays) {
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("a.png")));
    EXPECT_FALSE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "x"));
    EXPECT_EQ(everythingIn(folder.path()), QStringList(QStringLiteral("a.png")));
}

TEST(AtomicFile, a_fifo_in_the_files_place_is_an_error_and_stays) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_FALSE(AtomicFile::write(path, "x"));
    EXPECT_EQ(everythingIn(folder.path()), QStringList(QStringLiteral("a.png")));
}

TEST(AtomicFile, a_link_to_a_file_is_followed) {
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("target.png"));
    const QString link = folder.filePath(QStringLiteral("link.png"));
    ASSERT_TRUE(AtomicFile::write(target, "old"));
    ASSERT_TRUE(QFile::link(target, link));
    ASSERT_TRUE(AtomicFile::write(link, "new"));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(contents(target), "new");
}

TEST(AtomicFile, the_longest_name_leaves_room_for_the_temporary) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QString(251, u'n') + QStringLiteral(".png"));
    EXPECT_TRUE(AtomicFile::write(path, "x"));
    EXPECT_EQ(contents(path), "x");
}

TEST(AtomicFile, a_file_in_a_folder_whose_name_is_not_UTF8_is_replaced) {
    const QTemporaryDir folder;
    const QByteArray odd = QFile::encodeName(folder.path()) + "/caf\xe9";
    ASSERT_EQ(mkdir(odd.constData(), 0700), 0);
    const QString before = QDir::currentPath();
    ASSERT_EQ(chdir(odd.constData()), 0);
    const bool isWritten = AtomicFile::write(QStringLiteral("a.png"), "one") &&
                           AtomicFile::write(QStringLiteral("a.png"), "two");
    const QByteArray found = contents(QStringLiteral("a.png"));
    ASSERT_EQ(chdir(QFile::encodeName(before).constData()), 0);
    EXPECT_TRUE(isWritten);
    EXPECT_EQ(found, "two");
    unlink((odd + "/a.png").constData());
    rmdir(odd.constData());
}

TEST(AtomicFile, a_NUL_or_nothing_is_no_path) {
    const QTemporaryDir folder;
    const Result<Done> written =
        AtomicFile::write(folder.path() + QStringLiteral("/a") + QChar(QChar::Null), "x");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, ErrorCode::NotAPath);
    EXPECT_EQ(AtomicFile::write(QString(), "x").error().code, ErrorCode::NotAPath);
    EXPECT_TRUE(everythingIn(folder.path()).isEmpty());
}

TEST(AtomicFile, the_processs_mask_decides_the_permissions) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    const mode_t previous = umask(027);
    const bool isWritten = static_cast<bool>(AtomicFile::write(path, "x"));
    umask(previous);
    ASSERT_TRUE(isWritten);
    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST(Folder, makes_all_missing_folders) {
    const QTemporaryDir folder;
    ASSERT_TRUE(Folder::create(folder.filePath(QStringLiteral("a/b/c"))));
    EXPECT_TRUE(QFileInfo(folder.filePath(QStringLiteral("a/b/c"))).isDir());
}

TEST(Folder, one_that_exists_is_no_error) {
    const QTemporaryDir folder;
    EXPECT_TRUE(Folder::create(folder.path()));
    EXPECT_TRUE(Folder::create(folder.path() + QStringLiteral("//")));
    EXPECT_TRUE(Folder::create(QStringLiteral("/")));
}

TEST(Folder, a_file_in_the_way_is_an_error) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("file"));
    ASSERT_TRUE(AtomicFile::write(file, "x"));
    for (const QString& path : {file, file + QStringLiteral("/below/it")}) {
        const Result<Done> created = Folder::create(path);
        ASSERT_FALSE(created);
        EXPECT_TRUE(created.error().sentence.contains(QStringLiteral("Not a directory")))
            << created.error().sentence.toStdString();
    }
}

TEST(RegularFile, only_regular_files_are_read) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("file")).toStdString();
    ASSERT_TRUE(AtomicFile::write(QString::fromStdString(path), "bytes"));
    const Result<QByteArray> bytes = RegularFile::read(path, 5);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(*bytes, "bytes");
    ASSERT_EQ(mkfifo((path + "fifo").c_str(), 0600), 0);
    EXPECT_EQ(RegularFile::read(path + "fifo", 5).error().code, ErrorCode::NotReadable);
    EXPECT_EQ(RegularFile::read("/dev/zero", 5).error().code, ErrorCode::NotReadable);
    EXPECT_EQ(RegularFile::read(folder.path().toStdString(), 5).error().code, ErrorCode::NotReadable);
    EXPECT_EQ(RegularFile::read(path + "none", 5).error().code, ErrorCode::NotFound);
}

TEST(RegularFile, more_bytes_than_allowed_are_not_read) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("sparse")).toStdString();
    ASSERT_TRUE(AtomicFile::write(QString::fromStdString(path), "start"));
    ASSERT_EQ(truncate(path.c_str(), off_t{1} << 40), 0);
    EXPECT_EQ(RegularFile::read(path, 1 << 20).error().code, ErrorCode::TooLarge);
}

TEST(RegularFile, its_start_may_be_refused_before_the_rest_is_read) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("sparse")).toStdString();
    ASSERT_TRUE(AtomicFile::write(QString::fromStdString(path), "start"));
    ASSERT_EQ(truncate(path.c_str(), off_t{1} << 40), 0);
    const auto refuse = [](const QByteArray& start) -> std::optional<Error> {
        EXPECT_EQ(start.size(), 64 << 10);
        EXPECT_TRUE(start.startsWith("start"));
        return Error{ErrorCode::UnknownFormat, QStringLiteral("no")};
    };
    EXPECT_EQ(RegularFile::read(path, 1 << 20, refuse).error().code, ErrorCode::UnknownFormat);
}
