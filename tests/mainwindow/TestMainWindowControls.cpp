#include "generation/Platforms.h"
#include "platform/services/NotificationCenter.h"
#include "tests/mainwindow/MainWindowFixture.h"
#include "tests/support/EventRecorder.h"

#include <QLabel>
#include <QScreen>

namespace {

constexpr Color startColor{130 / 255.0, 130 / 255.0, 134 / 255.0, 1};

using MainWindowControls = MainWindowFixture;

std::vector<QWidget*> sevenControls(const MainWindowController& controller) {
    return {controller.roundedCheckButton, controller.borderCheckButton, controller.sliderCornerRadius,
            controller.sliderBorderWidth,  controller.colorPicker,       controller.generateBtn,
            controller.platformSelection};
}

TEST_F(MainWindowControls, start_as_the_layout_says) {
    EXPECT_EQ(controller->windowNibName(), QStringLiteral("MainWindowController"));
    EXPECT_EQ(controller->platformSelection->currentIndex(), 0);
    QStringList platforms;
    for (int i = 0; i < controller->platformSelection->count(); ++i)
        platforms << controller->platformSelection->itemText(i);
    EXPECT_EQ(platforms, QStringList({QStringLiteral("iPhone"), QStringLiteral("iPad"),
                                      QStringLiteral("iPhone and iPad"), QStringLiteral("Apple Watch"),
                                      QStringLiteral("Mac"), QStringLiteral("Android")}));
    EXPECT_EQ(controller->sliderCornerRadius->minimumFloat(), 0.0F);
    EXPECT_EQ(controller->sliderCornerRadius->maximumFloat(), 0.5F);
    EXPECT_EQ(controller->sliderBorderWidth->minimumFloat(), 0.0F);
    EXPECT_EQ(controller->sliderBorderWidth->maximumFloat(), 0.25F);
    // The command line's style, with corner and border off and without a radius: the well's border has none
    // until the slider moves.
    IconStyle style;
    style.cornerRadiusPercent = 0;
    style.borderColor = startColor;
    EXPECT_EQ(controller->iconStyle(), style);
    EXPECT_EQ(controller->imgViewIcon->width(), controller->imgViewIcon->height());
    EXPECT_GE(controller->imgViewIcon->width(), 256);
    EXPECT_TRUE(controller->imgViewIcon->layer().masksToBounds());
    EXPECT_FALSE(controller->roundedCheckButton->isHidden()) << "the layout hides it";
    EXPECT_EQ(controller->outputPathString(), QString());
}

TEST_F(MainWindowControls, the_platform_list_has_the_choices_of_the_table_in_its_order) {
    const std::span<const Platforms::Choice> choices = Platforms::choices();
    ASSERT_EQ(controller->platformSelection->count(), static_cast<int>(choices.size()));
    for (int i = 0; i < controller->platformSelection->count(); ++i) {
        // "iPhone and iPad": each part ends in the word that is the idiom.
        QStringList listed;
        for (const QString& part : controller->platformSelection->itemText(i).split(QStringLiteral(" and ")))
            listed << part.section(u' ', -1).toLower();
        QStringList idioms;
        for (const Platform platform : choices[static_cast<std::size_t>(i)].platforms)
            idioms << Platforms::idiom(platform);
        EXPECT_EQ(listed, idioms) << i;
    }
}

TEST_F(MainWindowControls, are_disabled_until_a_picture_arrives_and_then_enabled_in_order) {
    EventRecorder enabled(QEvent::EnabledChange);
    for (QWidget* control : sevenControls(*controller)) {
        EXPECT_FALSE(control->isEnabled()) << control->objectName().toStdString();
        enabled.watch(control);
    }
    drop(pictureFile());
    EXPECT_EQ(enabled.received,
              QStringList({QStringLiteral("roundedCheckButton"), QStringLiteral("borderCheckButton"),
                           QStringLiteral("sliderCornerRadius"), QStringLiteral("sliderBorderWidth"),
                           QStringLiteral("colorPicker"), QStringLiteral("generateBtn"),
                           QStringLiteral("platformSelection")}));
    for (int i = 0; i < 2; ++i) {
        drop(pictureFile());
        for (const QWidget* control : sevenControls(*controller))
            EXPECT_TRUE(control->isEnabled());
    }
    EXPECT_EQ(enabled.received.size(), 7);
}

TEST_F(MainWindowControls, are_enabled_by_a_file_that_is_no_picture_and_stay_enabled) {
    drop(textFile());
    EXPECT_TRUE(controller->imgViewIcon->image().isNull());
    for (const QWidget* control : sevenControls(*controller))
        EXPECT_TRUE(control->isEnabled());
    drop(pictureFile());
    drop(textFile());
    EXPECT_TRUE(controller->platformSelection->isEnabled());
}

TEST_F(MainWindowControls, labels_look_as_their_controls_do) {
    const auto label = [this](const char* name) {
        return controller->window()->findChild<QLabel*>(QString::fromLatin1(name));
    };
    for (const char* name : {"platformLabel", "cornerRadiusLabel", "borderWidthLabel", "colorLabel",
                             "cornerRadiusValue", "borderWidthValue"})
        EXPECT_FALSE(label(name)->isEnabled()) << name;
    drop(pictureFile());
    for (const char* name : {"platformLabel", "cornerRadiusLabel", "borderWidthLabel", "colorLabel",
                             "cornerRadiusValue", "borderWidthValue"})
        EXPECT_TRUE(label(name)->isEnabled()) << name;
}

TEST_F(MainWindowControls, are_enabled_by_the_notification_from_any_sender) {
    QObject sender;
    NotificationCenter::defaultCenter().postNotification(QStringLiteral("imageAdded"), &sender);
    EXPECT_TRUE(controller->platformSelection->isEnabled());
}

TEST_F(MainWindowControls, sliders_and_colour_do_not_depend_on_their_check_boxes) {
    drop(pictureFile());
    EXPECT_FALSE(controller->roundedCheckButton->isChecked());
    EXPECT_TRUE(controller->sliderCornerRadius->isEnabled());
    EXPECT_TRUE(controller->sliderBorderWidth->isEnabled());
    EXPECT_TRUE(controller->colorPicker->isEnabled());
}

TEST_F(MainWindowControls, choosing_a_platform_only_writes_a_log_line) {
    drop(pictureFile());
    controller->platformSelection->setFocus();
    Events::key(controller->platformSelection, Qt::Key_End);
    EXPECT_EQ(controller->platformIndex(), 5);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("platform selected index:5")));
    EXPECT_TRUE(workspace.opened.isEmpty());
}

