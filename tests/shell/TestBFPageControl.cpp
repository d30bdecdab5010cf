#include "shell/BFPageControl.h"
#include "tests/support/Events.h"

#include <QAccessible>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

class RecordingDelegate final : public BFPageControlDelegate {
  public:
    std::vector<std::pair<qint64, qint64>> calls; ///< index, and the current page at that moment

    void pageControl(BFPageControl* control, qint64 didSelectPageAtIndex) override {
        calls.emplace_back(didSelectPageAtIndex, control->currentPage());
    }
};

class PageControlTest : public testing::Test {
  protected:
    PageControlTest() {
        parent.resize(200, 100);
        control.setParent(&parent);
        control.setFrame(QRectF(20, 30, 100, 20));
        control.setNumberOfPages(4);
        control.setDelegate(&delegate);
        parent.show();
    }

    /// The middle of the indicator `index`, in the widget's coordinates.
    QPointF middle(std::size_t index) {
        const QPointF at = control.matrix()->cellFrame(index).center();
        return {at.x(), control.height() - at.y()};
    }

    void click(std::size_t index) {
        Events::mouse(&control, QEvent::MouseButtonPress, middle(index));
        Events::mouse(&control, QEvent::MouseButtonRelease, middle(index));
    }

    QWidget parent;
    RecordingDelegate delegate;
    BFPageControl control;
};

TEST(PageControl, starts_without_pages) {
    const BFPageControl control;
    EXPECT_EQ(control.numberOfPages(), 0);
    EXPECT_EQ(control.currentPage(), 0);
    EXPECT_EQ(control.indicatorDiameterSize(), 10.0);
    EXPECT_EQ(control.indicatorMargin(), 5.0);
    EXPECT_FALSE(control.hidesForSinglePage());
    EXPECT_FALSE(control.useHandCursor());
    EXPECT_EQ(control.delegate(), nullptr);
    EXPECT_EQ(control.matrix(), nullptr);
    EXPECT_EQ(control.frame(), QRectF());
}

TEST(PageControl, its_size_is_not_limited) {
    BFPageControl control;
    EXPECT_EQ(control.intrinsicContentSize(), QSizeF(-5, 10));
    EXPECT_EQ(control.fittingSize(), QSizeF(-5, 10));
    EXPECT_EQ(control.sizeForNumberOfPages(1), QSizeF(10, 10));
    EXPECT_EQ(control.sizeForNumberOfPages(4), QSizeF(55, 10));
    control.setIndicatorDiameterSize(25);
    control.setIndicatorMargin(2.5);
    control.setNumberOfPages(3);
    EXPECT_EQ(control.intrinsicContentSize(), QSizeF(80, 25));
}

TEST(PageControl, colours_are_made_on_first_read_and_kept) {
    BFPageControl control;
    EXPECT_EQ(control.selectedColor(), (Color{1.0 / 3, 1.0 / 3, 1.0 / 3, 1}));
    EXPECT_EQ(control.highlightColor(), (Color{0.5, 0.5, 0.5, 1}));
    EXPECT_EQ(control.unselectedColor(), (Color{2.0 / 3, 2.0 / 3, 2.0 / 3, 1}));
    EXPECT_EQ(&control.selectedColor(), &control.selectedColor());
    control.setSelectedColor({1, 0, 0, 1});
    EXPECT_EQ(control.selectedColor(), (Color{1, 0, 0, 1}));
}

TEST(PageControl, no_pages_make_a_row_without_indicators_unless_it_hides) {
    BFPageControl control;
    control.setNumberOfPages(0);
    ASSERT_NE(control.matrix(), nullptr);
    EXPECT_TRUE(control.matrix()->cells().empty());
    EXPECT_EQ(control.matrix()->selectedCell(), -1);
    control.setHidesForSinglePage(true);
    EXPECT_NE(control.matrix(), nullptr) << "only kept";
    control.setNumberOfPages(0);
    EXPECT_EQ(control.matrix(), nullptr);
    control.setNumberOfPages(1);
    EXPECT_EQ(control.matrix(), nullptr);
    control.setNumberOfPages(2);
    EXPECT_NE(control.matrix(), nullptr);
    control.setHidesForSinglePage(false);
    control.setNumberOfPages(1);
    EXPECT_EQ(control.matrix()->cells().size(), 1U);
}

