#include "tests/support/Fixtures.h"

#include "imaging/io/ImageSource.h"
#include "tests/support/Pictures.h"

#include <QFile>

#include <gtest/gtest.h>

QByteArray fixture(const char* name) {
    QFile file(QStringLiteral(TEST_DATA_DIR "/pictures/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QColor Fixtures::color(int x, int y) {
    return {(37 * x + 5 * y + 10) % 256, (11 * x + 53 * y + 100) % 256, (71 * x + 29 * y + 200) % 256};
}

int Fixtures::alpha(int x, int y) {
    return (40 * x + 9 * y + 15) % 256;
}

QColor Fixtures::translucent(int x, int y) {
    QColor c = color(x, y);
    c.setAlpha(alpha(x, y));
    return c;
}

int Fixtures::greyLevel(int x, int y) {
    return (23 * x + 41 * y + 3) % 256;
}

QColor Fixtures::grey(int x, int y) {
    return {greyLevel(x, y), greyLevel(x, y), greyLevel(x, y)};
}

int Fixtures::paletteIndex(int x, int y, int count) {
    return (5 * x + 3 * y) % count;
}

QColor Fixtures::paletteColor(int i) {
    return {(47 * i + 20) % 256, (91 * i + 60) % 256, (13 * i + 130) % 256};
}

void Fixtures::expectPicture(const QByteArray& bytes, const ColorAt& expected, int w, int h,
                             const QStringList& warnings) {
    const Result<DecodedPicture> picture = ImageSource::decode(bytes);
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_EQ(picture->warnings, warnings);
    ASSERT_EQ(picture->raster.size(), QSize(w, h));
    ASSERT_EQ(picture->raster.format(), QImage::Format_RGBA8888_Premultiplied);
    EXPECT_EQ(Pictures::largestDifference(picture->raster, Pictures::raster(w, h, expected)), 0);
}

void Fixtures::expectPicture(const char* name, const ColorAt& expected, int w, int h,
                             const QStringList& warnings) {
    SCOPED_TRACE(name);
    expectPicture(fixture(name), expected, w, h, warnings);
}
