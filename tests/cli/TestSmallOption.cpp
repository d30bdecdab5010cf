#include "tests/cli/CliTest.h"

#include <QFile>

#include <utility>

namespace {

/// Makes icons of a red picture with other pictures for small icons.
class SmallOption : public CliTest {
  protected:
    QString redPicture() const { return flatPicture(u"red.png"_s, 1024, 1024, Qt::red); }
    QString bluePicture() const { return flatPicture(u"blue.png"_s, 64, 64, Qt::blue); }
    QString greenPicture() const { return flatPicture(u"green.png"_s, 48, 48, Qt::green); }

    /// The colour in the middle of a picture, which need not be an icon of this test.
    static QColor middle(const QString& file) {
        const QImage picture(file);
        return picture.pixelColor(picture.width() / 2, picture.height() / 2);
    }
    QColor middleOf(const QString& name) const { return middle(out() + u'/' + name); }

    /// The colours of a container's pictures, smallest first.
    QList<QColor> colorsIn(const QString& icns) const {
        const QString folder = path(u"extracted"_s);
        runCli({u"icns"_s, u"extract"_s, icns, u"--out"_s, folder});
        QList<QColor> colors;
        for (const char* name : {"is32_16x16", "il32_32x32", "ic12_64x64", "ic07_128x128", "ic10_1024x1024"})
            colors << middle(folder + u'/' + QLatin1String(name) + u".png"_s);
        return colors;
    }
};

const QColor red(Qt::red);
const QColor green(Qt::green);
const QColor blue(Qt::blue);

} // namespace

TEST_F(SmallOption, another_picture_stands_in_all_icons_up_to_its_side) {
    generated(redPicture(), {u"--platform"_s, u"mac"_s, u"--small"_s, bluePicture() + u":64"_s});
    const QString icons = u"mac/AppIcon.appiconset/"_s;
    EXPECT_EQ(middleOf(icons + u"icon_16x16.png"_s), blue);
    EXPECT_EQ(middleOf(icons + u"icon_32x32@2x.png"_s), blue);
    EXPECT_EQ(middleOf(icons + u"icon_128x128.png"_s), red);
    EXPECT_EQ(colorsIn(out() + u"/mac/Application.icns"_s), (QList{blue, blue, blue, red, red}));
}

TEST_F(SmallOption, the_picture_for_the_smallest_icons_goes_first) {
    const QString icns = path(u"made.icns"_s);
    for (const QStringList& order : {QStringList{bluePicture() + u":64"_s, greenPicture() + u":16"_s},
                                     QStringList{greenPicture() + u":16"_s, bluePicture() + u":64"_s}}) {
        const ProcessResult made = runCli({u"icns"_s, u"make"_s, redPicture(), u"--out"_s, icns, u"--small"_s,
                                           order[0], u"--small"_s, order[1]});
        EXPECT_EQ(made.exitStatus, 0) << made.errors.constData();
        EXPECT_EQ(colorsIn(icns), (QList{green, blue, blue, red, red}));
    }
}

TEST_F(SmallOption, layouts_go_by_the_side_of_the_icon_not_of_its_shape) {
    const QString layout = file(u"own.toml"_s, "[[file]]\npath = '40.png'\nsize = 40\ninset = 0.5\n"
                                               "[[file]]\npath = '20.png'\nsize = 20\n"
                                               "[[file]]\npath = 'a.ico'\nsizes = [16, 48]\n"
                                               "[[file]]\npath = 'a.icns'\n");
    EXPECT_EQ(
        generate(redPicture(), {u"--layout"_s, layout, u"--small"_s, bluePicture() + u":32"_s}).exitStatus,
        0);
    EXPECT_EQ(middleOf(u"40.png"_s), red) << "its shape has 20 pixels";
    EXPECT_EQ(middleOf(u"20.png"_s), blue);
    EXPECT_EQ(colorsIn(out() + u"/a.icns"_s), (QList{blue, blue, red, red, red}));
    const QByteArray colors = printedByPython(u"import sys\n"
                                              "from PIL import Image\n"
                                              "for side in (16, 48):\n"
                                              "    icon = Image.open(sys.argv[1])\n"
                                              "    icon.size = (side, side)\n"
                                              "    print(icon.convert('RGB').getpixel((8, 8)))"_s,
                                              {out() + u"/a.ico"_s});
    EXPECT_EQ(colors.trimmed().toStdString(), "(0, 0, 255)\n(255, 0, 0)");
}