TEST_F(MainWindowControls, changes_by_the_program_are_no_actions) {
    drop(pictureFile());
    controller->platformSelection->setCurrentIndex(3);
    controller->roundedCheckButton->setChecked(true);
    controller->borderCheckButton->setChecked(true);
    controller->sliderCornerRadius->setFloatValue(0.4F);
    controller->sliderBorderWidth->setFloatValue(0.1F);
    controller->colorPicker->setColor({1, 0, 0, 1});
    EXPECT_TRUE(log.lines().isEmpty());
    const BorderImageView& preview = *controller->imgViewIcon;
    EXPECT_FALSE(preview.isRoundCorner());
    EXPECT_EQ(preview.layer().cornerRadius(), 0);
    EXPECT_EQ(preview.cornerRadiusPercent(), 0.0F);
    EXPECT_FALSE(preview.isBorder());
    EXPECT_EQ(preview.borderWidth(), 0.0F);
    EXPECT_FALSE(preview.borderColor().has_value());
}

TEST_F(MainWindowControls, rounding_sets_the_previews_layer_radius_but_not_its_outline) {
    drop(pictureFile());
    controller->imgViewIcon->setFixedSize(200, 200);
    controller->sliderCornerRadius->setFloatValue(0.25F);
    controller->roundedCheckButton->click();
    EXPECT_TRUE(controller->imgViewIcon->isRoundCorner());
    EXPECT_EQ(controller->imgViewIcon->layer().cornerRadius(), 50.0);
    EXPECT_EQ(controller->imgViewIcon->cornerRadiusPercent(), 0.0F);
    controller->roundedCheckButton->click();
    EXPECT_FALSE(controller->imgViewIcon->isRoundCorner());
    EXPECT_EQ(controller->imgViewIcon->layer().cornerRadius(), 0.0);
}

TEST_F(MainWindowControls, the_radius_slider_rounds_the_preview_even_while_rounding_is_off) {
    drop(pictureFile());
    controller->imgViewIcon->setFixedSize(200, 200);
    Events::key(controller->sliderCornerRadius, Qt::Key_End);
    EXPECT_EQ(controller->imgViewIcon->layer().cornerRadius(), 100.0);
    EXPECT_EQ(controller->imgViewIcon->cornerRadiusPercent(), 0.5F);
    EXPECT_FALSE(controller->imgViewIcon->isRoundCorner());
    controller->roundedCheckButton->click();
    controller->roundedCheckButton->click();
    EXPECT_EQ(controller->imgViewIcon->layer().cornerRadius(), 0.0);
    EXPECT_EQ(controller->imgViewIcon->cornerRadiusPercent(), 0.5F);
}

TEST_F(MainWindowControls, a_radius_is_the_single_precision_value_times_the_width) {
    drop(pictureFile());
    controller->imgViewIcon->setFixedSize(200, 200);
    controller->sliderCornerRadius->setFloatValue(0.22F);
    controller->roundedCheckButton->click();
    EXPECT_EQ(controller->imgViewIcon->layer().cornerRadius(), static_cast<double>(0.22F) * 200);
}

