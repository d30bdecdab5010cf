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

namespace {

/// Whether there is a picture, which must then be that of `expected`.
bool isWhole(const Result<DecodedPicture>& picture, const QImage& expected) {
    if (!picture)
        EXPECT_FALSE(picture.error().sentence.isEmpty());
    else
        EXPECT_TRUE(Pictures::same(picture->raster, expected));
    return picture.operator bool();
}

} // namespace

TEST(IcnsAllocations, a_file_is_opened_with_all_elements_or_not) {
    const QByteArray file = Families::ofEveryKind();
    expectFailuresOf([&] {
        const Result<IcnsReader> reader = IcnsReader::open(file);
        if (!reader)
            EXPECT_EQ(reader.error().code, ErrorCode::TooLarge);
        else
            EXPECT_EQ(reader->elements().size(), 8U);
        return reader.operator bool();
    });
}

TEST(IcnsAllocations, an_element_of_each_kind_is_read_whole_or_not) {
    const QByteArray file = Families::ofEveryKind();
    const Result<IcnsReader> reader = IcnsReader::open(file);
    for (const IcnsElement& element : reader->pictureElements()) {
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
        if (!inspection) {
            EXPECT_EQ(inspection.error().code, ErrorCode::TooLarge);
            return false;
        }
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
        before.addImage(Pictures::flat(16, 16, Qt::red));
        IcnsWriter expected = before;
        expected.addImage(raster);
        expectFailuresOf([&] {
            IcnsWriter writer = before;
            const IcnsWriter::Added added = writer.addImage(raster);
            EXPECT_NE(added, IcnsWriter::Added::NoElement);
            EXPECT_EQ(writer.data(), added == IcnsWriter::Added::Yes ? expected.data() : before.data());
            return added == IcnsWriter::Added::Yes;
        });
    }
    IcnsWriter writer;
    writer.addImage(Pictures::flat(16, 16, Qt::red));
    expectNoneIn([&] { return !writer.data().isEmpty(); });
}

TEST(IcnsAllocations, an_element_is_stored_or_the_block_stays) {
    const QByteArray before = Families::ofEveryKind();
    QByteArray expected = before;
    IconFamilyBlock::setIconFamilyData(expected, "is32", "new");
    expectFailuresOf([&] {
        QByteArray block = before;
        const IconFamilyBlock::Status status = IconFamilyBlock::setIconFamilyData(block, "is32", "new");
        const bool isStored = status == IconFamilyBlock::Status::NoError;
        EXPECT_TRUE(isStored || status == IconFamilyBlock::Status::MemoryFull);
        EXPECT_EQ(block, isStored ? expected : before);
        return isStored;
    });
}

TEST(IcnsAllocations, an_element_is_fetched_or_not) {
    const QByteArray block = Families::ofEveryKind();
    for (const FourCharCode type : {FourCharCode("ic07"), FourCharCode("is32"), FourCharCode("s8mk")}) {
        const std::optional<QByteArray> expected = IconFamilyBlock::getIconFamilyData(block, type);
        expectFailuresOf([&] {
            const std::optional<QByteArray> data = IconFamilyBlock::getIconFamilyData(block, type);
            EXPECT_TRUE(!data || data == expected);
            return data.has_value();
        });
    }
}
