#include "mainwindow/HighlightedButton.h"
#include "shell/Appearance.h"
#include "tests/support/Events.h"

#include <QApplication>
#include <QEnterEvent>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QPainter>
#include <QPixmap>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

namespace {

QIcon icon(const QColor& color) {
    QPixmap pixmap(8, 8);
    pixmap.fill(color);
    return {pixmap};
}

bool isSame(const QIcon& a, const QIcon& b) {
    return a.cacheKey() == b.cacheKey() || (a.isNull() && b.isNull());
}

constexpr Color white{1, 1, 1, 1};
constexpr Color black{0, 0, 0, 1};

constexpr Color of255(double red, double green, double blue, double alpha = 1) {
    return {red / 255, green / 255, blue / 255, alpha};
}

enum class Shown { Normal, Selected, None };
enum class Look { Default, Highlighted, Disabled };

/// What a look sets. A member without a value, or of 0, stands for a property that the look leaves as it is.
struct Expected {
    Look look;
    int tag;
    bool isLayerBacked;
    Shown image;
    std::optional<Color> background;
    double cornerRadius;
    std::optional<Color> borderColor;
    double borderWidth;
    std::vector<std::pair<Color, bool>>
        titles; ///< each title that is set: its colour, and whether it is bold
};

void PrintTo(const Expected& expected, std::ostream* out) {
    *out << "look " << static_cast<int>(expected.look) << " of tag " << expected.tag;
}

class HighlightedButtonLook : public testing::TestWithParam<Expected> {};

TEST_P(HighlightedButtonLook, follows_from_the_tag) {
    const Expected& expected = GetParam();
    HighlightedButton button;
    button.setText(QStringLiteral("Title"));
    const QIcon normal = icon(Qt::red);
    const QIcon selected = icon(Qt::blue);
    button.setIcon(normal);
    button.setAlternateImage(selected);
    // With the tag 0 the button has no look while it gets its images.
    button.setTag(0);
    EXPECT_FALSE(button.allowsExpansionToolTips());
    button.setImgNormalState(normal);
    button.setImgSelectedState(selected);
    QFont odd(QStringLiteral("DejaVu Serif"));
    odd.setPointSizeF(17);
    button.setFont(odd);
    // Properties that a row leaves unchanged keep these values.
    const Color sentinel{0.5, 0.25, 0.125, 1};
    button.layer().setBackgroundColor(sentinel);
    button.layer().setCornerRadius(77);
    button.layer().setBorderColor(sentinel);
    button.layer().setBorderWidth(78);
    button.setTag(expected.tag);
    std::vector<std::pair<Color, bool>> titles;
    QObject::connect(&button, &HighlightedButton::attributedTitleSet, &button,
                     [&](const AttributedTitle& title) {
                         EXPECT_EQ(title.text, QStringLiteral("Title"));
                         ASSERT_TRUE(title.attributes.has_value());
                         EXPECT_EQ(title.attributes->alignment, Qt::AlignCenter);
                         EXPECT_EQ(title.attributes->font.pointSizeF(), 17);
                         EXPECT_EQ(title.attributes->font.family(), QApplication::font().family());
                         titles.emplace_back(title.attributes->foreground, title.attributes->font.bold());
                     });
    if (expected.look == Look::Default)
        button.setButtonDefault();
    else if (expected.look == Look::Highlighted)
        button.setButtonHighlighted();
    else
        button.setDisabled();
    EXPECT_EQ(button.wantsLayer(), expected.isLayerBacked);
    EXPECT_TRUE(isSame(button.icon(), expected.image == Shown::Normal     ? normal
                                      : expected.image == Shown::Selected ? selected
                                                                          : QIcon()));
    EXPECT_EQ(button.layer().backgroundColor(), expected.background.value_or(sentinel));
    EXPECT_EQ(button.layer().cornerRadius(), expected.cornerRadius > 0 ? expected.cornerRadius : 77);
    EXPECT_EQ(button.layer().borderColor(), expected.borderColor.value_or(sentinel));
    EXPECT_EQ(button.layer().borderWidth(), expected.borderWidth > 0 ? expected.borderWidth : 78);
    EXPECT_EQ(button.allowsExpansionToolTips(), expected.look == Look::Default) << "whatever the tag";
    EXPECT_EQ(titles, expected.titles);
}

const std::optional<Color> none;
const Color dark = of255(30, 30, 30);

INSTANTIATE_TEST_SUITE_P(
    Default, HighlightedButtonLook,
    testing::Values(
        Expected{Look::Default, 101, true, Shown::Normal, none, 1, none, 0, {{white, false}}},
        Expected{Look::Default, 102, false, Shown::Normal, none, 0, none, 0, {}},
        Expected{Look::Default, 103, true, Shown::Normal, none, 1, none, 0, {{white, false}}},
        Expected{Look::Default,
                 104,
                 true,
                 Shown::Normal,
                 of255(16, 16, 16),
                 1,
                 of255(24, 27, 27),
                 2,
                 {{white, false}}},
        Expected{Look::Default, 105, true, Shown::Normal, none, 1, none, 0, {{dark, false}}},
        Expected{Look::Default, 106, true, Shown::None, of255(205, 205, 205), 4, none, 0, {{dark, false}}},
        Expected{
            Look::Default, 107, true, Shown::None, of255(167, 166, 165, 0.5), 4, none, 0, {{white, false}}},
        Expected{Look::Default, 108, true, Shown::None, of255(57, 57, 58), 4, none, 0, {{white, false}}},
        Expected{Look::Default, 100, false, Shown::Normal, none, 0, none, 0, {}},
        Expected{Look::Default, 109, false, Shown::Normal, none, 0, none, 0, {}}));

INSTANTIATE_TEST_SUITE_P(
    Highlighted, HighlightedButtonLook,
    testing::Values(
        Expected{Look::Highlighted, 101, true, Shown::Selected, none, 1, none, 0, {{white, true}}},
        Expected{Look::Highlighted, 102, false, Shown::Selected, none, 0, none, 0, {}},
        Expected{Look::Highlighted, 103, true, Shown::Selected, none, 1, none, 0, {{white, true}}},
        Expected{Look::Highlighted,
                 104,
                 true,
                 Shown::Selected,
                 of255(20, 20, 20),
                 1,
                 of255(34, 37, 37),
                 2,
                 {{white, false}}},
        Expected{Look::Highlighted, 105, true, Shown::Selected, none, 1, none, 0, {{dark, true}}},
        Expected{Look::Highlighted,
                 106,
                 true,
                 Shown::None,
                 of255(180, 180, 180),
                 4,
                 none,
                 0,
                 {{white, true}, {dark, false}}},
        Expected{Look::Highlighted,
                 107,
                 true,
                 Shown::None,
                 of255(187, 186, 185, 0.5),
                 4,
                 none,
                 0,
                 {{white, true}, {white, false}}},
        Expected{Look::Highlighted,
                 108,
                 true,
                 Shown::None,
                 of255(67, 67, 68),
                 4,
                 none,
                 0,
                 {{white, true}, {white, false}}},
        Expected{Look::Highlighted, 100, false, Shown::Normal, none, 0, none, 0, {}},
        Expected{Look::Highlighted, 109, false, Shown::Normal, none, 0, none, 0, {}}));

INSTANTIATE_TEST_SUITE_P(
    Disabled, HighlightedButtonLook,
    testing::Values(Expected{Look::Disabled, 101, false, Shown::Normal, none, 0, none, 0, {}},
                    Expected{Look::Disabled, 102, false, Shown::Selected, none, 0, none, 0, {}},
                    Expected{Look::Disabled, 103, true, Shown::Selected, none, 4, none, 0, {{black, true}}},
                    Expected{Look::Disabled, 104, false, Shown::Normal, none, 0, none, 0, {}},
                    Expected{Look::Disabled, 105, false, Shown::Normal, none, 0, none, 0, {}},
                    Expected{Look::Disabled, 106, false, Shown::Normal, none, 0, none, 0, {}},
                    Expected{Look::Disabled, 107, true, Shown::Selected, none, 4, none, 0, {{black, true}}},
                    Expected{Look::Disabled, 108, false, Shown::Normal, none, 0, none, 0, {}},
                    Expected{Look::Disabled, 100, false, Shown::Normal, none, 0, none, 0, {}},
                    Expected{Look::Disabled, 109, false, Shown::Normal, none, 0, none, 0, {}}));

/// A button in a window; `make` gives it a tag.
class HighlightedButtonTest : public testing::Test {
  protected:
    void make(int tag, const QString& title = QStringLiteral("Title")) {
        button.setTag(tag);
        button.setText(title);
        button.setIcon(normal);
        button.setAlternateImage(selected);
        button.setGeometry(20, 20, 120, 30);
        HighlightedButton::awakeAll(window);
        window.resize(200, 100);
        window.show();
        window.activateWindow();
        Events::settle();
        titles = 0;
        QObject::connect(&button, &HighlightedButton::attributedTitleSet, &button, [this] { ++titles; });
    }

