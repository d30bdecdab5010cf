#include "platform/PngFilter.h"
#include "platform/PngReader.h"
#include "platform/PngWriter.h"
#include "platform/Unpremultiply.h"
#include "tests/support/Pictures.h"
#include "tests/support/Process.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>

namespace {

QStringList chunkTypes(const QByteArray& png) {
    QStringList types;
    for (qsizetype at = 8; at + 8 <= png.size();) {
        types << QString::fromLatin1(png.mid(at + 4, 4));
        at += 12 + qFromBigEndian<quint32>(png.constData() + at);
    }
    return types;
}

QImage graphic(int side) {
    return Pictures::raster(side, side, [side](int x, int y) {
        const bool isInside = std::hypot(x - side / 2.0, y - side / 2.0) < side / 2.5;
        return isInside ? QColor(30, 90, 200) : QColor(0, 0, 0, 0);
    });
}

QImage photograph(int side) {
    QImage noise = Pictures::noise(side, side, 4);
    return Pictures::raster(side, side, [&](int x, int y) {
        const int wave = static_cast<int>(100 + 60 * std::sin(x * 0.02) * std::cos(y * 0.013)) +
                         (Pictures::pixel(noise, x, y).red >> 5);
        return QColor(wave, (wave + x / 8) & 255, 255 - wave);
    });
}

} // namespace

TEST(PngWriter, writes_the_four_chunks_and_nothing_else) {
    EXPECT_EQ(chunkTypes(encodePng(Pictures::noise(5, 3, 1))),
              QStringList({QStringLiteral("IHDR"), QStringLiteral("sRGB"), QStringLiteral("IDAT"),
                           QStringLiteral("IEND")}));
}

TEST(PngWriter, an_opaque_picture_has_alpha_too) {
    const QByteArray png = encodePng(Pictures::flat(4, 4, Qt::red));
    EXPECT_EQ(png.at(24), 8) << "bits per sample";
    EXPECT_EQ(png.at(25), 6) << "RGBA";
}

TEST(PngWriter, every_strategy_and_odd_size_reads_back_to_the_same_pixels) {
    for (const QSize size :
         {QSize(1, 1), QSize(1, 7), QSize(7, 1), QSize(13, 11), QSize(64, 64), QSize(131, 97)}) {
        const QImage raster = Pictures::noise(size.width(), size.height(), 9);
        for (const PngFilterStrategy filter :
             {PngFilterStrategy::Choose, PngFilterStrategy::None, PngFilterStrategy::Adaptive}) {
            const Result<DecodedPicture> back = readPng(encodePng(raster, {filter, 6}));
            ASSERT_TRUE(back);
            EXPECT_TRUE(Pictures::same(back->raster, raster)) << size.width() << "x" << size.height();
        }
    }
}

TEST(PngWriter, translucent_pixels_read_back_to_the_same_premultiplied_pixels) {
    const QImage raster = Pictures::translucentNoise(256, 64, 9);
    const Result<DecodedPicture> back = readPng(encodePng(raster));
    ASSERT_TRUE(back);
    EXPECT_TRUE(Pictures::same(back->raster, raster));
}

TEST(PngWriter, the_same_raster_gives_the_same_bytes) {
    const QImage raster = photograph(128);
    EXPECT_EQ(encodePng(raster), encodePng(raster.copy()));
}

TEST(PngWriter, the_chosen_filter_suits_the_picture) {
    for (const QImage& raster : {graphic(250), photograph(250), graphic(500), photograph(500)}) {
        const qsizetype none = encodePng(raster, {PngFilterStrategy::None, 6}).size();
        const qsizetype adaptive = encodePng(raster, {PngFilterStrategy::Adaptive, 6}).size();
        EXPECT_NE(none, adaptive);
        // Of the larger two only a sample is tried.
        const double allowed = raster.width() == 250 ? 1 : 1.05;
        EXPECT_LE(static_cast<double>(encodePng(raster).size()),
                  allowed * static_cast<double>(std::min(none, adaptive)));
    }
}

TEST(PngWriter, no_pixels_give_no_file) {
    EXPECT_TRUE(encodePng(QImage()).isEmpty());
}

TEST(PngWriter, pngcheck_accepts_its_files) {
    const QTemporaryDir folder;
    int number = 0;
    for (const QImage& raster : {graphic(50), photograph(65), Pictures::translucentNoise(31, 33, 2)}) {
        QFile file(folder.filePath(QStringLiteral("%1.png").arg(++number)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(encodePng(raster));
        file.close();
        const ProcessResult check = runProcess(QStringLiteral("pngcheck"), {file.fileName()});
        EXPECT_EQ(check.exitStatus, 0) << check.output.toStdString();
    }
}

TEST(PngFilter, each_row_takes_the_filter_with_the_least_sum) {
    // A row equal to the one above: Up leaves zeros. The first of a rising row: Sub leaves small steps.
    const std::vector<std::uint8_t> row{10, 90, 200, 255, 13, 93, 203, 255, 16, 96, 206, 255};
    std::vector<std::uint8_t> out(row.size() + 1);
    PngFilter filter(row.size());
    filter.adaptive(row.data(), row.data(), out.data());
    EXPECT_EQ(out, std::vector<std::uint8_t>({2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    filter.adaptive(row.data(), nullptr, out.data());
    EXPECT_EQ(out, std::vector<std::uint8_t>({1, 10, 90, 200, 255, 3, 3, 3, 0, 3, 3, 3, 0}));
}

TEST(Unpremultiply, divides_every_colour_by_every_alpha_with_the_stated_rounding) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int c = 0; c < 256; ++c) {
            const std::uint8_t in[4] = {static_cast<std::uint8_t>(c), 0, static_cast<std::uint8_t>(c),
                                        static_cast<std::uint8_t>(alpha)};
            std::uint8_t out[4] = {};
            unpremultiply(in, out, 1);
            const int expected = alpha == 0 ? 0 : std::min(255, (c * 255 + alpha / 2) / alpha);
            ASSERT_EQ(out[0], expected) << c << " by " << alpha;
            ASSERT_EQ(out[1], 0);
            ASSERT_EQ(out[2], expected);
            ASSERT_EQ(out[3], alpha);
        }
    }
}
