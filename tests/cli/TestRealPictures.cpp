#include "tests/cli/CliTest.h"

#include <QColorSpace>
#include <QColorTransform>

#include <algorithm>
#include <array>

namespace {

/// Pictures as users have them. They are checked on the iPhone's icon of 180 pixels.
class RealPictures : public CliTest {
  protected:
    QImage made(const QString& picture, bool isSmall = false) const {
        const ProcessResult result = generate(picture, {u"--platform"_s, u"iphone"_s});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(otherErrorLines(result).size(), isSmall ? 1 : 0) << result.errors.toStdString();
        std::vector<std::string> icons = wanted(QStringLiteral(RESOURCES_DIR "/ImageSizeFile.plist"));
        std::erase_if(icons, [](const std::string& icon) { return !icon.starts_with("iphone/"); });
        EXPECT_EQ(icons.size(), 9U);
        EXPECT_EQ(found(), icons);
        return icon180();
    }
};

/// A picture with one colour in each quarter.
QImage quarters(int side, const std::array<QColor, 4>& colors) {
    QImage image(side, side, QImage::Format_RGB888);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.setPixelColor(x, y, colors[(y < side / 2 ? 0U : 2U) + (x < side / 2 ? 0U : 1U)]);
    }
    return image;
}

} // namespace

TEST_F(RealPictures, a_PNG_of_4096_pixels) {
    const QString big = path(u"big.png"_s);
    const ProcessResult converted =
        runProcess(u"convert"_s, {u"-size"_s, u"4096x4096"_s, u"xc:#204060"_s, u"-fill"_s, u"#e0c020"_s,
                                  u"-draw"_s, u"rectangle 1024,1024 3071,3071"_s, big});
    ASSERT_EQ(converted.exitStatus, 0) << converted.errors.toStdString();
    const QImage icon = made(big);
    EXPECT_TRUE(isNear(icon.pixelColor(10, 10), QColor(0x20, 0x40, 0x60)));
    EXPECT_TRUE(isNear(icon.pixelColor(90, 90), QColor(0xe0, 0xc0, 0x20)));
    EXPECT_TRUE(isNear(icon.pixelColor(41, 90), QColor(0x20, 0x40, 0x60)));
    EXPECT_TRUE(isNear(icon.pixelColor(49, 90), QColor(0xe0, 0xc0, 0x20)));
}

TEST_F(RealPictures, a_JPEG_that_is_to_be_turned) {
    picture(u"straight.png"_s, quarters(1024, {Qt::red, Qt::green, Qt::blue, Qt::white}));
    const QString turned =
        pillowPicture(u"turned.jpg"_s, u"exif = Image.Exif()\n"
                                       "exif[0x0112] = 6\n"
                                       "straight = Image.open(path.replace('turned.jpg', 'straight.png'))\n"
                                       "straight.save(path, quality=95, exif=exif)"_s);
    // The picture is turned a quarter clockwise.
    const QImage icon = made(turned);
    EXPECT_TRUE(isNear(icon.pixelColor(45, 45), Qt::blue, 8));
    EXPECT_TRUE(isNear(icon.pixelColor(135, 45), Qt::red, 8));
    EXPECT_TRUE(isNear(icon.pixelColor(45, 135), Qt::white, 8));
    EXPECT_TRUE(isNear(icon.pixelColor(135, 135), Qt::green, 8));
}

TEST_F(RealPictures, a_PNG_in_Display_P3) {
    const QColor stored(180, 100, 80);
    QImage image(1024, 1024, QImage::Format_RGB888);
    image.fill(stored);
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    const QColor expected = QColorSpace(QColorSpace::DisplayP3)
                                .transformationToColorSpace(QColorSpace(QColorSpace::SRgb))
                                .map(stored);
    ASSERT_FALSE(isNear(expected, stored, 6));
    EXPECT_TRUE(isNear(made(picture(u"p3.png"_s, image)).pixelColor(90, 90), expected, 2));
}

TEST_F(RealPictures, a_grey_PNG_of_16_bits) {
    QImage image(1024, 1024, QImage::Format_Grayscale16);
    image.fill(QColor(64, 64, 64));
    for (int y = 0; y < 512; ++y)
        std::fill_n(reinterpret_cast<quint16*>(image.scanLine(y)), 1024, quint16{0xc0c0});
    const QString path = picture(u"grey.png"_s, image);
    ASSERT_EQ(content(path).mid(24, 2), QByteArray("\x10\x00", 2)) << "not 16 bits of grey";
    const QImage icon = made(path);
    EXPECT_TRUE(isNear(icon.pixelColor(90, 45), QColor(192, 192, 192), 1));
    EXPECT_TRUE(isNear(icon.pixelColor(90, 135), QColor(64, 64, 64), 1));
}

TEST_F(RealPictures, an_SVG_with_a_clip_path_a_gradient_and_a_mask) {
    const QString drawing =
        file(u"drawing.svg"_s, R"svg(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 100 100">
<defs>
<linearGradient id="gradient">
<stop offset="0" stop-color="#f00"/><stop offset="1" stop-color="#00f"/>
</linearGradient>
<clipPath id="clip"><circle cx="50" cy="50" r="50"/></clipPath>
<mask id="mask"><rect width="100" height="60" fill="#fff"/></mask>
</defs>
<g clip-path="url(#clip)"><rect width="100" height="100" fill="url(#gradient)" mask="url(#mask)"/></g>
</svg>)svg");
    const QImage icon = made(drawing);
    EXPECT_EQ(icon.pixelColor(2, 2).alpha(), 0) << "outside of the clip";
    EXPECT_EQ(icon.pixelColor(90, 120).alpha(), 0) << "outside of the mask";
    EXPECT_TRUE(isNear(icon.pixelColor(4, 90), QColor(249, 0, 6), 4));
    EXPECT_TRUE(isNear(icon.pixelColor(90, 60), QColor(127, 0, 128), 4));
    EXPECT_TRUE(isNear(icon.pixelColor(175, 90), QColor(6, 0, 249), 4));
}

TEST_F(RealPictures, a_PNG_of_a_single_pixel) {
    const QColor color(10, 200, 30);
    const QImage icon = made(flatPicture(u"one.png"_s, 1, 1, color), true);
    for (const QPoint at : {QPoint(0, 0), QPoint(179, 0), QPoint(90, 90), QPoint(179, 179)})
        EXPECT_EQ(icon.pixelColor(at), color) << at.x() << ", " << at.y();
}

TEST_F(RealPictures, the_format_is_told_by_the_content) {
    const QString drawing = file(u"drawing.png"_s, content(sample(u"svg"_s)));
    made(drawing);
}

TEST_F(RealPictures, an_icon_container_of_our_own) {
    generated(sample(u"svg"_s), {u"--platform"_s, u"mac"_s});
    const QString container = file(u"before.icns"_s, content(out() + u"/mac/Application.icns"_s));
    const QImage before = icon(u"mac/AppIcon.appiconset/icon_512x512@2x.png"_s);
    generated(container, {u"--platform"_s, u"mac"_s});
    EXPECT_EQ(icon(u"mac/AppIcon.appiconset/icon_512x512@2x.png"_s), before);
}
