#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/CurrentForkStore.h"
#include "platform/forks/ExtendedAttributeForkStore.h"
#include "platform/forks/NoForkStore.h"
#include "platform/forks/ResourceFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <string>

namespace {

class ForkStoreTest : public testing::Test {
  protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    QString file(const QString& name, const QByteArray& content = "data") const {
        QFile made(path(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(content);
        return path(name);
    }

    QStringList names() const {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir m_folder;
};

/// Runs with each store that keeps forks; extended attributes are skipped on a file system without them.
class FileForkStoreTest : public ForkStoreTest, public testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        if (std::string(GetParam()) == "AppleDouble") {
            m_store = std::make_unique<AppleDoubleForkStore>();
            return;
        }
        const QByteArray probe = QFile::encodeName(file(QStringLiteral("probe")));
#ifndef Q_OS_MACOS
        if (setxattr(probe.constData(), "user.probe", "1", 1, 0) != 0)
            GTEST_SKIP() << "no extended attributes here";
#endif
        QFile::remove(path(QStringLiteral("probe")));
        m_store = std::make_unique<ExtendedAttributeForkStore>();
    }

    std::unique_ptr<ForkStore> m_store;
};

FinderInfo customIcon() {
    FinderInfo info;
    info.setFlags(FinderInfo::hasCustomIcon);
    return info;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(stores, FileForkStoreTest, testing::Values("AppleDouble", "attributes"),
                         [](const auto& store) { return std::string(store.param); });

TEST_P(FileForkStoreTest, an_item_without_anything_has_an_empty_fork_and_no_information) {
    const QString item = file(QStringLiteral("item"));
    EXPECT_TRUE(m_store->isAvailable());
    EXPECT_EQ(*m_store->resourceFork(item), QByteArray());
    EXPECT_EQ(*m_store->finderInfo(item), FinderInfo());
    EXPECT_EQ(names(), QStringList{QStringLiteral("item")});
}

TEST_P(FileForkStoreTest, what_is_set_is_read_and_the_data_stay) {
    const QString item = file(QStringLiteral("item"));
    ASSERT_TRUE(m_store->setResourceFork(item, "fork"));
    ASSERT_TRUE(m_store->setFinderInfo(item, customIcon()));
    EXPECT_EQ(*m_store->resourceFork(item), "fork");
    EXPECT_EQ(*m_store->finderInfo(item), customIcon());
    QFile data(item);
    ASSERT_TRUE(data.open(QIODevice::ReadOnly));
    EXPECT_EQ(data.readAll(), "data");
}

TEST_P(FileForkStoreTest, folders_have_information_too) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("folder")));
    ASSERT_TRUE(m_store->setFinderInfo(path(QStringLiteral("folder/")), customIcon()));
    EXPECT_EQ(*m_store->finderInfo(path(QStringLiteral("folder"))), customIcon());
}

TEST_P(FileForkStoreTest, what_is_not_there_is_an_error) {
    for (const QString& item : {path(QStringLiteral("missing")), QString(), QStringLiteral("a\0b")}) {
        EXPECT_FALSE(m_store->resourceFork(item));
        EXPECT_FALSE(m_store->setResourceFork(item, "fork"));
        EXPECT_FALSE(m_store->finderInfo(item));
        EXPECT_FALSE(m_store->setFinderInfo(item, {}));
        EXPECT_FALSE(m_store->modificationDate(item));
        EXPECT_FALSE(m_store->setModificationDate(item, {}));
        EXPECT_FALSE(m_store->removeItem(item));
        EXPECT_FALSE(m_store->notifyChanged(item));
    }
    EXPECT_EQ(names(), QStringList());
}

TEST_P(FileForkStoreTest, a_new_fork_is_made_with_its_file_and_information) {
    const QString item = path(QStringLiteral("new"));
    const Result<ForkStore::Created> created = m_store->createResourceFork(item, customIcon());
    ASSERT_TRUE(created);
    EXPECT_EQ(*created, ForkStore::Created::New);
    EXPECT_EQ(QFileInfo(item).size(), 0);
    EXPECT_EQ(*m_store->resourceFork(item), *ResourceFork().data());
    EXPECT_EQ(*m_store->finderInfo(item), customIcon());
}

