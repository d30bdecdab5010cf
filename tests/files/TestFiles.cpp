#include "base/SystemError.h"
#include "files/AtomicFile.h"
#include "files/FileDescriptor.h"
#include "files/Folder.h"
#include "files/RegularFile.h"
#include "tests/support/Files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <functional>
#include <set>
#include <vector>

namespace {

QStringList everythingIn(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

mode_t modeOf(const QString& path) {
    struct stat status = {};
    EXPECT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    return status.st_mode & 0777;
}

/// A temporary file of another process: locked if the process still writes it, else left behind by a process
/// that ended.
FileDescriptor temporaryOfAnother(const QTemporaryDir& folder, const QString& name, bool isHeld) {
    FileDescriptor file(
        open(QFile::encodeName(folder.filePath(name)).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    EXPECT_TRUE(file.isOpen());
    EXPECT_TRUE(!isHeld || flock(file.number(), LOCK_EX | LOCK_NB) == 0);
    return file;
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

TEST(AtomicFile, a_link_in_another_folder_is_followed) {
    const QTemporaryDir folder;
    ASSERT_TRUE(Folder::create(folder.filePath(QStringLiteral("far/away"))));
    const QString target = folder.filePath(QStringLiteral("far/away/target.png"));
    const QString link = folder.filePath(QStringLiteral("link.png"));
    ASSERT_TRUE(AtomicFile::write(target, "old"));
    ASSERT_TRUE(QFile::link(QStringLiteral("far/../far/away/target.png"), link));
    ASSERT_TRUE(AtomicFile::write(link, "new"));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(contents(target), "new");
    EXPECT_EQ(everythingIn(folder.filePath(QStringLiteral("far/away"))),
              QStringList(QStringLiteral("target.png")));
}

TEST(AtomicFile, a_link_to_nowhere_is_replaced) {
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("link.png"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/at/all"), link));
    ASSERT_TRUE(AtomicFile::write(link, "new"));
    EXPECT_FALSE(QFileInfo(link).isSymLink());
    EXPECT_EQ(contents(link), "new");
}

TEST(AtomicFile, links_in_a_circle_are_an_error_and_stay) {
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("link.png"));
    ASSERT_TRUE(QFile::link(QStringLiteral("link.png"), link));
    const Result<Done> written = AtomicFile::write(link, "new");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().sentence, systemSentence(ELOOP));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST(AtomicFile, a_second_name_of_a_file_keeps_the_old_bytes) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    const QString second = folder.filePath(QStringLiteral("b.png"));
    ASSERT_TRUE(AtomicFile::write(path, "old"));
    ASSERT_EQ(link(QFile::encodeName(path).constData(), QFile::encodeName(second).constData()), 0);
    ASSERT_TRUE(AtomicFile::write(path, "new"));
    EXPECT_EQ(contents(path), "new");
    EXPECT_EQ(contents(second), "old");
}

TEST(AtomicFile, a_device_or_a_link_to_one_is_refused) {
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("link.png"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/null"), link));
    for (const QString& path : {QStringLiteral("/dev/null"), link}) {
        const Result<Done> written = AtomicFile::write(path, "x");
        ASSERT_FALSE(written);
        EXPECT_EQ(written.error().sentence, QStringLiteral("Not a regular file"));
    }
    struct stat status = {};
    ASSERT_EQ(stat("/dev/null", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST(AtomicFile, a_pipe_that_a_link_to_a_descriptor_leads_to_is_refused) {
    const QTemporaryDir folder;
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    const FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    const QString link = folder.filePath(QStringLiteral("link.png"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/fd/%1").arg(writing.number()), link));
    EXPECT_FALSE(AtomicFile::write(link, "x"));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST(AtomicFile, a_name_that_ends_in_a_slash_is_no_file) {
    const QTemporaryDir folder;
    EXPECT_FALSE(AtomicFile::write(folder.filePath(QStringLiteral("a.png/")), "x"));
    EXPECT_FALSE(AtomicFile::write(folder.path() + u'/', "x"));
    EXPECT_TRUE(everythingIn(folder.path()).isEmpty());
    ASSERT_TRUE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "old"));
    EXPECT_FALSE(AtomicFile::write(folder.filePath(QStringLiteral("a.png/")), "x"));
    EXPECT_EQ(contents(folder.filePath(QStringLiteral("a.png"))), "old");
}

TEST(AtomicFile, what_a_killed_process_left_is_removed) {
    const QTemporaryDir folder;
    temporaryOfAnother(folder, QStringLiteral(".tobrimax-1-0"), false).close();
    temporaryOfAnother(folder, QStringLiteral(".tobrimax-4194304-4294967295"), false).close();
    ASSERT_TRUE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "x"));
    EXPECT_EQ(everythingIn(folder.path()), QStringList(QStringLiteral("a.png")));
}

TEST(AtomicFile, a_folder_is_looked_through_for_what_was_left_only_once) {
    const QTemporaryDir folder;
    ASSERT_TRUE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "x"));
    const QString name = QStringLiteral(".tobrimax-1-0");
    temporaryOfAnother(folder, name, false).close();
    ASSERT_TRUE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "y"));
    EXPECT_EQ(everythingIn(folder.path()), QStringList({name, QStringLiteral("a.png")}));
}

TEST(AtomicFile, what_another_process_is_writing_stays) {
    const QTemporaryDir folder;
    const QString name = QStringLiteral(".tobrimax-1-0");
    const FileDescriptor held = temporaryOfAnother(folder, name, true);
    ASSERT_TRUE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "x"));
    EXPECT_EQ(everythingIn(folder.path()), QStringList({name, QStringLiteral("a.png")}));
}

TEST(AtomicFile, what_is_only_called_like_a_temporary_stays) {
    const QTemporaryDir folder;
    const QStringList names{QStringLiteral(".tobrimax-"), QStringLiteral(".tobrimax-1"),
                            QStringLiteral(".tobrimax-1-"), QStringLiteral(".tobrimax-1-2.png"),
                            QStringLiteral(".tobrimax-a-2")};
    for (const QString& name : names)
        temporaryOfAnother(folder, name, false).close();
    ASSERT_TRUE(QFile::link(QStringLiteral(".tobrimax-1"), folder.filePath(QStringLiteral(".tobrimax-1-3"))));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral(".tobrimax-1-4")));
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.filePath(QStringLiteral(".tobrimax-1-5"))).constData(), 0600),
              0);
    ASSERT_TRUE(AtomicFile::write(folder.filePath(QStringLiteral("a.png")), "x"));
    EXPECT_EQ(everythingIn(folder.path()).size(), names.size() + 4);
}

