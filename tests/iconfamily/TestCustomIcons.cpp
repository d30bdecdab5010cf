#include "iconfamily/CarbonFSRefCreation.h"
#include "iconfamily/IconFamily.h"
#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/CurrentForkStore.h"
#include "platform/forks/NoForkStore.h"
#include "platform/forks/ResourceFile.h"
#include "tests/support/IcnsBytes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

using IcnsBytes::element;
using IcnsBytes::icns;

namespace {

const QString iconName = QStringLiteral("Icon\r");
constexpr qint16 iconNumber = -16455;

/// A store that fails at the steps that a test chooses. It records the folders that were reported as changed.
class FailingStore final : public FileForkStore {
  public:
    std::function<bool(const QString& step, const QString& path)> fails = [](const auto&, const auto&) {
        return false;
    };
    QStringList changed;
    bool changesDates = false;

    Result<Done> removeRemains(const QString& path) override {
        if (fails(QStringLiteral("remains"), path))
            return refusal();
        return m_store.removeRemains(path);
    }
    Result<Done> removeItem(const QString& path) override {
        if (fails(QStringLiteral("remove"), path))
            return refusal();
        return m_store.removeItem(path);
    }
    Result<FileTime> modificationDate(const QString& path) const override {
        if (fails(QStringLiteral("date"), path))
            return refusal();
        return m_store.modificationDate(path);
    }
    Result<Done> setModificationDate(const QString& path, const FileTime& date) override {
        if (fails(QStringLiteral("set date"), path))
            return refusal();
        return m_store.setModificationDate(path, date);
    }
    Result<QByteArray> resourceFork(const QString& path) const override {
        if (fails(QStringLiteral("fork"), path))
            return refusal();
        return m_store.resourceFork(path);
    }
    Result<Done> setResourceFork(const QString& path, const QByteArray& fork) override {
        if (fails(QStringLiteral("set fork"), path))
            return refusal();
        return m_store.setResourceFork(path, fork);
    }
    Result<Created> createResourceFork(const QString& path, const std::optional<FinderInfo>& info) override {
        if (fails(QStringLiteral("create"), path))
            return refusal();
        return m_store.createResourceFork(path, info);
    }
    Result<FinderInfo> finderInfo(const QString& path) const override {
        if (fails(QStringLiteral("info"), path))
            return refusal();
        return m_store.finderInfo(path);
    }
    Result<Done> setFinderInfo(const QString& path, const FinderInfo& info) override {
        if (fails(QStringLiteral("set info"), path))
            return refusal();
        // Storing Finder information may change the item's modification date.
        if (changesDates && !m_store.setModificationDate(path, {5, 5}))
            return refusal();
        return m_store.setFinderInfo(path, info);
    }
    Result<Done> notifyChanged(const QString& folder) override {
        if (fails(QStringLiteral("notify"), folder))
            return refusal();
        changed << folder;
        return m_store.notifyChanged(folder);
    }

  private:
    static Error refusal() { return {ErrorCode::NotWritable, QStringLiteral("refused")}; }

    AppleDoubleForkStore m_store;
};

class CustomIcons : public testing::Test {
  protected:
    void SetUp() override {
        QFile file(item);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("data");
        file.close();
        ASSERT_TRUE(QDir(root).mkdir(QStringLiteral("folder")));
    }

    /// Lets one step fail: for every path, or only for paths that end with `end`.
    void failAt(const QString& step, const QString& end = {}) {
        store.fails = [step, end](const QString& at, const QString& path) {
            return at == step && path.endsWith(end);
        };
    }

    quint16 flags(const QString& path) const { return AppleDoubleForkStore().finderInfo(path)->flags(); }

    void setFlags(const QString& path, quint16 value) {
        FinderInfo info;
        info.setFlags(value);
        ASSERT_TRUE(AppleDoubleForkStore().setFinderInfo(path, info));
    }

    /// The types of an item's resources.
    QStringList types(const QString& path) const {
        QStringList result;
        const Result<QByteArray> bytes = AppleDoubleForkStore().resourceFork(path);
        const Result<ResourceFork> fork = ResourceFork::parse(*bytes);
        if (!fork)
            return {QStringLiteral("none")};
        for (const Resource& resource : fork->resources()) {
            EXPECT_EQ(resource.number, iconNumber);
            EXPECT_EQ(resource.name, QByteArray());
            result << resource.type.text();
        }
        return result;
    }