TEST_P(FileForkStoreTest, a_file_that_is_there_keeps_what_it_has) {
    const QString item = file(QStringLiteral("item"));
    ASSERT_TRUE(m_store->setResourceFork(item, "fork"));
    const Result<ForkStore::Created> created = m_store->createResourceFork(item, customIcon());
    ASSERT_TRUE(created);
    EXPECT_EQ(*created, ForkStore::Created::WasThere);
    EXPECT_EQ(*m_store->resourceFork(item), "fork");
    EXPECT_EQ(*m_store->finderInfo(item), FinderInfo());
    const QString plain = file(QStringLiteral("plain"));
    EXPECT_EQ(*m_store->createResourceFork(plain, std::nullopt), ForkStore::Created::WasThere);
    EXPECT_EQ(*m_store->resourceFork(plain), *ResourceFork().data());
}

TEST_P(FileForkStoreTest, no_fork_is_made_where_no_file_can_be) {
    EXPECT_FALSE(m_store->createResourceFork(path(QStringLiteral("no/folder")), std::nullopt));
    EXPECT_FALSE(m_store->createResourceFork(QString(), std::nullopt));
}

TEST_P(FileForkStoreTest, dates_are_kept_to_the_nanosecond) {
    const QString item = file(QStringLiteral("item"));
    const ForkStore::FileTime date{1234567890, 123456789};
    ASSERT_TRUE(m_store->setModificationDate(item, date));
    EXPECT_EQ(*m_store->modificationDate(item), date);
}

TEST_P(FileForkStoreTest, what_is_removed_leaves_nothing) {
    const QString item = file(QStringLiteral("item"));
    ASSERT_TRUE(m_store->setFinderInfo(item, customIcon()));
    ASSERT_TRUE(m_store->removeItem(item));
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(QStringLiteral("folder/inner")));
    ASSERT_TRUE(m_store->removeItem(path(QStringLiteral("folder"))));
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), path(QStringLiteral("link"))));
    ASSERT_TRUE(m_store->removeItem(path(QStringLiteral("link"))));
    EXPECT_EQ(names(), QStringList());
}

TEST_P(FileForkStoreTest, a_fork_of_any_length_is_read) {
    const QString item = file(QStringLiteral("item"));
    // Lengths around the size of the read buffer.
    for (const qsizetype length : {0, 1, 2047, 2048, 2049, 3000}) {
        const QByteArray fork(length, 'f');
        ASSERT_TRUE(m_store->setResourceFork(item, fork)) << length;
        EXPECT_EQ(*m_store->resourceFork(item), fork) << length;
    }
}

#ifndef Q_OS_MACOS
TEST_P(FileForkStoreTest, a_folder_that_the_system_keeps_is_not_removed) {
    const QString kept = QStringLiteral("/proc/self/fdinfo");
    const Result<Done> removed = m_store->removeItem(kept);
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error().code, ErrorCode::NotWritable);
}

TEST_F(ForkStoreTest, attributes_that_the_file_system_does_not_have_are_not_readable) {
    const Result<QByteArray> fork =
        ExtendedAttributeForkStore().resourceFork(QStringLiteral("/proc/version"));
    ASSERT_FALSE(fork);
    EXPECT_EQ(fork.error().code, ErrorCode::NotReadable);
}
#endif

TEST_P(FileForkStoreTest, only_folders_change) {
    EXPECT_TRUE(m_store->notifyChanged(m_folder.path()));
    EXPECT_FALSE(m_store->notifyChanged(file(QStringLiteral("item"))));
}

TEST_F(ForkStoreTest, apple_double_files_stand_beside_their_items) {
    AppleDoubleForkStore store;
    ASSERT_TRUE(store.setFinderInfo(file(QStringLiteral("Icon\r")), customIcon()));
    EXPECT_EQ(names(), (QStringList{QStringLiteral("._Icon\r"), QStringLiteral("Icon\r")}));
    EXPECT_EQ(AppleDoubleForkStore::sidecarPath(QStringLiteral("/a/b/")), QStringLiteral("/a/._b"));
    EXPECT_EQ(AppleDoubleForkStore::sidecarPath(QStringLiteral("b")),
              QDir::currentPath() + QStringLiteral("/._b"));
}

TEST_F(ForkStoreTest, what_is_as_it_should_be_makes_no_file) {
    AppleDoubleForkStore store;
    ASSERT_TRUE(store.setFinderInfo(file(QStringLiteral("item")), {}));
    EXPECT_EQ(names(), QStringList{QStringLiteral("item")});
}

