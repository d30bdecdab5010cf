#include "imaging/png/PngStore.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

TEST(PngStore, an_equal_raster_gets_the_same_file_again) {
    PngStore store;
    const PngStore::Keeping keeping(store);
    for (const QSize size : {QSize(1, 1), QSize(7, 5), QSize(61, 33)}) {
        const QImage raster = Pictures::noise(size.width(), size.height(), 1);
        const Result<QByteArray> first = store.encoded(raster);
        const qsizetype kept = store.keptBytes();
        const Result<QByteArray> again = store.encoded(raster.copy());
        ASSERT_TRUE(first && again);
        EXPECT_EQ(*first, *encodePng(raster));
        EXPECT_EQ(again->constData(), first->constData()) << "not made again";
        EXPECT_EQ(store.keptBytes(), kept);
    }
}

TEST(PngStore, a_raster_of_the_same_size_that_differs_in_one_byte_gets_its_own_file) {
    PngStore store;
    const PngStore::Keeping keeping(store);
    const QImage raster = Pictures::noise(13, 11, 1);
    ASSERT_TRUE(store.encoded(raster));
    for (const QPoint place : {QPoint(0, 0), QPoint(12, 5), QPoint(12, 10)}) {
        QImage other = raster.copy();
        other.scanLine(place.y())[4 * place.x()] ^= 1;
        const Result<QByteArray> png = store.encoded(other);
        ASSERT_TRUE(png);
        EXPECT_EQ(*png, *encodePng(other));
    }
}

TEST(PngStore, the_same_bytes_in_another_format_are_another_raster) {
    PngStore store;
    const PngStore::Keeping keeping(store);
    const QImage premultiplied = Pictures::raster(9, 9, [](int, int) { return QColor(20, 40, 60, 100); });
    QImage straight = premultiplied.copy();
    ASSERT_TRUE(straight.reinterpretAsFormat(QImage::Format_RGBA8888));
    ASSERT_TRUE(store.encoded(premultiplied));
    EXPECT_EQ(*store.encoded(straight), *encodePng(straight));
}

TEST(PngStore, a_raster_that_is_changed_afterwards_does_not_change_what_is_kept) {
    PngStore store;
    const PngStore::Keeping keeping(store);
    QImage raster = Pictures::noise(8, 8, 1);
    const QByteArray before = *store.encoded(raster);
    raster.fill(Qt::red);
    EXPECT_EQ(*store.encoded(raster), *encodePng(raster));
    EXPECT_EQ(*store.encoded(Pictures::noise(8, 8, 1)), before);
}

TEST(PngStore, what_is_kept_stays_until_the_last_keeping_ends) {
    PngStore store;
    const QImage raster = Pictures::noise(8, 8, 1);
    {
        const PngStore::Keeping outer(store);
        {
            const PngStore::Keeping inner(store);
            ASSERT_TRUE(store.encoded(raster));
        }
        EXPECT_GT(store.keptBytes(), 0);
    }
    EXPECT_EQ(store.keptBytes(), 0);
}

TEST(PngStore, nothing_is_kept_before_and_after) {
    PngStore store;
    const QImage raster = Pictures::noise(8, 8, 1);
    EXPECT_EQ(*store.encoded(raster), *encodePng(raster));
    EXPECT_EQ(store.keptBytes(), 0);
    {
        const PngStore::Keeping keeping(store);
        ASSERT_TRUE(store.encoded(raster));
        EXPECT_GT(store.keptBytes(), raster.sizeInBytes());
    }
    EXPECT_EQ(store.keptBytes(), 0);
    ASSERT_TRUE(store.encoded(raster));
    EXPECT_EQ(store.keptBytes(), 0);
}

TEST(PngStore, what_was_asked_for_once_makes_room_the_oldest_first) {
    PngStore store;
    const PngStore::Keeping keeping(store);
    const QImage repeated = Pictures::flat(600, 600, Qt::red);
    const QImage old = Pictures::flat(600, 600, Qt::green);
    const QImage young = Pictures::flat(500, 500, Qt::yellow);
    ASSERT_TRUE(store.encoded(repeated) && store.encoded(old) && store.encoded(young));
    const QByteArray kept = *store.encoded(repeated);
    const QByteArray keptOfYoung = *store.encoded(young.copy());
    ASSERT_TRUE(store.encoded(Pictures::flat(1050, 1050, Qt::blue)));
    EXPECT_LE(store.keptBytes(), PngStore::mostBytes);
    EXPECT_EQ(store.encoded(repeated)->constData(), kept.constData()) << "not made again";
    EXPECT_EQ(store.encoded(young)->constData(), keptOfYoung.constData());
    const qsizetype bytes = store.keptBytes();
    ASSERT_TRUE(store.encoded(Pictures::noise(8, 8, 1)));
    EXPECT_GT(store.keptBytes(), bytes) << "a small one still fits";
}

TEST(PngStore, what_does_not_fit_is_encoded_and_not_kept) {
    PngStore store;
    const PngStore::Keeping keeping(store);
    ASSERT_TRUE(store.encoded(Pictures::flat(1200, 1200, Qt::red)));
    ASSERT_TRUE(store.encoded(Pictures::flat(1200, 1200, Qt::red)));
    const qsizetype kept = store.keptBytes();
    EXPECT_GT(kept, PngStore::mostBytes / 2);
    EXPECT_EQ(*store.encoded(Pictures::flat(1200, 1200, Qt::blue)),
              *encodePng(Pictures::flat(1200, 1200, Qt::blue)));
    EXPECT_EQ(store.keptBytes(), kept);
    ASSERT_TRUE(store.encoded(Pictures::noise(8, 8, 1)));
    EXPECT_GT(store.keptBytes(), kept) << "a small one still fits";
    EXPECT_LE(store.keptBytes(), PngStore::mostBytes);
}

TEST(PngStore, a_raster_without_pixels_is_refused) {
    PngStore store;
    const PngStore::Keeping keeping(store);
    const Result<QByteArray> png = store.encoded({});
    ASSERT_FALSE(png);
    EXPECT_EQ(png.error().code, ErrorCode::EmptySize);
}
