#include "tests/shell/EdgesFixture.h"

#include <QPushButton>

namespace {

class PromotionEdges : public EdgesFixture {
  protected:
    PromotionEdges() {
        delegate.promotionWindowSetup();
        delegate.showPromotionWindow();
        Events::settle();
    }

    QPushButton* button(const char* name) {
        return delegate.windowPromotion()->findChild<QPushButton*>(QString::fromLatin1(name));
    }
};

TEST_P(PromotionEdges, the_dot_of_the_current_page_stands_out_most) {
    BFPageControl* control = delegate.pageControl();
    control->setCurrentPage(2);
    const QImage shown = delegate.windowPromotion()->grab().toImage();
    const QPoint first = control->mapTo(delegate.windowPromotion(), QPoint(12, 12));
    constexpr int step = 30;
    const auto contrastOf = [&](int page) {
        const QPoint middle = first + QPoint(step * page, 0);
        return contrastRatio(shown.pixelColor(middle), shown.pixelColor(middle + QPoint(step / 2, 0)));
    };
    const double current = contrastOf(2);
    EXPECT_GE(current, leastEdgeContrast);
    for (const int other : {0, 1, 3, 4, 5, 6})
        EXPECT_LT(contrastOf(other), current / 2) << other;
}

TEST_P(PromotionEdges, its_buttons_can_be_seen_and_read) {
    for (const char* name : {"btnOpenSuggestedApp", "btnBack", "btnQuitApp"}) {
        QPushButton* seen = button(name);
        EXPECT_GE(weakestEdge(seen), leastEdgeContrast) << name;
        EXPECT_GE(textContrast(seen, seen->rect().adjusted(4, 4, -4, -4)), text) << name;
    }
    EXPECT_GE(weakestEdge(delegate.btnCheckDontShow(), box(delegate.btnCheckDontShow())), leastEdgeContrast);
}

TEST_P(PromotionEdges, opening_the_store_stands_out_more_than_going_back) {
    const auto inside = [&](const char* name) {
        QPushButton* seen = button(name);
        const QColor card = seen->palette().color(QPalette::Base);
        return contrastRatio(seen->grab().toImage().pixelColor(8, seen->height() / 2), card);
    };
    for (const char* name : {"btnBack", "btnQuitApp"}) {
        EXPECT_LT(inside(name), 3) << name;
        EXPECT_GT(inside("btnOpenSuggestedApp"), 2 * inside(name)) << name;
    }
}

TEST_P(PromotionEdges, quitting_says_what_is_quit) {
    EXPECT_EQ(button("btnQuitApp")->text().remove(u'&'), QStringLiteral("Quit Tobrimax"));
}

INSTANTIATE_TEST_SUITE_P(Light, PromotionEdges, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Dark, PromotionEdges, testing::Values(true));

} // namespace