    void enter() {
        QEnterEvent event(QPointF(5, 5), QPointF(25, 25), QPointF(25, 25));
        QCoreApplication::sendEvent(&button, &event);
    }
    void leave() {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &event);
    }

    QIcon normal = icon(Qt::red);
    QIcon selected = icon(Qt::blue);
    QWidget window;
    HighlightedButton button{&window};
    int titles = 0;
};

TEST_F(HighlightedButtonTest, loading_shows_the_default_look_and_keeps_the_images) {
    make(104);
    EXPECT_TRUE(isSame(button.imgNormalState(), normal));
    EXPECT_TRUE(isSame(button.imgSelectedState(), selected));
    EXPECT_EQ(button.layer().backgroundColor(), of255(16, 16, 16));
    EXPECT_TRUE(button.allowsExpansionToolTips());
    // The look replaces an image that is set later.
    button.setIcon(icon(Qt::green));
    button.setButtonDefault();
    EXPECT_TRUE(isSame(button.icon(), normal));
}

TEST_F(HighlightedButtonTest, one_that_its_layout_disables_answers_enabled_after_loading) {
    button.QPushButton::setEnabled(false);
    make(108);
    EXPECT_TRUE(button.isEnabled());
    EXPECT_FALSE(button.QPushButton::isEnabled());
    EXPECT_EQ(button.layer().backgroundColor(), of255(57, 57, 58));
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, &button, [&] { ++clicks; });
    Events::click(&button);
    EXPECT_EQ(clicks, 0);
    button.setEnabled(true);
    Events::click(&button);
    EXPECT_EQ(clicks, 1);
}

