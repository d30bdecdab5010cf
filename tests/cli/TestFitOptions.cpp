#include "tests/cli/CliTest.h"

#include <QFile>

#include <utility>

namespace {

/// Lays pictures on icons by options.
class FitOptions : public CliTest {
  protected:
    QString wide() const { return flatPicture(u"wide.png"_s, 2000, 1000, Qt::blue); }

    /// The iPhone icon of 180 pixels of a blue picture, twice as wide as high.
    QImage iconOf(const QString& picture, const QStringList& options) const {
        const ProcessResult result = generate(picture, QStringList{u"--platform"_s, u"iphone"_s} + options);
        EXPECT_EQ(result.exitStatus, 0) << result.errors.constData();
        return icon180();
    }
};

/// The opaque pixels of `icon`, as far as they are a rectangle; else none.
QRect opaqueRect(const QImage& icon) {
    QRect rect;
    int count = 0;
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x) {
            const int alpha = qAlpha(icon.pixel(x, y));
            if (alpha != 0 && alpha != 255)
                return {};
            if (alpha == 255) {
                rect |= QRect(x, y, 1, 1);
                ++count;
            }
        }
    }
    return count == rect.width() * rect.height() ? rect : QRect();
}

} // namespace

TEST_F(FitOptions, the_defaults_change_no_byte) {
    for (const QString& source : {sample(u"png"_s), sample(u"svg"_s), wide()}) {
        const QString plain = path(u"plain"_s);
        const QString spelled = path(u"spelled"_s);
        runCli({u"generate"_s, source, u"--out"_s, plain, u"--quiet"_s});
        runCli({u"generate"_s, source, u"--out"_s, spelled, u"--quiet"_s, u"--fit"_s, u"stretch"_s,
                u"--padding"_s, u"0"_s});
        const std::vector<std::string> files = tree(plain);
        ASSERT_EQ(files.size(), 54U);
        ASSERT_EQ(files, tree(spelled));
        for (const std::string& file : files) {
            const QString name = u'/' + QString::fromStdString(file);
            EXPECT_EQ(content(plain + name), content(spelled + name)) << file;
        }
    }
}

TEST_F(FitOptions, contain_keeps_the_whole_picture_in_its_shape) {
    EXPECT_EQ(opaqueRect(iconOf(wide(), {u"--fit"_s, u"contain"_s})), QRect(0, 45, 180, 90));
}

TEST_F(FitOptions, cover_fills_the_icon_with_the_pictures_middle) {
    const QString picture = pillowPicture(u"three.png"_s, u"picture = Image.new('RGB', (2000, 1000), 'red')\n"
                                                          "picture.paste('blue', (500, 0, 1500, 1000))\n"
                                                          "picture.save(path)"_s);
    const QImage icon = iconOf(picture, {u"--fit"_s, u"cover"_s});
    for (const QPoint at : {QPoint(0, 0), QPoint(179, 0), QPoint(0, 179), QPoint(179, 179), QPoint(90, 90)})
        EXPECT_EQ(icon.pixelColor(at), QColor(Qt::blue)) << at.x() << ", " << at.y();
}

TEST_F(FitOptions, padding_leaves_a_margin_at_each_edge) {
    EXPECT_EQ(opaqueRect(iconOf(wide(), {u"--padding"_s, u"0.1"_s})), QRect(18, 18, 144, 144));
    EXPECT_EQ(opaqueRect(iconOf(wide(), {u"--padding"_s, u"0.1"_s, u"--fit"_s, u"contain"_s})),
              QRect(18, 54, 144, 72));
    EXPECT_EQ(opaqueRect(iconOf(wide(), {u"--padding"_s, u"0.1"_s, u"--fit"_s, u"cover"_s})),
              QRect(18, 18, 144, 144));
}

TEST_F(FitOptions, a_drawing_is_drawn_in_its_place) {
    const QString drawing =
        file(u"wide.svg"_s, R"(<svg xmlns="http://www.w3.org/2000/svg" width="20" height="10">
        <rect x="-5" y="-5" width="40" height="40" fill="blue"/></svg>)");
    EXPECT_EQ(opaqueRect(iconOf(drawing, {u"--fit"_s, u"contain"_s})), QRect(0, 45, 180, 90));
    EXPECT_EQ(opaqueRect(iconOf(drawing, {u"--fit"_s, u"cover"_s, u"--padding"_s, u"0.25"_s})),
              QRect(45, 45, 90, 90));
}

TEST_F(FitOptions, the_background_fills_what_the_fit_leaves_free) {
    const QImage icon = iconOf(wide(), {u"--fit"_s, u"contain"_s, u"--background"_s, u"white"_s});
    EXPECT_EQ(icon.pixelColor(90, 44), QColor(Qt::white));
    EXPECT_EQ(icon.pixelColor(90, 45), QColor(Qt::blue));
}

