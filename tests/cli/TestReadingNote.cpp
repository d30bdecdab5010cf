#include "tests/cli/CliTest.h"

namespace {

class ReadingNotes : public CliTest {
  protected:
    /// What a terminal of that kind gets from reading a picture that takes more than half a second.
    QByteArray shown(const QString& terminal, const QStringList& more = {}) const {
        pillowPicture(u"big.png"_s, u"Image.new('L', (16000, 16000)).save(path, compress_level=1)\n"_s);
        return printedByPython(u"import os, pty, sys\n"
                               "os.environ['TERM'] = sys.argv[1]\n"
                               "pty.spawn(sys.argv[2:], lambda terminal: os.read(terminal, 4096))\n"_s,
                               QStringList{terminal, QStringLiteral(TOBRIMAX_CLI), u"generate"_s,
                                           path(u"big.png"_s), u"--out"_s, out(), u"-p"_s, u"iphone"_s} +
                                   more);
    }
};

} // namespace

TEST_F(ReadingNotes, a_terminal_is_told_what_takes_long_to_read_and_it_is_erased) {
    const QByteArray text = shown(u"xterm"_s);
    EXPECT_TRUE(text.startsWith("reading big.png…\r\x1b[K")) << text.toStdString();
    EXPECT_EQ(text.count("reading"), 1);
}

TEST_F(ReadingNotes, terminals_that_can_not_erase_and_quiet_runs_are_told_nothing) {
    EXPECT_FALSE(shown(u"dumb"_s).contains("reading"));
    EXPECT_FALSE(shown(u"xterm"_s, {u"--quiet"_s}).contains("reading"));
}

TEST_F(ReadingNotes, a_picture_that_is_read_at_once_is_not_mentioned) {
    const QByteArray text =
        printedByPython(u"import os, pty, sys\n"
                        "os.environ['TERM'] = 'xterm'\n"
                        "pty.spawn(sys.argv[1:], lambda terminal: os.read(terminal, 4096))\n"_s,
                        {QStringLiteral(TOBRIMAX_CLI), u"export"_s, flatPicture(u"small.png"_s, 4, 4),
                         u"--format"_s, u"png"_s, u"-o"_s, path(u"a.png"_s)});
    EXPECT_TRUE(text.contains("a.png")) << text.toStdString();
    EXPECT_FALSE(text.contains("reading")) << text.toStdString();
}
