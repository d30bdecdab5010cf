#include "iconfamily/IconFamily.h"
#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/CurrentForkStore.h"
#include "platform/forks/ExtendedAttributeForkStore.h"
#include "platform/forks/ResourceFork.h"
#include "tests/support/IcnsBytes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <string>

using IcnsBytes::element;
using IcnsBytes::icns;

namespace {

/// Runs with each store that keeps forks; extended attributes are skipped on a file system without them.
class CustomIconStores : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        QFile file(item);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("data");
        file.close();
        ASSERT_TRUE(QDir(root).mkdir(QStringLiteral("folder")));
        if (std::string(GetParam()) == "AppleDouble") {
            store = std::make_unique<AppleDoubleForkStore>();
        } else {
#ifndef Q_OS_MACOS
            if (setxattr(QFile::encodeName(root).constData(), "user.probe", "1", 1, 0) != 0)
                GTEST_SKIP() << "no extended attributes here";
#endif
            store = std::make_unique<ExtendedAttributeForkStore>();
        }
        inUse = std::make_unique<ForkStoreInUse>(*store);
    }

    quint16 flags(const QString& path) const {
        return store->finderInfo(path)->flags();
    }

    /// The types of an item's resources.
    QStringList types(const QString& path) const {
        const Result<ResourceFork> fork = ResourceFork::parse(*store->resourceFork(path));
        QStringList result;
        if (fork) {
            for (const Resource& resource : fork->resources())
                result << resource.type.text();
        }
        return result;
    }

    QTemporaryDir temporary;
    QString root = QFileInfo(temporary.path()).canonicalFilePath();
    QString item = root + QStringLiteral("/item");
    QString folder = root + QStringLiteral("/folder");
    QString icon = folder + QStringLiteral("/Icon\r");
    std::unique_ptr<ForkStore> store;
    std::unique_ptr<ForkStoreInUse> inUse;
    std::unique_ptr<IconFamily> family =
        IconFamily::initWithData(icns(element("ics8", "8") + element("ICN#", "32")));
};

} // namespace

INSTANTIATE_TEST_SUITE_P(stores, CustomIconStores, testing::Values("AppleDouble", "attributes"),
                         [](const auto& store) { return std::string(store.param); });

TEST_P(CustomIconStores, a_file_gets_its_icon_and_loses_it_again) {
    const ForkStore::FileTime date{1000000000, 7};
    ASSERT_TRUE(store->setModificationDate(item, date));
    ASSERT_TRUE(family->setAsCustomIconForFile(item, true, nullptr));
    EXPECT_EQ(types(item),
              (QStringList{QStringLiteral("icns"), QStringLiteral("ICN#"), QStringLiteral("ics8")}));
    EXPECT_EQ(flags(item), FinderInfo::hasCustomIcon);
    EXPECT_EQ(*store->modificationDate(item), date);
    const Result<ResourceFork> fork = ResourceFork::parse(*store->resourceFork(item));
    ASSERT_TRUE(fork);
    EXPECT_EQ(fork->resource("icns", -16455)->data, family->data());
    ASSERT_TRUE(IconFamily::removeCustomIconFromFile(item));
    EXPECT_EQ(flags(item), 0);
    EXPECT_EQ(types(item), (QStringList{QStringLiteral("ICN#"), QStringLiteral("ics8")}));
    QFile file(item);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "data");
}

TEST_P(CustomIconStores, a_new_file_is_made_for_its_icon) {
    const QString made = root + QStringLiteral("/new");
    ASSERT_TRUE(family->setAsCustomIconForFile(made));
    EXPECT_EQ(QFileInfo(made).size(), 0);
    EXPECT_EQ(types(made), QStringList{QStringLiteral("icns")});
    EXPECT_EQ(flags(made), FinderInfo::hasCustomIcon);
}

TEST_P(CustomIconStores, a_folder_gets_its_icon_twice_and_loses_it_again) {
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(family->setAsCustomIconForDirectory(folder)) << time;
        EXPECT_EQ(flags(folder), FinderInfo::hasCustomIcon);
        EXPECT_EQ(flags(icon), FinderInfo::isInvisible);
        EXPECT_EQ(types(icon), QStringList{QStringLiteral("icns")});
    }
    EXPECT_EQ(store->finderInfo(icon)->bytes().left(8), "iconMACS");
    ASSERT_TRUE(IconFamily::removeCustomIconFromDirectory(folder));
    EXPECT_EQ(flags(folder), 0);
    EXPECT_FALSE(QFileInfo::exists(icon));
}

TEST_P(CustomIconStores, an_item_without_a_fork_has_no_icon_to_lose) {
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(item));
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(root + QStringLiteral("/missing")));
    EXPECT_EQ(flags(item), 0);
}
