#include "tests/cli/CliTest.h"

#include <QColor>

namespace {

/// Checks styles on one red icon, 180 pixels wide.
class StyleOptions : public CliTest {
  protected:
    QImage styled(const QStringList& options) const {
        generated(flatPicture(u"red.png"_s, 1024, 1024, Qt::red),
                  QStringList{u"--platform"_s, u"iphone"_s} + options);
        return icon180();
    }
    QColor borderOf(const QString& color) const {
        return styled({u"--border"_s, u"0.1"_s, u"--border-color"_s, color}).pixelColor(4, 90);
    }
};

} // namespace

TEST_F(StyleOptions, without_them_the_picture_fills_the_icon) {
    const QImage icon = styled({});
    for (const QPoint at : {QPoint(0, 0), QPoint(179, 0), QPoint(0, 179), QPoint(179, 179), QPoint(90, 90)})
        EXPECT_EQ(icon.pixelColor(at), QColor(Qt::red));
}

TEST_F(StyleOptions, a_round_corner_of_a_half_makes_a_circle) {
    const QImage icon = styled({u"--round-corner"_s, u"0.5"_s});
    for (const QPoint at : {QPoint(0, 0), QPoint(179, 0), QPoint(0, 179), QPoint(179, 179), QPoint(20, 20)})
        EXPECT_EQ(icon.pixelColor(at).alpha(), 0) << at.x() << ", " << at.y();
    for (const QPoint at : {QPoint(90, 90), QPoint(90, 1), QPoint(1, 90), QPoint(178, 90), QPoint(30, 30)})
        EXPECT_EQ(icon.pixelColor(at), QColor(Qt::red)) << at.x() << ", " << at.y();
}

TEST_F(StyleOptions, a_round_corner_reaches_as_far_as_its_fraction_says) {
    const QImage icon = styled({u"--round-corner"_s, u"0.2"_s});
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    EXPECT_LT(icon.pixelColor(24, 0).alpha(), 255);
    EXPECT_EQ(icon.pixelColor(37, 0).alpha(), 255);
}

TEST_F(StyleOptions, a_border_shows_its_inner_half) {
    const QImage icon = styled({u"--border"_s, u"0.1"_s, u"--border-color"_s, u"#0000ff"_s});
    for (const QPoint at :
         {QPoint(0, 90), QPoint(8, 90), QPoint(90, 8), QPoint(171, 90), QPoint(90, 171), QPoint(0, 0)})
        EXPECT_EQ(icon.pixelColor(at), QColor(Qt::blue)) << at.x() << ", " << at.y();
    for (const QPoint at : {QPoint(9, 90), QPoint(90, 9), QPoint(170, 90), QPoint(90, 170), QPoint(90, 90)})
        EXPECT_EQ(icon.pixelColor(at), QColor(Qt::red)) << at.x() << ", " << at.y();
}

TEST_F(StyleOptions, a_border_is_dark_grey_without_a_colour) {
    EXPECT_EQ(styled({u"--border"_s, u"0.1"_s}).pixelColor(4, 90), QColor(0x33, 0x33, 0x33));
}

TEST_F(StyleOptions, border_colours_have_three_digits) {
    EXPECT_EQ(borderOf(u"#0f8"_s), QColor(0, 255, 136));
}

TEST_F(StyleOptions, border_colours_have_six_digits) {
    EXPECT_EQ(borderOf(u"#12aBcF"_s), QColor(0x12, 0xab, 0xcf));
}

TEST_F(StyleOptions, border_colours_have_eight_digits_the_last_two_of_which_are_alpha) {
    EXPECT_TRUE(isNear(borderOf(u"#00ff0080"_s), QColor(127, 128, 0)));
    EXPECT_EQ(borderOf(u"#00ff0000"_s), QColor(Qt::red));
}

TEST_F(StyleOptions, border_colours_have_names) {
    EXPECT_EQ(borderOf(u"steelblue"_s), QColor(70, 130, 180));
    EXPECT_EQ(borderOf(u"DarkOrange"_s), QColor(255, 140, 0));
}

TEST_F(StyleOptions, a_border_follows_the_round_corner) {
    const QImage icon =
        styled({u"--round-corner"_s, u"0.22"_s, u"--border"_s, u"0.1"_s, u"--border-color"_s, u"#0000ff"_s});
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(5, 5).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(14, 14), QColor(Qt::blue)) << "in the middle of the border's inner half";
    EXPECT_EQ(icon.pixelColor(4, 90), QColor(Qt::blue));
    EXPECT_EQ(icon.pixelColor(22, 22), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(90, 90), QColor(Qt::red));
}

TEST_F(StyleOptions, count_for_the_container_too) {
    generated(sample(u"svg"_s), {u"--platform"_s, u"mac"_s, u"--round-corner"_s, u"0.5"_s});
    const QByteArray alpha = printedByPython(
        u"import sys\n"
        "from PIL import Image\n"
        "picture = Image.open(sys.argv[1]).convert('RGBA')\n"
        "print(picture.width, picture.getpixel((0, 0))[3], picture.getpixel((512, 512))[3])"_s,
        {out() + u"/mac/Application.icns"_s});
    EXPECT_EQ(alpha.trimmed().toStdString(), "1024 0 255");
}
