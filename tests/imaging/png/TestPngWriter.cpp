#include "imaging/png/PngFilter.h"
#include "imaging/png/PngReader.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/Pictures.h"
#include "tests/support/Process.h"

#include <QFile>
#include <QPainter>
#include <QSet>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

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

/// Shapes of one colour on another, with smooth edges.
QImage twoColours(int side) {
    QImage raster(side, side, QImage::Format_RGBA8888_Premultiplied);
    raster.fill(QColor(240, 200, 40));
    QPainter painter(&raster);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(20, 60, 110));
    painter.scale(side, side);
    for (int i = 0; i < 9; ++i)
        painter.drawEllipse(QPointF(0.15 + 0.35 * (i % 3), 0.12 + 0.11 * i), 0.08 + 0.01 * i,
                            0.15 - 0.01 * i);
    return raster;
}

/// A round gradient.
QImage glow(int side) {
    return Pictures::raster(side, side, [side](int x, int y) {
        const int level = static_cast<int>(350 * std::hypot(x - side / 2.0, y - side / 2.0) / side);
        return QColor(level, 255 - level, 128);
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

/// Every coding.
std::vector<PngCoding> everyCoding() {
    std::vector<PngCoding> codings;
    for (const PngFilterStrategy filter : {PngFilterStrategy::None, PngFilterStrategy::Adaptive}) {
        for (const Deflate::Method method : {Deflate::Method::Runs, Deflate::Method::Quick,
                                             Deflate::Method::Greedy, Deflate::Method::Thorough})
            codings.push_back({filter, method});
    }
    return codings;
}

/// The filtered rows of a PNG with one IDAT chunk.
QList<QByteArray> filteredRows(const QByteArray& png, qsizetype rowBytes) {
    const qsizetype start = png.indexOf("IDAT") + 4;
    const auto length = qFromBigEndian<quint32>(png.constData() + start - 8);
    const auto pixels = qFromBigEndian<quint32>(png.constData() + 20) * static_cast<quint32>(rowBytes);
    QByteArray sized(4, 0);
    qToBigEndian(pixels, sized.data());
    const QByteArray bytes = qUncompress(sized + png.mid(start, length));
    QList<QByteArray> rows;
    for (qsizetype at = 0; at < bytes.size(); at += rowBytes)
        rows << bytes.mid(at, rowBytes);
    return rows;
}

} // namespace

TEST(PngWriter, writes_the_four_chunks_and_nothing_else) {
    EXPECT_EQ(chunkTypes(*encodePng(Pictures::noise(5, 3, 1))),
              QStringList({QStringLiteral("IHDR"), QStringLiteral("sRGB"), QStringLiteral("IDAT"),
                           QStringLiteral("IEND")}));
}

TEST(PngWriter, an_opaque_picture_has_alpha_too) {
    const QByteArray png = *encodePng(Pictures::flat(4, 4, Qt::red));
    EXPECT_EQ(png.at(24), 8) << "bits per sample";
    EXPECT_EQ(png.at(25), 6) << "RGBA";
}

TEST(PngWriter, every_strategy_and_odd_size_reads_back_to_the_same_pixels) {
    for (const QSize size :
         {QSize(1, 1), QSize(1, 7), QSize(7, 1), QSize(13, 11), QSize(64, 64), QSize(131, 97)}) {
        const QImage raster = Pictures::noise(size.width(), size.height(), 9);
        for (const PngCoding& coding : everyCoding()) {
            const Result<DecodedPicture> back = readPng(*encodePng(raster, {coding}));
            ASSERT_TRUE(back);
            EXPECT_TRUE(Pictures::same(back->raster, raster)) << size.width() << "x" << size.height();
        }
    }
}

TEST(PngWriter, translucent_pixels_read_back_to_the_same_premultiplied_pixels) {
    const QImage raster = Pictures::translucentNoise(256, 64, 9);
    const Result<DecodedPicture> back = readPng(*encodePng(raster));
    ASSERT_TRUE(back);
    EXPECT_TRUE(Pictures::same(back->raster, raster));
}

TEST(PngWriter, the_same_raster_gives_the_same_bytes) {
    const QImage raster = photograph(128);
    EXPECT_EQ(*encodePng(raster), *encodePng(raster.copy()));
}

TEST(PngWriter, what_is_chosen_suits_the_picture) {
    for (const int side : {20, 60, 140, 250, 500}) {
        for (const QImage& raster : {graphic(side), photograph(side)}) {
            qsizetype least = std::numeric_limits<qsizetype>::max();
            qsizetype most = 0;
            for (const PngCoding& coding : everyCoding()) {
                const qsizetype length = encodePng(raster, {coding})->size();
                least = std::min(least, length);
                most = std::max(most, length);
            }
            EXPECT_LT(least, most);
            // Only a sample of larger pictures is tried, and the quick method may take some percent more.
            EXPECT_LE(static_cast<double>(encodePng(raster)->size()), 1.05 * static_cast<double>(least))
                << side;
        }
    }
}

TEST(PngWriter, repetitions_between_rows_and_in_residuals_are_found) {
    for (const int side : {256, 512}) {
        for (const QImage& raster : {twoColours(side), glow(side)}) {
            const auto runs =
                encodePng(raster, {{{PngFilterStrategy::Adaptive, Deflate::Method::Runs}}})->size();
            const auto chosen = encodePng(raster)->size();
            EXPECT_LT(static_cast<double>(chosen), 0.9 * static_cast<double>(runs)) << side;
        }
    }
}

TEST(PngWriter, what_is_said_is_done) {
    const QImage raster = photograph(100);
    for (const PngCoding& coding : everyCoding()) {
        QSet<char> types;
        for (const QByteArray& row : filteredRows(*encodePng(raster, {coding}), 401))
            types << row.at(0);
        if (coding.filter == PngFilterStrategy::None)
            EXPECT_EQ(types, QSet<char>{0});
        else
            EXPECT_FALSE(types.contains(0));
    }
}

TEST(PngWriter, no_pixels_give_no_file) {
    EXPECT_EQ(encodePng(QImage()).error().code, ErrorCode::EmptySize);
}

TEST(PngWriter, pngcheck_accepts_its_files) {
    const QTemporaryDir folder;
    int number = 0;
    for (const QImage& raster : {graphic(50), photograph(65), Pictures::translucentNoise(31, 33, 2)}) {
        QFile file(folder.filePath(QStringLiteral("%1.png").arg(++number)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(*encodePng(raster));
        file.close();
        const ProcessResult check = runProcess(QStringLiteral("pngcheck"), {file.fileName()});
        EXPECT_EQ(check.exitStatus, 0) << check.output.toStdString();
    }
}

TEST(PngFilter, each_row_takes_the_filter_with_the_least_sum) {
    // The first row rises: Sub leaves small steps. The second row equals the row above: Up leaves zeros.
    const std::vector<std::uint8_t> row{10, 90, 200, 255, 13, 93, 203, 255, 16, 96, 206, 255};
    std::vector<std::uint8_t> out(row.size() + 1);
    PngFilter filter(row.size(), 4);
    std::ranges::copy(row, filter.nextRow());
    filter.adaptive(out.data());
    EXPECT_EQ(out, std::vector<std::uint8_t>({1, 10, 90, 200, 255, 3, 3, 3, 0, 3, 3, 3, 0}));
    std::ranges::copy(row, filter.nextRow());
    filter.adaptive(out.data());
    EXPECT_EQ(out, std::vector<std::uint8_t>({2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

namespace {

/// A filter's prediction of one byte, as the format defines it.
int prediction(int type, int left, int above, int aboveLeft) {
    const int estimate = left + above - aboveLeft;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toAboveLeft = std::abs(estimate - aboveLeft);
    switch (type) {
    case 1:
        return left;
    case 2:
        return above;
    case 3:
        return (left + above) / 2;
    case 4:
        return toLeft <= toAbove && toLeft <= toAboveLeft ? left : toAbove <= toAboveLeft ? above : aboveLeft;
    default:
        return 0;
    }
}

using Bytes = std::vector<std::uint8_t>;

Bytes plainlyFiltered(const Bytes& row, const Bytes& above) {
    Bytes best;
    int least = std::numeric_limits<int>::max();
    for (int type = 0; type < 5; ++type) {
        Bytes bytes{static_cast<std::uint8_t>(type)};
        int sum = 0;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const int left = i < 4 ? 0 : row[i - 4];
            const int aboveLeft = i < 4 ? 0 : above[i - 4];
            bytes.push_back(static_cast<std::uint8_t>(row[i] - prediction(type, left, above[i], aboveLeft)));
            sum += std::abs(static_cast<std::int8_t>(bytes.back()));
        }
        if (sum < least) {
            least = sum;
            best = bytes;
        }
    }
    return best;
}

/// A row for which the filter of type `kind` is the best; random bytes for kind 5.
Bytes rowFor(int kind, std::size_t bytes, const Bytes& above, std::mt19937& random) {
    Bytes row(bytes);
    for (std::size_t i = 0; i < bytes; ++i) {
        const int left = i < 4 ? 0 : row[i - 4];
        const int aboveLeft = i < 4 ? 0 : above[i - 4];
        const int noise = static_cast<int>(random() % 3) - (kind == 0 ? 0 : 1);
        row[i] = static_cast<std::uint8_t>(kind == 5 ? static_cast<int>(random())
                                                     : prediction(kind, left, above[i], aboveLeft) + noise);
    }
    return row;
}

} // namespace

TEST(PngFilter, is_the_plain_loop_for_every_kind_of_row_and_length) {
    std::mt19937 random(7);
    QSet<int> chosen;
    for (std::size_t pixels = 1; pixels < 80; ++pixels) {
        PngFilter filter(4 * pixels, 4);
        Bytes above(4 * pixels);
        for (int number = 0; number < 30; ++number) {
            const Bytes row = rowFor(number % 6, 4 * pixels, above, random);
            Bytes out(1 + row.size() + 1, 0xee);
            std::ranges::copy(row, filter.nextRow());
            filter.adaptive(out.data());
            ASSERT_EQ(out.back(), 0xee);
            out.pop_back();
            ASSERT_EQ(out, plainlyFiltered(row, above)) << pixels << " pixels, row " << number;
            chosen << out.front();
            above = row;
        }
    }
    EXPECT_EQ(chosen, (QSet<int>{0, 1, 2, 3, 4}));
}