TEST_F(HighlightedButtonTest, hover_and_pointer_follow_the_mouse) {
    make(108);
    enter();
    EXPECT_EQ(button.layer().backgroundColor(), of255(67, 67, 68));
    EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor);
    leave();
    EXPECT_EQ(button.layer().backgroundColor(), of255(57, 57, 58));
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(HighlightedButtonTest, hover_over_a_disabled_one_shows_the_highlighted_and_then_the_default_look) {
    make(107);
    button.setEnabled(false);
    EXPECT_FALSE(button.isEnabled());
    EXPECT_FALSE(button.QPushButton::isEnabled());
    EXPECT_EQ(button.attributedTitle().attributes->foreground, black);
    enter();
    EXPECT_EQ(button.layer().backgroundColor(), of255(187, 186, 185, 0.5));
    EXPECT_EQ(button.attributedTitle().attributes->foreground, white);
    leave();
    EXPECT_EQ(button.layer().backgroundColor(), of255(167, 166, 165, 0.5));
    EXPECT_EQ(button.attributedTitle().attributes->foreground, white) << "not the disabled look";
    EXPECT_FALSE(button.isEnabled());
    button.setEnabled(true);
    EXPECT_TRUE(button.QPushButton::isEnabled());
}

TEST_F(HighlightedButtonTest, the_mouse_itself_may_come_and_go_while_it_is_disabled_and_enabled) {
    make(107);
    const QPoint outside(5, 90);
    QTest::mouseMove(&window, outside);
    Events::settle();
    const Color usual = of255(167, 166, 165, 0.5);
    const Color hovered = of255(187, 186, 185, 0.5);
    QTest::mouseMove(&button, QPoint(60, 15));
    EXPECT_TRUE(Events::waitFor([&] { return button.layer().backgroundColor() == hovered; }));
    EXPECT_EQ(window.cursor().shape(), Qt::PointingHandCursor);
    button.setEnabled(false);
    EXPECT_EQ(button.attributedTitle().attributes->foreground, black);
    QTest::mouseMove(&window, outside);
    EXPECT_TRUE(Events::waitFor([&] { return button.layer().backgroundColor() == usual; }));
    EXPECT_EQ(button.attributedTitle().attributes->foreground, white) << "the default look, though disabled";
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
    QTest::mouseMove(&button, QPoint(60, 15));
    EXPECT_TRUE(Events::waitFor([&] { return button.layer().backgroundColor() == hovered; }));
    EXPECT_FALSE(button.isEnabled());
    button.setEnabled(true);
    EXPECT_EQ(button.layer().backgroundColor(), usual);
}

