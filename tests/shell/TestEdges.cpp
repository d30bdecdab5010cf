#include "platform/widgets/Alert.h"
#include "platform/widgets/ImageFrame.h"
#include "tests/shell/EdgesFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

class Edges : public EdgesFixture {};

TEST_P(Edges, of_every_control_can_be_seen) {
    const auto seen = [](QWidget* control) {
        EXPECT_GE(weakestEdge(control), leastEdgeContrast) << control->objectName().toStdString();
    };
    auto* frame = mainWindow()->findChild<ImageFrame*>();
    seen(frame);
    arrive();
    for (const QColor& color : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::transparent)}) {
        controller().imgViewIcon->setImage(Pictures::loadedImage(Pictures::flat(64, 64, color)));
        seen(frame);
    }
    controller().roundedCheckButton->setChecked(true);
    controller().generateBtn->clearFocus();
    Events::settle();
    seen(controller().platformSelection);
    seen(controller().colorPicker);
    seen(controller().generateBtn);
    for (QCheckBox* check : {controller().roundedCheckButton.data(), controller().borderCheckButton.data()})
        EXPECT_GE(weakestEdge(check, box(check)), leastEdgeContrast) << check->isChecked();
    for (FloatSlider* slider :
         {controller().sliderCornerRadius.data(), controller().sliderBorderWidth.data()}) {
        // Its ends are round. The knob is at the left end, or near it.
        const QRect bar(0, slider->height() / 2 - 5, slider->width(), 10);
        const QImage shown = slider->grab().toImage();
        const QPoint middle(slider->width() * 3 / 4, slider->height() / 2);
        const QColor ground = slider->palette().color(QPalette::Window);
        for (const QPoint outside : {QPoint(middle.x(), bar.top()), QPoint(middle.x(), bar.bottom())})
            EXPECT_GE(strongest(shown, outside, middle, ground), leastEdgeContrast);
        // The track itself is dark, whatever surrounds it.
        EXPECT_GE(
            strongest(shown, {middle.x(), bar.top()}, {middle.x(), bar.bottom()}, shown.pixelColor(middle)),
            leastEdgeContrast);
    }
}

TEST_P(Edges, of_what_dialogs_have_can_be_seen) {
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    for (QWidget* control : std::initializer_list<QWidget*>{new QLineEdit, new QSpinBox, new QComboBox,
                                                            new QPushButton(QStringLiteral("Close"))})
        column->addWidget(control);
    column->addWidget(new QLabel(QStringLiteral("words")));
    window.show();
    Events::settle();
    for (int i = 0; i < 4; ++i) {
        QWidget* control = column->itemAt(i)->widget();
        control->clearFocus();
        EXPECT_GE(weakestEdge(control), leastEdgeContrast) << control->metaObject()->className();
    }
}

TEST_P(Edges, of_an_alert_before_the_window_can_be_seen) {
    controller().actionGenerateIcons(nullptr);
    Events::settle();
    auto* alert = mainWindow()->findChild<Alert*>();
    ASSERT_NE(alert, nullptr);
    const QImage shown = alert->grab().toImage();
    const QColor behind = mainWindow()->palette().color(QPalette::Window);
    const QPoint middle = shown.rect().center();
    for (const QPoint at : {QPoint(middle.x(), 0), QPoint(middle.x(), shown.height() - 1),
                            QPoint(0, middle.y()), QPoint(shown.width() - 1, middle.y())})
        EXPECT_GE(contrastRatio(shown.pixelColor(at), behind), leastEdgeContrast) << at.x() << ' ' << at.y();
}

TEST_P(Edges, text_can_be_read) {
    arrive();
    for (QLabel* label : mainWindow()->findChildren<QLabel*>()) {
        if (label->isVisible() && !label->text().isEmpty()) {
            EXPECT_GE(textContrast(label, label->rect()), text) << label->text().toStdString();
        }
    }
    for (QCheckBox* check : {controller().roundedCheckButton.data(), controller().borderCheckButton.data()})
        EXPECT_GE(textContrast(check, words(check)), text);
    HighlightedButton* generate = controller().generateBtn;
    EXPECT_GE(textContrast(generate, generate->rect().adjusted(4, 4, -4, -4)), text);
}

TEST_P(Edges, a_disabled_button_is_weaker_than_an_enabled_one) {
    HighlightedButton* generate = controller().generateBtn;
    const QRect inside = generate->rect().adjusted(4, 4, -4, -4);
    const auto ground = [&] { return generate->grab().toImage().pixelColor(8, generate->height() / 2); };
    const QColor window = generate->palette().color(QPalette::Window);
    const double disabled = contrastRatio(ground(), window);
    EXPECT_LT(disabled, 1.7);
    EXPECT_GE(textContrast(generate, inside), 3) << "it can be read all the same";
    generate->mouseEntered();
    EXPECT_GT(contrastRatio(ground(), window), 3 * disabled) << "under the mouse";
    generate->mouseExited();
    EXPECT_EQ(contrastRatio(ground(), window), disabled);
    arrive();
    EXPECT_GT(contrastRatio(ground(), window), 3 * disabled);
}

TEST_P(Edges, the_first_border_stands_out) {
    const QColor border = controller().colorPicker->qcolor();
    for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base})
        EXPECT_GE(contrastRatio(border, QApplication::palette().color(ground)), leastEdgeContrast);
}

INSTANTIATE_TEST_SUITE_P(Light, Edges, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Dark, Edges, testing::Values(true));

TEST(TagOfTheDesktop, changes_with_it) {
    HighlightedButton button;
    button.setText(QStringLiteral("Title"));
    button.setTag(108);
    button.setTagInDark(106);
    const auto look = [&](const QColor& ground, const QColor& words) {
        QPalette desktop(ground);
        desktop.setColor(QPalette::Window, ground);
        desktop.setColor(QPalette::WindowText, words);
        button.setPalette(desktop);
        return button.tag();
    };
    look(Qt::white, Qt::black);
    button.awakeFromNib();
    EXPECT_EQ(button.tag(), 108);
    EXPECT_EQ(look(Qt::black, Qt::white), 106);
    EXPECT_EQ(button.layer().backgroundColor(), (Color{205 / 255.0, 205 / 255.0, 205 / 255.0, 1}));
    EXPECT_EQ(look(Qt::white, Qt::black), 108);
    EXPECT_EQ(button.layer().backgroundColor(), (Color{57 / 255.0, 57 / 255.0, 58 / 255.0, 1}));
}

} // namespace
