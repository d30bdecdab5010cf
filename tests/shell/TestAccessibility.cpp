#include "platform/widgets/Alert.h"
#include "shell/AboutBox.h"
#include "tests/shell/EdgesFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>

namespace {

/// What a screen reader says of an element, and what a keyboard does with it. On a light and a dark desktop.
class AccessibilityTest : public EdgesFixture {
  protected:
    /// The widgets of `window` that can be seen and take the focus, in the order of the Tab key.
    static std::vector<QWidget*> stops(QWidget& window) {
        std::vector<QWidget*> found;
        for (QWidget* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain()) {
            if (next->window() == &window && next->isVisible() && (next->focusPolicy() & Qt::TabFocus) != 0 &&
                next->focusProxy() == nullptr)
                found.push_back(next);
        }
        return found;
    }

    /// "name | role | value" of what the Tab key reaches in `window`.
    static std::string read(QWidget& window) {
        QStringList lines;
        for (QWidget* widget : stops(window)) {
            QAccessibleInterface* element = QAccessible::queryAccessibleInterface(widget);
            if (element == nullptr) {
                ADD_FAILURE() << widget->objectName().toStdString();
                continue;
            }
            const QAccessible::State state = element->state();
            EXPECT_TRUE(state.focusable) << widget->objectName().toStdString();
            EXPECT_FALSE(state.invisible || state.offscreen) << widget->objectName().toStdString();
            EXPECT_EQ(state.disabled, !widget->isEnabled()) << widget->objectName().toStdString();
            QString line = nameOf(*element) + QStringLiteral(" | ") + roleName(element->role());
            if (state.checkable)
                line += state.checked ? QStringLiteral(" | on") : QStringLiteral(" | off");
            else if (const QString value = element->text(QAccessible::Value);
                     !value.isEmpty() && value != nameOf(*element))
                line += QStringLiteral(" | ") + value;
            lines << (state.disabled ? line + QStringLiteral(" | disabled") : line);
        }
        return lines.join(u'\n').remove(u'&').toStdString();
    }

    /// A list has the name of its label: its own is its choice.
    static QString nameOf(QAccessibleInterface& element) {
        if (element.role() != QAccessible::ComboBox)
            return element.text(QAccessible::Name);
        QStringList names;
        for (const auto& [label, relation] : element.relations(QAccessible::Label))
            names << label->text(QAccessible::Name);
        return names.join(u',');
    }

    static QString roleName(QAccessible::Role role) {
        switch (role) {
        case QAccessible::Button:
            return QStringLiteral("button");
        case QAccessible::CheckBox:
            return QStringLiteral("check box");
        case QAccessible::ComboBox:
            return QStringLiteral("list");
        case QAccessible::Slider:
            return QStringLiteral("slider");
        case QAccessible::Tree:
        case QAccessible::Table:
            return QStringLiteral("table");
        default:
            return QStringLiteral("role %1").arg(role);
        }
    }

    QWidget* window() { return controller().window(); }
};

TEST_P(AccessibilityTest, a_screen_reader_says_every_control_of_the_main_window) {
    EXPECT_EQ(read(*window()), "Source picture | button\n"
                               "Platform | list | iPhone | disabled\n"
                               "Rounded corner | check box | off | disabled\n"
                               "Corner radius | slider | 0 % | disabled\n"
                               "Border | check box | off | disabled\n"
                               "Border width | slider | 5 % | disabled\n"
                               "Border colour | button | disabled\n"
                               "Generate | button | disabled");
    arrive();
    controller().borderCheckButton->click();
    controller().platformSelection->setCurrentIndex(4);
    EXPECT_EQ(read(*window()), "Source picture | button\n"
                               "Platform | list | Mac\n"
                               "Rounded corner | check box | off\n"
                               "Corner radius | slider | 0 %\n"
                               "Border | check box | on\n"
                               "Border width | slider | 5 %\n"
                               "Border colour | button\n"
                               "Generate | button");
    const auto described = [](QWidget* widget) {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Description);
    };
    EXPECT_EQ(described(controller().imgViewIcon), QStringLiteral("A picture of 9 × 9"));
    EXPECT_EQ(described(controller().colorPicker), controller().colorPicker->qcolor().name());
}