    QByteArray iconOf(const QString& path) const {
        const Result<ResourceFork> fork = ResourceFork::parse(*AppleDoubleForkStore().resourceFork(path));
        const Resource* found = fork ? fork->resource("icns", iconNumber) : nullptr;
        return found != nullptr ? found->data : QByteArray();
    }

    static QStringList names(const QString& path) {
        return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir temporary;
    QString root = QFileInfo(temporary.path()).absoluteFilePath();
    QString item = root + QStringLiteral("/item");
    QString folder = root + QStringLiteral("/folder");
    QString icon = folder + u'/' + iconName;
    FailingStore store;
    ForkStoreInUse inUse{store};
    std::unique_ptr<IconFamily> family =
        IconFamily::initWithData(icns(element("ics8", "8") + element("ICN#", "32") + element("icl8", "")));
};

TEST_F(CustomIcons, a_file_gets_the_family_as_a_resource_and_the_flag) {
    setFlags(item, 0x0501 & ~0x0400);
    ASSERT_TRUE(family->setAsCustomIconForFile(item));
    EXPECT_EQ(iconOf(item), family->data());
    EXPECT_EQ(types(item), QStringList{QStringLiteral("icns")});
    EXPECT_EQ(flags(item), 0x0401);
    EXPECT_EQ(store.changed, QStringList{root});
    QFile file(item);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "data");
}

TEST_F(CustomIcons, a_file_keeps_its_modification_date_and_a_folder_does_not) {
    const ForkStore::FileTime date{1000000000, 7};
    store.changesDates = true;
    ASSERT_TRUE(store.setModificationDate(item, date));
    ASSERT_TRUE(family->setAsCustomIconForFile(item));
    EXPECT_EQ(*store.modificationDate(item), date);
    ASSERT_TRUE(store.setModificationDate(folder, date));
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    EXPECT_NE(*store.modificationDate(folder), date);
    failAt(QStringLiteral("set date"));
    EXPECT_TRUE(family->setAsCustomIconForFile(item)) << "whatever becomes of it";
    failAt(QStringLiteral("date"));
    EXPECT_TRUE(family->setAsCustomIconForFile(item)) << "without one";
}

TEST_F(CustomIcons, a_link_leads_to_what_gets_the_icon) {
    const QString link = root + QStringLiteral("/link");
    ASSERT_TRUE(QFile::link(item, link));
    EXPECT_TRUE(family->setAsCustomIconForFile(link));
    EXPECT_EQ(iconOf(item), family->data());
    const QString folderLink = root + QStringLiteral("/folder link");
    ASSERT_TRUE(QFile::link(folder, folderLink));
    EXPECT_TRUE(family->setAsCustomIconForDirectory(folderLink));
    EXPECT_EQ(flags(folder), 0x0400);
    const QString nowhere = root + QStringLiteral("/nowhere");
    ASSERT_TRUE(QFile::link(root + QStringLiteral("/missing"), nowhere));
    EXPECT_FALSE(family->setAsCustomIconForFile(nowhere));
    EXPECT_TRUE(QFileInfo(nowhere).isSymLink());
}

TEST_F(CustomIcons, a_protected_icon_or_fork_stays_as_it_is) {
    ResourceFork fork;
    EXPECT_TRUE(fork.addResource({"icns", iconNumber, QByteArray(), Resource::isProtected, "older"}));
    QByteArray bytes = *fork.data();
    ASSERT_TRUE(store.setResourceFork(item, bytes));
    EXPECT_FALSE(family->setAsCustomIconForFile(item));
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(item));
    EXPECT_EQ(iconOf(item), "older");
    bytes = *ResourceFork().data();
    // Sets the read-only flag among the map's attributes.
    bytes[256 + 23] = '\x80';
    ASSERT_TRUE(store.setResourceFork(item, bytes));
    EXPECT_FALSE(family->setAsCustomIconForFile(item));
    EXPECT_EQ(types(item), QStringList());
}

