#include "tests/cli/CliTest.h"
#include "tests/support/Pictures.h"

#include <QFileInfo>

namespace {

class ExportCommand : public CliTest {
  protected:
    ProcessResult run(const QStringList& words) const {
        return runCli(QStringList{u"export"_s} + words, path({}));
    }
    void expectWrong(const QStringList& words, const QString& sentence) const {
        const ProcessResult result = run(words);
        EXPECT_EQ(result.exitStatus, 2);
        ASSERT_EQ(result.errorLines().size(), 1) << result.errors.toStdString();
        EXPECT_TRUE(result.errorLines()[0].contains(sentence)) << result.errors.toStdString();
        EXPECT_TRUE(result.errorLines()[0].endsWith(u"(see tobrimax-cli export --help)"_s));
    }
};

} // namespace

TEST_F(ExportCommand, a_picture_keeps_its_size_and_pixels) {
    const QString picture = flatPicture(u"a.png"_s, 30, 20, QColor(10, 20, 30, 255));
    const ProcessResult result = run({picture, u"--format"_s, u"bmp"_s, u"--out"_s, u"b"_s});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_EQ(result.output, "b\n");
    EXPECT_EQ(result.errors, "");
    const QImage read(path(u"b"_s));
    EXPECT_EQ(read.size(), QSize(30, 20));
    EXPECT_EQ(read.pixelColor(29, 19), QColor(10, 20, 30, 255));
}

TEST_F(ExportCommand, a_drawing_is_drawn_in_the_size_that_is_asked_for) {
    const QString drawing =
        file(u"a.svg"_s, "<svg xmlns='http://www.w3.org/2000/svg' width='9.5' height='4'><rect width='100%' "
                         "height='100%' fill='#0f0'/></svg>");
    EXPECT_EQ(run({drawing, u"--format"_s, u"png"_s, u"--out"_s, u"own.png"_s}).exitStatus, 0);
    EXPECT_EQ(QImage(path(u"own.png"_s)).size(), QSize(10, 4));
    EXPECT_EQ(
        run({drawing, u"--format"_s, u"png"_s, u"--out"_s, u"b.png"_s, u"--size"_s, u"7x31"_s}).exitStatus,
        0);
    EXPECT_EQ(QImage(path(u"b.png"_s)).size(), QSize(7, 31));
    EXPECT_EQ(QImage(path(u"b.png"_s)).pixelColor(6, 30), QColor(Qt::green));
}

TEST_F(ExportCommand, every_format_has_a_name) {
    for (const QString& format : {u"jpeg"_s, u"tiff"_s, u"bmp"_s, u"gif"_s, u"png"_s, u"jpeg2000"_s}) {
        const ProcessResult result =
            run({sample(u"png"_s), u"--format"_s, format, u"--out"_s, format, u"--size"_s, u"8x8"_s});
        EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
        EXPECT_GT(QFileInfo(path(format)).size(), 40);
    }
}

TEST_F(ExportCommand, wrong_usage_is_told) {
    expectWrong({u"a.png"_s, u"--format"_s, u"jpg"_s, u"--out"_s, u"b"_s}, u"did you mean 'jpeg'"_s);
    expectWrong({u"a.png"_s, u"--out"_s, u"b"_s}, u"--format is required"_s);
    expectWrong({u"a.png"_s, u"--format"_s, u"png"_s}, u"--out is required"_s);
    expectWrong({QString(), u"--format"_s, u"png"_s, u"--out"_s, u"b"_s}, u"PICTURE is empty"_s);
    for (const QString& size :
         {u"16"_s, u"16x"_s, u"x16"_s, u"0x16"_s, u"16x-1"_s, u"1x2x3"_s, u"1000001x1"_s, u""_s})
        expectWrong({u"a.png"_s, u"--format"_s, u"png"_s, u"--out"_s, u"b"_s, u"--size"_s, size},
                    u"--size takes"_s);
}

TEST_F(ExportCommand, the_limit_for_drawings_is_a_whole_number_of_seconds) {
    for (const QString& limit : {u"0"_s, u"-1"_s, u"1.5"_s, u"86401"_s, u"ten"_s, u""_s})
        expectWrong({u"a.png"_s, u"--format"_s, u"png"_s, u"--out"_s, u"b"_s, u"--svg-limit"_s, limit},
                    u"--svg-limit takes"_s);
}

TEST_F(ExportCommand, a_drawing_that_takes_longer_than_the_limit_is_refused) {
    const QString slow = file(u"slow.svg"_s, Pictures::slowSvg());
    const ProcessResult result =
        run({slow, u"--format"_s, u"png"_s, u"--out"_s, u"slow.png"_s, u"--svg-limit"_s, u"1"_s});
    expectOneError(result, u"the picture takes more than 1 s to draw"_s);
}

TEST_F(ExportCommand, what_fails_is_told) {
    expectOneError(run({u"missing.png"_s, u"--format"_s, u"png"_s, u"--out"_s, u"b"_s}), u"missing.png: "_s);
    expectOneError(run({sample(u"png"_s), u"--format"_s, u"png"_s, u"--out"_s, u"no/folder/b"_s}),
                   u"No such file"_s);
    expectOneError(run({sample(u"png"_s), u"--format"_s, u"png"_s, u"--out"_s, u"b"_s, u"--size"_s,
                        u"1000000x1000000"_s}),
                   u"so many pixels can't be drawn; choose a smaller --size"_s);
    expectOneError(
        run({sample(u"png"_s), u"--format"_s, u"gif"_s, u"--out"_s, u"b"_s, u"--size"_s, u"70000x1"_s}),
        u"b: "_s);
    EXPECT_TRUE(tree(path({})).empty());
}

TEST_F(ExportCommand, formats_are_taken_in_any_case) {
    const QString made = path(u"a.jpg"_s);
    const ProcessResult result =
        runCli({u"export"_s, flatPicture(u"logo.png"_s, 8, 8), u"--format"_s, u"JPEG"_s, u"-o"_s, made});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_TRUE(content(made).startsWith("\xff\xd8\xff"));
}
