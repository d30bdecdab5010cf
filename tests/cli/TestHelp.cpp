#include "tests/cli/CliTest.h"

#include <algorithm>

namespace {

/// All commands that have a help.
const QList<QStringList>& commands() {
    static const QList<QStringList> all{{},
                                        {u"generate"_s},
                                        {u"layouts"_s},
                                        {u"icns"_s},
                                        {u"icns"_s, u"list"_s},
                                        {u"icns"_s, u"extract"_s},
                                        {u"icns"_s, u"make"_s},
                                        {u"custom-icon"_s},
                                        {u"custom-icon"_s, u"set"_s},
                                        {u"custom-icon"_s, u"remove"_s},
                                        {u"export"_s}};
    return all;
}

QString help(const QStringList& command) {
    const ProcessResult result = runCli(command + QStringList{u"--help"_s});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors.toStdString(), "");
    return QString::fromUtf8(result.output);
}

/// The help on a terminal of that many columns.
QString helpOnTerminal(const QStringList& command, int columns) {
    const QByteArray printed = printedByPython(
        u"import fcntl, pty, os, struct, sys, termios\n"
        "child, terminal = pty.fork()\n"
        "if child == 0:\n"
        "    fcntl.ioctl(1, termios.TIOCSWINSZ, struct.pack('HHHH', 24, int(sys.argv[1]), 0, 0))\n"
        "    os.execv(sys.argv[2], sys.argv[2:])\n"
        "printed = b''\n"
        "try:\n"
        "    while part := os.read(terminal, 4096):\n"
        "        printed += part\n"
        "except OSError:\n"
        "    pass\n"
        "sys.stdout.buffer.write(printed.replace(b'\\r\\n', b'\\n'))\n"_s,
        QStringList{QString::number(columns), QStringLiteral(TOBRIMAX_CLI)} + command +
            QStringList{u"--help"_s});
    return QString::fromUtf8(printed);
}

qsizetype longestLine(const QString& text) {
    qsizetype longest = 0;
    for (const QString& line : text.split(u'\n'))
        longest = std::max(longest, line.size());
    return longest;
}

} // namespace

TEST(Help, lines_fit_into_80_columns) {
    for (const QStringList& command : commands())
        EXPECT_LE(longestLine(help(command)), 80) << help(command).toStdString();
}

TEST(Help, lines_fit_into_a_narrow_terminal) {
    for (const QStringList& command : commands()) {
        const QString text = helpOnTerminal(command, 40);
        EXPECT_LE(longestLine(text), 40) << text.toStdString();
        const QString wide = helpOnTerminal(command, 200);
        EXPECT_LE(longestLine(wide), 80) << "long lines are hard to read";
        EXPECT_GT(longestLine(wide), 40);
    }
}

TEST(Help, an_example_stands_first_and_is_taken_by_the_program) {
    const QTemporaryDir folder;
    for (const QStringList& command : commands()) {
        const QStringList lines = help(command).split(u'\n');
        EXPECT_EQ(lines[0], u"Example:"_s);
        const QString example = lines[1].trimmed();
        ASSERT_TRUE(example.startsWith(u"tobrimax-cli "_s + command.join(u' '))) << example.toStdString();
        const ProcessResult result =
            runProcess(u"sh"_s, {u"-c"_s, u"cd \"$1\" && exec \"$0\" "_s + example.sliced(13),
                                 QStringLiteral(TOBRIMAX_CLI), folder.path()});
        EXPECT_NE(result.exitStatus, 2) << result.errors.toStdString();
    }
}

TEST(Help, operands_and_values_have_names) {
    for (const QStringList& command : commands()) {
        const QString text = help(command);
        EXPECT_FALSE(text.contains(u"TEXT"_s)) << text.toStdString();
        EXPECT_FALSE(text.contains(u"REQUIRED"_s)) << text.toStdString();
    }
    EXPECT_TRUE(help({u"generate"_s}).contains(u"\n  PICTURE                 a file: PNG, "_s));
    EXPECT_TRUE(help({u"generate"_s}).contains(u"Usage: tobrimax-cli generate [PICTURE...] [OPTION]...\n"_s));
    EXPECT_TRUE(help({u"layouts"_s}).contains(u"Usage: tobrimax-cli layouts [NAME] [OPTION]...\n"_s));
    EXPECT_TRUE(help({u"icns"_s}).contains(u"Usage: tobrimax-cli icns COMMAND [OPTION]...\n"_s));
}

TEST(Help, options_without_which_something_else_is_done_tell_what) {
    const QString text = help({u"generate"_s}).simplified();
    const qsizetype start = text.indexOf(u"Options:"_s);
    for (const QString& option : {u"--platform NAME"_s, u"--round-corner F"_s, u"--border F"_s,
                                  u"--border-color COLOR"_s, u"--background COLOR"_s, u"--name NAME"_s,
                                  u"--dark PICTURE"_s, u"--foreground PICTURE"_s, u"--catalogue FILE"_s}) {
        const qsizetype at = text.indexOf(option, start);
        ASSERT_GE(at, 0) << option.toStdString();
        const qsizetype next = text.indexOf(u" --"_s, at + option.size());
        EXPECT_TRUE(text.mid(at, next - at).contains(u"(default: "_s))
            << text.mid(at, next - at).toStdString();
    }
}

TEST(Help, the_name_of_a_short_option_stands_beside_the_long_one) {
    EXPECT_TRUE(help({u"generate"_s}).contains(u"\n  -o, --out DIR "_s));
    EXPECT_TRUE(help({u"generate"_s}).contains(u"\n      --border F "_s));
}