TEST_F(CustomIcons, what_an_older_icon_file_left_is_no_part_of_a_new_one) {
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder, true, nullptr));
    ASSERT_TRUE(QFile::remove(icon));
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    EXPECT_EQ(types(icon), QStringList{QStringLiteral("icns")});
    ASSERT_TRUE(QFile::remove(icon));
    failAt(QStringLiteral("remains"));
    EXPECT_FALSE(family->setAsCustomIconForDirectory(folder));
}

TEST_F(CustomIcons, all_four_old_elements_are_added_in_their_order) {
    const auto full = IconFamily::initWithData(
        icns(element("ics#", "1") + element("ics8", "2") + element("ICN#", "3") + element("icl8", "4")));
    const QStringList all{QStringLiteral("icns"), QStringLiteral("icl8"), QStringLiteral("ICN#"),
                          QStringLiteral("ics8"), QStringLiteral("ics#")};
    ASSERT_TRUE(full->setAsCustomIconForFile(item, true, nullptr));
    EXPECT_EQ(types(item), all);
    ASSERT_TRUE(full->setAsCustomIconForDirectory(folder, true, nullptr));
    EXPECT_EQ(types(icon), all);
    // The second call adds them again, since it replaces only the icon itself.
    ASSERT_TRUE(full->setAsCustomIconForFile(item, true, nullptr));
    EXPECT_EQ(types(item).size(), 9);
}

TEST_F(CustomIcons, only_the_form_with_an_error_adds_compatibility) {
    EXPECT_TRUE(family->setAsCustomIconForFile(item, true));
    EXPECT_EQ(types(item), QStringList{QStringLiteral("icns")});
    EXPECT_TRUE(family->setAsCustomIconForDirectory(folder, true));
    EXPECT_EQ(types(icon), QStringList{QStringLiteral("icns")});
    // The elements keep their order; missing and empty elements are skipped.
    const QStringList all{QStringLiteral("icns"), QStringLiteral("ICN#"), QStringLiteral("ics8")};
    EXPECT_TRUE(family->setAsCustomIconForFile(item, true, nullptr));
    EXPECT_EQ(types(item), all);
    EXPECT_TRUE(family->setAsCustomIconForDirectory(folder, true, nullptr));
    EXPECT_EQ(types(icon), all);
    EXPECT_TRUE(family->setAsCustomIconForFile(item, false, nullptr));
    EXPECT_EQ(types(item),
              QStringList({QStringLiteral("ICN#"), QStringLiteral("ics8"), QStringLiteral("icns")}));
}

TEST_F(CustomIcons, a_folder_gets_and_loses_no_icon_as_a_file) {
    // It has no resource fork, though something keeps one under its name.
    ASSERT_TRUE(AppleDoubleForkStore().setResourceFork(folder, *ResourceFork().data()));
    setFlags(folder, 0x0500);
    EXPECT_FALSE(family->setAsCustomIconForFile(folder));
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(folder));
    EXPECT_EQ(types(folder), QStringList());
    EXPECT_EQ(flags(folder), 0x0500);
}

TEST_F(CustomIcons, an_older_icon_is_replaced_and_other_resources_stay) {
    ASSERT_TRUE(store.createResourceFork(item, std::nullopt));
    {
        const auto file = ResourceFile::open(item);
        EXPECT_TRUE((*file)->fork().addResource({"icns", iconNumber, QByteArray(), 0, "older"}));
        EXPECT_TRUE((*file)->fork().addResource({"TEXT", iconNumber, QByteArray(), 0, "text"}));
        ASSERT_TRUE((*file)->close());
    }
    ASSERT_TRUE(family->setAsCustomIconForFile(item));
    EXPECT_EQ(iconOf(item), family->data());
    EXPECT_EQ(types(item), QStringList({QStringLiteral("TEXT"), QStringLiteral("icns")}));
}

TEST_F(CustomIcons, a_missing_file_is_made_and_its_missing_date_told) {
    const QString missing = root + QStringLiteral("/missing");
    Error error{};
    EXPECT_TRUE(family->setAsCustomIconForFile(missing, false, &error));
    EXPECT_EQ(error.code, ErrorCode::NotFound);
    EXPECT_EQ(QFileInfo(missing).size(), 0);
    EXPECT_EQ(iconOf(missing), family->data());
    EXPECT_EQ(flags(missing), 0x0400);
}