TEST_P(AccessibilityTest, a_screen_reader_says_every_control_of_the_other_windows) {
    delegate.promotionWindowSetup();
    delegate.showPromotionWindow();
    Events::settle();
    EXPECT_EQ(read(*delegate.windowPromotion()), "Open in Store | button\n"
                                                 "Page | slider | 1 of 8\n"
                                                 "Don’t show this again | check box | off\n"
                                                 "Back | button\n"
                                                 "Quit Tobrimax | button");
    AboutBox about(nullptr);
    about.setAttribute(Qt::WA_DeleteOnClose, false);
    about.show();
    Events::settle();
    EXPECT_EQ(read(about), "Libraries | table\nClose | button");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&about)->text(QAccessible::Name),
              QStringLiteral("About Tobrimax"));
    controller().actionGenerateIcons(nullptr);
    Events::settle();
    auto* alert = window()->findChild<Alert*>();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(read(*alert), "Ok | button");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(alert)->text(QAccessible::Name),
              QStringLiteral("Icon File Error"));
}

TEST_P(AccessibilityTest, every_stop_of_the_tab_key_shows_that_it_has_the_focus) {
    arrive();
    delegate.promotionWindowSetup();
    delegate.showPromotionWindow();
    for (QWidget* shown : {window(), delegate.windowPromotion()}) {
        shown->activateWindow();
        Events::settle();
        const std::vector<QWidget*> all = stops(*shown);
        ASSERT_GE(all.size(), 5U);
        for (std::size_t i = 0; i < all.size(); ++i) {
            QWidget* stop = all[i];
            QWidget* before = all[(i + all.size() - 1) % all.size()];
            before->setFocus(Qt::TabFocusReason);
            Events::settle();
            const QImage without = stop->grab().toImage();
            QTest::keyClick(before, Qt::Key_Tab);
            Events::settle();
            ASSERT_TRUE(stop->hasFocus()) << stop->objectName().toStdString();
            const QImage with = stop->grab().toImage();
            int changed = 0;
            double strongestChange = 1;
            for (int y = 0; y < with.height(); ++y) {
                for (int x = 0; x < with.width(); ++x) {
                    if (with.pixel(x, y) == without.pixel(x, y))
                        continue;
                    ++changed;
                    strongestChange = std::max(
                        strongestChange, contrastRatio(with.pixelColor(x, y), without.pixelColor(x, y)));
                }
            }
            EXPECT_GE(changed, 16) << stop->objectName().toStdString();
            EXPECT_GE(strongestChange, 1.5) << stop->objectName().toStdString();
        }
    }
}

TEST_P(AccessibilityTest, the_keyboard_alone_chooses_decorates_and_generates) {
    const auto press = [](QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        widget->setFocus();
        QTest::keyClick(widget, key, modifiers);
        Events::settle();
    };
    const auto closesByEscape = [&](QDialog* dialog) {
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(dialog->isVisible());
        QPointer<QDialog> guarded = dialog;
        QTest::keyClick(dialog, Qt::Key_Escape);
        Events::settle();
        EXPECT_TRUE(guarded == nullptr || !guarded->isVisible());
    };
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        press(controller().imgViewIcon, key);
        closesByEscape(window()->findChild<QFileDialog*>());
    }
    arrive();
    press(controller().platformSelection, Qt::Key_Down);
    EXPECT_EQ(controller().platformIndex(), 1);
    press(controller().roundedCheckButton, Qt::Key_Space);
    press(controller().sliderCornerRadius, Qt::Key_Right);
    press(controller().borderCheckButton, Qt::Key_Space);
    press(controller().sliderBorderWidth, Qt::Key_Left);
    const IconStyle style = controller().iconStyle();
    EXPECT_TRUE(style.roundCorner && style.border);
    EXPECT_GT(style.cornerRadiusPercent, 0);
    EXPECT_LT(style.borderWidth, 0.05F);
    press(controller().colorPicker, Qt::Key_Space);
    closesByEscape(window()->findChild<QColorDialog*>());
    press(controller().generateBtn, Qt::Key_Return);
    closesByEscape(window()->findChild<QFileDialog*>());
}

INSTANTIATE_TEST_SUITE_P(Looks, AccessibilityTest, testing::Values(false, true),
                         [](const auto& instance) { return instance.param ? "dark" : "light"; });

} // namespace
