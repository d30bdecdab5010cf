#include "tests/cli/CliTest.h"

#include <QDir>
#include <QJsonArray>

#include <gmock/gmock.h>

#include <algorithm>

namespace {

class DryRun : public CliTest {
  protected:
    /// "PATH WIDTH HEIGHT" of the files of a document, with the paths relative to out().
    std::vector<std::string> filesOf(const ProcessResult& result) const {
        std::vector<std::string> files;
        for (const QJsonValue file : printedJson(result)[u"files"_s].toArray())
            files.push_back(QStringLiteral("%1 %2 %3")
                                .arg(QDir(out()).relativeFilePath(file[u"path"_s].toString()))
                                .arg(file[u"width"_s].toInt())
                                .arg(file[u"height"_s].toInt())
                                .toStdString());
        return files;
    }

    /// Expects that a dry run tells the files, warnings, notes and errors of the real run after it, and that
    /// it leaves the folder as it is.
    void expectSame(const QString& picture, const QStringList& more) const {
        const std::vector<std::string> before = tree(path({}));
        const QStringList options = QStringList{u"--json"_s} + more;
        const ProcessResult dry = generate(picture, options + QStringList{u"--dry-run"_s});
        EXPECT_EQ(tree(path({})), before);
        const ProcessResult real = generate(picture, options);
        EXPECT_EQ(filesOf(dry), filesOf(real));
        EXPECT_EQ(dry.exitStatus, real.exitStatus);
        EXPECT_EQ(dry.errors.toStdString(), real.errors.toStdString());
        for (const char* member : {"warnings", "notes", "errors"})
            EXPECT_EQ(printedJson(dry)[QLatin1String(member)], printedJson(real)[QLatin1String(member)])
                << member;
    }
};

} // namespace

TEST_F(DryRun, lists_paths_and_sizes_and_writes_nothing) {
    const ProcessResult result = generated(sample(u"svg"_s), {u"--dry-run"_s, u"--platform"_s, u"mac"_s});
    EXPECT_THAT(result.output.toStdString(),
                testing::StartsWith("  mac/AppIcon.appiconset/icon_16x16.png  16 × 16\n"));
    EXPECT_THAT(result.output.toStdString(),
                testing::EndsWith("  mac/Application.icns  1024 × 1024\n11 files would be written in " +
                                  out().toStdString() + '\n'));
    EXPECT_TRUE(tree(path({})).empty());
}

TEST_F(DryRun, json_has_no_bytes) {
    const QJsonArray files =
        printedJson(generated(sample(u"svg"_s), {u"--dry-run"_s, u"--json"_s}))[u"files"_s].toArray();
    ASSERT_EQ(files.size(), 54);
    for (const QJsonValue file : files)
        EXPECT_FALSE(file.toObject().contains(u"bytes"_s));
}

TEST_F(DryRun, tells_what_the_real_run_tells) {
    expectSame(sample(u"svg"_s), {});
    expectSame(flatPicture(u"small.png"_s, 100, 90), {});
    expectSame(path(u"nowhere.png"_s), {});
    expectSame(file(u"text"_s, "no picture"), {});
    const QString odd = propertyList(
        u"odd.plist"_s, u"[{'a': entry('a', '{0, 0}'), 'b': entry('b', 'none'), 'c': entry('../c', '{9, 9}'),"
                        "'d': entry('d/e', '{9, 9}'), 'f': entry('f', '{9, 8}'), 'g': entry('f', '{5, 5}'),"
                        "'h': entry('h', '{999999999, 9}')}, {}, {}, {}, {}]"_s);
    expectSame(sample(u"svg"_s), {u"--catalogue"_s, odd, u"--platform"_s, u"iphone"_s});
    const QString empty = propertyList(u"empty.plist"_s, u"[{}, {}, {}, {}, {}]"_s);
    expectSame(sample(u"svg"_s), {u"--catalogue"_s, empty, u"--platform"_s, u"mac"_s});
}

TEST_F(DryRun, tells_what_is_in_the_way) {
    QDir folder(path({}));
    ASSERT_TRUE(folder.mkpath(u"icons/iphone/AppIcon.appiconset/Icon-App-60x60@3x.png"_s));
    file(u"icons/watch"_s, "in the way");
    ASSERT_TRUE(QFile::link(u"/dev/null"_s, out() + u"/iphone/AppIcon.appiconset/Icon-App-60x60@2x.png"_s));
    expectSame(sample(u"svg"_s), {});
}

TEST_F(DryRun, tells_that_the_folder_cant_be_made) {
    file(u"icons"_s, "in the way");
    expectSame(sample(u"svg"_s), {});
    expectSame(sample(u"svg"_s), {u"--layout"_s, u"web"_s});
}

TEST_F(DryRun, tells_what_the_real_run_tells_of_layouts) {
    file(u"icons/index.html"_s, "<html>");
    file(u"icons/manifest.webmanifest"_s, "{\"somebody\": \"else's\"}");
    file(u"icons/res/mipmap-mdpi/ic_launcher.webp"_s, "in the way");
    expectSame(sample(u"svg"_s),
               {u"--layout"_s, u"web"_s, u"--layout"_s, u"android"_s, u"--layout"_s, u"xcode-single"_s});
    expectSame(sample(u"png"_s), {u"--layout"_s, u"linux"_s});
}

TEST_F(DryRun, excludes_check_and_open) {
    for (const QString& other : {u"--check"_s, u"--open"_s}) {
        const ProcessResult result = generate(sample(u"svg"_s), {u"--dry-run"_s, other});
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_THAT(result.errors.toStdString(),
                    testing::HasSubstr("--dry-run and " + other.toStdString() + " exclude each other"));
    }
}