TEST_F(MainWindowControls, the_border_box_copies_width_and_colour_also_when_switched_off) {
    drop(pictureFile());
    controller->borderCheckButton->click();
    EXPECT_TRUE(controller->imgViewIcon->isBorder());
    EXPECT_EQ(controller->imgViewIcon->borderWidth(), 0.05F);
    EXPECT_EQ(controller->imgViewIcon->borderColor(), startColor);
    controller->sliderBorderWidth->setFloatValue(0.125F);
    controller->colorPicker->setColor({0, 1, 0, 1});
    controller->borderCheckButton->click();
    EXPECT_FALSE(controller->imgViewIcon->isBorder());
    EXPECT_EQ(controller->imgViewIcon->borderWidth(), 0.125F);
    EXPECT_EQ(controller->imgViewIcon->borderColor(), (Color{0, 1, 0, 1}));
}

TEST_F(MainWindowControls, width_and_colour_follow_their_controls) {
    drop(pictureFile());
    Events::key(controller->sliderBorderWidth, Qt::Key_End);
    EXPECT_EQ(controller->imgViewIcon->borderWidth(), 0.25F);
    Events::click(controller->colorPicker);
    ASSERT_NE(controller->colorPicker->panel(), nullptr);
    controller->colorPicker->panel()->setCurrentColor(QColor(255, 0, 0, 51));
    EXPECT_EQ(controller->imgViewIcon->borderColor(), (Color{1, 0, 0, 0.2}));
}

TEST_F(MainWindowControls, width_and_colour_actions_read_the_outlets_and_not_the_sender) {
    FloatSlider otherSlider;
    otherSlider.setFloatValue(1);
    ColorWell otherWell;
    otherWell.setColor({0, 0, 1, 1});
    controller->sliderBorderWidthAction(&otherSlider);
    controller->colorPickerAction(&otherWell);
    EXPECT_EQ(controller->imgViewIcon->borderWidth(), 0.05F);
    EXPECT_EQ(controller->imgViewIcon->borderColor(), startColor);
    // The other actions read the sender.
    controller->sliderCornerRadiusAction(&otherSlider);
    EXPECT_EQ(controller->imgViewIcon->cornerRadiusPercent(), 1.0F);
    QCheckBox otherBox;
    otherBox.setCheckState(Qt::PartiallyChecked);
    controller->borderChecked(&otherBox);
    EXPECT_TRUE(controller->imgViewIcon->isBorder());
}

TEST_F(MainWindowControls, actions_touch_no_other_control) {
    drop(pictureFile());
    const IconStyle before = controller->iconStyle();
    controller->roundedChecked(controller->roundedCheckButton);
    controller->sliderCornerRadiusAction(controller->sliderCornerRadius);
    controller->borderChecked(controller->borderCheckButton);
    controller->sliderBorderWidthAction(nullptr);
    controller->colorPickerAction(nullptr);
    EXPECT_EQ(controller->iconStyle(), before);
}

TEST_F(MainWindowControls, actions_tolerate_missing_controls) {
    QCheckBox on;
    on.setChecked(true);
    delete controller->sliderCornerRadius;
    controller->roundedChecked(&on);
    EXPECT_EQ(controller->imgViewIcon->layer().cornerRadius(), 0.0);
    EXPECT_TRUE(controller->imgViewIcon->isRoundCorner());
    delete controller->imgViewIcon;
    controller->roundedChecked(&on);
    controller->roundedChecked(nullptr);
    controller->sliderCornerRadiusAction(nullptr);
    controller->borderChecked(&on);
    controller->sliderBorderWidthAction(nullptr);
    controller->colorPickerAction(nullptr);
    EXPECT_TRUE(controller->sourceImage().isNull());
    for (QWidget* control : sevenControls(*controller))
        delete control;
    controller->imageAddednotification();
    controller->platformSelected(nullptr);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("platform selected index:0")));
    EXPECT_EQ(controller->iconStyle(), (IconStyle{false, 0, false, 0, Color()}));
}

TEST_F(MainWindowControls, the_generator_reads_the_controls_at_the_moment_of_use) {
    controller->roundedCheckButton->setChecked(true);
    controller->sliderCornerRadius->setFloatValue(0.3F);
    controller->borderCheckButton->setCheckState(Qt::PartiallyChecked);
    controller->sliderBorderWidth->setFloatValue(0.2F);
    controller->colorPicker->setColor({1, 0, 0, 0.5});
    EXPECT_EQ(controller->iconStyle(), (IconStyle{true, 0.3F, true, 0.2F, Color{1, 0, 0, 0.5}}));
    controller->platformSelection->setCurrentIndex(-1);
    EXPECT_EQ(controller->platformIndex(), -1);
}

