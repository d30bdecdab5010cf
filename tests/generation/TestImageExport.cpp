#include "generation/ImageExport.h"
#include "imaging/formats/BmpWriter.h"
#include "imaging/formats/ColorTable.h"
#include "imaging/formats/GifWriter.h"
#include "imaging/formats/Jpeg2000Reader.h"
#include "imaging/io/ImageSource.h"
#include "tests/support/Pictures.h"
#include "tests/support/RecordingLog.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

using Pictures::largestDifference;

namespace {

enum Number : quint64 { Jpeg, Tiff, Bmp, Gif, Png, Jpeg2000 };

class ImageExportTest : public testing::Test {
  protected:
    QString path(const QString& name = QStringLiteral("picture")) const { return m_folder.filePath(name); }

    /// Writes a picture and reads it back.
    QImage roundTrip(quint64 number, const QImage& raster) const {
        const Result<Done> saved = ImageExport::saveImageInSelectedFormat(number, path(), raster);
        EXPECT_TRUE(saved) << (saved ? "" : saved.error().sentence.toStdString());
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const Result<DecodedPicture> picture =
            number == Jpeg2000 ? readJpeg2000(bytes) : ImageSource::decode(bytes);
        EXPECT_TRUE(picture) << (picture ? "" : picture.error().sentence.toStdString());
        return picture ? picture->raster : QImage();
    }

    QByteArray start(const QString& name = QStringLiteral("picture")) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.read(12);
    }

    QTemporaryDir m_folder;
    RecordingLog m_log;
};

QImage overWhite(const QImage& raster) {
    return Pictures::raster(raster.width(), raster.height(), [&](int x, int y) {
        const Pictures::Pixel pixel = Pictures::pixel(raster, x, y);
        return QColor(pixel.red + 255 - pixel.alpha, pixel.green + 255 - pixel.alpha,
                      pixel.blue + 255 - pixel.alpha);
    });
}

/// Soft shapes, which suit JPEG.
QImage soft(int width, int height) {
    return Pictures::raster(width, height, [&](int x, int y) {
        return QColor(40 + 150 * x / width, 60 + 120 * y / height, 200 - 100 * x / width,
                      55 + 200 * y / height);
    });
}

} // namespace

TEST_F(ImageExportTest, each_number_has_its_type_and_properties) {
    struct Row {
        const char* text;
        const char* type;
        ImageProperties properties;
    };
    const Row rows[] = {
        {"kJPEG_TYPE:", "public.jpeg", {0.7F, std::nullopt}},
        {"kTIFF_TYPE:", "public.tiff", {std::nullopt, 5}},
        {"kBMP_TYPE:", "com.microsoft.bmp", {1.0F, std::nullopt}},
        {"kGIF_TYPE:", "com.compuserve.gif", {1.0F, std::nullopt}},
        {"kPNG_TYPE:", "public.png", {}},
        {"kJPEG2000_TYPE:", "public.jpeg-2000", {}},
    };
    for (quint64 number = 0; number < 6; ++number) {
        const ImageExport::Format* format = ImageExport::format(number);
        ASSERT_NE(format, nullptr);
        EXPECT_STREQ(format->logText, rows[number].text);
        EXPECT_STREQ(format->type, rows[number].type);
        EXPECT_EQ(format->properties, rows[number].properties);
    }
    EXPECT_EQ(static_cast<double>(*ImageExport::format(Jpeg)->properties.lossyCompressionQuality),
              0.699999988079071);
}