TEST_F(CustomIcons, an_error_is_left_alone_where_nothing_is_to_tell) {
    Error error{ErrorCode::EmptySize, QStringLiteral("untouched")};
    EXPECT_TRUE(family->setAsCustomIconForFile(item, false, &error));
    EXPECT_TRUE(family->setAsCustomIconForDirectory(folder, false, &error));
    EXPECT_TRUE(IconFamily::removeCustomIconFromDirectory(folder, &error));
    failAt(QStringLiteral("set fork"));
    EXPECT_FALSE(IconFamily::initWithData("another")->setAsCustomIconForFile(item, false, &error));
    EXPECT_EQ(error.sentence, QStringLiteral("untouched"));
}

TEST_F(CustomIcons, a_relative_path_is_below_the_current_folder) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(root));
    EXPECT_TRUE(family->setAsCustomIconForFile(QStringLiteral("item")));
    EXPECT_TRUE(family->setAsCustomIconForFile(QStringLiteral("folder/inner")));
    EXPECT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(iconOf(item), family->data());
    EXPECT_EQ(iconOf(folder + QStringLiteral("/inner")), family->data());
    EXPECT_EQ(store.changed, QStringList({root, folder}));
}

TEST_F(CustomIcons, a_file_fails_at_the_first_step_that_fails_and_keeps_what_was_done) {
    EXPECT_FALSE(family->setAsCustomIconForFile(root + QStringLiteral("/no/folder")));
    EXPECT_FALSE(family->setAsCustomIconForFile(folder)) << "folders have no resource fork";
    for (const char* step : {"create", "fork"}) {
        failAt(QString::fromLatin1(step));
        EXPECT_FALSE(family->setAsCustomIconForFile(item)) << step;
    }
    failAt(QStringLiteral("set fork"));
    EXPECT_FALSE(family->setAsCustomIconForFile(item));
    EXPECT_EQ(types(item), QStringList()) << "an empty fork stays";
    for (const char* step : {"info", "set info"}) {
        failAt(QString::fromLatin1(step));
        EXPECT_FALSE(family->setAsCustomIconForFile(item)) << step;
        EXPECT_EQ(iconOf(item), family->data()) << "the resource stays";
        EXPECT_EQ(flags(item), 0);
    }
    failAt(QStringLiteral("notify"));
    EXPECT_FALSE(family->setAsCustomIconForFile(item));
    EXPECT_EQ(flags(item), 0x0400);
}

TEST_F(CustomIcons, a_folder_gets_an_invisible_file_and_the_flag) {
    setFlags(folder, 0x0102);
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder + u'/'));
    EXPECT_EQ(names(folder), QStringList({QStringLiteral("._") + iconName, iconName}));
    EXPECT_EQ(QFileInfo(icon).size(), 0);
    const FinderInfo info = *AppleDoubleForkStore().finderInfo(icon);
    EXPECT_EQ(info.type(), FourCharCode("icon"));
    EXPECT_EQ(info.creator(), FourCharCode("MACS"));
    EXPECT_EQ(info.flags(), 0x4000);
    EXPECT_EQ(iconOf(icon), family->data());
    EXPECT_EQ(flags(folder), 0x0402);
    EXPECT_EQ(store.changed.size(), 1);
}

TEST_F(CustomIcons, a_folders_icon_is_made_anew_each_time) {
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    {
        const auto file = ResourceFile::open(icon);
        EXPECT_TRUE((*file)->fork().addResource({"TEXT", iconNumber, QByteArray(), 0, "text"}));
        ASSERT_TRUE((*file)->close());
    }
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    EXPECT_EQ(types(icon), QStringList{QStringLiteral("icns")});
}

TEST_F(CustomIcons, an_icon_file_that_cannot_be_removed_is_told) {
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    failAt(QStringLiteral("remove"));
    Error error{};
    EXPECT_FALSE(family->setAsCustomIconForDirectory(folder, false, &error));
    EXPECT_EQ(error.sentence, QStringLiteral("refused"));
    EXPECT_FALSE(family->setAsCustomIconForDirectory(folder));
}