TEST_F(ForkStoreTest, links_are_followed_to_the_item) {
    AppleDoubleForkStore store;
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(QStringLiteral("there/inner")));
    file(QStringLiteral("there/item"));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("there/inner")), path(QStringLiteral("link"))));
    ASSERT_TRUE(store.setFinderInfo(path(QStringLiteral("link/../item")), customIcon()));
    EXPECT_TRUE(QFileInfo::exists(path(QStringLiteral("there/._item"))));
    ASSERT_TRUE(store.setFinderInfo(path(QStringLiteral("link")), customIcon()));
    EXPECT_TRUE(QFileInfo::exists(path(QStringLiteral("there/._inner"))));
    ASSERT_TRUE(store.removeItem(path(QStringLiteral("link"))));
    EXPECT_TRUE(QFileInfo::exists(path(QStringLiteral("there/._inner")))) << "what it leads to stays";
    EXPECT_EQ(names(), QStringList{QStringLiteral("there")});
}

TEST_F(ForkStoreTest, a_link_that_leads_nowhere_is_left_alone) {
    AppleDoubleForkStore store;
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), path(QStringLiteral("link"))));
    const Result<ForkStore::Created> created =
        store.createResourceFork(path(QStringLiteral("link")), std::nullopt);
    ASSERT_TRUE(created);
    EXPECT_EQ(*created, ForkStore::Created::WasThere);
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("link"))).isSymLink());
}

TEST_F(ForkStoreTest, an_apple_double_file_can_be_read_by_whom_the_item_can_be) {
    AppleDoubleForkStore store;
    const QString item = file(QStringLiteral("item"));
    const auto modeOf = [&](const QString& name) {
        struct stat status {};
        EXPECT_EQ(stat(QFile::encodeName(path(name)).constData(), &status), 0);
        return status.st_mode & 0777;
    };
    ASSERT_EQ(chmod(QFile::encodeName(item).constData(), 0750), 0);
    ASSERT_TRUE(store.setFinderInfo(item, customIcon()));
    EXPECT_EQ(modeOf(QStringLiteral("._item")), mode_t{0640});
    ASSERT_EQ(chmod(QFile::encodeName(path(QStringLiteral("._item"))).constData(), 0600), 0);
    ASSERT_TRUE(store.setResourceFork(item, "fork"));
    EXPECT_EQ(modeOf(QStringLiteral("._item")), mode_t{0600});
}

TEST_F(ForkStoreTest, a_new_item_has_nothing_of_an_older_one) {
    AppleDoubleForkStore store;
    const QString item = file(QStringLiteral("item"));
    ASSERT_TRUE(store.setFinderInfo(item, customIcon()));
    ASSERT_TRUE(store.setResourceFork(item, "older"));
    ASSERT_TRUE(QFile::remove(item));
    ASSERT_TRUE(store.createResourceFork(item, std::nullopt));
    EXPECT_EQ(*store.finderInfo(item), FinderInfo());
    EXPECT_EQ(*store.resourceFork(item), *ResourceFork().data());
}

TEST_F(ForkStoreTest, an_apple_double_file_that_cannot_be_read_stays_as_it_is) {
    AppleDoubleForkStore store;
    const QString item = file(QStringLiteral("item"));
    const QString sidecar = file(QStringLiteral("._item"), "something else");
    EXPECT_FALSE(store.resourceFork(item));
    EXPECT_FALSE(store.finderInfo(item));
    EXPECT_FALSE(store.setResourceFork(item, "fork"));
    EXPECT_FALSE(store.setFinderInfo(item, customIcon()));
    EXPECT_FALSE(store.createResourceFork(item, std::nullopt));
    EXPECT_FALSE(ResourceFile::open(item).operator bool());
    QFile kept(sidecar);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), "something else");
}

TEST_F(ForkStoreTest, beside_the_longest_names_there_is_no_place) {
    AppleDoubleForkStore store;
    const QString item = file(QString(254, u'n'));
    EXPECT_EQ(store.setFinderInfo(item, customIcon()).error().code, ErrorCode::NotWritable);
    EXPECT_EQ(store.setResourceFork(item, "fork").error().code, ErrorCode::NotWritable);
    EXPECT_EQ(store.createResourceFork(item, std::nullopt).error().code, ErrorCode::NotWritable);
    EXPECT_EQ(names(), QStringList{QString(254, u'n')});
}

