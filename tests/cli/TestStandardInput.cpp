#include "tests/cli/CliTest.h"

#include <QDir>

#include <gmock/gmock.h>

namespace {

class StandardInput : public CliTest {
  protected:
    /// Runs a line of the shell in which $cli is the program and $picture the sample.
    ProcessResult shell(const QString& line) const {
        return runProcess(u"/bin/bash"_s,
                          {u"-c"_s, u"cli=$0 picture=$1; set -o pipefail; "_s + line,
                           QStringLiteral(TOBRIMAX_CLI), sample(u"svg"_s)},
                          path({}));
    }

    /// Expects that the line succeeds without a word on standard error.
    void expectDone(const QString& line) const {
        const ProcessResult result = shell(line);
        EXPECT_EQ(result.exitStatus, 0) << line.toStdString();
        EXPECT_EQ(result.errors.toStdString(), "") << line.toStdString();
    }

    void expectSameFiles(const QString& one, const QString& other) const {
        const std::vector<std::string> names = tree(path(one));
        EXPECT_FALSE(names.empty());
        ASSERT_EQ(tree(path(other)), names);
        for (const std::string& name : names)
            EXPECT_EQ(content(path(one) + u'/' + QString::fromStdString(name)),
                      content(path(other) + u'/' + QString::fromStdString(name)))
                << name;
    }
};

} // namespace

TEST_F(StandardInput, gives_the_same_icons_as_the_file) {
    expectDone(u"\"$cli\" generate \"$picture\" --out file --platform mac"_s);
    expectDone(u"\"$cli\" generate - --out stream --platform mac <\"$picture\""_s);
    expectDone(u"cat \"$picture\" | \"$cli\" generate - --out pipe --platform mac"_s);
    expectSameFiles(u"file"_s, u"stream"_s);
    expectSameFiles(u"file"_s, u"pipe"_s);
}

TEST_F(StandardInput, a_pipe_that_gives_a_byte_at_a_time_is_read_to_its_end) {
    expectDone(u"\"$cli\" generate \"$picture\" --out file --platform android"_s);
    expectDone(u"(head -c 1 \"$picture\"; sleep 0.2; tail -c +2 \"$picture\") | "
               "\"$cli\" generate - --out pipe --platform android"_s);
    expectSameFiles(u"file"_s, u"pipe"_s);
}

TEST_F(StandardInput, layouts_take_their_name_from_name_or_icon) {
    expectDone(u"\"$cli\" generate - --out a --layout linux --background red <\"$picture\""_s);
    EXPECT_EQ(content(path(u"a/hicolor/scalable/apps/icon.svg"_s)), content(sample(u"svg"_s)));
    expectDone(u"\"$cli\" generate - --out b --layout linux --background red --name app <\"$picture\""_s);
    EXPECT_EQ(content(path(u"b/hicolor/scalable/apps/app.svg"_s)), content(sample(u"svg"_s)));
}

TEST_F(StandardInput, is_read_by_the_other_commands) {
    expectDone(u"\"$cli\" icns make \"$picture\" --out file.icns"_s);
    expectDone(u"cat \"$picture\" | \"$cli\" icns make - --out pipe.icns"_s);
    EXPECT_EQ(content(path(u"pipe.icns"_s)), content(path(u"file.icns"_s)));
    expectDone(u"cat file.icns | \"$cli\" icns extract - --out pipe"_s);
    expectDone(u"\"$cli\" icns extract file.icns --out file"_s);
    expectSameFiles(u"file"_s, u"pipe"_s);
    expectDone(u"cmp <(\"$cli\" icns list file.icns) <(cat file.icns | \"$cli\" icns list -)"_s);
    expectDone(u"cat \"$picture\" | \"$cli\" export - --format bmp --size 9x9 --out pipe.bmp"_s);
    EXPECT_EQ(QImage(path(u"pipe.bmp"_s)).size(), QSize(9, 9));
}

TEST_F(StandardInput, the_set_of_a_pipe_goes_into_a_pipe) {
    expectDone(u"\"$cli\" generate \"$picture\" --out file --platform mac; mkdir pipe; "
               "cat \"$picture\" | \"$cli\" generate - --out - --platform mac | tar -xf - -C pipe"_s);
    expectSameFiles(u"file"_s, u"pipe"_s);
}

TEST_F(StandardInput, what_is_no_picture_gets_one_sentence) {
    expectOneError(shell(u"\"$cli\" generate - --out icons </dev/null"_s),
                   u"standard input: the file is empty"_s);
    expectOneError(shell(u"\"$cli\" icns make - --out a.icns </dev/null"_s),
                   u"standard input: the file is empty"_s);
    expectOneError(shell(u"\"$cli\" generate \"$picture\" --small -:32 --out icons </dev/null"_s),
                   u"standard input: the file is empty"_s);
    expectOneError(shell(u"echo hello | \"$cli\" generate - --out icons"_s),
                   u"standard input: not a picture"_s);
    expectOneError(shell(u"\"$cli\" generate - --out icons <."_s), u"standard input: Is a directory"_s);
    expectOneError(shell(u"\"$cli\" generate - --out icons <&-"_s), u"standard input: "_s);
    EXPECT_TRUE(tree(path({})).empty());
}

TEST_F(StandardInput, an_endless_stream_of_no_picture_is_not_read_to_its_end) {
#ifdef __SANITIZE_ADDRESS__
    const QString limit; // AddressSanitizer reserves far more.
#else
    const QString limit = u"ulimit -v 2000000; "_s;
#endif
    const ProcessResult result =
        shell(u"set +o pipefail; "_s + limit + u"timeout 20 \"$cli\" generate - --out icons < <(yes no)"_s);
    expectOneError(result, u"standard input: not a picture"_s);
}

TEST_F(StandardInput, a_terminal_is_refused) {
    const ProcessResult result = runProcess(
        u"script"_s,
        {u"-qec"_s, QStringLiteral("'%1' generate - --out icons 2>errors").arg(QStringLiteral(TOBRIMAX_CLI)),
         u"/dev/null"_s},
        path({}));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(content(path(u"errors"_s)).toStdString(),
              "tobrimax-cli: error: standard input: it is a terminal; send a file to it, with < or from a "
              "pipe\n");
}

TEST_F(StandardInput, files_and_folders_of_that_name_are_reached_by_their_folder) {
    file(u"-"_s, content(sample(u"svg"_s)));
    expectDone(u"\"$cli\" generate ./- --out icons --platform mac </dev/null"_s);
    expectDone(u"rm ./-; \"$cli\" generate \"$picture\" --out ./- --platform mac"_s);
    expectSameFiles(u"icons"_s, u"-"_s);
}

TEST_F(StandardInput, is_not_one_of_several_pictures) {
    for (const QString& line : {u"\"$cli\" generate - \"$picture\" --out icons </dev/null"_s,
                                u"cp \"$picture\" b.svg; \"$cli\" generate \"$picture\" b.svg --layout xcode "
                                "--dark - --out icons </dev/null"_s,
                                u"cp \"$picture\" b.svg; \"$cli\" generate \"$picture\" b.svg "
                                "--small -:32 --out icons </dev/null"_s}) {
        const ProcessResult result = shell(line);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_THAT(result.errors.toStdString(), testing::HasSubstr("standard input (-) gives one picture"));
    }
}