TEST_F(PageControlTest, the_row_is_centred_on_whole_points) {
    // A row of 55 × 10 in 100 × 20.
    EXPECT_EQ(control.matrix()->frame(), QRectF(22, 5, 55, 10));
    control.setFrame(QRectF(20, 30, 50.5, 9));
    // The halves of -4.5 and -1, rounded down.
    EXPECT_EQ(control.matrix()->frame().topLeft(), QPointF(-3, -1));
}

TEST_F(PageControlTest, the_middle_is_narrowed_to_single_precision_before_it_is_rounded_down) {
    // Half of the space that is left over is just below 8388608. Single precision rounds it to 8388608.
    control.setIndicatorDiameterSize(10);
    control.setBounds(QRectF(0, 0, 2 * 8388607.9 + 55, 20));
    EXPECT_EQ(control.matrix()->frame().x(), 8388608);
}

TEST_F(PageControlTest, some_setters_make_the_row_anew_and_others_do_not) {
    const auto rebuilds = [this](const std::function<void()>& set) {
        const PageIndicatorMatrix* before = control.matrix();
        // A new row can't have the address of a row that still exists, but it may have that of a destroyed
        // row. The rows' diameters tell them apart.
        control.setIndicatorDiameterSize(control.indicatorDiameterSize() + 1);
        set();
        const bool isNew = control.matrix()->cellFrame(0).width() == control.indicatorDiameterSize();
        EXPECT_TRUE(isNew || control.matrix() == before);
        return isNew;
    };
    EXPECT_TRUE(rebuilds([this] { control.setCurrentPage(1); }));
    EXPECT_TRUE(rebuilds([this] { control.setSelectedColor({}); }));
    EXPECT_TRUE(rebuilds([this] { control.setHighlightColor({}); }));
    EXPECT_TRUE(rebuilds([this] { control.setUnselectedColor({}); }));
    EXPECT_TRUE(rebuilds([this] { control.setUseHandCursor(true); }));
    EXPECT_TRUE(rebuilds([this] { control.setDrawingBlock({}); }));
    EXPECT_TRUE(rebuilds([this] { control.setNumberOfPages(5); }));
    EXPECT_TRUE(rebuilds([this] { control.setFrame(QRectF(0, 0, 90, 20)); }));
    EXPECT_TRUE(rebuilds([this] { control.setBounds(QRectF(0, 0, 90, 20)); }));
    EXPECT_TRUE(rebuilds([this] { control.updateCurrentPageDisplay(); }));
    EXPECT_FALSE(rebuilds([this] { control.setIndicatorMargin(1); }));
    EXPECT_FALSE(rebuilds([this] { control.setHidesForSinglePage(true); }));
    EXPECT_FALSE(rebuilds([this] { control.setDelegate(nullptr); }));
}

TEST_F(PageControlTest, a_click_sets_the_page_before_the_delegate_hears_of_it) {
    click(2);
    EXPECT_EQ(control.currentPage(), 2);
    EXPECT_EQ(control.matrix()->selectedCell(), 2);
    ASSERT_EQ(delegate.calls.size(), 1U);
    EXPECT_EQ(delegate.calls[0], std::make_pair(qint64{2}, qint64{2}));
    click(2);
    EXPECT_EQ(delegate.calls.size(), 2U);
}

TEST_F(PageControlTest, a_click_makes_no_new_row) {
    const PageIndicatorMatrix* row = control.matrix();
    control.setIndicatorDiameterSize(11);
    click(1);
    EXPECT_EQ(control.matrix(), row);
    EXPECT_EQ(control.matrix()->cellFrame(0).width(), 10);
}

TEST_F(PageControlTest, a_click_between_indicators_or_let_go_elsewhere_picks_nothing) {
    const QPointF gap = (middle(0) + middle(1)) / 2;
    Events::mouse(&control, QEvent::MouseButtonPress, gap);
    Events::mouse(&control, QEvent::MouseButtonRelease, middle(1));
    Events::mouse(&control, QEvent::MouseButtonPress, middle(1));
    EXPECT_TRUE(control.matrix()->cells()[1].isHighlighted());
    Events::mouse(&control, QEvent::MouseMove, gap);
    EXPECT_FALSE(control.matrix()->cells()[1].isHighlighted());
    Events::mouse(&control, QEvent::MouseButtonRelease, gap);
    EXPECT_EQ(control.currentPage(), 0);
    EXPECT_TRUE(delegate.calls.empty());
}