TEST_F(CustomIcons, a_folder_fails_at_the_first_step_that_fails_and_keeps_what_was_done) {
    EXPECT_FALSE(family->setAsCustomIconForDirectory(root + QStringLiteral("/missing")));
    EXPECT_FALSE(family->setAsCustomIconForDirectory(item));
    EXPECT_FALSE(family->setAsCustomIconForDirectory(QString()));
    for (const char* step : {"info", "set info", "create", "fork", "set fork"}) {
        failAt(QString::fromLatin1(step), iconName);
        EXPECT_FALSE(family->setAsCustomIconForDirectory(folder)) << step;
        EXPECT_TRUE(QFileInfo::exists(icon)) << step;
        EXPECT_EQ(flags(folder), 0) << step;
    }
    for (const char* step : {"info", "set info"}) {
        failAt(QString::fromLatin1(step), QStringLiteral("folder"));
        EXPECT_FALSE(family->setAsCustomIconForDirectory(folder)) << step;
        EXPECT_EQ(iconOf(icon), family->data()) << step;
    }
    failAt(QStringLiteral("notify"));
    EXPECT_FALSE(family->setAsCustomIconForDirectory(folder));
    EXPECT_EQ(flags(folder), 0x0400);
}

TEST_F(CustomIcons, what_stands_in_the_place_of_a_folders_icon_is_removed) {
    // A folder with the icon file's name, and with something in it.
    ASSERT_TRUE(QDir(folder).mkpath(iconName + QStringLiteral("/inner")));
    EXPECT_TRUE(family->setAsCustomIconForDirectory(folder));
    EXPECT_TRUE(QFileInfo(icon).isFile());
}

TEST_F(CustomIcons, a_folder_where_no_file_can_be_made_is_a_failure) {
    if (!QFileInfo(QStringLiteral("/proc")).isDir())
        GTEST_SKIP() << "this system has no /proc";
    EXPECT_FALSE(family->setAsCustomIconForDirectory(QStringLiteral("/proc")));
}

TEST_F(CustomIcons, removing_from_a_file_clears_both_flags_and_keeps_compatibility) {
    ASSERT_TRUE(family->setAsCustomIconForFile(item, true, nullptr));
    setFlags(item, 0x4501);
    store.changed.clear();
    EXPECT_TRUE(IconFamily::removeCustomIconFromFile(item));
    EXPECT_EQ(types(item), QStringList({QStringLiteral("ICN#"), QStringLiteral("ics8")}));
    EXPECT_EQ(flags(item), 0x4001);
    EXPECT_EQ(store.changed, QStringList{root});
    EXPECT_TRUE(IconFamily::removeCustomIconFromFile(item)) << "without an icon too";
}

TEST_F(CustomIcons, removing_from_a_file_fails_at_the_first_step_that_fails) {
    setFlags(item, 0x0500);
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(item)) << "it has no fork";
    EXPECT_EQ(flags(item), 0x0500);
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(root + QStringLiteral("/missing")));
    ASSERT_TRUE(family->setAsCustomIconForFile(item));
    failAt(QStringLiteral("set fork"));
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(item));
    EXPECT_EQ(flags(item), 0x0400);
    for (const char* step : {"info", "set info"}) {
        failAt(QString::fromLatin1(step));
        EXPECT_FALSE(IconFamily::removeCustomIconFromFile(item)) << step;
    }
    failAt(QStringLiteral("notify"));
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(item));
    EXPECT_EQ(flags(item), 0);
}

TEST_F(CustomIcons, removing_from_a_folder_clears_the_flags_and_its_file) {
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    setFlags(folder, 0x4501);
    EXPECT_TRUE(IconFamily::removeCustomIconFromDirectory(folder));
    EXPECT_EQ(flags(folder), 0x4001);
    EXPECT_EQ(names(folder), QStringList());
}

TEST_F(CustomIcons, removing_from_a_folder_without_an_icon_clears_the_flags_and_answers_no) {
    setFlags(folder, 0x0500);
    Error error{};
    EXPECT_FALSE(IconFamily::removeCustomIconFromDirectory(folder, &error));
    EXPECT_EQ(error.code, ErrorCode::NotFound);
    EXPECT_EQ(flags(folder), 0);
}

TEST_F(CustomIcons, removing_from_a_folder_that_is_missing_goes_straight_to_its_file) {
    Error error{};
    EXPECT_FALSE(IconFamily::removeCustomIconFromDirectory(root + QStringLiteral("/missing"), &error));
    EXPECT_EQ(error.code, ErrorCode::NotFound);
    EXPECT_EQ(store.changed, QStringList());
}

