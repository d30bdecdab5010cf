#include "platform/widgets/ChangeFollower.h"

#include <QFont>

#include <gtest/gtest.h>

#include <memory>

TEST(ChangeFollower, it_follows_at_once_and_at_each_change_of_its_kind) {
    QWidget widget;
    QObject owner;
    int count = 0;
    new ChangeFollower(widget, QEvent::FontChange, owner, [&count] { ++count; });
    EXPECT_EQ(count, 1);
    QFont font = widget.font();
    font.setPointSize(font.pointSize() + 5);
    widget.setFont(font);
    EXPECT_EQ(count, 2);
    widget.setEnabled(false);
    EXPECT_EQ(count, 2);
}

TEST(ChangeFollower, it_ends_with_its_owner) {
    QWidget widget;
    auto owner = std::make_unique<QObject>();
    int count = 0;
    new ChangeFollower(widget, QEvent::EnabledChange, *owner, [&count] { ++count; });
    owner.reset();
    widget.setEnabled(false);
    EXPECT_EQ(count, 1);
}
