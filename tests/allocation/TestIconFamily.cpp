#include "iconfamily/IconFamily.h"
#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/CurrentForkStore.h"
#include "platform/forks/ResourceFile.h"
#include "tests/allocation/FailingAllocations.h"
#include "tests/allocation/Families.h"
#include "tests/support/Pictures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using FailingAllocations::expectFailuresOf;
using FailingAllocations::expectNoneIn;
using FailingAllocations::Pause;

namespace {

/// Whether there is a family. If there is one, expects that it has these bytes.
bool isWhole(const std::unique_ptr<IconFamily>& family, const QByteArray& expected) {
    EXPECT_TRUE(family == nullptr || family->data() == expected);
    return family != nullptr;
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Discards the diagnostic log while it exists.
class QuietLog {
  public:
    QuietLog()
        : m_before(qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {})) {}
    ~QuietLog() { qInstallMessageHandler(m_before); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

  private:
    QtMessageHandler m_before;
};

std::unique_ptr<BitmapImageRep> bitmap(int side) {
    BitmapLayout layout;
    layout.pixelsWide = layout.pixelsHigh = side;
    return std::move(
        *BitmapImageRep::initWithBitmapData(layout, QByteArray(qsizetype{4} * side * side, '\x7f')));
}

} // namespace

TEST(IconFamilyAllocations, what_constructs_one_is_whole_or_null) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("family.icns"));
    const QByteArray bytes = Families::ofEveryKind();
    write(path, bytes);
    Pasteboard pasteboard;
    IconFamily::initWithData(bytes)->writeToPasteboard(pasteboard);
    expectFailuresOf([] { return isWhole(IconFamily::iconFamily(), {}); });
    expectFailuresOf([] { return isWhole(IconFamily::init(), {}); });
    expectFailuresOf([&] { return isWhole(IconFamily::initWithData(bytes), bytes); });
    expectFailuresOf([&] { return isWhole(IconFamily::initWithIconFamilyHandle(bytes), bytes); });
    expectFailuresOf([&] { return isWhole(IconFamily::iconFamilyWithIconFamilyHandle(bytes), bytes); });
    expectFailuresOf([&] { return isWhole(IconFamily::initWithContentsOfFile(path), bytes); });
    expectFailuresOf([&] { return isWhole(IconFamily::iconFamilyWithContentsOfFile(path), bytes); });
    expectFailuresOf([&] { return isWhole(IconFamily::initWithPasteboardPropertyList(bytes, {}), bytes); });
    expectFailuresOf([&] { return isWhole(IconFamily::iconFamilyFromPasteboard(pasteboard), bytes); });
}

TEST(IconFamilyAllocations, an_element_of_each_type_is_stored_or_nothing_changes) {
    struct Type {
        const char (&code)[5];
        int side;
    };
    const Type types[] = {{"ic04", 16},  {"ic05", 32},  {"ic06", 48}, {"ic07", 128}, {"ic08", 256},
                          {"ic09", 512}, {"ic10", 512}, {"ic11", 32}, {"ic12", 64},  {"ic13", 256},
                          {"ic14", 512}, {"is32", 16},  {"il32", 32}, {"ih32", 48},  {"it32", 128},
                          {"s8mk", 16},  {"l8mk", 32},  {"h8mk", 48}, {"t8mk", 128}, {"ics8", 16},
                          {"icl8", 32},  {"ich8", 48},  {"ics#", 16}, {"ICN#", 32},  {"ich#", 48}};
    const QuietLog quiet;
    const QByteArray before = Families::ofEveryKind();
    for (const Type& type : types) {
        SCOPED_TRACE(type.code);
        const auto stored = bitmap(type.side);
        const auto expected = IconFamily::initWithData(before);
        ASSERT_TRUE(expected->setIconFamilyElement(type.code, stored.get()));
        const auto unchanged = IconFamily::initWithData(before);
        expectFailuresOf([&] {
            IconFamily family = *unchanged;
            const bool isStored = family.setIconFamilyElement(type.code, stored.get());
            EXPECT_EQ(family.data(), isStored ? expected->data() : before);
            return isStored;
        });
    }
}

TEST(IconFamilyAllocations, an_element_of_each_type_is_fetched_or_null) {
    struct Type {
        const char (&code)[5];
        int side;
    };
    const Type types[] = {{"ic04", 16},  {"ic05", 32}, {"ic06", 48}, {"ic07", 128}, {"ic08", 256},
                          {"ic09", 512}, {"ic11", 32}, {"ic12", 64}, {"ic13", 256}, {"ic14", 512},
                          {"is32", 16},  {"il32", 32}, {"ih32", 48}, {"it32", 128}};
    const auto family = IconFamily::init();
    for (const Type& type : types)
        ASSERT_TRUE(family->setIconFamilyElement(type.code, bitmap(type.side).get()));
    ASSERT_TRUE(family->setIconFamilyElement("s8mk", bitmap(16).get()));
    for (const Type& type : types) {
        SCOPED_TRACE(type.code);
        const auto expected = family->bitmapImageRepWithAlphaForIconFamilyElement(type.code);
        ASSERT_NE(expected, nullptr);
        expectFailuresOf([&] {
            const auto fetched = family->bitmapImageRepWithAlphaForIconFamilyElement(type.code);
            EXPECT_TRUE(fetched == nullptr || fetched->bitmapData() == expected->bitmapData());
            return fetched != nullptr;
        });
    }
}