TEST_F(CustomIcons, removing_from_a_folder_fails_at_the_first_step_that_fails) {
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    for (const char* step : {"info", "set info", "notify"}) {
        failAt(QString::fromLatin1(step), QStringLiteral("folder"));
        EXPECT_FALSE(IconFamily::removeCustomIconFromDirectory(folder)) << step;
        EXPECT_TRUE(QFileInfo::exists(icon)) << step;
    }
}

TEST_F(CustomIcons, without_forks_nothing_is_touched) {
    ASSERT_TRUE(family->setAsCustomIconForDirectory(folder));
    ASSERT_TRUE(family->setAsCustomIconForFile(item));
    const QString other = root + QStringLiteral("/other");
    ASSERT_TRUE(QDir().mkdir(other));
    const QStringList before = names(root);
    NoForkStore none;
    const ForkStoreInUse noneInUse(none);
    Error error{ErrorCode::EmptySize, QStringLiteral("untouched")};
    EXPECT_FALSE(family->setAsCustomIconForFile(item, true, &error));
    EXPECT_FALSE(family->setAsCustomIconForFile(root + QStringLiteral("/missing")));
    EXPECT_FALSE(family->setAsCustomIconForDirectory(other, true, &error));
    EXPECT_FALSE(IconFamily::removeCustomIconFromFile(item));
    EXPECT_FALSE(IconFamily::removeCustomIconFromDirectory(folder, &error));
    EXPECT_EQ(error.sentence, QStringLiteral("untouched"));
    EXPECT_EQ(names(root), before);
    EXPECT_EQ(names(other), QStringList());
    EXPECT_TRUE(QFileInfo::exists(icon));
}

TEST_F(CustomIcons, the_files_beside_a_folder_are_these_bytes) {
    const auto big16 = [](quint16 value) {
        return QByteArray{}.append(static_cast<char>(value >> 8)).append(static_cast<char>(value));
    };
    using IcnsBytes::number;
    const auto small = IconFamily::initWithData("abc");
    ASSERT_TRUE(small->setAsCustomIconForDirectory(folder));
    QFile ofFolder(root + QStringLiteral("/._folder"));
    ASSERT_TRUE(ofFolder.open(QIODevice::ReadOnly));
    const QByteArray start = number(0x00051607) + number(0x00020000) + "Mac OS X        ";
    EXPECT_EQ(ofFolder.readAll(), start + big16(2) + number(9) + number(50) + number(32) + number(2) +
                                      number(82) + number(0) + QByteArray(8, '\0') + big16(0x0400) +
                                      QByteArray(22, '\0'));
    const QByteArray header = number(256) + number(256 + 7) + number(7) + number(28 + 10 + 12 + 1);
    const QByteArray fork = header + QByteArray(240, '\0') + number(3) + "abc" + header +
                            QByteArray(6, '\0') + big16(0) + big16(28) + big16(28 + 10 + 12) + big16(0) +
                            "icns" + big16(0) + big16(10) + big16(static_cast<quint16>(iconNumber)) +
                            big16(0) + number(0) + number(0) + QByteArray(1, '\0');
    QFile ofIcon(folder + QStringLiteral("/._") + iconName);
    ASSERT_TRUE(ofIcon.open(QIODevice::ReadOnly));
    EXPECT_EQ(ofIcon.readAll(), start + big16(2) + number(9) + number(50) + number(32) + number(2) +
                                    number(82) + number(static_cast<quint32>(fork.size())) + "iconMACS" +
                                    big16(0x4000) + QByteArray(22, '\0') + fork);
}

/// An AppleDouble file with an icon, another resource and Finder information.
QByteArray goodSidecar() {
    ResourceFork fork;
    EXPECT_TRUE(fork.addResource({"TEXT", 5, QByteArray("name"), 0x20, "text"}));
    EXPECT_TRUE(fork.addResource({"icns", iconNumber, QByteArray(), 0, "older"}));
    AppleDouble file;
    file.setResourceFork(*fork.data());
    FinderInfo info;
    info.setType("TEXT");
    file.setFinderInfo(info);
    return file.data();
}

