#include "platform/widgets/ColorWell.h"
#include "platform/widgets/QtColor.h"
#include "tests/support/Events.h"

#include <gtest/gtest.h>

namespace {

class ColorWellTest : public testing::Test {
  protected:
    ColorWellTest() {
        well.setColor(grey);
        well.resize(60, 30);
        well.show();
        QObject::connect(&well, &ColorWell::action, &well, [this] { ++actions; });
    }

    Color grey{0.2, 0.2, 0.2, 1};
    ColorWell well;
    int actions = 0;
};

TEST_F(ColorWellTest, eight_bit_colours_survive_the_way_through_qt) {
    for (int i = 0; i < 256; ++i) {
        const Color color{i / 255.0, (255 - i) / 255.0, i / 255.0, i / 255.0};
        EXPECT_EQ(fromQColor(toQColor(color)), color) << i;
        EXPECT_EQ(fromQColor(QColor(i, 255 - i, i, i)), color) << i;
    }
}

TEST_F(ColorWellTest, setting_a_colour_sends_no_action) {
    well.setColor({1, 0, 0, 0.5});
    EXPECT_EQ(well.color(), (Color{1, 0, 0, 0.5}));
    EXPECT_EQ(actions, 0);
}

TEST_F(ColorWellTest, the_panel_offers_alpha_and_is_followed_while_it_is_open) {
    Events::click(&well);
    ASSERT_NE(well.panel(), nullptr);
    EXPECT_TRUE(well.panel()->testOption(QColorDialog::ShowAlphaChannel));
    EXPECT_FALSE(well.panel()->isModal());
    EXPECT_EQ(well.panel()->currentColor(), QColor(51, 51, 51));
    well.panel()->setCurrentColor(QColor(255, 0, 0, 128));
    EXPECT_EQ(well.color(), (Color{1, 0, 0, 128 / 255.0}));
    // The panel may change the colour first and its alpha after that, with an action for each.
    const int sent = actions;
    EXPECT_GE(sent, 1);
    well.panel()->accept();
    Events::settle();
    EXPECT_EQ(well.panel(), nullptr);
    EXPECT_EQ(well.color(), (Color{1, 0, 0, 128 / 255.0}));
    EXPECT_EQ(actions, sent);
}

TEST_F(ColorWellTest, cancelling_the_panel_brings_the_colour_back) {
    Events::key(&well, Qt::Key_Space);
    ASSERT_NE(well.panel(), nullptr);
    well.panel()->setCurrentColor(QColor(255, 0, 0));
    well.panel()->reject();
    EXPECT_EQ(well.color(), grey);
    EXPECT_EQ(actions, 2);
}

TEST_F(ColorWellTest, a_second_press_brings_the_same_panel_to_the_front) {
    Events::click(&well);
    const QColorDialog* panel = well.panel();
    Events::click(&well);
    EXPECT_EQ(well.panel(), panel);
}

TEST_F(ColorWellTest, shows_its_colour_and_a_checkerboard_behind_a_translucent_one) {
    EXPECT_EQ(well.grab().toImage().pixelColor(30, 15), QColor(51, 51, 51));
    well.setColor({1, 0, 0, 0});
    const QImage transparent = well.grab().toImage();
    QSet<QRgb> colors;
    for (int x = 10; x < 50; ++x)
        colors << transparent.pixel(x, 15);
    EXPECT_TRUE(colors.contains(qRgb(255, 255, 255)));
    EXPECT_TRUE(colors.contains(qRgb(190, 190, 190)));
}

TEST_F(ColorWellTest, tells_its_colour_to_assistive_technology) {
    EXPECT_EQ(well.accessibleDescription(), QStringLiteral("#333333"));
    well.setColor({1, 0, 0, 0.5});
    EXPECT_EQ(well.accessibleDescription(), QStringLiteral("#ff0000, alpha 50 %"));
}

} // namespace
