#include "tests/cli/CliTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace {

class Warnings : public CliTest {
  protected:
    /// The lines on standard error of a successful run, without those about Apple's store and systems.
    QStringList warned(const QString& picture, const QString& platform) const {
        const ProcessResult result = generate(picture, {u"--platform"_s, platform});
        EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
        EXPECT_FALSE(tree().empty());
        for (const QString& line : result.errorLines())
            EXPECT_TRUE(line.startsWith(u"tobrimax-cli: warning: "_s)) << line.toStdString();
        return otherErrorLines(result);
    }

    QString drawing(const QString& name, int width, int height) const {
        const QString svg = u"<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\">"
                            "<rect width=\"%1\" height=\"%2\" fill=\"green\"/></svg>"_s;
        return file(name, svg.arg(width).arg(height).toUtf8());
    }
};

} // namespace

TEST_F(Warnings, are_not_given_for_a_square_of_1024_pixels) {
    EXPECT_EQ(warned(flatPicture(u"square.png"_s, 1024, 1024), u"all"_s), QStringList());
}

TEST_F(Warnings, tell_of_a_picture_that_is_smaller_than_the_largest_icon) {
    const QStringList lines = warned(flatPicture(u"small.png"_s, 1023, 1023), u"all"_s);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(u"1023 × 1023"_s)) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].contains(u"smaller than the largest icon (1024 × 1024)"_s))
        << lines[0].toStdString();
}

TEST_F(Warnings, measure_by_the_icons_that_are_made) {
    const QString picture = flatPicture(u"medium.png"_s, 512, 512);
    EXPECT_EQ(warned(picture, u"android"_s), QStringList());
    EXPECT_EQ(warned(picture, u"watch"_s).size(), 1);
}

TEST_F(Warnings, tell_of_a_picture_that_is_not_square) {
    const QStringList lines = warned(flatPicture(u"wide.png"_s, 1200, 1024), u"all"_s);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(u"1200 × 1024"_s)) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].contains(u"not square"_s)) << lines[0].toStdString();
}

TEST_F(Warnings, tell_both_of_a_small_picture_that_is_not_square) {
    const QStringList lines = warned(flatPicture(u"flat.png"_s, 2000, 10), u"iphone"_s);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].contains(u"(2000 × 10) is lower than the highest icon (1024) and will be"_s))
        << lines[0].toStdString();
    EXPECT_TRUE(lines.join(u' ').contains(u"not square"_s));
}

TEST_F(Warnings, tell_of_a_colour_profile_that_is_broken) {
    const QString picture = pillowPicture(
        u"profile.png"_s,
        u"Image.new('RGB', (1024, 1024), '#4080c0').save(path, icc_profile=b'no profile at all')"_s);
    const QStringList lines = warned(picture, u"iphone"_s);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(u"profile"_s)) << lines[0].toStdString();
    EXPECT_TRUE(isNear(icon180().pixelColor(90, 90), QColor(0x40, 0x80, 0xc0)));
}

TEST_F(Warnings, never_call_a_drawing_smaller) {
    EXPECT_EQ(warned(drawing(u"tiny.svg"_s, 10, 10), u"all"_s), QStringList());
}

TEST_F(Warnings, tell_of_a_drawing_that_is_not_square) {
    const QStringList lines = warned(drawing(u"tall.svg"_s, 10, 20), u"iphone"_s);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(u"not square"_s)) << lines[0].toStdString();
}

TEST_F(Warnings, tell_of_all_that_a_drawing_lacks) {
    const QString lacking = file(
        u"lacking.svg"_s,
        "<svg xmlns='http://www.w3.org/2000/svg' width='99' height='99'><rect width='99' height='99'/>"
        "<text y='50' font-family='No Such Font, serif' fill='var(--a)'>a</text><image href='a.png'/></svg>");
    const QStringList lines = warned(lacking, u"mac"_s);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0],
              u"tobrimax-cli: warning: the picture shows nothing of the files that it links to: a.png"_s);
    EXPECT_EQ(lines[1], u"tobrimax-cli: warning: the picture has styles with var(), which are left out"_s);
    EXPECT_EQ(lines[2],
              u"tobrimax-cli: warning: the picture's text is drawn with other fonts, since these are not "
              "installed: No Such Font"_s);
    const QJsonObject document =
        QJsonDocument::fromJson(generate(lacking, {u"--platform"_s, u"mac"_s, u"--json"_s}).output).object();
    QStringList inDocument;
    for (const QJsonValue warning : document[u"warnings"_s].toArray())
        inDocument << u"tobrimax-cli: warning: "_s + warning.toString();
    EXPECT_EQ(inDocument, lines);
}

TEST_F(Warnings, measure_a_turned_photograph_upright) {
    const QString picture =
        pillowPicture(u"turned.jpg"_s, u"exif = Image.Exif()\n"
                                       "exif[0x0112] = 6\n"
                                       "Image.new('RGB', (1100, 1050)).save(path, exif=exif)"_s);
    const QStringList lines = warned(picture, u"iphone"_s);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(u"1050 × 1100"_s)) << lines[0].toStdString();
}

