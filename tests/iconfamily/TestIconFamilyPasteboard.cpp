#include "iconfamily/IconFamily.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace {

const QString type = QStringLiteral("com.apple.icns");
const QString olderType = QStringLiteral("'icns' (CorePasteboardFlavorType 0x69636E73)");

TEST(IconFamilyPasteboard, has_two_types_in_this_order) {
    const Pasteboard pasteboard;
    EXPECT_EQ(IconFamily::readableTypesForPasteboard(pasteboard), QStringList({type, olderType}));
    EXPECT_EQ(IconFamily::init()->writableTypesForPasteboard(pasteboard), QStringList({type, olderType}));
    EXPECT_EQ(IconFamily::readingOptionsForType(type, pasteboard), 0);
}

TEST(IconFamilyPasteboard, the_same_bytes_are_given_for_any_type) {
    const auto family = IconFamily::initWithData("bytes");
    EXPECT_EQ(family->pasteboardPropertyListForType(type), "bytes");
    EXPECT_EQ(family->pasteboardPropertyListForType(olderType), "bytes");
    EXPECT_EQ(family->pasteboardPropertyListForType(QStringLiteral("another")), "bytes");
}

TEST(IconFamilyPasteboard, any_bytes_are_taken_whatever_the_type) {
    const auto family = IconFamily::initWithPasteboardPropertyList("bytes", QStringLiteral("another"));
    ASSERT_NE(family, nullptr);
    EXPECT_EQ(family->data(), "bytes");
}

TEST(IconFamilyPasteboard, can_be_read_where_either_type_is) {
    Pasteboard pasteboard;
    EXPECT_FALSE(IconFamily::canInitWithPasteboard(pasteboard));
    EXPECT_EQ(IconFamily::iconFamilyFromPasteboard(pasteboard), nullptr);
    pasteboard.setData("x", QStringLiteral("text/plain"));
    EXPECT_FALSE(IconFamily::canInitWithPasteboard(pasteboard));
    pasteboard.setData("older", olderType);
    EXPECT_TRUE(IconFamily::canInitWithPasteboard(pasteboard));
    EXPECT_EQ(IconFamily::iconFamilyFromPasteboard(pasteboard)->data(), "older");
    pasteboard.setData("newer", type);
    EXPECT_EQ(IconFamily::iconFamilyFromPasteboard(pasteboard)->data(), "newer");
    pasteboard.clearContents();
    EXPECT_FALSE(IconFamily::canInitWithPasteboard(pasteboard));
}

TEST(IconFamilyPasteboard, an_empty_family_is_one_too) {
    Pasteboard pasteboard;
    IconFamily::init()->writeToPasteboard(pasteboard);
    ASSERT_TRUE(IconFamily::canInitWithPasteboard(pasteboard));
    const auto family = IconFamily::iconFamilyFromPasteboard(pasteboard);
    ASSERT_NE(family, nullptr);
    EXPECT_EQ(family->data(), QByteArray());
}

TEST(IconFamilyPasteboard, goes_over_the_systems_clipboard_in_both_types) {
    Pasteboard clipboard = Pasteboard::generalPasteboard();
    clipboard.setData("words", QStringLiteral("text/plain"));
    const auto family = IconFamily::initWithData(QByteArray("icns\0\0\0\x08", 8));
    family->writeToPasteboard(clipboard);
    const Pasteboard other = Pasteboard::generalPasteboard();
    EXPECT_EQ(other.types(), QStringList({type, olderType})) << "what was there before is gone";
    for (const QString& each : {type, olderType})
        EXPECT_EQ(other.dataForType(each), family->data());
    ASSERT_TRUE(IconFamily::canInitWithPasteboard(other));
    EXPECT_EQ(IconFamily::iconFamilyFromPasteboard(other)->data(), family->data());
}

} // namespace
