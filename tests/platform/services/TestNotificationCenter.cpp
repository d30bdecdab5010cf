#include "platform/services/NotificationCenter.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString name = QStringLiteral("something");

TEST(NotificationCenter, delivers_at_once_in_the_order_of_registration) {
    NotificationCenter center;
    QObject observer;
    QStringList heard;
    center.addObserver(&observer, name, [&](const Notification&) { heard << QStringLiteral("first"); });
    center.addObserver(&observer, name, [&](const Notification&) { heard << QStringLiteral("second"); });
    center.addObserver(&observer, QStringLiteral("other"),
                       [&](const Notification&) { heard << QStringLiteral("other"); });
    center.postNotification(name);
    EXPECT_EQ(heard, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
}

TEST(NotificationCenter, tells_the_object_and_its_class_even_when_it_is_gone) {
    NotificationCenter center;
    QObject observer;
    Notification kept;
    center.addObserver(&observer, name, [&](const Notification& notification) { kept = notification; });
    auto object = std::make_unique<QObject>();
    center.postNotification(name, object.get());
    EXPECT_EQ(kept.name, name);
    EXPECT_EQ(kept.object, object.get());
    object.reset();
    EXPECT_TRUE(kept.object.isNull());
    EXPECT_EQ(kept.objectClassName, "QObject");
    center.postNotification(name);
    EXPECT_EQ(kept.objectClassName, "");
}

TEST(NotificationCenter, forgets_an_observer_that_is_gone_even_while_it_delivers) {
    NotificationCenter center;
    auto first = std::make_unique<QObject>();
    auto second = std::make_unique<QObject>();
    int heard = 0;
    center.addObserver(first.get(), name, [&](const Notification&) {
        ++heard;
        second.reset();
    });
    center.addObserver(second.get(), name, [&](const Notification&) { heard += 100; });
    center.postNotification(name);
    EXPECT_EQ(heard, 1);
    first.reset();
    center.postNotification(name);
    EXPECT_EQ(heard, 1);
}

TEST(NotificationCenter, lets_an_observer_that_is_added_meanwhile_wait) {
    NotificationCenter center;
    QObject observer;
    int late = 0;
    center.addObserver(&observer, name, [&](const Notification&) {
        center.addObserver(&observer, name, [&](const Notification&) { ++late; });
    });
    center.postNotification(name);
    EXPECT_EQ(late, 0);
    center.postNotification(name);
    EXPECT_EQ(late, 1);
}

} // namespace