TEST_F(ImageExportTest, each_number_logs_its_text_and_writes_its_format) {
    const QImage raster = Pictures::flat(5, 3, Qt::red);
    const QByteArray starts[] = {"\xff\xd8\xff", "II*",     "BM",
                                 "GIF89a",       "\x89PNG", QByteArray("\0\0\0\x0cjP  ", 8)};
    for (quint64 number = 0; number < 6; ++number) {
        // The file's name does not change its format.
        const QString name = QStringLiteral("%1.png").arg(number);
        EXPECT_TRUE(ImageExport::saveImageInSelectedFormat(number, path(name), raster));
        EXPECT_TRUE(start(name).startsWith(starts[number])) << number;
    }
    EXPECT_EQ(m_log.lines(), QStringList({QStringLiteral("kJPEG_TYPE:"), QStringLiteral("kTIFF_TYPE:"),
                                          QStringLiteral("kBMP_TYPE:"), QStringLiteral("kGIF_TYPE:"),
                                          QStringLiteral("kPNG_TYPE:"), QStringLiteral("kJPEG2000_TYPE:")}));
}

TEST_F(ImageExportTest, other_numbers_write_and_log_nothing) {
    for (const quint64 number : {quint64{6}, quint64{7}, ~quint64{0}}) {
        EXPECT_EQ(ImageExport::format(number), nullptr);
        EXPECT_TRUE(ImageExport::saveImageInSelectedFormat(number, path(), Pictures::flat(2, 2, Qt::red)));
    }
    EXPECT_FALSE(QFileInfo::exists(path()));
    EXPECT_EQ(m_log.lines(), QStringList());
}

TEST_F(ImageExportTest, a_path_that_is_none_is_logged_all_the_same_and_writes_nothing) {
    for (quint64 number = 0; number < 6; ++number) {
        for (const QString& none : {QString(), path() + QChar(QChar::Null)}) {
            const Result<Done> saved =
                ImageExport::saveImageInSelectedFormat(number, none, Pictures::flat(2, 2, Qt::red));
            ASSERT_FALSE(saved);
            EXPECT_EQ(saved.error().code, ErrorCode::NotAPath);
        }
    }
    EXPECT_EQ(m_log.lines().size(), 12);
}

TEST_F(ImageExportTest, a_picture_without_pixels_leaves_an_older_file_alone) {
    QFile older(path());
    ASSERT_TRUE(older.open(QIODevice::WriteOnly));
    older.write("older");
    older.close();
    for (quint64 number = 0; number < 6; ++number)
        EXPECT_FALSE(ImageExport::saveImageInSelectedFormat(number, path(), QImage()));
    EXPECT_EQ(start(), "older");
    EXPECT_FALSE(ImageExport::saveImageInSelectedFormat(Png, path(QStringLiteral("no/folder")),
                                                        Pictures::flat(2, 2, Qt::red)));
}

TEST_F(ImageExportTest, the_lossless_formats_keep_every_pixel_and_alpha) {
    for (const QSize size : {QSize(1, 1), QSize(2, 1), QSize(1, 7), QSize(31, 17), QSize(64, 97)}) {
        const QImage raster = Pictures::translucentNoise(size.width(), size.height(), 5);
        for (const quint64 number : {Tiff, Png, Jpeg2000})
            EXPECT_EQ(largestDifference(roundTrip(number, raster), raster), 0) << number;
        EXPECT_EQ(largestDifference(roundTrip(Bmp, raster), raster), 0);
    }
}

TEST_F(ImageExportTest, jpeg_is_laid_over_white) {
    const QImage raster = soft(64, 48);
    const QImage read = roundTrip(Jpeg, raster);
    EXPECT_EQ(read.size(), raster.size());
    EXPECT_LE(largestDifference(read, overWhite(raster)), 12);
    const QImage clear = roundTrip(Jpeg, Pictures::flat(20, 20, Qt::transparent));
    EXPECT_LE(largestDifference(clear, Pictures::flat(20, 20, Qt::white)), 1);
}

TEST_F(ImageExportTest, jpeg_that_is_too_large_is_refused) {
    EXPECT_FALSE(ImageExport::saveImageInSelectedFormat(Jpeg, path(), Pictures::flat(65501, 1, Qt::red)));
    EXPECT_FALSE(QFileInfo::exists(path()));
    EXPECT_FALSE(ImageExport::saveImageInSelectedFormat(Gif, path(), Pictures::flat(65536, 1, Qt::red)));
    EXPECT_FALSE(QFileInfo::exists(path()));
}

