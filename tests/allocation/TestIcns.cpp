#include "imaging/formats/Jpeg2000Writer.h"
#include "imaging/icns/IcnsInspection.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/icns/IcnsWriter.h"
#include "imaging/icns/IconFamilyBlock.h"
#include "imaging/png/PngWriter.h"
#include "tests/allocation/FailingAllocations.h"
#include "tests/allocation/Families.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

using FailingAllocations::expectFailuresOf;
using FailingAllocations::expectNoneIn;
using FailingAllocations::hasSucceeded;

namespace {

/// Whether there is a picture. If there is one, expects that it equals `expected`.
bool isWhole(const Result<DecodedPicture>& picture, const QImage& expected) {
    EXPECT_TRUE(!picture || Pictures::same(picture->raster, expected));
    return hasSucceeded(picture);
}

} // namespace

TEST(IcnsAllocations, a_file_is_opened_with_all_elements_or_not) {
    const QByteArray file = Families::ofEveryKind();
    expectFailuresOf([&] {
        const Result<IcnsReader> reader = IcnsReader::open(file);
        EXPECT_TRUE(!reader || reader->elements().size() == 8U);
        return hasSucceeded(reader);
    });
}

TEST(IcnsAllocations, an_element_of_each_kind_is_read_whole_or_not) {
    const QByteArray file = Families::ofEveryKind();
    const Result<IcnsReader> reader = IcnsReader::open(file);
    const Result<std::vector<IcnsElement>> elements = reader->pictureElements();
    ASSERT_TRUE(elements);
    for (const IcnsElement& element : *elements) {
        SCOPED_TRACE(element.type.text().toStdString());
        const Result<DecodedPicture> expected = reader->picture(element);
        ASSERT_TRUE(expected);
        const auto read = [&] { return isWhole(reader->picture(element), expected->raster); };
        if (element.type == FourCharCode("ic04"))
            expectNoneIn(read); // plain samples
        else
            expectFailuresOf(read);
    }
    expectNoneIn([&] { return reader->largestElement() != nullptr; });
    const QImage largest = reader->largestPicture()->raster;
    expectFailuresOf([&] { return isWhole(reader->largestPicture(), largest); });
}

TEST(IcnsAllocations, a_file_is_inspected_whole_or_not) {
    const QByteArray file = Families::ofEveryKind();
    const Result<IcnsInspection> expected = inspectIcns(file);
    expectFailuresOf([&] {
        const Result<IcnsInspection> inspection = inspectIcns(file);
        if (!hasSucceeded(inspection))
            return false;
        EXPECT_EQ(inspection->remarks, expected->remarks);
        EXPECT_EQ(inspection->elements.size(), expected->elements.size());
        return true;
    });
}

TEST(IcnsAllocations, a_picture_is_added_whole_or_not) {
    for (const int side : {16, 32, 64, 128}) {
        SCOPED_TRACE(side);
        const QImage raster = Pictures::translucentNoise(side, side, 1);
        IcnsWriter before;
        ASSERT_TRUE(before.addImage(Pictures::flat(16, 16, Qt::red)));
        IcnsWriter expected = before;
        ASSERT_TRUE(expected.addImage(raster));
        expectFailuresOf([&] {
            IcnsWriter writer = before;
            const Result<IcnsWriter::Added> added = writer.addImage(raster);
            EXPECT_TRUE(!added || *added == IcnsWriter::Added::Yes);
            EXPECT_EQ(writer.data(), added ? expected.data() : before.data());
            return hasSucceeded(added);
        });
    }
    IcnsWriter writer;
    ASSERT_TRUE(writer.addImage(Pictures::flat(16, 16, Qt::red)));
    expectNoneIn([&] { return !writer.data().isEmpty(); });
}

TEST(IcnsAllocations, an_element_is_stored_or_the_block_stays) {
    const QByteArray before = Families::ofEveryKind();
    QByteArray expected = before;
    ASSERT_TRUE(IconFamilyBlock::setIconFamilyData(expected, "is32", "new"));
    expectFailuresOf([&] {
        QByteArray block = before;
        const Result<Done> stored = IconFamilyBlock::setIconFamilyData(block, "is32", "new");
        EXPECT_TRUE(stored || IconFamilyBlock::platformStatus(stored.error()) == -108);
        EXPECT_EQ(block, stored ? expected : before);
        return hasSucceeded(stored);
    });
}

TEST(IcnsAllocations, an_element_is_fetched_or_not) {
    const QByteArray block = Families::ofEveryKind();
    for (const FourCharCode type : {FourCharCode("ic07"), FourCharCode("is32"), FourCharCode("s8mk")}) {
        const Result<QByteArray> expected = IconFamilyBlock::getIconFamilyData(block, type);
        ASSERT_TRUE(expected);
        expectFailuresOf([&] {
            const Result<QByteArray> data = IconFamilyBlock::getIconFamilyData(block, type);
            EXPECT_TRUE(!data || *data == *expected);
            return hasSucceeded(data);
        });
    }
}