TEST_F(HighlightedButtonTest, disabling_tag_104_leaves_its_default_look) {
    make(104);
    button.setEnabled(false);
    EXPECT_EQ(button.layer().backgroundColor(), of255(16, 16, 16));
    EXPECT_EQ(button.layer().borderWidth(), 2);
    EXPECT_EQ(titles, 0);
}

TEST_F(HighlightedButtonTest, tag_102_only_swaps_its_images) {
    make(102);
    enter();
    EXPECT_TRUE(isSame(button.icon(), selected));
    leave();
    EXPECT_TRUE(isSame(button.icon(), normal));
    button.setEnabled(false);
    EXPECT_TRUE(isSame(button.icon(), selected));
    EXPECT_EQ(titles, 0);
    EXPECT_FALSE(button.wantsLayer());
}

TEST_F(HighlightedButtonTest, an_empty_title_has_no_attributes_but_is_put_on_the_button) {
    for (const int tag : {101, 103, 104, 105, 106, 107, 108}) {
        HighlightedButton empty;
        empty.setTag(tag);
        std::vector<AttributedTitle> set;
        QObject::connect(&empty, &HighlightedButton::attributedTitleSet, &empty,
                         [&](const AttributedTitle& title) { set.push_back(title); });
        empty.awakeFromNib();
        ASSERT_EQ(set.size(), 1U) << tag;
        EXPECT_EQ(set[0], AttributedTitle()) << tag;
    }
}

TEST_F(HighlightedButtonTest, the_highlight_lasts_a_tenth_of_a_second_and_clears_the_views_background) {
    make(108);
    QWidget view;
    Layer layer(view);
    layer.setBackgroundColor(Color{1, 0, 0, 1});
    button.highlight(false, QRectF(), layer);
    EXPECT_EQ(layer.backgroundColor(), (Color{0, 0, 0, 0}));
    EXPECT_EQ(button.layer().backgroundColor(), of255(67, 67, 68));
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(Events::waitFor([&] { return button.layer().backgroundColor() == of255(57, 57, 58); }));
    EXPECT_GE(timer.elapsed(), 80);
}

TEST_F(HighlightedButtonTest, a_title_that_does_not_fit_is_shown_whole_in_a_tool_tip) {
    make(108, QStringLiteral("A title that is much too long for its button"));
    button.setIcon(QIcon());
    const auto tip = [this] {
        QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), button.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&button, &event);
        return QToolTip::text();
    };
    EXPECT_EQ(tip(), button.text());
    QToolTip::hideText();
    Events::settle();
    button.setText(QStringLiteral("Short"));
    button.setButtonDefault();
    EXPECT_NE(tip(), QStringLiteral("Short"));
}

