#include "imaging/drawing/Path.h"
#include "shell/BFPageControl.h"
#include "shell/PageGround.h"
#include "tests/shell/AppDelegateFixture.h"

#include <QDialog>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QShortcut>

namespace {

class PromotionTest : public AppDelegateFixture {
  protected:
    QPushButton* button(const char* name) {
        return delegate.windowPromotion()->findChild<QPushButton*>(QString::fromLatin1(name));
    }

    static QString bundlePath(const QString& name) {
        return QStringLiteral("/Applications/%1.app").arg(name);
    }

    void installAll() {
        for (const SuggestedApp& app : suggestedApps())
            existingFiles << bundlePath(app.appName);
    }

    void expectShown(const SuggestedApp& app) {
        EXPECT_EQ(delegate.lblAppName()->text(), app.appName);
        EXPECT_EQ(delegate.lblAppDesc()->text(), app.Desc);
        EXPECT_FALSE(delegate.imgViewAppLogo()->image().isNull());
    }

    void clickDot(int index) {
        const PageIndicatorMatrix& row = *delegate.pageControl()->matrix();
        const QPointF middle = row.cellFrame(static_cast<std::size_t>(index)).center();
        const double fraction = delegate.pageControl()->frame().x() - delegate.pageControl()->x();
        const QPointF at(middle.x() + fraction, delegate.pageControl()->height() - middle.y());
        Events::mouse(delegate.pageControl(), QEvent::MouseButtonPress, at);
        Events::mouse(delegate.pageControl(), QEvent::MouseButtonRelease, at);
    }
};

TEST_F(PromotionTest, there_are_eight_records_that_are_complete_and_differ) {
    QSet<QString> names;
    QSet<QString> pages;
    for (const SuggestedApp& app : suggestedApps()) {
        names << app.appName;
        pages << app.url;
        EXPECT_EQ(QUrl(app.url).scheme(), QStringLiteral("macappstore"));
        EXPECT_FALSE(app.Desc.isEmpty());
        EXPECT_FALSE(bundle.pathForResource(app.imageName + QStringLiteral(".svg")).isEmpty());
    }
    EXPECT_EQ(names.size(), 8);
    EXPECT_EQ(pages.size(), 8);
}

TEST_F(PromotionTest, keeps_the_order_without_what_is_installed) {
    existingFiles << bundlePath(suggestedApps()[0].appName) << bundlePath(suggestedApps()[3].appName);
    delegate.promotionWindowSetup();
    ASSERT_EQ(delegate.suggestions().size(), 6U);
    EXPECT_EQ(delegate.suggestions()[0], suggestedApps()[1]);
    EXPECT_EQ(delegate.suggestions()[2], suggestedApps()[4]);
    EXPECT_EQ(delegate.pageControl()->numberOfPages(), 6);
    expectShown(suggestedApps()[1]);
}

TEST_F(PromotionTest, looks_for_an_installed_application_in_one_place) {
    existingFiles << QStringLiteral("/Applications/Some App.app");
    EXPECT_TRUE(delegate.isApplicationInstalledWithName(QStringLiteral("Some App")));
    EXPECT_FALSE(delegate.isApplicationInstalledWithName(QStringLiteral("Other")));
}

TEST_F(PromotionTest, the_page_control_is_centred_and_50_from_the_bottom) {
    existingFiles << bundlePath(suggestedApps()[0].appName);
    delegate.promotionWindowSetup();
    const BFPageControl& control = *delegate.pageControl();
    EXPECT_EQ(control.indicatorDiameterSize(), 25.0);
    EXPECT_EQ(control.indicatorMargin(), 5.0);
    EXPECT_EQ(control.currentPage(), 0);
    EXPECT_EQ(control.delegate(), &delegate);
    const double width = 7 * 25 + 6 * 5;
    EXPECT_EQ(control.frame(), QRectF((delegate.windowPromotion()->width() - width) * 0.5, 50, width, 25));
    EXPECT_EQ(control.frame().x() - std::floor(control.frame().x()), 0.5) << "not rounded";
    const QWidget* content = control.parentWidget();
    EXPECT_EQ(content->height() - control.geometry().bottom() - 1, 50);
    // Showing the window does not move the control.
    const QRectF before = control.frame();
    delegate.showPromotionWindow();
    Events::settle();
    EXPECT_EQ(control.frame(), before);
    EXPECT_EQ(content->height() - control.geometry().bottom() - 1, 50);
}

TEST_F(PromotionTest, a_click_shows_the_record_that_remains_at_that_place) {
    existingFiles << bundlePath(suggestedApps()[1].appName);
    delegate.promotionWindowSetup();
    delegate.showPromotionWindow();
    Events::settle();
    clickDot(2);
    expectShown(suggestedApps()[3]);
}

TEST_F(PromotionTest, a_click_on_a_dot_shows_its_record_and_logs_its_index) {
    delegate.promotionWindowSetup();
    delegate.windowPromotion()->show();
    clickDot(2);
    EXPECT_EQ(delegate.selectedSuggestion(), 2);
    expectShown(suggestedApps()[2]);
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(
        QRegularExpression(QStringLiteral("^<BFPageControl: 0x[0-9a-f]+>: Selected page at index: 2$"))
            .match(log.lines().first())
            .hasMatch())
        << log.lines().first().toStdString();
}

TEST_F(PromotionTest, going_on_wraps_around) {
    delegate.promotionWindowSetup();
    for (int i = 1; i <= 9; ++i) {
        delegate.changeAppDetail();
        EXPECT_EQ(delegate.selectedSuggestion(), i % 8);
        EXPECT_EQ(delegate.pageControl()->currentPage(), i % 8);
        expectShown(suggestedApps()[static_cast<std::size_t>(i % 8)]);
    }
}

TEST_F(PromotionTest, the_button_opens_the_store_page_of_what_is_shown) {
    delegate.promotionWindowSetup();
    delegate.windowPromotion()->show();
    clickDot(1);
    Events::click(button("btnOpenSuggestedApp"));
    EXPECT_EQ(workspace.asked, QList<QUrl>{QUrl(suggestedApps()[1].url)});
}

TEST_F(PromotionTest, an_index_out_of_range_opens_nothing) {
    delegate.promotionWindowSetup();
    for (const qint64 index : {qint64{8}, qint64{-1}}) {
        delegate.pageControl(delegate.pageControl(), index);
        EXPECT_EQ(delegate.selectedSuggestion(), index);
        delegate.btnOpenSuggestedAppTapped(nullptr);
    }
    EXPECT_TRUE(workspace.asked.isEmpty());
    expectShown(suggestedApps()[0]);
}

TEST_F(PromotionTest, with_everything_installed_it_is_friendly_and_never_fails) {
    installAll();
    delegate.promotionWindowSetup();
    EXPECT_TRUE(delegate.suggestions().empty());
    EXPECT_EQ(delegate.pageControl()->numberOfPages(), 0);
    delegate.showPromotionWindow();
    EXPECT_FALSE(delegate.pageControl()->isVisible());
    EXPECT_FALSE(delegate.lblAppName()->text().isEmpty());
    EXPECT_FALSE(button("btnOpenSuggestedApp")->isVisible());
    EXPECT_TRUE(button("btnBack")->isVisible());
    delegate.changeAppDetail();
    delegate.btnOpenSuggestedAppTapped(nullptr);
    EXPECT_EQ(delegate.selectedSuggestion(), 0);
    EXPECT_TRUE(workspace.asked.isEmpty());
}

TEST_F(PromotionTest, back_and_escape_hide_it_and_end_nothing) {
    const auto isShown = [this] { return delegate.windowPromotion()->isVisible(); };
    std::vector<bool> seen;
    EXPECT_EQ(run({[&] { delegate.showPromotionWindow(); }, [&] { seen.push_back(isShown()); },
                   [&] { Events::click(button("btnBack")); }, [&] { seen.push_back(isShown()); },
                   [&] { delegate.showPromotionWindow(); }, [&] { seen.push_back(isShown()); },
                   [&] {
                       auto* shortcut = delegate.windowPromotion()->findChild<QShortcut*>();
                       EXPECT_EQ(shortcut->key(), QKeySequence(Qt::Key_Escape));
                       Q_EMIT shortcut->activated();
                   },
                   [&] { seen.push_back(isShown()); }}),
              notEnded);
    EXPECT_EQ(seen, std::vector<bool>({true, false, true, false}));
    EXPECT_TRUE(log.lines().isEmpty()) << "a hide is not a close";
}

TEST_F(PromotionTest, its_quit_button_ends_the_program) {
    delegate.btnCheckDontShow()->setChecked(true);
    EXPECT_EQ(run({[&] { delegate.showPromotionWindow(); }, [&] { Events::click(button("btnQuitApp")); }}),
              0);
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("notShowPromotionWindow")));
}