TEST_F(SmallOption, the_fit_and_the_style_hold_for_it) {
    const QString wide = flatPicture(u"wide.png"_s, 128, 64, Qt::blue);
    const QStringList options{u"--platform"_s,     u"mac"_s,     u"--small"_s,      wide + u":32"_s,
                              u"--fit"_s,          u"contain"_s, u"--background"_s, u"white"_s,
                              u"--round-corner"_s, u"0.5"_s};
    const ProcessResult result = generate(redPicture(), options);
    EXPECT_EQ(result.errorLines().size(), 1);
    EXPECT_TRUE(result.errors.contains("wide.png: the picture (128 × 64) is not square"))
        << result.errors.constData();
    const QImage small = icon(u"mac/AppIcon.appiconset/icon_32x32.png"_s);
    EXPECT_EQ(small.pixelColor(16, 7), QColor(Qt::white));
    EXPECT_EQ(small.pixelColor(16, 8), blue);
    EXPECT_EQ(small.pixelColor(0, 8), QColor(Qt::white)) << "outside of the round corner";
}

TEST_F(SmallOption, a_drawing_and_a_name_with_colons_are_pictures_too) {
    const QString drawing =
        file(u"a:b:1.svg"_s, R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8">
        <rect width="8" height="8" fill="#00f"/></svg>)");
    generated(redPicture(), {u"--platform"_s, u"mac"_s, u"--small"_s, drawing + u":32"_s});
    EXPECT_EQ(middleOf(u"mac/AppIcon.appiconset/icon_16x16@2x.png"_s), blue);
    EXPECT_EQ(middleOf(u"mac/AppIcon.appiconset/icon_32x32@2x.png"_s), red);
}

TEST_F(SmallOption, a_picture_that_is_smaller_than_its_icons_is_told_with_its_name) {
    const ProcessResult result =
        generate(redPicture(), {u"--platform"_s, u"mac"_s, u"--small"_s, greenPicture() + u":64"_s});
    EXPECT_EQ(result.errorLines().size(), 1);
    EXPECT_TRUE(result.errors.contains("green.png: the picture (48 × 48) is smaller than the largest icon "
                                       "(64 × 64) and will be enlarged"))
        << result.errors.constData();
}

TEST_F(SmallOption, a_picture_that_is_missing_writes_nothing) {
    for (const QStringList& more : {QStringList{}, QStringList{u"--layout"_s, u"web"_s}}) {
        const ProcessResult result =
            generate(redPicture(), QStringList{u"--small"_s, path(u"none.png:32"_s)} + more);
        expectOneError(result, u"none.png: "_s);
        EXPECT_FALSE(QFile::exists(out()));
    }
}

TEST_F(SmallOption, wrong_words_are_wrong_usage_with_the_right_form) {
    const QString source = redPicture();
    const std::pair<QStringList, const char*> cases[] = {
        {{u"small.png"_s}, "not 'small.png'; did you mean 'small.png:32'?"},
        {{u"small.png:"_s}, "not 'small.png:'; did you mean 'small.png:32'?"},
        {{u"small.png:24px"_s}, "not 'small.png:24px'; did you mean 'small.png:24'?"},
        {{u"small.png:0"_s}, "a side from 1 to 16384 pixels, not 'small.png:0'"},
        {{u"small.png:-3"_s}, "not 'small.png:-3'"},
        {{u"small.png:20000"_s}, "not 'small.png:20000'"},
        {{u":32"_s}, "not ':32'; did you mean 'small.png:32'?"},
        {{u"a.png:32"_s, u"--small"_s, u"b.png:32"_s},
         "--small gives two pictures for icons of up to 32 pixels"}};
    for (const auto& [words, sentence] : cases) {
        const ProcessResult result = generate(source, QStringList{u"--small"_s} + words);
        EXPECT_EQ(result.exitStatus, 2) << sentence;
        EXPECT_TRUE(result.errors.contains(sentence)) << result.errors.constData();
        EXPECT_FALSE(QFile::exists(out())) << sentence;
    }
}