TEST_F(ImageExportTest, gif_keeps_up_to_255_colours_and_transparency_exactly) {
    const QImage raster = Pictures::raster(16, 17, [](int x, int y) {
        const int i = std::min(16 * y + x, 255);
        return i == 255 ? QColor(Qt::transparent) : QColor(i, 255 - i, 7 * i % 256);
    });
    EXPECT_EQ(largestDifference(roundTrip(Gif, raster), raster), 0);
    const QImage one = Pictures::flat(3, 3, QColor(9, 8, 7));
    EXPECT_EQ(largestDifference(roundTrip(Gif, one), one), 0);
    const QImage clear = Pictures::flat(3, 3, Qt::transparent);
    EXPECT_EQ(largestDifference(roundTrip(Gif, clear), clear), 0);
}

TEST_F(ImageExportTest, gif_is_clear_below_half_coverage_and_opaque_above) {
    const QImage raster =
        Pictures::raster(2, 1, [](int x, int) { return QColor(200, 100, 50, x == 0 ? 127 : 128); });
    const QImage read = roundTrip(Gif, raster);
    EXPECT_EQ(read.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(read.pixelColor(1, 0).alpha(), 255);
    EXPECT_NEAR(read.pixelColor(1, 0).red(), 200, 1);
}

TEST_F(ImageExportTest, gif_of_many_colours_is_near_and_right_on_average) {
    const QImage raster =
        Pictures::raster(128, 128, [](int x, int y) { return QColor(2 * x, 2 * y, x + y); });
    const QImage read = roundTrip(Gif, raster);
    ASSERT_EQ(read.size(), raster.size());
    double squares = 0;
    std::array<double, 3> sums{};
    for (int y = 0; y < 128; ++y) {
        for (int x = 0; x < 128; ++x) {
            const Pictures::Pixel a = Pictures::pixel(read, x, y);
            const Pictures::Pixel b = Pictures::pixel(raster, x, y);
            const std::array<int, 3> difference{a.red - b.red, a.green - b.green, a.blue - b.blue};
            for (std::size_t i = 0; i < 3; ++i) {
                squares += difference[i] * difference[i];
                sums[i] += difference[i];
            }
        }
    }
    // Without diffusion, 6 × 6 × 6 evenly spaced colours would differ by 15.
    EXPECT_LT(std::sqrt(squares / (3 * 128 * 128)), 13);
    for (const double sum : sums)
        EXPECT_LT(std::abs(sum / (128 * 128)), 0.05);
}

TEST_F(ImageExportTest, a_table_of_few_colours_is_theirs) {
    const IndexedPicture picture = *indexedPicture(Pictures::raster(3, 1, [](int x, int) {
        return x == 0 ? QColor(5, 5, 5) : x == 1 ? QColor(1, 2, 3) : QColor(0, 0, 0, 0);
    }));
    const std::vector<IndexedPicture::Rgb> expected{{0, 0, 0}, {1, 2, 3}, {5, 5, 5}};
    EXPECT_TRUE(picture.hasTransparency);
    EXPECT_EQ(picture.colors, expected);
    EXPECT_EQ(picture.indexes, (std::vector<std::uint8_t>{2, 1, 0}));
}

TEST_F(ImageExportTest, a_table_of_many_colours_has_255) {
    const IndexedPicture picture = *indexedPicture(Pictures::noise(64, 64, 3));
    EXPECT_FALSE(picture.hasTransparency);
    EXPECT_EQ(picture.colors.size(), 255U);
    EXPECT_GT(std::set<IndexedPicture::Rgb>(picture.colors.begin(), picture.colors.end()).size(), 250U);
}

TEST_F(ImageExportTest, a_table_is_made_of_any_number_of_colours) {
    // Noise has so many colours that only the coarsest grid has few enough cells.
    const IndexedPicture picture = *indexedPicture(Pictures::noise(400, 300, 3));
    EXPECT_EQ(picture.colors.size(), 255U);
    EXPECT_EQ(picture.indexes.size(), 400U * 300U);
}

TEST_F(ImageExportTest, a_picture_too_large_for_a_bmp_header_is_refused) {
    // The picture is refused before its pixels are read, so the buffer needs only one.
    const uchar pixel[4] = {};
    const QImage large(pixel, 32768, 16384, QImage::Format_RGBA8888_Premultiplied);
    EXPECT_EQ(encodeBmp(large).error().code, ErrorCode::TooLarge);
}

TEST_F(ImageExportTest, a_destination_holds_what_its_type_can) {
    EXPECT_FALSE(ImageDestination::create(path(), QStringLiteral("public.png"), 2));
    EXPECT_FALSE(ImageDestination::create(path(), QStringLiteral("public.png"), 0));
    EXPECT_FALSE(ImageDestination::create(path(), QStringLiteral("public.webp"), 1));
    auto destination = ImageDestination::create(path(), QStringLiteral("public.png"), 1);
    ASSERT_TRUE(destination);
    EXPECT_FALSE(destination->finalize()) << "nothing was added";
    auto second = ImageDestination::create(path(), QStringLiteral("public.png"), 1);
    EXPECT_TRUE(second->addImage(Pictures::flat(4, 2, Qt::red)));
    EXPECT_TRUE(second->finalize());
    EXPECT_EQ(second->largestSize(), QSize(4, 2));
    EXPECT_EQ(second->bytesWritten(), QFileInfo(path()).size());
}

TEST_F(ImageExportTest, gif_of_a_narrow_range_keeps_its_colours_apart) {
    const QImage grey = Pictures::raster(256, 4, [](int x, int) { return QColor(x, x, x); });
    EXPECT_LE(largestDifference(roundTrip(Gif, grey), grey), 2);
    const QImage narrow =
        Pictures::raster(32, 32, [](int x, int y) { return QColor(100 + x, 100 + y, 90 + (x + y) / 4); });
    EXPECT_GT(indexedPicture(narrow)->colors.size(), 200U);
    EXPECT_LE(largestDifference(roundTrip(Gif, narrow), narrow), 6);
}

TEST_F(ImageExportTest, a_format_that_cannot_tell_so_many_pixels_says_so) {
    const Result<Done> saved =
        ImageExport::saveImageInSelectedFormat(Gif, path(), Pictures::flat(65536, 1, Qt::red));
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().code, ErrorCode::TooLarge);
    EXPECT_TRUE(saved.error().sentence.contains(QStringLiteral("65535")));
}