TEST_F(PromotionTest, nothing_is_cut_off_in_a_larger_font_or_mirrored) {
    const QFont usual = QApplication::font();
    for (const double factor : {1.0, 1.5, 2.0, 3.0}) {
        QFont larger = usual;
        larger.setPointSizeF(usual.pointSizeF() * factor);
        QApplication::setFont(larger);
        for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            QGuiApplication::setLayoutDirection(direction);
            AppDelegate other({application,
                               {bundle, screen, workspace},
                               defaults,
                               [](const QString&) { return false; },
                               [](const StoreError&) { return false; }});
            other.promotionWindowSetup();
            other.showPromotionWindow();
            Events::settle();
            const QWidget* content = other.pageControl()->parentWidget();
            const QList<QWidget*> widgets =
                content->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
            ASSERT_EQ(widgets.size(), 9);
            // The dots lie on their ground.
            const auto liesOn = [&](const QWidget* above, const QWidget* below) {
                return above == other.pageControl() && qobject_cast<const PageGround*>(below) != nullptr;
            };
            EXPECT_EQ(content->height() - other.pageControl()->geometry().bottom() - 1, 50);
            for (const QWidget* widget : widgets) {
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
                    << widget->objectName().toStdString();
                EXPECT_TRUE(content->rect().contains(widget->geometry()))
                    << widget->objectName().toStdString();
                for (const QWidget* neighbour : widgets)
                    EXPECT_TRUE(neighbour == widget || liesOn(widget, neighbour) ||
                                liesOn(neighbour, widget) ||
                                !neighbour->geometry().intersects(widget->geometry()))
                        << widget->objectName().toStdString() << " at " << factor;
            }
        }
    }
    QApplication::setFont(usual);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(PromotionTest, it_has_the_round_windows_class_and_is_no_dialog) {
    EXPECT_STREQ(delegate.windowPromotion()->metaObject()->className(), "ELGRoundWindow");
    EXPECT_EQ(qobject_cast<QDialog*>(delegate.windowPromotion()), nullptr);
}