TEST_F(HighlightedButtonTest, a_title_beside_an_image_or_with_a_tip_of_its_own_is_expanded_too) {
    make(104, QStringLiteral("Salt && &Pepper"));
    button.setToolTip(QStringLiteral("Its own"));
    const QFontMetrics metrics(button.attributedTitle().attributes->font);
    // There is room for the title alone, but not for the image beside it.
    button.resize(metrics.size(Qt::TextShowMnemonic, button.text()).width() + 14, 30);
    QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), button.mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(&button, &event);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("Salt & Pepper"));
}

TEST_F(HighlightedButtonTest, its_title_follows_its_font_and_its_text) {
    make(108);
    QFont larger = button.font();
    larger.setPointSizeF(21);
    button.setFont(larger);
    EXPECT_EQ(button.attributedTitle().attributes->font.pointSizeF(), 21);
    EXPECT_EQ(titles, 0);
    button.setIcon(QIcon());
    const QImage before = button.grab().toImage();
    button.setText(QStringLiteral("Another"));
    EXPECT_NE(button.grab().toImage(), before);
}

TEST_F(HighlightedButtonTest, the_focus_can_be_seen_on_every_tag) {
    for (const int tag : {104, 106, 108}) {
        make(tag);
        button.clearFocus();
        const QImage without = button.grab().toImage();
        button.setFocus();
        Events::settle();
        const QImage with = button.grab().toImage();
        int different = 0;
        for (int x = 0; x < with.width(); ++x)
            different += with.pixel(x, 2) != without.pixel(x, 2) ? 1 : 0;
        EXPECT_GT(different, with.width() / 2) << tag;
    }
}

TEST_F(HighlightedButtonTest, shows_its_title_in_its_colours) {
    make(106);
    const QImage shown = button.grab().toImage();
    EXPECT_EQ(shown.pixelColor(10, 15), QColor(205, 205, 205));
    EXPECT_EQ(shown.pixelColor(0, 0).alpha() == 255 && shown.pixelColor(0, 0) == QColor(205, 205, 205), false)
        << "rounded";
    int darkest = 255;
    for (int x = 40; x < 80; ++x) {
        for (int y = 5; y < 25; ++y)
            darkest = std::min(darkest, shown.pixelColor(x, y).lightness());
    }
    EXPECT_NEAR(darkest, 30, 25);
}

TEST_F(HighlightedButtonTest, every_tag_in_its_three_looks_makes_one_gallery) {
    QWidget gallery;
    gallery.resize(460, 400);
    int row = 0;
    for (int tag = 100; tag <= 109; ++tag, ++row) {
        for (int look = 0; look < 3; ++look) {
            auto* shown = new HighlightedButton(&gallery);
            shown->setTag(tag);
            shown->setText(QStringLiteral("Tag %1").arg(tag));
            shown->setIcon(normal);
            shown->setAlternateImage(selected);
            shown->setGeometry(10 + look * 150, 8 + row * 38, 140, 32);
            shown->awakeFromNib();
            if (look == 1)
                shown->setButtonHighlighted();
            if (look == 2)
                shown->setEnabled(false);
        }
    }
    for (const bool isDark : {false, true}) {
        const QPalette desktop(isDark ? QColor(40, 40, 40) : QColor(240, 240, 240));
        gallery.setPalette(Appearance::over(desktop).resolve(desktop));
        for (const int scale : {1, 2}) {
            QImage picture(gallery.size() * scale, QImage::Format_RGB32);
            picture.setDevicePixelRatio(scale);
            gallery.render(&picture);
            EXPECT_TRUE(picture.save(QStringLiteral("%1/buttons-%2-%3.png")
                                         .arg(QCoreApplication::applicationDirPath(),
                                              isDark ? QStringLiteral("dark") : QStringLiteral("light"))
                                         .arg(scale)));
        }
    }
}

} // namespace