TEST_F(FitOptions, hold_for_icons_that_are_not_square) {
    const QString catalogue =
        propertyList(u"catalogue.plist"_s, u"[{'a': entry('tile', '{310, 150}')}, {}, {}, {}, {}]"_s);
    generate(wide(), {u"--catalogue"_s, catalogue, u"--fit"_s, u"contain"_s, u"--padding"_s, u"0.1"_s});
    EXPECT_EQ(opaqueRect(icon(u"iphone/AppIcon.appiconset/tile.png"_s)), QRect(35, 15, 240, 120));
}

TEST_F(FitOptions, hold_for_layouts_inside_of_their_shapes) {
    const QString layout = file(u"own.toml"_s, "[[file]]\npath = 'a.png'\nsize = 100\ninset = 0.8\n");
    const ProcessResult made =
        generate(wide(), {u"--layout"_s, layout, u"--fit"_s, u"contain"_s, u"--padding"_s, u"0.1"_s});
    EXPECT_EQ(made.exitStatus, 0) << made.errors.constData();
    EXPECT_EQ(opaqueRect(icon(u"a.png"_s)), QRect(18, 34, 64, 32));
}

TEST_F(FitOptions, hold_for_containers_and_exports) {
    const QString icns = path(u"made.icns"_s);
    runCli({u"icns"_s, u"make"_s, wide(), u"--out"_s, icns, u"--fit"_s, u"contain"_s});
    const QString folder = path(u"extracted"_s);
    runCli({u"icns"_s, u"extract"_s, icns, u"--out"_s, folder});
    EXPECT_EQ(opaqueRect(QImage(folder + u"/ic10_1024x1024.png"_s)), QRect(0, 256, 1024, 512));
    EXPECT_EQ(opaqueRect(QImage(folder + u"/is32_16x16.png"_s)), QRect(0, 4, 16, 8));
    const QString exported = path(u"export.png"_s);
    runCli({u"export"_s, wide(), u"--format"_s, u"png"_s, u"--out"_s, exported, u"--size"_s, u"300x200"_s,
            u"--fit"_s, u"contain"_s});
    EXPECT_EQ(opaqueRect(QImage(exported)), QRect(0, 25, 300, 150));
    runCli({u"export"_s, wide(), u"--format"_s, u"png"_s, u"--out"_s, exported, u"--padding"_s, u"0.2"_s});
    EXPECT_EQ(opaqueRect(QImage(exported)), QRect(200, 200, 1600, 600));
}

TEST_F(FitOptions, the_warning_about_the_shape_says_what_becomes_of_it) {
    const std::pair<QStringList, const char*> cases[] = {
        {{}, "the picture (2000 × 1000) is not square and will be stretched (--fit contain and --fit cover"},
        {{u"--fit"_s, u"contain"_s}, "is not square and is drawn whole, with two edges of its icons free"},
        {{u"--fit"_s, u"cover"_s}, "is not square and is cut off at two edges"}};
    for (const auto& [options, sentence] : cases) {
        const ProcessResult result = generate(wide(), QStringList{u"--platform"_s, u"android"_s} + options);
        EXPECT_EQ(result.errorLines().size(), 1) << result.errors.constData();
        EXPECT_TRUE(result.errors.contains(sentence)) << result.errors.constData();
    }
}

TEST_F(FitOptions, a_picture_is_called_too_small_by_the_size_in_which_it_is_drawn) {
    const QString picture = flatPicture(u"medium.png"_s, 412, 412);
    const QStringList android{u"--platform"_s, u"android"_s};
    EXPECT_TRUE(generate(picture, android).errors.contains("smaller than the largest icon (512 × 512)"));
    generated(picture, android + QStringList{u"--padding"_s, u"0.1"_s});
    EXPECT_TRUE(generate(picture, android + QStringList{u"--padding"_s, u"0.05"_s})
                    .errors.contains("the picture (412 × 412) is drawn as large as 460 × 460 and will be"));
}

TEST_F(FitOptions, wrong_words_are_wrong_usage_and_write_nothing) {
    const QString source = wide();
    const std::pair<QStringList, const char*> cases[] = {
        {{u"--fit"_s, u"containe"_s}, "there is no fit 'containe'; did you mean 'contain'?"},
        {{u"--padding"_s, u"0.5"_s}, "--padding takes a fraction from 0 to below 0.5, not '0.5'"},
        {{u"--padding"_s, u"-0.1"_s}, "--padding takes a fraction from 0 to below 0.5, not '-0.1'"},
        {{u"--padding"_s, u"nan"_s}, "--padding takes a fraction from 0 to below 0.5, not 'nan'"},
        {{u"--padding"_s, u"10%"_s}, "--padding takes a fraction from 0 to below 0.5, not '10%'"}};
    for (const auto& [options, sentence] : cases) {
        const ProcessResult result = generate(source, options);
        EXPECT_EQ(result.exitStatus, 2) << sentence;
        EXPECT_TRUE(result.errors.contains(sentence)) << result.errors.constData();
        EXPECT_FALSE(QFile::exists(out())) << sentence;
    }
}