/// The dot with the index `index`, drawn on white with `scale` pixels for a point.
QImage dot(BFPageControl& control, std::size_t index, double scale) {
    const int pixels = qRound(25 * scale);
    QImage shown(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::white);
    QPainter painter(&shown);
    painter.scale(scale, scale);
    control.matrix()->cells()[index].drawWithFrame(painter, QRectF(0, 0, 25, 25), control);
    return shown;
}

TEST_F(PromotionTest, dots_are_grey_with_a_faint_ring) {
    delegate.promotionWindowSetup();
    for (const int scale : {1, 2}) {
        const QImage current = dot(*delegate.pageControl(), 0, scale);
        const QImage other = dot(*delegate.pageControl(), 1, scale);
        const int middle = 12 * scale;
        EXPECT_EQ(current.pixelColor(middle, middle), QColor(115, 115, 115));
        EXPECT_EQ(other.pixelColor(middle, middle), QColor(217, 217, 217));
        // The dot's edge is two points inside of its frame. The ring is two points wide; its middle is half a
        // point inside of the edge.
        EXPECT_EQ(other.pixelColor(0, middle), QColor(Qt::white));
        const int inRing = 5 * scale / 2;
        const int ring = qRound(217 * 0.85 + 25 * 0.15);
        EXPECT_NEAR(other.pixelColor(inRing, middle).red(), ring, 3);
        EXPECT_EQ(other.pixelColor(5 * scale, middle), QColor(217, 217, 217));
    }
}

TEST_F(PromotionTest, a_pressed_dot_is_another_grey) {
    delegate.promotionWindowSetup();
    BFPageControlCell cell = delegate.pageControl()->matrix()->cells()[0];
    cell.setHighlighted(true);
    QImage shown(25, 25, QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::white);
    QPainter painter(&shown);
    cell.drawWithFrame(painter, QRectF(0, 0, 25, 25), *delegate.pageControl());
    painter.end();
    EXPECT_EQ(shown.pixelColor(12, 12), QColor(150, 150, 150));
}

TEST_F(PromotionTest, drawing_a_dot_leaves_every_later_path_2_wide) {
    delegate.promotionWindowSetup();
    EXPECT_EQ(Path::bezierPathWithRect(QRectF(0, 0, 1, 1)).lineWidth(), 1);
    const Path before = Path::bezierPathWithRect(QRectF(0, 0, 1, 1));
    dot(*delegate.pageControl(), 0, 1);
    EXPECT_EQ(Path::bezierPathWithRect(QRectF(0, 0, 1, 1)).lineWidth(), 2);
    EXPECT_EQ(before.lineWidth(), 1);
}

} // namespace