TEST_F(PageControlTest, works_without_a_delegate_and_with_one_that_has_not_the_method) {
    BFPageControlDelegate silent;
    control.setDelegate(&silent);
    click(1);
    control.setDelegate(nullptr);
    click(3);
    EXPECT_EQ(control.currentPage(), 3);
}

TEST_F(PageControlTest, an_arrow_key_clicks_the_neighbour_and_stops_at_the_ends) {
    for (const int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Right,
                          Qt::Key_Right, Qt::Key_Right})
        Events::key(&control, key);
    EXPECT_EQ(control.currentPage(), 3);
    std::vector<qint64> pages;
    for (const auto& [index, current] : delegate.calls) {
        pages.push_back(index);
        EXPECT_EQ(index, current);
    }
    EXPECT_EQ(pages, (std::vector<qint64>{1, 2, 1, 2, 3}));
}

TEST_F(PageControlTest, a_page_out_of_range_leaves_the_first_indicator_marked) {
    for (const qint64 page : {qint64{4}, qint64{-1}, std::numeric_limits<qint64>::max()}) {
        control.setCurrentPage(page);
        EXPECT_EQ(control.currentPage(), page);
        EXPECT_EQ(control.matrix()->selectedCell(), 0);
        EXPECT_TRUE(control.matrix()->cells()[0].isOn());
    }
}

TEST_F(PageControlTest, the_built_in_drawing_fills_ovals_in_three_colours) {
    control.setSelectedColor({1, 0, 0, 1});
    control.setUnselectedColor({0, 1, 0, 1});
    control.setHighlightColor({0, 0, 1, 1});
    const auto at = [this](std::size_t index) {
        return control.grab().toImage().pixelColor(middle(index).toPoint());
    };
    EXPECT_EQ(at(0), QColor(255, 0, 0));
    EXPECT_EQ(at(1), QColor(0, 255, 0));
    Events::mouse(&control, QEvent::MouseButtonPress, middle(1));
    EXPECT_EQ(at(1), QColor(0, 0, 255));
    Events::mouse(&control, QEvent::MouseButtonRelease, middle(1));
    EXPECT_EQ(at(1), QColor(255, 0, 0));
    EXPECT_EQ(at(0), QColor(0, 255, 0));
}

TEST_F(PageControlTest, a_drawing_block_is_told_all_there_is_to_know) {
    struct Call {
        QWidget* view;
        bool isCurrentPage;
        bool isHighlighted;
        QRectF frame;
    };
    std::vector<Call> calls;
    control.setDrawingBlock(
        [&](QPainter& painter, QWidget& view, bool isCurrentPage, bool isHighlighted, const QRectF& frame) {
            EXPECT_EQ(painter.opacity(), 1) << "as it was before the last one";
            calls.push_back({&view, isCurrentPage, isHighlighted, frame});
            painter.setOpacity(0);
        });
    control.setCurrentPage(2);
    calls.clear();
    control.grab();
    ASSERT_EQ(calls.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(calls[i].view, &control);
        EXPECT_EQ(calls[i].isCurrentPage, i == 2);
        EXPECT_FALSE(calls[i].isHighlighted);
        EXPECT_EQ(calls[i].frame, QRectF(22 + 15.0 * static_cast<double>(i), 5, 10, 10));
    }
}

TEST_F(PageControlTest, a_cell_without_a_drawing_block_is_invisible) {
    QImage shown(20, 20, QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::white);
    QPainter painter(&shown);
    const BFPageControlCell cell;
    cell.drawWithFrame(painter, QRectF(0, 0, 20, 20), control);
    painter.end();
    EXPECT_EQ(shown.pixelColor(10, 10), QColor(Qt::white));
}

TEST_F(PageControlTest, a_fraction_of_a_point_is_painted) {
    control.setNumberOfPages(1);
    control.setSelectedColor({0, 0, 0, 1});
    control.setDrawingBlock([](QPainter& painter, QWidget&, bool, bool, const QRectF& frame) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(frame, Qt::black);
    });
    const auto column = [this](int x) { return parent.grab().toImage().pixelColor(x, 60).red(); };
    control.setFrame(QRectF(20, 30, 10, 20));
    EXPECT_EQ(column(20), 0);
    EXPECT_GT(column(19), 200);
    control.setFrame(QRectF(20.5, 30, 10, 20));
    EXPECT_NEAR(column(20), parent.palette().color(QPalette::Window).red() / 2, 3);
    EXPECT_EQ(column(21), 0);
    EXPECT_NEAR(column(30), parent.palette().color(QPalette::Window).red() / 2, 3);
}