TEST(AtomicFile, many_processes_may_write_the_same_files) {
    const QTemporaryDir folder;
    constexpr int processes = 4;
    constexpr int turns = 100;
    // Each process writes its own letter, and its own length.
    const auto bytesOf = [](int process) {
        return QByteArray(10'000 + 1'000 * process, static_cast<char>('a' + process));
    };
    const auto name = [&](int turn) { return folder.filePath(QString::number(turn % 3)); };
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            bool isWritten = true;
            for (int turn = 0; turn < turns; ++turn)
                isWritten = AtomicFile::write(name(turn), bytesOf(process)) && isWritten;
            _exit(isWritten ? 0 : 1);
        }
        children.push_back(child);
    }
    std::set<QByteArray> seen;
    std::size_t ended = 0;
    for (int turn = 0; ended < children.size(); ++turn) {
        if (QFile file(name(turn)); file.open(QIODevice::ReadOnly))
            seen.insert(file.readAll());
        int status = 0;
        const pid_t found = waitpid(children[ended], &status, WNOHANG);
        if (found == 0)
            continue;
        EXPECT_EQ(found, children[ended]);
        EXPECT_EQ(status, 0);
        ++ended;
    }
    EXPECT_FALSE(seen.empty());
    for (int process = 0; process < processes; ++process)
        seen.erase(bytesOf(process));
    EXPECT_TRUE(seen.empty()) << "a file that was not whole";
    EXPECT_EQ(everythingIn(folder.path()),
              QStringList({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")}));
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
    EXPECT_EQ(modeOf(path), mode_t{0640});
}

TEST(AtomicFile, an_older_files_permissions_are_kept) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    ASSERT_TRUE(AtomicFile::write(path, "x"));
    for (const mode_t mode : {mode_t{0600}, mode_t{0664}, mode_t{0444}}) {
        ASSERT_EQ(chmod(QFile::encodeName(path).constData(), mode), 0);
        ASSERT_TRUE(AtomicFile::write(path, "y", {AtomicFile::Durability::Cached, mode_t{0640}}));
        EXPECT_EQ(modeOf(path), mode);
    }
}

TEST(AtomicFile, a_new_files_permissions_may_be_given) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    ASSERT_TRUE(AtomicFile::write(path, "x", {AtomicFile::Durability::Cached, mode_t{0604}}));
    EXPECT_EQ(modeOf(path), mode_t{0604});
}