TEST_F(MainWindowControls, labels_show_the_sliders_values) {
    const auto text = [this](const char* name) {
        return controller->window()->findChild<QLabel*>(QString::fromLatin1(name))->text();
    };
    EXPECT_EQ(text("cornerRadiusValue"), controller->sliderCornerRadius->valueText());
    EXPECT_EQ(text("borderWidthValue"), controller->sliderBorderWidth->valueText());
    drop(pictureFile());
    Events::key(controller->sliderCornerRadius, Qt::Key_Right);
    EXPECT_EQ(text("cornerRadiusValue"), QStringLiteral("0.5 %"));
}

TEST_F(MainWindowControls, labels_stand_on_the_windows_side_and_not_their_texts) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        const auto other = MainWindowController::initWithWindowNibName(QStringLiteral("MainWindowController"),
                                                                       {bundle, screen, workspace});
        const auto isRight = [&](const char* name) {
            const auto* label = other->window()->findChild<QLabel*>(QString::fromLatin1(name));
            EXPECT_TRUE(label->alignment().testFlag(Qt::AlignAbsolute));
            return label->alignment().testFlag(Qt::AlignRight);
        };
        EXPECT_EQ(isRight("cornerRadiusValue"), direction == Qt::LeftToRight);
        EXPECT_EQ(isRight("platformLabel"), direction == Qt::RightToLeft);
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(MainWindowControls, can_be_reached_by_keyboard_and_have_names) {
    drop(pictureFile());
    QStringList reached;
    controller->imgViewIcon->setFocus();
    for (int i = 0; i < 8; ++i) {
        QWidget* focused = controller->window()->focusWidget();
        reached << focused->objectName();
        const bool isNamed = !focused->accessibleName().isEmpty() ||
                             (qobject_cast<QAbstractButton*>(focused) != nullptr &&
                              !qobject_cast<QAbstractButton*>(focused)->text().isEmpty());
        EXPECT_TRUE(isNamed) << focused->objectName().toStdString();
        Events::key(focused, Qt::Key_Tab);
    }
    EXPECT_EQ(reached,
              QStringList({QStringLiteral("imgViewIcon"), QStringLiteral("platformSelection"),
                           QStringLiteral("roundedCheckButton"), QStringLiteral("sliderCornerRadius"),
                           QStringLiteral("borderCheckButton"), QStringLiteral("sliderBorderWidth"),
                           QStringLiteral("colorPicker"), QStringLiteral("generateBtn")}));
}

TEST_F(MainWindowControls, grow_with_their_font) {
    drop(pictureFile());
    controller->roundedCheckButton->click();
    controller->sliderCornerRadius->setAccessibleValue(0.25);
    QFont larger = QApplication::font();
    larger.setPointSizeF(larger.pointSizeF() * 2);
    const int slider = controller->sliderCornerRadius->width();
    const int well = controller->imgViewIcon->width();
    controller->window()->setFont(larger);
    Events::settle();
    EXPECT_GT(controller->sliderCornerRadius->width(), slider * 5 / 4);
    EXPECT_GE(controller->platformSelection->width(), 26 * QFontMetrics(larger).averageCharWidth());
    EXPECT_GT(controller->imgViewIcon->width(), well);
    EXPECT_EQ(controller->imgViewIcon->width(), controller->imgViewIcon->height());
    EXPECT_DOUBLE_EQ(controller->imgViewIcon->layer().cornerRadius(), controller->imgViewIcon->width() / 4.0);
    const auto* value = controller->window()->findChild<QLabel*>(QStringLiteral("cornerRadiusValue"));
    const int before = value->width();
    controller->sliderCornerRadius->setAccessibleValue(0.4888);
    Events::settle();
    EXPECT_EQ(value->width(), before) << "the slider does not move while it is dragged";
}

TEST_F(MainWindowControls, nothing_is_cut_off_in_a_larger_font_or_mirrored) {
    QFont larger = QApplication::font();
    larger.setPointSizeF(larger.pointSizeF() * 2);
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        controller->window()->setLayoutDirection(direction);
        for (const QFont& font : {QApplication::font(), larger}) {
            controller->window()->setFont(font);
            Events::settle();
            const QList<QWidget*> widgets =
                controller->window()
                    ->findChild<QWidget*>(QStringLiteral("content"))
                    ->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
            ASSERT_GE(widgets.size(), 10);
            for (const QWidget* widget : widgets) {
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
                    << widget->objectName().toStdString();
                EXPECT_GE(widget->height(), widget->minimumSizeHint().height());
                EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry()));
                for (const QWidget* other : widgets) {
                    EXPECT_TRUE(other == widget || !other->geometry().intersects(widget->geometry()))
                        << other->objectName().toStdString() << " " << widget->objectName().toStdString();
                }
            }
        }
    }
}

} // namespace