TEST(IconFamilyAllocations, an_image_has_the_pictures_that_there_was_memory_for) {
    const auto family = IconFamily::initWithData(Families::ofEveryKind());
    constexpr std::size_t all = 6;
    expectFailuresOf([&] {
        const Image image = family->imageWithAllReps();
        EXPECT_LE(image.representations().size(), all);
        EXPECT_EQ(image.isNull(), image.representations().empty());
        for (const auto& representation : image.representations())
            EXPECT_FALSE(representation->pixelSize().isEmpty());
        return image.representations().size() == all;
    });
}

TEST(IconFamilyAllocations, a_picture_is_fitted_or_null) {
    const Image image = Pictures::loadedImage(Pictures::noise(64, 48, 1));
    const auto resampled = [&](IconFamily::ImageInterpolation interpolation) {
        return IconFamily::resampleImage(image, 32, interpolation);
    };
    for (const auto interpolation :
         {IconFamily::ImageInterpolation::None, IconFamily::ImageInterpolation::High}) {
        const QImage expected = resampled(interpolation).largestRaster().valueOr({});
        expectFailuresOf([&] {
            const Image fitted = resampled(interpolation);
            EXPECT_TRUE(fitted.isNull() || Pictures::same(fitted.largestRaster().valueOr({}), expected));
            return !fitted.isNull();
        });
    }
}

TEST(IconFamilyAllocations, a_built_family_lacks_the_elements_that_there_was_no_memory_for) {
    const Image image = Pictures::loadedImage(Pictures::noise(64, 48, 1));
    const QuietLog quiet;
    const auto expected = IconFamily::initWithThumbnailsOfImage(image);
    const auto isWhole = [&] {
        const auto family = IconFamily::initWithThumbnailsOfImage(image);
        const Pause pause;
        if (family == nullptr)
            return false;
        for (const FourCharCode type : {FourCharCode("ic09"), FourCharCode("ic08"), FourCharCode("ic07"),
                                        FourCharCode("ic06"), FourCharCode("ic05"), FourCharCode("ic04")}) {
            const auto made = family->bitmapImageRepWithAlphaForIconFamilyElement(type);
            const auto whole = expected->bitmapImageRepWithAlphaForIconFamilyElement(type);
            EXPECT_TRUE(made == nullptr || whole == nullptr || made->bitmapData() == whole->bitmapData());
        }
        return family->data().size() == expected->data().size();
    };
    // There are thousands of allocations, nearly all by the resampler. The test before lets each of the
    // resampler's fail at a smaller size.
    expectFailuresOf(isWhole, FailingAllocations::fragile, 97);
}

TEST(IconFamilyAllocations, its_bytes_and_its_file_take_memory_from_qt_alone) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("family.icns"));
    const auto family = IconFamily::initWithData(Families::ofEveryKind());
    expectNoneIn([&] { return !family->data().isEmpty(); });
    expectNoneIn([&] { return family->writeToFile(path); });
}

TEST(IconFamilyAllocations, custom_icons_are_set_and_removed_or_not) {
    const QTemporaryDir folder;
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    const QString root = QFileInfo(folder.path()).canonicalFilePath();
    const QString item = root + QStringLiteral("/item");
    const QString iconFile = root + QStringLiteral("/folder/Icon\r");
    write(item, "data");
    ASSERT_TRUE(QDir(root).mkdir(QStringLiteral("folder")));
    const auto family = IconFamily::initWithData(Families::ofEveryKind());
    const auto flags = [&](const QString& path) { return store.finderInfo(path)->flags(); };

    expectFailuresOf([&] {
        const bool isSet = family->setAsCustomIconForFile(item, true, nullptr);
        const Pause pause;
        EXPECT_TRUE(!isSet || flags(item) == FinderInfo::hasCustomIcon);
        EXPECT_EQ(ResourceFile::current(), nullptr);
        return isSet;
    });
    expectFailuresOf([&] {
        const bool isRemoved = IconFamily::removeCustomIconFromFile(item);
        const Pause pause;
        EXPECT_EQ(content(item), "data");
        EXPECT_TRUE(!isRemoved || flags(item) == 0);
        EXPECT_EQ(ResourceFile::current(), nullptr);
        return isRemoved;
    });
    const QString inner = root + QStringLiteral("/folder");
    expectFailuresOf([&] {
        const bool isSet = family->setAsCustomIconForDirectory(inner, true, nullptr);
        const Pause pause;
        EXPECT_TRUE(!isSet || flags(inner) == FinderInfo::hasCustomIcon);
        EXPECT_EQ(ResourceFile::current(), nullptr);
        return isSet;
    });
    expectFailuresOf([&] {
        {
            const Pause pause;
            write(iconFile, {});
        }
        const bool isRemoved = IconFamily::removeCustomIconFromDirectory(inner);
        const Pause pause;
        EXPECT_TRUE(!isRemoved || flags(inner) == 0);
        return isRemoved;
    });
}

TEST(IconFamilyAllocations, a_resource_is_added_or_not) {
    const QTemporaryDir folder;
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    const QString item = folder.filePath(QStringLiteral("item"));
    ASSERT_TRUE(store.createResourceFork(item, std::nullopt));
    const auto family = IconFamily::initWithData(Families::ofEveryKind());
    const Result<std::unique_ptr<ResourceFile>> file = ResourceFile::open(item);
    ASSERT_TRUE(file);
    expectFailuresOf([&] {
        const bool isAdded = family->addResourceType("is32", 1);
        const Pause pause;
        EXPECT_EQ((*file)->fork().resources().size(), isAdded ? 1U : 0U);
        (*file)->fork() = ResourceFork();
        return isAdded;
    });
}