TEST_F(ImageExportTest, a_picture_too_large_for_a_gif_header_is_refused) {
    EXPECT_EQ(encodeGif(Pictures::flat(65536, 1, Qt::red)).error().code, ErrorCode::TooLarge);
    EXPECT_EQ(encodeGif(Pictures::flat(1, 65536, Qt::red)).error().code, ErrorCode::TooLarge);
}

TEST_F(ImageExportTest, pictures_of_any_format_are_taken) {
    QImage grey(40, 30, QImage::Format_Grayscale8);
    grey.fill(77);
    QImage straight(40, 30, QImage::Format_RGBA8888);
    straight.fill(QColor(200, 100, 50, 0));
    for (quint64 number = 0; number < 6; ++number) {
        EXPECT_EQ(roundTrip(number, grey).pixelColor(39, 29), QColor(77, 77, 77)) << number;
        const QColor clear = roundTrip(number, straight).pixelColor(39, 29);
        EXPECT_EQ(clear, number == Jpeg ? QColor(Qt::white) : QColor(0, 0, 0, 0)) << number;
    }
}

TEST_F(ImageExportTest, a_long_jpeg_file_is_whole) {
    const QImage raster = Pictures::noise(600, 500, 8);
    EXPECT_EQ(roundTrip(Jpeg, raster).size(), raster.size());
    EXPECT_GT(QFileInfo(path()).size(), 2 * 65536);
}
