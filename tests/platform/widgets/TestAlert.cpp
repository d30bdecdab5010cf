#include "platform/widgets/Alert.h"
#include "platform/widgets/Contrast.h"
#include "tests/support/Events.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class AlertTest : public testing::Test {
  protected:
    AlertTest() {
        window.resize(300, 200);
        window.show();
        alert->setMessageText(QStringLiteral("A message"));
        alert->setInformativeText(QStringLiteral("More about it"));
    }
    ~AlertTest() override { delete alert; }

    void show() {
        alert->beginSheetModalForWindow(&window, [this](int code) { answer = code; });
        Events::settle();
    }

    QWidget window;
    QPointer<Alert> alert = new Alert;
    std::optional<int> answer;
};

TEST_F(AlertTest, is_a_sheet_that_blocks_its_window_only) {
    alert->addButtonWithTitle(QStringLiteral("Ok"));
    show();
    EXPECT_TRUE(alert->isVisible());
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    EXPECT_EQ(alert->parentWidget(), &window);
    EXPECT_EQ(alert->text(), QStringLiteral("A message"));
    EXPECT_EQ(alert->informativeText(), QStringLiteral("More about it"));
    EXPECT_FALSE(answer.has_value());
}

TEST_F(AlertTest, return_presses_the_first_button_wherever_the_focus_is) {
    alert->addButtonWithTitle(QStringLiteral("First"));
    alert->addButtonWithTitle(QStringLiteral("Second"));
    show();
    alert->buttons().last()->setFocus();
    Events::key(alert->buttons().last(), Qt::Key_Return);
    EXPECT_EQ(answer, 1000);
}

TEST_F(AlertTest, escape_presses_a_button_named_cancel) {
    alert->addButtonWithTitle(QStringLiteral("Quit anyway"));
    alert->addButtonWithTitle(QStringLiteral("Cancel"));
    show();
    Events::key(alert, Qt::Key_Escape);
    EXPECT_EQ(answer, 1001);
}

TEST_F(AlertTest, escape_presses_an_only_button) {
    alert->addButtonWithTitle(QStringLiteral("Ok"));
    show();
    Events::key(alert, Qt::Key_Escape);
    EXPECT_EQ(answer, 1000);
}

TEST_F(AlertTest, escape_and_closing_do_nothing_with_two_buttons_that_do_not_cancel) {
    alert->addButtonWithTitle(QStringLiteral("YES"));
    alert->addButtonWithTitle(QStringLiteral("NO"));
    show();
    Events::key(alert, Qt::Key_Escape);
    EXPECT_FALSE(alert->close());
    EXPECT_TRUE(alert->isVisible());
    EXPECT_FALSE(answer.has_value());
}

TEST_F(AlertTest, has_no_title_bar_with_buttons) {
    alert->addButtonWithTitle(QStringLiteral("Ok"));
    show();
    const Qt::WindowFlags flags = alert->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::FramelessWindowHint));
    for (const Qt::WindowType button :
         {Qt::WindowMinimizeButtonHint, Qt::WindowMaximizeButtonHint, Qt::WindowCloseButtonHint})
        EXPECT_FALSE(flags.testFlag(button));
    EXPECT_EQ(alert->windowTitle(), QStringLiteral("A message")) << "the desktop's list shows it";
    // A line takes the place of the frame.
    const QImage shown = alert->grab().toImage();
    const QColor line = edgeColor(alert->palette());
    for (const QPoint& edge : {QPoint(0, 0), QPoint(shown.width() - 1, 0), QPoint(0, shown.height() - 1),
                               QPoint(shown.width() - 1, shown.height() - 1)})
        EXPECT_EQ(shown.pixelColor(edge).rgb(), line.rgb());
}

TEST_F(AlertTest, a_button_may_have_a_code_of_its_own) {
    alert->addButtonWithTitle(QStringLiteral("YES"), 1);
    alert->addButtonWithTitle(QStringLiteral("NO"), 0);
    show();
    for (QAbstractButton* button : alert->buttons()) {
        if (button->text() == QLatin1String("NO"))
            Events::click(button);
    }
    EXPECT_EQ(answer, 0);
}

TEST_F(AlertTest, a_sheet_deletes_itself_when_it_has_been_answered) {
    alert->addButtonWithTitle(QStringLiteral("Ok"));
    show();
    Events::key(alert, Qt::Key_Return);
    Events::settle();
    EXPECT_TRUE(alert.isNull());
}

TEST_F(AlertTest, run_modal_waits_for_the_answer) {
    alert->addButtonWithTitle(QStringLiteral("Quit anyway"));
    alert->addButtonWithTitle(QStringLiteral("Cancel"));
    bool blocksAll = false;
    QTimer::singleShot(0, alert, [&] {
        blocksAll = alert->windowModality() == Qt::ApplicationModal;
        Events::key(alert, Qt::Key_Escape);
    });
    EXPECT_EQ(alert->runModal(), 1001);
    EXPECT_TRUE(blocksAll);
}

TEST_F(AlertTest, one_that_is_ended_by_something_else_answers_with_that_code) {
    alert->addButtonWithTitle(QStringLiteral("Ok"));
    QTimer::singleShot(0, alert, [&] { alert->done(-1000); });
    EXPECT_EQ(alert->runModal(), -1000);
}

TEST_F(AlertTest, without_more_about_it_the_message_has_the_room) {
    alert->setInformativeText({});
    alert->addButtonWithTitle(QStringLiteral("OK"));
    show();
    const auto* icon = alert->findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"));
    ASSERT_NE(icon, nullptr);
    EXPECT_LT(icon->width(), 100);
}

} // namespace