TEST_F(Warnings, tell_once_of_a_picture_that_is_wholly_transparent) {
    const QString picture = flatPicture(u"empty.png"_s, 1024, 1024, QColor(255, 0, 0, 0));
    const QStringList lines = warned(picture, u"all"_s);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(u"the picture is empty"_s)) << lines[0].toStdString();
    QImage dot(1024, 1024, QImage::Format_RGBA8888);
    dot.fill(Qt::transparent);
    dot.setPixelColor(3, 3, Qt::red);
    EXPECT_EQ(warned(this->picture(u"dot.png"_s, dot), u"all"_s), QStringList());
}

TEST_F(Warnings, tell_of_a_picture_with_several_frames) {
    const QString frames =
        u"frames = [Image.new('RGB', (1024, 1024), color) for color in ('red', 'blue')]\n"_s;
    for (const char* name : {"frames.gif", "frames.webp", "frames.tif"}) {
        const QString picture = pillowPicture(
            QLatin1String(name), frames + u"frames[0].save(path, save_all=True, append_images=frames[1:])"_s);
        const QStringList lines = warned(picture, u"all"_s);
        ASSERT_EQ(lines.size(), 1) << name;
        EXPECT_TRUE(lines[0].contains(u"several frames; the first is taken"_s)) << lines[0].toStdString();
        EXPECT_TRUE(isNear(icon180().pixelColor(90, 90), Qt::red, 8)) << name;
    }
}

TEST_F(Warnings, tell_once_of_an_alpha_channel_that_the_store_refuses) {
    const QString picture = flatPicture(u"square.png"_s, 1024, 1024);
    const std::pair<QStringList, const char*> cases[] = {
        {{u"all"_s}, "the icons for iPhone, iPad and Apple Watch have an alpha channel"},
        {{u"universal"_s}, "the icons for iPhone and iPad have an alpha channel"},
        {{u"watch"_s, u"--platform"_s, u"android"_s}, "the icons for Apple Watch have an alpha channel"}};
    for (const auto& [platforms, sentence] : cases) {
        const ProcessResult result = generate(picture, QStringList{u"--platform"_s} + platforms);
        EXPECT_EQ(result.errorLines().size(), 1) << result.errors.constData();
        EXPECT_TRUE(result.errors.contains(sentence)) << result.errors.constData();
        EXPECT_TRUE(result.errors.contains("(--background COLOR")) << result.errors.constData();
    }
    const QStringList all{u"--platform"_s, u"all"_s};
    EXPECT_TRUE(generate(picture, all + QStringList{u"--background"_s, u"white"_s}).errors.isEmpty());
    EXPECT_TRUE(generate(picture, {u"--platform"_s, u"mac"_s}).errors.isEmpty());
}

TEST_F(Warnings, tell_of_rounded_corners_where_the_system_cuts_them) {
    const QString picture = flatPicture(u"square.png"_s, 1024, 1024);
    const QStringList style{u"--background"_s, u"white"_s, u"--round-corner"_s, u"0.2"_s};
    const ProcessResult phone = generate(picture, style + QStringList{u"--platform"_s, u"universal"_s});
    EXPECT_EQ(phone.errorLines().size(), 1) << phone.errors.constData();
    EXPECT_TRUE(phone.errors.contains("the icons for iPhone and iPad have rounded corners"));
    EXPECT_TRUE(generate(picture, style + QStringList{u"--platform"_s, u"mac"_s}).errors.isEmpty());
    const QStringList small = style + QStringList{u"--padding"_s, u"0.15"_s};
    for (const char* name : {"xcode", "android"}) {
        const ProcessResult layout =
            generate(picture, small + QStringList{u"--layout"_s, QLatin1String(name)});
        EXPECT_EQ(layout.errorLines().size(), 1) << layout.errors.constData();
        EXPECT_TRUE(layout.errors.contains("without --round-corner")) << layout.errors.constData();
    }
    EXPECT_TRUE(generate(picture, style + QStringList{u"--layout"_s, u"linux"_s}).errors.isEmpty());
}

TEST_F(Warnings, tell_once_of_corners_that_launchers_cut_off) {
    const QString picture = flatPicture(u"square.png"_s, 1024, 1024);
    const QString circle =
        file(u"circle.svg"_s, R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9">
        <circle cx="4.5" cy="4.5" r="4.5"/></svg>)");
    const auto warnings = [&](const QString& source, const QStringList& more) {
        const ProcessResult result = generate(source, QStringList{u"--background"_s, u"white"_s} + more);
        EXPECT_EQ(result.exitStatus, 0);
        for (const QString& line : result.errorLines())
            EXPECT_TRUE(line.contains(u"(--padding 0.15 keeps them in)"_s)) << line.toStdString();
        return result.errorLines().size();
    };
    for (const char* name : {"web", "android"}) {
        const QStringList layout{u"--layout"_s, QLatin1String(name)};
        EXPECT_EQ(warnings(picture, layout), 1) << name;
        EXPECT_EQ(warnings(picture, layout + QStringList{u"--padding"_s, u"0.15"_s}), 0) << name;
        EXPECT_EQ(warnings(circle, layout), 0) << name;
    }
    EXPECT_EQ(warnings(picture, {u"--layout"_s, u"web"_s, u"--layout"_s, u"android"_s}), 1);
    EXPECT_EQ(warnings(picture, {u"--layout"_s, u"xcode-mac"_s}), 0) << "a shape of its own";
    EXPECT_EQ(warnings(circle, {u"--layout"_s, u"android"_s, u"--foreground"_s, picture}), 1);
    EXPECT_EQ(warnings(picture, {u"--layout"_s, u"android"_s, u"--foreground"_s, circle}), 0);
}