TEST_F(PageControlTest, the_hand_is_shown_over_indicators_when_asked_for) {
    Events::mouse(&control, QEvent::MouseMove, middle(1), Qt::NoButton);
    EXPECT_EQ(control.cursor().shape(), Qt::ArrowCursor);
    control.setUseHandCursor(true);
    Events::mouse(&control, QEvent::MouseMove, middle(1), Qt::NoButton);
    EXPECT_EQ(control.cursor().shape(), Qt::PointingHandCursor);
    Events::mouse(&control, QEvent::MouseMove, (middle(1) + middle(2)) / 2, Qt::NoButton);
    EXPECT_EQ(control.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(PageControlTest, bounds_of_another_size_are_shown_scaled) {
    control.setBounds(QRectF(0, 0, 50, 10));
    // A row of 55 × 10 in 50 × 10, shown twice as large.
    EXPECT_EQ(control.matrix()->frame(), QRectF(-3, 0, 55, 10));
    Events::mouse(&control, QEvent::MouseButtonPress, QPointF(2 * (-3 + 15 + 5), 10));
    Events::mouse(&control, QEvent::MouseButtonRelease, QPointF(2 * (-3 + 15 + 5), 10));
    EXPECT_EQ(control.currentPage(), 1);
}

TEST_F(PageControlTest, keeps_its_distance_from_the_bottom) {
    parent.resize(200, 160);
    Events::settle();
    EXPECT_EQ(control.frame(), QRectF(20, 30, 100, 20));
    EXPECT_EQ(parent.height() - control.geometry().bottom() - 1, 30);
    click(1);
    EXPECT_EQ(control.currentPage(), 1);
}

TEST_F(PageControlTest, a_drawing_block_may_make_a_new_row) {
    int drawn = 0;
    control.setDrawingBlock([&](QPainter&, QWidget&, bool, bool, const QRectF&) {
        if (++drawn == 1)
            control.setNumberOfPages(2);
    });
    control.grab();
    EXPECT_EQ(drawn, 4);
    EXPECT_EQ(control.matrix()->cells().size(), 2U);
}

TEST_F(PageControlTest, without_indicators_there_is_nothing_to_go_to) {
    EXPECT_EQ(control.focusPolicy(), Qt::StrongFocus);
    control.setNumberOfPages(0);
    EXPECT_EQ(control.focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(control.accessibleValue(), 0);
    EXPECT_EQ(control.accessibleValueText(), QString());
    control.setNumberOfPages(4);
    control.setCurrentPage(9);
    EXPECT_EQ(control.accessibleValueText(), QStringLiteral("1 of 4")) << "as it is marked";
}

TEST_F(PageControlTest, a_click_leaves_no_ring_and_the_keyboard_does) {
    parent.activateWindow();
    control.setFocus(Qt::MouseFocusReason);
    Events::settle();
    const QImage clicked = control.grab().toImage();
    control.clearFocus();
    EXPECT_EQ(control.grab().toImage(), clicked);
    control.setFocus(Qt::TabFocusReason);
    Events::settle();
    EXPECT_NE(control.grab().toImage(), clicked);
}

TEST_F(PageControlTest, follows_a_layout) {
    control.setGeometry(0, 0, 200, 100);
    EXPECT_EQ(control.frame(), QRectF(0, 0, 200, 100));
    EXPECT_EQ(control.matrix()->frame(), QRectF(72, 45, 55, 10));
}

TEST_F(PageControlTest, assistive_technology_reads_and_sets_the_page) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&control);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Page"));
    EXPECT_EQ(accessible->text(QAccessible::Value), QStringLiteral("1 of 4"));
    QAccessibleValueInterface* value = accessible->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->currentValue(), 1);
    EXPECT_EQ(value->maximumValue(), 4);
    value->setCurrentValue(3);
    EXPECT_EQ(control.currentPage(), 2);
    EXPECT_EQ(delegate.calls.size(), 1U);
    EXPECT_EQ(accessible->text(QAccessible::Value), QStringLiteral("3 of 4"));
    value->setCurrentValue(9);
    EXPECT_EQ(control.currentPage(), 2);
}

} // namespace
