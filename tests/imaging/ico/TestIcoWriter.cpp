#include "imaging/ico/IcoWriter.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/Pictures.h"
#include "tests/support/Process.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

namespace {

std::vector<QImage> rastersOf(std::initializer_list<int> sides) {
    std::vector<QImage> rasters;
    for (const int side : sides)
        rasters.push_back(Pictures::translucentNoise(side, side, static_cast<unsigned>(side)));
    return rasters;
}

template <typename Number>
Number at(const QByteArray& file, qsizetype place) {
    return qFromLittleEndian<Number>(file.constData() + place);
}

} // namespace

TEST(IcoWriter, the_entries_tell_sizes_and_places) {
    const std::vector<QImage> rasters = rastersOf({32, 16, 256});
    const Result<QByteArray> file = encodeIco(rasters);
    ASSERT_TRUE(file);
    EXPECT_EQ(at<quint16>(*file, 0), 0);
    EXPECT_EQ(at<quint16>(*file, 2), 1);
    EXPECT_EQ(at<quint16>(*file, 4), 3);
    quint32 place = 6 + 3 * 16;
    for (const int i : {0, 1, 2}) {
        const qsizetype entry = 6 + 16 * i;
        const int side = rasters[static_cast<std::size_t>(i)].width();
        EXPECT_EQ(at<quint8>(*file, entry), side % 256);
        EXPECT_EQ(at<quint8>(*file, entry + 1), side % 256);
        EXPECT_EQ(at<quint16>(*file, entry + 4), 1);
        EXPECT_EQ(at<quint16>(*file, entry + 6), 32);
        EXPECT_EQ(at<quint32>(*file, entry + 12), place);
        place += at<quint32>(*file, entry + 8);
    }
    EXPECT_EQ(place, file->size());
}

TEST(IcoWriter, small_pictures_are_bitmaps_from_the_bottom_up) {
    const QImage raster = Pictures::raster(3, 2, [](int x, int y) {
        return y == 0 ? QColor(10 + x, 20, 30, 255) : QColor(40, 50, 60 + x, x == 1 ? 0 : 255);
    });
    const Result<QByteArray> file = encodeIco({raster});
    ASSERT_TRUE(file);
    const qsizetype bitmap = 6 + 16;
    EXPECT_EQ(at<quint32>(*file, bitmap), 40U);
    EXPECT_EQ(at<qint32>(*file, bitmap + 4), 3);
    EXPECT_EQ(at<qint32>(*file, bitmap + 8), 4) << "the mask counts";
    EXPECT_EQ(at<quint16>(*file, bitmap + 14), 32);
    const QByteArray pixels = file->sliced(bitmap + 40, 24);
    EXPECT_EQ(pixels.first(12), QByteArray::fromHex("3c3228ff"
                                                    "00000000"
                                                    "3e3228ff"));
    EXPECT_EQ(pixels.last(12), QByteArray::fromHex("1e140aff"
                                                   "1e140bff"
                                                   "1e140cff"));
    EXPECT_EQ(file->sliced(bitmap + 64), QByteArray::fromHex("40000000"
                                                             "00000000"));
}

TEST(IcoWriter, the_largest_picture_is_a_png) {
    const QImage raster = Pictures::translucentNoise(256, 256, 1);
    const Result<QByteArray> file = encodeIco({raster});
    ASSERT_TRUE(file);
    EXPECT_EQ(file->sliced(6 + 16), *encodePng(raster));
}

TEST(IcoWriter, other_programs_read_what_is_written) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("icon.ico"));
    const std::vector<QImage> rasters = rastersOf({16, 20, 24, 33, 48, 64, 256});
    QFile out(path);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(*encodeIco(rasters));
    out.close();
    const ProcessResult read =
        runPython(QStringLiteral("import sys; from PIL import Image; i = Image.open(sys.argv[1])\n"
                                 "for s in sorted(i.ico.sizes()):\n"
                                 "    sys.stdout.buffer.write(i.ico.getimage(s).convert('RGBA').tobytes())"),
                  {path});
    ASSERT_EQ(read.exitStatus, 0) << read.errors.toStdString();
    QByteArray expected;
    for (const QImage& raster : rasters) {
        const QImage straight = *straightRaster(raster);
        for (int y = 0; y < straight.height(); ++y)
            expected.append(reinterpret_cast<const char*>(straight.constScanLine(y)),
                            qsizetype{4} * straight.width());
    }
    EXPECT_EQ(read.output, expected);
}

TEST(IcoWriter, what_does_not_fit_is_refused) {
    EXPECT_EQ(encodeIco({}).error().code, ErrorCode::EmptySize);
    EXPECT_EQ(encodeIco({QImage()}).error().code, ErrorCode::EmptySize);
    EXPECT_EQ(encodeIco(rastersOf({16, 257})).error().code, ErrorCode::TooLarge);
}
