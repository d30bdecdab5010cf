#include "platform/widgets/FloatSlider.h"
#include "tests/support/Events.h"

#include <QAccessible>

#include <gtest/gtest.h>

#include <limits>

namespace {

class FloatSliderTest : public testing::Test {
  protected:
    FloatSliderTest() {
        slider.setMaximumFloat(0.5F);
        slider.setFloatValue(0.22F);
        slider.resize(200, 24);
        slider.show();
        QObject::connect(&slider, &FloatSlider::action, &slider, [this] { ++actions; });
        QObject::connect(&slider, &FloatSlider::valueTextChanged, &slider,
                         [this](const QString& text) { shown = text; });
    }

    FloatSlider slider;
    int actions = 0;
    QString shown;
};

TEST_F(FloatSliderTest, keeps_the_very_float_that_was_set) {
    for (const float value : {0.22F, 0.05F, 0.25F, 0.123456F, 0.0F, 0.5F}) {
        slider.setFloatValue(value);
        EXPECT_EQ(slider.floatValue(), value);
    }
    EXPECT_EQ(actions, 0);
}

TEST_F(FloatSliderTest, limits_values_to_its_range) {
    slider.setFloatValue(7);
    EXPECT_EQ(slider.floatValue(), 0.5F);
    slider.setFloatValue(-7);
    EXPECT_EQ(slider.floatValue(), 0.0F);
    slider.setFloatValue(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(slider.floatValue(), 0.0F);
    slider.setFloatValue(0.4F);
    slider.setMaximumFloat(0.3F);
    EXPECT_EQ(slider.floatValue(), 0.3F);
}

TEST_F(FloatSliderTest, an_arrow_key_moves_by_a_hundredth_and_sends_one_action) {
    Events::key(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.floatValue(), 0.225F);
    EXPECT_EQ(actions, 1);
    Events::key(&slider, Qt::Key_Left);
    EXPECT_EQ(slider.floatValue(), 0.22F);
    Events::key(&slider, Qt::Key_PageUp);
    EXPECT_EQ(slider.floatValue(), 0.27F);
    Events::key(&slider, Qt::Key_End);
    EXPECT_EQ(slider.floatValue(), 0.5F);
    Events::key(&slider, Qt::Key_Home);
    EXPECT_EQ(slider.floatValue(), 0.0F);
    EXPECT_EQ(actions, 5);
    // Beyond the end of the range nothing changes.
    Events::key(&slider, Qt::Key_Left);
    EXPECT_EQ(actions, 5);
}

TEST_F(FloatSliderTest, shows_its_value_as_a_percentage) {
    EXPECT_EQ(slider.valueText(), QStringLiteral("22 %"));
    Events::key(&slider, Qt::Key_Right);
    EXPECT_EQ(shown, QStringLiteral("22.5 %"));
    slider.setFloatValue(0.05F);
    EXPECT_EQ(shown, QStringLiteral("5 %"));
    slider.setFloatValue(0.0525F);
    EXPECT_EQ(shown, QStringLiteral("5.25 %"));
}

TEST_F(FloatSliderTest, assistive_technology_reads_and_sets_the_float) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&slider);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->text(QAccessible::Value), QStringLiteral("22 %"));
    QAccessibleValueInterface* value = accessible->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_NEAR(value->currentValue().toDouble(), 0.22, 1e-7);
    EXPECT_EQ(value->minimumValue().toDouble(), 0);
    EXPECT_EQ(value->maximumValue().toDouble(), 0.5);
    EXPECT_NEAR(value->minimumStepSize().toDouble(), 0.005, 1e-9);
    value->setCurrentValue(0.25);
    EXPECT_EQ(slider.floatValue(), 0.25F);
    EXPECT_EQ(actions, 1);
    value->setCurrentValue(9);
    EXPECT_EQ(slider.floatValue(), 0.5F);
}

} // namespace