TEST(AtomicFile, a_path_as_long_as_the_system_takes_leaves_room_for_the_temporary) {
    const QTemporaryDir folder;
    QString deep = folder.path();
    while (deep.size() + 202 < PATH_MAX - 10)
        deep += u'/' + QString(200, u'd');
    deep += u'/' + QString(PATH_MAX - 10 - deep.size(), u'e');
    ASSERT_TRUE(Folder::create(deep));
    const QString path = deep + QStringLiteral("/a.png");
    const QString longest = path.left(path.size() - 4) + QStringLiteral("bc.png");
    ASSERT_EQ(longest.size(), PATH_MAX - 1);
    EXPECT_TRUE(AtomicFile::write(longest, "x"));
    EXPECT_EQ(contents(longest), "x");
    const Result<Done> tooLong = AtomicFile::write(longest + u'g', "x");
    ASSERT_FALSE(tooLong);
    EXPECT_EQ(tooLong.error().sentence, systemSentence(ENAMETOOLONG));
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

TEST(Folder, a_link_to_itself_is_told_as_such) {
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(QStringLiteral("link"), link));
    for (const QString& path : {link, link + QStringLiteral("/below/it")}) {
        const Result<Done> created = Folder::create(path);
        ASSERT_FALSE(created);
        EXPECT_TRUE(created.error().sentence.endsWith(systemSentence(ELOOP)))
            << created.error().sentence.toStdString();
    }
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
    const auto refuse = [](const QByteArray& start) -> Result<Done> {
        EXPECT_EQ(start.size(), 64 << 10);
        EXPECT_TRUE(start.startsWith("start"));
        return Error{ErrorCode::UnknownFormat, QStringLiteral("no")};
    };
    EXPECT_EQ(RegularFile::read(path, 1 << 20, refuse).error().code, ErrorCode::UnknownFormat);
}

TEST(RegularFile, no_more_is_read_than_its_start_asks_for) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("sparse")).toStdString();
    ASSERT_TRUE(AtomicFile::write(QString::fromStdString(path), "start"));
    constexpr qint64 size = qint64{1} << 40;
    ASSERT_EQ(truncate(path.c_str(), off_t{size}), 0);
    for (const qint64 length : {3, 100000}) {
        const Result<RegularFile::Part> part =
            RegularFile::readPart(path, 100000, [=](const QByteArray&) { return length; });
        ASSERT_TRUE(part) << length;
        EXPECT_EQ(part->bytes.size(), length);
        EXPECT_TRUE(part->bytes.startsWith("sta"));
        EXPECT_EQ(part->fileSize, size);
    }
    const auto tooMuch =
        RegularFile::readPart(path, 100000, [](const QByteArray&) { return qint64{100001}; });
    EXPECT_EQ(tooMuch.error().code, ErrorCode::TooLarge);
}

TEST(RegularFile, a_file_that_changes_while_it_is_read_is_refused) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("file")).toStdString();
    const QByteArray whole(200000, 'x');
    // Each is done when the start has been read.
    const std::vector<std::function<void()>> changes = {
        [&] { ASSERT_EQ(truncate(path.c_str(), 100000), 0); },
        [&] { ASSERT_EQ(truncate(path.c_str(), 0), 0); },
        [&] { ASSERT_EQ(truncate(path.c_str(), 300000), 0); },
        [&] {
            // Times of files go on in steps.
            QThread::msleep(50);
            QFile file(QString::fromStdString(path));
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            file.write(QByteArray(100, 'y'));
        },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(i);
        ASSERT_TRUE(AtomicFile::write(QString::fromStdString(path), whole));
        const Result<QByteArray> bytes =
            RegularFile::read(path, 1 << 20, [&](const QByteArray&) -> Result<Done> {
                changes[i]();
                return Done{};
            });
        ASSERT_FALSE(bytes);
        EXPECT_EQ(bytes.error().code, ErrorCode::NotReadable);
        EXPECT_EQ(bytes.error().sentence, QStringLiteral("the file was changed while it was read"));
    }
}