TEST_F(ForkStoreTest, a_new_fork_without_its_information_is_an_error) {
    /// Keeps forks, but refuses Finder information.
    class Store final : public FileForkStore {
      public:
        Result<QByteArray> resourceFork(const QString& /*path*/) const override { return m_fork; }
        Result<Done> setResourceFork(const QString& /*path*/, const QByteArray& fork) override {
            m_fork = fork;
            return Done{};
        }
        Result<FinderInfo> finderInfo(const QString& /*path*/) const override { return FinderInfo(); }
        Result<Done> setFinderInfo(const QString& /*path*/, const FinderInfo& /*info*/) override {
            return Error{ErrorCode::NotWritable, QStringLiteral("refused")};
        }

      private:
        QByteArray m_fork;
    };
    Store store;
    const Result<ForkStore::Created> created =
        store.createResourceFork(path(QStringLiteral("new")), customIcon());
    ASSERT_FALSE(created);
    EXPECT_EQ(created.error().sentence, QStringLiteral("refused"));
    EXPECT_EQ(*store.resourceFork({}), *ResourceFork().data());
    EXPECT_TRUE(store.createResourceFork(path(QStringLiteral("other")), std::nullopt));
}

TEST_F(ForkStoreTest, a_fifo_in_the_place_of_an_apple_double_file_is_refused_at_once) {
    AppleDoubleForkStore store;
    const QString item = file(QStringLiteral("item"));
    ASSERT_EQ(mkfifo(QFile::encodeName(path(QStringLiteral("._item"))).constData(), 0600), 0);
    EXPECT_FALSE(store.resourceFork(item));
    EXPECT_FALSE(store.setResourceFork(item, "fork"));
}

TEST_F(ForkStoreTest, without_forks_every_operation_fails_and_touches_nothing) {
    NoForkStore store;
    const QString item = file(QStringLiteral("item"));
    const QString missing = path(QStringLiteral("missing"));
    EXPECT_FALSE(store.isAvailable());
    EXPECT_FALSE(store.resourceFork(item));
    EXPECT_FALSE(store.setResourceFork(item, "fork"));
    EXPECT_FALSE(store.finderInfo(item));
    EXPECT_FALSE(store.setFinderInfo(item, {}));
    EXPECT_FALSE(store.createResourceFork(missing, std::nullopt));
    EXPECT_FALSE(store.modificationDate(item));
    EXPECT_FALSE(store.setModificationDate(item, {}));
    EXPECT_FALSE(store.notifyChanged(m_folder.path()));
    EXPECT_FALSE(store.removeItem(item));
    EXPECT_FALSE(store.removeRemains(item));
    EXPECT_EQ(store.removeItem(item).error().code, ErrorCode::Unsupported);
    EXPECT_EQ(names(), QStringList{QStringLiteral("item")});
}

#ifndef Q_OS_MACOS
TEST_F(ForkStoreTest, there_are_no_forks_until_a_store_is_put_into_use) {
    EXPECT_FALSE(currentForkStore().isAvailable());
    AppleDoubleForkStore outer;
    {
        const ForkStoreInUse inUse(outer);
        EXPECT_EQ(&currentForkStore(), &outer);
        AppleDoubleForkStore inner;
        {
            const ForkStoreInUse innerInUse(inner);
            EXPECT_EQ(&currentForkStore(), &inner);
        }
        EXPECT_EQ(&currentForkStore(), &outer);
    }
    EXPECT_FALSE(currentForkStore().isAvailable());
}
#endif

TEST_F(ForkStoreTest, an_open_fork_is_the_current_one_until_it_is_closed) {
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    const QString first = file(QStringLiteral("first"));
    const QString second = file(QStringLiteral("second"));
    ASSERT_TRUE(store.createResourceFork(first, std::nullopt));
    ASSERT_TRUE(store.createResourceFork(second, std::nullopt));
    EXPECT_EQ(ResourceFile::current(), nullptr);
    Result<std::unique_ptr<ResourceFile>> outer = ResourceFile::open(first);
    ASSERT_TRUE(outer);
    EXPECT_EQ(ResourceFile::current(), outer->get());
    {
        const Result<std::unique_ptr<ResourceFile>> inner = ResourceFile::open(second);
        ASSERT_TRUE(inner);
        EXPECT_EQ(ResourceFile::current(), inner->get());
        EXPECT_TRUE((*inner)->fork().addResource({"icns", 1, std::nullopt, 0, "lost"}));
    }
    EXPECT_EQ(ResourceFile::current(), outer->get());
    EXPECT_TRUE((*outer)->fork().addResource({"icns", 1, std::nullopt, 0, "kept"}));
    EXPECT_TRUE((*outer)->close());
    EXPECT_EQ(ResourceFile::current(), nullptr);
    EXPECT_EQ(ResourceFork::parse(*store.resourceFork(first))->resource("icns", 1)->data, "kept");
    EXPECT_EQ(*store.resourceFork(second), *ResourceFork().data());
}