/// Damaged copies of the AppleDouble file: cut off at each byte, and with each byte set to each of three
/// values.
std::vector<QByteArray> hostileSidecars() {
    const QByteArray good = goodSidecar();
    std::vector<QByteArray> hostile;
    for (qsizetype size = 0; size < good.size(); ++size)
        hostile.push_back(good.first(size));
    for (qsizetype at = 0; at < good.size(); ++at) {
        for (const char value : {'\0', '\x7f', '\xff'}) {
            if (good[at] == value)
                continue;
            hostile.push_back(good);
            hostile.back()[at] = value;
        }
    }
    return hostile;
}

/// The resources of an item that a custom icon must not change.
std::vector<Resource> othersOf(const QByteArray& sidecar) {
    std::vector<Resource> others;
    if (const Result<AppleDouble> file = AppleDouble::parse(sidecar)) {
        if (const Result<ResourceFork> fork = ResourceFork::parse(file->resourceFork()))
            others = fork->resources();
    }
    std::erase_if(others, [](const Resource& resource) {
        return resource.type == FourCharCode("icns") && resource.number == iconNumber;
    });
    return others;
}

TEST_F(CustomIcons, hostile_files_beside_an_item_lose_nothing) {
    const std::vector<QByteArray> hostile = hostileSidecars();
    EXPECT_GE(hostile.size(), 1000U);
    const QString path = root + QStringLiteral("/._item");
    const auto read = [&] {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    int changedCount = 0;
    for (const QByteArray& before : hostile) {
        for (const bool isRemoval : {false, true}) {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(before);
            file.close();
            const bool isDone =
                isRemoval ? IconFamily::removeCustomIconFromFile(item) : family->setAsCustomIconForFile(item);
            const QByteArray after = read();
            // The operation was refused, or there was nothing to remove.
            if (after == before)
                continue;
            ++changedCount;
            ASSERT_TRUE(isDone) << before.toHex().constData();
            ASSERT_TRUE(AppleDouble::parse(after));
            EXPECT_EQ(othersOf(after), othersOf(before)) << before.toHex().constData();
        }
    }
    EXPECT_GT(changedCount, 100) << "some of them are whole";
}

TEST_F(CustomIcons, an_element_is_added_to_the_open_fork_whatever_becomes_of_it) {
    EXPECT_TRUE(family->addResourceType("ICN#", 5)) << "without an open fork";
    ASSERT_TRUE(store.createResourceFork(item, std::nullopt));
    const auto file = ResourceFile::open(item);
    ASSERT_TRUE(file);
    EXPECT_TRUE(family->addResourceType("ICN#", -5));
    EXPECT_FALSE(family->addResourceType("icl8", 6)) << "it is empty";
    EXPECT_FALSE(family->addResourceType("ics#", 6)) << "it is not there";
    const std::vector<Resource> expected{{"ICN#", -5, QByteArray(), 0, "32"}};
    EXPECT_EQ((*file)->fork().resources(), expected);
}

TEST_F(CustomIcons, a_reference_is_to_what_exists_or_is_made) {
    using CarbonFSRefCreation::getFSRef;
    FSRef reference;
    const QString made = root + QStringLiteral("/made");
    EXPECT_FALSE(getFSRef(made, reference, false));
    EXPECT_FALSE(QFileInfo::exists(made));
    EXPECT_TRUE(getFSRef(made, reference, true));
    EXPECT_EQ(reference.path, made);
    EXPECT_EQ(QFileInfo(made).size(), 0);
    EXPECT_TRUE(getFSRef(item, reference, true));
    EXPECT_EQ(QFileInfo(item).size(), 4) << "what is there stays";
    EXPECT_TRUE(getFSRef(folder, reference, false));
    EXPECT_FALSE(getFSRef(root + QStringLiteral("/no/folder"), reference, true));
    EXPECT_FALSE(getFSRef(QString(), reference, true));
    EXPECT_FALSE(getFSRef(item + QChar(QChar::Null), reference, true));
}

#ifndef Q_OS_MACOS
TEST(IconServices, exist_on_no_other_system) {
    EXPECT_EQ(IconFamily::iconFamilyWithIconOfFile(QStringLiteral("/")), nullptr);
    EXPECT_EQ(IconFamily::initWithIconOfFile(QStringLiteral("/")), nullptr);
    EXPECT_EQ(IconFamily::iconFamilyWithSystemIcon("docu"), nullptr);
    EXPECT_EQ(IconFamily::initWithSystemIcon("docu"), nullptr);
}
#endif

} // namespace
