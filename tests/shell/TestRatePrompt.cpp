#include "platform/widgets/Alert.h"
#include "tests/shell/AppDelegateFixture.h"

namespace {

class RatePromptTest : public AppDelegateFixture {
  protected:
    RatePromptTest() {
        delegate.setupInitialController();
        Events::settle();
    }

    QString build() const {
        return bundle.infoDictionary().value(QStringLiteral("CFBundleVersion")).toString();
    }
    qint64 count() const { return defaults.integerForKey(QStringLiteral("appOpenedCount")); }

    Alert* alert() { return mainWindow()->findChild<Alert*>(); }

    void press(const QString& name) {
        for (QAbstractButton* button : alert()->buttons()) {
            if (button->text() == name) {
                Events::click(button);
                Events::settle();
                return;
            }
        }
        ADD_FAILURE() << "no button " << name.toStdString();
    }
};

TEST_F(RatePromptTest, the_build_is_known) {
    EXPECT_FALSE(build().isEmpty());
}

TEST_F(RatePromptTest, comes_at_every_seventh_launch_of_a_build_without_an_answer) {
    for (int launch = 1; launch <= 15; ++launch) {
        delegate.checkForRateupPopup();
        EXPECT_EQ(count(), launch % 7) << launch;
        const bool isDue = launch % 7 == 0;
        if (isDue) {
            EXPECT_EQ(alert(), nullptr) << "not at once";
            ASSERT_TRUE(Events::waitFor([this] { return alert() != nullptr; }));
            delete alert();
        }
    }
    QThread::msleep(300);
    Events::settle();
    EXPECT_EQ(alert(), nullptr) << "not at any other";
}

TEST_F(RatePromptTest, never_comes_for_a_build_that_was_answered_for) {
    defaults.setString(build(), QStringLiteral("appVersion"));
    defaults.setInteger(6, QStringLiteral("appOpenedCount"));
    for (int launch = 0; launch < 8; ++launch) {
        delegate.checkForRateupPopup();
        EXPECT_EQ(count(), 0);
    }
    QThread::msleep(300);
    Events::settle();
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(RatePromptTest, another_build_goes_on_from_the_count_that_was_stored) {
    defaults.setString(QStringLiteral("0.0.1"), QStringLiteral("appVersion"));
    defaults.setInteger(6, QStringLiteral("appOpenedCount"));
    delegate.checkForRateupPopup();
    EXPECT_TRUE(Events::waitFor([this] { return alert() != nullptr; }));
    EXPECT_EQ(count(), 0);
}

TEST_F(RatePromptTest, a_count_that_no_run_has_left_is_harmless) {
    for (const qint64 odd : {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
        defaults.setInteger(odd, QStringLiteral("appOpenedCount"));
        delegate.checkForRateupPopup();
        // At the largest number the prompt is due. At the smallest the count goes on.
        EXPECT_EQ(count(), odd > 0 ? 0 : odd + 1);
    }
    defaults.setString(QStringLiteral("many"), QStringLiteral("appOpenedCount"));
    delegate.checkForRateupPopup();
    EXPECT_EQ(count(), 1);
}

TEST_F(RatePromptTest, a_build_without_a_name_is_not_answered_for) {
    class NamelessBundle final : public Bundle {
      public:
        QString pathForResource(const QString& /*name*/) const override { return {}; }
    };
    NamelessBundle nameless;
    AppDelegate other({application,
                       {nameless, screen, workspace},
                       defaults,
                       [](const QString&) { return false; },
                       [](const StoreError&) { return false; }});
    other.checkForRateupPopup();
    EXPECT_EQ(count(), 1);
}

TEST_F(RatePromptTest, is_a_sheet_with_the_exact_words) {
    delegate.showAlertForRateApp();
    Events::settle();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), QStringLiteral("Rate Us"));
    EXPECT_EQ(alert()->informativeText(),
              QStringLiteral("If you enjoy using our app, would you like to rate us on app store?"));
    QStringList buttons;
    for (const QAbstractButton* button : alert()->buttons())
        buttons << button->text();
    // The desktop decides the order of the buttons. The first button is the default.
    EXPECT_EQ(buttons.size(), 2);
    EXPECT_TRUE(buttons.contains(QStringLiteral("NO")));
    EXPECT_EQ(alert()->defaultButton()->text(), QStringLiteral("YES"));
    EXPECT_EQ(alert()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(alert()->parentWidget(), delegate.window());
}

TEST_F(RatePromptTest, no_records_the_build_at_once) {
    delegate.showAlertForRateApp();
    Events::settle();
    press(QStringLiteral("NO"));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("appVersion")), build());
    EXPECT_TRUE(workspace.asked.isEmpty());
}

TEST_F(RatePromptTest, yes_opens_the_store_page_and_then_records_the_build) {
    delegate.showAlertForRateApp();
    Events::settle();
    press(QStringLiteral("YES"));
    ASSERT_EQ(workspace.asked.size(), 1);
    EXPECT_EQ(workspace.asked.first().scheme(), QStringLiteral("macappstore"));
    EXPECT_EQ(workspace.asked.first().query(), QStringLiteral("ls=1&mt=8"));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("appVersion")), build());
}

TEST_F(RatePromptTest, a_store_page_that_does_not_open_records_nothing) {
    workspace.succeeds = false;
    delegate.alertDidEndClose(nullptr, 1, nullptr);
    delegate.alertDidEndClose(nullptr, 7, nullptr); // any code other than 0
    EXPECT_EQ(workspace.asked.size(), 2);
    EXPECT_FALSE(defaults.allKeys().contains(QStringLiteral("appVersion")));
}

TEST_F(RatePromptTest, the_build_is_recorded_when_the_outcome_is_known_and_nothing_waits_for_it) {
    workspace.isSlow = true;
    for (const bool succeeds : {false, true}) {
        workspace.succeeds = succeeds;
        delegate.showAlertForRateApp();
        Events::settle();
        press(QStringLiteral("YES"));
        EXPECT_EQ(alert(), nullptr) << "closed before the outcome";
        EXPECT_FALSE(defaults.hasKey(QStringLiteral("appVersion")));
        // Another alert is not ended by the outcome.
        Alert other;
        other.addButtonWithTitle(QStringLiteral("Ok"));
        QTimer::singleShot(0, &other, [&] {
            workspace.outcome();
            EXPECT_TRUE(other.isVisible());
            other.done(0);
        });
        other.runModal();
        EXPECT_EQ(defaults.hasKey(QStringLiteral("appVersion")), succeeds);
    }
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("appVersion")), build());
}

TEST_F(RatePromptTest, an_outcome_that_comes_after_the_delegates_end_is_harmless) {
    workspace.isSlow = true;
    auto other =
        std::make_unique<AppDelegate>(AppDelegate::Surroundings{application,
                                                                {bundle, screen, workspace},
                                                                defaults,
                                                                [](const QString&) { return false; },
                                                                [](const StoreError&) { return false; }});
    other->alertDidEndClose(nullptr, 1, nullptr);
    other.reset();
    workspace.outcome();
    EXPECT_FALSE(defaults.hasKey(QStringLiteral("appVersion")));
}

TEST_F(RatePromptTest, either_answer_stops_a_modal_session) {
    for (const int answer : {0, 1}) {
        Alert modal;
        modal.addButtonWithTitle(QStringLiteral("Ok"));
        QTimer::singleShot(0, &modal, [&] { delegate.alertDidEndClose(nullptr, answer, nullptr); });
        modal.runModal();
        EXPECT_FALSE(modal.isVisible());
    }
}

} // namespace