TEST_F(ForkStoreTest, only_a_whole_fork_is_opened) {
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    const QString item = file(QStringLiteral("item"));
    EXPECT_FALSE(ResourceFile::open(item));
    ASSERT_TRUE(store.setResourceFork(item, "no fork"));
    EXPECT_FALSE(ResourceFile::open(item));
    EXPECT_FALSE(ResourceFile::open(path(QStringLiteral("missing"))));
    EXPECT_EQ(ResourceFile::current(), nullptr);
}

TEST_F(ForkStoreTest, a_folder_has_no_fork_to_open_whatever_stands_beside_it) {
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("folder")));
    ASSERT_TRUE(store.setResourceFork(path(QStringLiteral("folder")), *ResourceFork().data()));
    const Result<std::unique_ptr<ResourceFile>> opened = ResourceFile::open(path(QStringLiteral("folder")));
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().code, ErrorCode::NotFound);
}

TEST_F(ForkStoreTest, all_resources_of_some_types_and_a_number_are_removed) {
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    const QString item = file(QStringLiteral("item"));
    constexpr FourCharCode types[] = {"ICN#", "ics#"};
    const auto setFork = [&](const ResourceFork& fork) {
        EXPECT_TRUE(store.setResourceFork(item, *fork.data()));
    };
    ResourceFork fork;
    for (const FourCharCode type : {FourCharCode("ICN#"), FourCharCode("icns"), FourCharCode("ics#")}) {
        for (const qint16 number : {qint16{7}, qint16{8}, qint16{7}})
            EXPECT_TRUE(fork.addResource({type, number, std::nullopt, 0, "data"}));
    }
    setFork(fork);
    const ForkStore::FileTime date{1234567890, 5};
    ASSERT_TRUE(store.setModificationDate(item, date));
    ASSERT_TRUE(ResourceFile::removeResources(item, types, 7));
    const ResourceFork left = *ResourceFork::parse(*store.resourceFork(item));
    EXPECT_EQ(left.resources().size(), 5U);
    EXPECT_EQ(left.resource("ICN#", 7), nullptr);
    EXPECT_EQ(left.resource("ics#", 7), nullptr);
    EXPECT_NE(left.resource("icns", 7), nullptr);
    EXPECT_NE(left.resource("ics#", 8), nullptr);
    EXPECT_EQ(*store.modificationDate(item), date);
    EXPECT_EQ(ResourceFile::current(), nullptr);

    EXPECT_TRUE(fork.addResource({"ics#", 7, std::nullopt, Resource::isProtected, "kept"}));
    setFork(fork);
    const Result<Done> refused = ResourceFile::removeResources(item, types, 7);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().code, ErrorCode::NotWritable);
    EXPECT_EQ(*ResourceFork::parse(*store.resourceFork(item)), *ResourceFork::parse(*fork.data()));
    EXPECT_TRUE(ResourceFile::removeResources(item, types, 9)) << "nothing to remove";
}

TEST_F(ForkStoreTest, nothing_is_removed_from_what_has_no_fork) {
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    constexpr FourCharCode types[] = {"ICN#"};
    EXPECT_TRUE(ResourceFile::removeResources(file(QStringLiteral("item")), types, 7));
    EXPECT_TRUE(ResourceFile::removeResources(path(QStringLiteral("missing")), types, 7));
    EXPECT_EQ(names(), QStringList{QStringLiteral("item")});
    ASSERT_TRUE(store.setResourceFork(path(QStringLiteral("item")), "no fork"));
    EXPECT_EQ(ResourceFile::removeResources(path(QStringLiteral("item")), types, 7).error().code,
              ErrorCode::Damaged);
}

TEST_F(ForkStoreTest, closing_tells_what_could_not_be_written) {
    AppleDoubleForkStore store;
    const ForkStoreInUse inUse(store);
    const QString item = file(QStringLiteral("item"));
    ASSERT_TRUE(store.createResourceFork(item, std::nullopt));
    const Result<std::unique_ptr<ResourceFile>> opened = ResourceFile::open(item);
    ASSERT_TRUE(opened);
    EXPECT_TRUE((*opened)->fork().addResource({"icns", 1, QByteArray(300, 'n'), 0, {}}));
    EXPECT_FALSE((*opened)->close());
    EXPECT_TRUE((*opened)->fork().removeResource("icns", 1));
    EXPECT_TRUE((*opened)->fork().addResource({"icns", 1, std::nullopt, 0, "data"}));
    ASSERT_TRUE(QFile::remove(item));
    EXPECT_FALSE((*opened)->close());
}
