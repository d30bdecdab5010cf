#include "tests/cli/CliTest.h"

#include <QDir>

#include <gmock/gmock.h>

namespace {

class TarStream : public CliTest {
  protected:
    ProcessResult streamed(const QStringList& more) const {
        return runCli(QStringList{u"generate"_s, sample(u"svg"_s), u"--out"_s, u"-"_s} + more, path({}));
    }

    /// The stream of a run that succeeds, in a file.
    QString stream(const QStringList& more) const {
        const ProcessResult result = streamed(more);
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(otherErrorLines(result), QStringList());
        return file(u"icons.tar"_s, result.output);
    }

    /// Expects that tar and Python take the same files from a stream as are in out().
    void expectAsInFolder(const QString& archive) const {
        ASSERT_TRUE(QDir(path({})).mkpath(u"taken"_s));
        const ProcessResult tar =
            runProcess(u"tar"_s, {u"-xf"_s, archive, u"-C"_s, path(u"taken"_s)}, path({}));
        EXPECT_EQ(tar.exitStatus, 0);
        EXPECT_EQ(tar.errors.toStdString(), "");
        const std::vector<std::string> names = tree();
        EXPECT_EQ(tree(path(u"taken"_s)), names);
        EXPECT_FALSE(names.empty());
        for (const std::string& name : names)
            EXPECT_EQ(content(path(u"taken/"_s) + QString::fromStdString(name)),
                      content(out() + u'/' + QString::fromStdString(name)))
                << name;
        printedByPython(
            u"import os, sys, tarfile\n"
            "names = []\n"
            "for member in (archive := tarfile.open(sys.argv[1])):\n"
            "    names.append(member.name)\n"
            "    assert member.isreg() and member.mode == 0o644 and member.uid == member.gid == 0\n"
            "    with open(os.path.join(sys.argv[2], member.name), 'rb') as file:\n"
            "        assert archive.extractfile(member).read() == file.read(), member.name\n"
            "assert len(set(names)) == int(sys.argv[3]), names\n"_s,
            {archive, out(), QString::number(names.size())});
    }
};

} // namespace

TEST_F(TarStream, holds_the_files_of_a_set) {
    generated(sample(u"svg"_s));
    expectAsInFolder(stream({}));
}

TEST_F(TarStream, holds_the_files_of_layouts) {
    const QStringList options{u"--background"_s, u"red"_s, u"--padding"_s, u"0.15"_s,
                              u"--layout"_s,     u"web"_s, u"--layout"_s,  u"flutter"_s};
    generated(sample(u"svg"_s), options);
    expectAsInFolder(stream(options));
}

TEST_F(TarStream, long_names_and_names_in_other_scripts_are_kept) {
    for (const QString& name : {QString(100, u'x'), QString(200, u'x'), u"é差☃"_s, QString(80, u'差')}) {
        const QStringList options{u"--background"_s, u"red"_s, u"--layout"_s, u"linux"_s, u"--name"_s, name};
        generated(sample(u"svg"_s), options);
        expectAsInFolder(stream(options));
        QDir(out()).removeRecursively();
        QDir(path(u"taken"_s)).removeRecursively();
    }
}

TEST_F(TarStream, names_that_are_not_utf_8_keep_their_bytes) {
    const ProcessResult result =
        runProcess(u"/bin/sh"_s,
                   {u"-c"_s,
                    u"\"$0\" generate \"$1\" --out - --layout linux --background red --name \"$(printf "
                    "'caf\\351')\" | tar -xf -; ls hicolor/48x48/apps | od -An -c | tr -d ' \\n'"_s,
                    QStringLiteral(TOBRIMAX_CLI), sample(u"svg"_s)},
                   path({}));
    EXPECT_EQ(result.errors.toStdString(), "");
    EXPECT_EQ(result.output.toStdString(), "caf351.png\\n");
    runProcess(u"/bin/rm"_s, {u"-r"_s, path(u"hicolor"_s)}); // Qt does not see such names
}

TEST_F(TarStream, the_same_input_gives_the_same_stream) {
    const QByteArray first = streamed({u"--platform"_s, u"mac"_s}).output;
    EXPECT_GT(first.size(), 10000);
    EXPECT_EQ(streamed({u"--platform"_s, u"mac"_s}).output, first);
}

TEST_F(TarStream, what_is_in_the_current_folder_has_no_say) {
    const QStringList options{u"--background"_s, u"red"_s, u"--padding"_s, u"0.15"_s,
                              u"--layout"_s,     u"web"_s, u"--layout"_s,  u"android"_s};
    const QByteArray alone = streamed(options).output;
    file(u"manifest.webmanifest"_s, "of somebody else");
    file(u"index.html"_s, "<html>");
    file(u"res/mipmap-mdpi/ic_launcher.webp"_s, "another ending");
    const ProcessResult beside = streamed(options);
    EXPECT_EQ(beside.errors.toStdString(), "");
    EXPECT_EQ(beside.output, alone);
    EXPECT_EQ(tree(path({})), std::vector<std::string>({"index.html", "manifest.webmanifest",
                                                        "res/mipmap-mdpi/ic_launcher.webp"}));
}

TEST_F(TarStream, a_reader_that_goes_away_ends_it_with_one_sentence) {
    const ProcessResult result =
        runProcess(u"/bin/bash"_s,
                   {u"-c"_s, u"\"$0\" generate \"$1\" --out - | head -c 10 >head; echo ${PIPESTATUS[0]}"_s,
                    QStringLiteral(TOBRIMAX_CLI), sample(u"svg"_s)},
                   path({}));
    EXPECT_EQ(result.output.toStdString(), "1\n");
    EXPECT_EQ(otherErrorLines(result),
              QStringList(u"tobrimax-cli: error: standard output can't be written: Broken pipe"_s));
    EXPECT_EQ(content(path(u"head"_s)).toStdString(), "iphone/App");
}

TEST_F(TarStream, a_picture_that_cant_be_read_gives_no_stream) {
    const ProcessResult result =
        runCli({u"generate"_s, path(u"nowhere.png"_s), u"--out"_s, u"-"_s}, path({}));
    expectOneError(result, u"nowhere.png"_s);
    EXPECT_EQ(result.output.toStdString(), "");
}

TEST_F(TarStream, an_icon_in_a_folder_that_is_not_made_fails_as_on_the_disk) {
    const QString catalogue = propertyList(
        u"odd.plist"_s, u"[{'a': entry('a', '{9, 9}'), 'b': entry('b/c', '{9, 9}')}, {}, {}, {}, {}]"_s);
    const ProcessResult result = streamed({u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s});
    expectOneError(result, u"iphone/AppIcon.appiconset/b/c.png: No such file or directory"_s);
    file(u"icons.tar"_s, result.output);
    EXPECT_EQ(runProcess(u"tar"_s, {u"-tf"_s, path(u"icons.tar"_s)}).output.toStdString(),
              "iphone/AppIcon.appiconset/a.png\n");
}

TEST_F(TarStream, takes_one_picture) {
    const ProcessResult result = streamed({flatPicture(u"other.png"_s, 9, 9)});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_THAT(result.errors.toStdString(), testing::HasSubstr("--out - takes one picture"));
}

TEST_F(TarStream, excludes_what_else_would_be_printed_or_looked_at) {
    for (const char* other : {"--json", "--dry-run", "--check", "--open", "--timings"}) {
        const ProcessResult result = streamed({QLatin1String(other)});
        EXPECT_EQ(result.exitStatus, 2) << other;
        EXPECT_THAT(result.errors.toStdString(),
                    testing::HasSubstr(std::string("--out - and ") + other + " exclude each other"));
    }
}
