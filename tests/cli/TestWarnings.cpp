#include "tests/cli/CliTest.h"

namespace {

class Warnings : public CliTest {
  protected:
    /// The lines on standard error of a successful run.
    QStringList warned(const QString& picture, const QString& platform) const {
        const ProcessResult result = generate(picture, {u"--platform"_s, platform});
        EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
        EXPECT_FALSE(tree().empty());
        for (const QString& line : result.errorLines())
            EXPECT_TRUE(line.startsWith(u"tobrimax-cli: warning: "_s)) << line.toStdString();
        return result.errorLines();
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

TEST_F(Warnings, measure_a_turned_photograph_upright) {
    const QString picture =
        pillowPicture(u"turned.jpg"_s, u"exif = Image.Exif()\n"
                                       "exif[0x0112] = 6\n"
                                       "Image.new('RGB', (1100, 1050)).save(path, exif=exif)"_s);
    const QStringList lines = warned(picture, u"iphone"_s);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(u"1050 × 1100"_s)) << lines[0].toStdString();
}
