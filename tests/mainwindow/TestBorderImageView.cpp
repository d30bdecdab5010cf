#include "mainwindow/BorderImageView.h"
#include "platform/services/NotificationCenter.h"
#include "tests/support/Events.h"
#include "tests/support/Pictures.h"

#include <QAccessible>
#include <QDragEnterEvent>
#include <QFile>
#include <QMimeData>
#include <QPainter>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

/// Lets a test draw into a painter of its own, and counts the view's paint events.
class TestView final : public BorderImageView {
  public:
    using BorderImageView::BorderImageView;
    using BorderImageView::drawRect;
    int paints = 0;

  protected:
    void paintEvent(QPaintEvent* event) override {
        ++paints;
        BorderImageView::paintEvent(event);
    }
};

class BorderImageViewTest : public testing::Test {
  protected:
    BorderImageViewTest() {
        view.resize(200, 100);
        NotificationCenter::defaultCenter().addObserver(&view, QStringLiteral("imageAdded"),
                                                        [this](const Notification& notification) {
                                                            ++announced;
                                                            carriedObject = !notification.object.isNull();
                                                            imageWhenAnnounced = view.image().size();
                                                        });
    }

    QString picture(const QString& name, int width, int height) {
        const QString path = folder.filePath(name);
        EXPECT_TRUE(Pictures::noise(width, height, 1).save(path, "PNG"));
        return path;
    }

    QString textFile() {
        const QString path = folder.filePath(QStringLiteral("words.png"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("no picture at all");
        return path;
    }

    bool drop(const QStringList& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
        return view.performDragOperation(&data);
    }

    QTemporaryDir folder;
    TestView view;
    int announced = 0;
    bool carriedObject = false;
    QSizeF imageWhenAnnounced;
};

TEST_F(BorderImageViewTest, starts_with_every_field_zero) {
    EXPECT_FALSE(view.isRoundCorner());
    EXPECT_EQ(view.cornerRadiusPercent(), 0.0F);
    EXPECT_FALSE(view.isBorder());
    EXPECT_EQ(view.borderWidth(), 0.0F);
    EXPECT_FALSE(view.borderColor().has_value());
    EXPECT_TRUE(view.image().isNull());
}

TEST_F(BorderImageViewTest, of_several_files_the_last_one_wins) {
    EXPECT_TRUE(drop({picture(QStringLiteral("a.png"), 10, 10), picture(QStringLiteral("b.png"), 20, 20),
                      picture(QStringLiteral("c.png"), 30, 20)}));
    EXPECT_EQ(view.image().size(), QSizeF(30, 20));
    EXPECT_EQ(announced, 1);
    EXPECT_FALSE(carriedObject);
    EXPECT_EQ(imageWhenAnnounced, QSizeF(30, 20)) << "the image is there before it is announced";
}

TEST_F(BorderImageViewTest, each_drop_replaces_the_picture_and_is_announced) {
    drop({picture(QStringLiteral("a.png"), 10, 10)});
    drop({picture(QStringLiteral("b.png"), 20, 20)});
    EXPECT_EQ(view.image().size(), QSizeF(20, 20));
    EXPECT_EQ(announced, 2);
}

TEST_F(BorderImageViewTest, a_file_that_is_no_picture_clears_the_view_and_is_announced) {
    drop({picture(QStringLiteral("a.png"), 10, 10)});
    EXPECT_TRUE(drop({textFile()}));
    EXPECT_TRUE(view.image().isNull());
    EXPECT_EQ(announced, 2);
}

TEST_F(BorderImageViewTest, a_file_that_is_not_there_clears_the_view_and_is_announced) {
    drop({picture(QStringLiteral("a.png"), 10, 10)});
    EXPECT_TRUE(drop({folder.filePath(QStringLiteral("missing.png"))}));
    EXPECT_TRUE(view.image().isNull());
    EXPECT_EQ(announced, 2);
}

TEST_F(BorderImageViewTest, a_drag_without_files_changes_nothing_and_is_answered_yes) {
    drop({picture(QStringLiteral("a.png"), 10, 10)});
    QMimeData text;
    text.setText(QStringLiteral("/a/path"));
    QMimeData emptyList;
    emptyList.setData(QStringLiteral("text/uri-list"), {});
    QMimeData page;
    page.setUrls({QUrl(QStringLiteral("http://example.org/a.png"))});
    QMimeData nothing;
    for (const QMimeData* data : {&text, &emptyList, &page, &nothing})
        EXPECT_TRUE(view.performDragOperation(data));
    EXPECT_TRUE(view.performDragOperation(nullptr));
    EXPECT_EQ(view.image().size(), QSizeF(10, 10));
    EXPECT_EQ(announced, 1);
}

TEST_F(BorderImageViewTest, takes_the_last_local_file_and_urls_that_name_this_machine) {
    QMimeData data;
    const QString path = picture(QStringLiteral("a b%.png"), 10, 10);
    QUrl url = QUrl::fromLocalFile(path);
    data.setUrls({url, QUrl(QStringLiteral("http://example.org/b.png"))});
    EXPECT_TRUE(view.performDragOperation(&data));
    EXPECT_EQ(view.image().size(), QSizeF(10, 10));
    for (const QString& host : {QStringLiteral("localhost"), QSysInfo::machineHostName()}) {
        view.setImage({});
        url.setHost(host);
        data.setUrls({url});
        view.performDragOperation(&data);
        EXPECT_EQ(view.image().size(), QSizeF(10, 10)) << host.toStdString();
    }
}

TEST_F(BorderImageViewTest, takes_a_file_whose_name_is_no_utf8) {
    const QByteArray plain = QFile::encodeName(picture(QStringLiteral("plain.png"), 30, 20));
    const QByteArray name = QFile::encodeName(folder.path()) + "/caf\xe9.png";
    if (std::rename(plain.constData(), name.constData()) != 0)
        GTEST_SKIP() << "this file system knows UTF-8 alone";
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"),
                 "file://" + QFile::encodeName(folder.path()) + "/caf%E9.png\r\n");
    EXPECT_TRUE(view.performDragOperation(&data));
    EXPECT_EQ(view.image().size(), QSizeF(30, 20));
    EXPECT_EQ(std::remove(name.constData()), 0);
}

TEST_F(BorderImageViewTest, every_drag_is_answered_with_a_copy) {
    QMimeData text;
    text.setText(QStringLiteral("x"));
    EXPECT_EQ(static_cast<int>(view.draggingEntered(&text)), 1);
    EXPECT_EQ(static_cast<int>(view.draggingUpdated(nullptr)), 1);

    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, &text,
                          Qt::LeftButton, Qt::ShiftModifier);
    enter.setDropAction(Qt::MoveAction);
    QCoreApplication::sendEvent(&view, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
    QDragMoveEvent move(QPoint(6, 6), Qt::CopyAction | Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &move);
    EXPECT_TRUE(move.isAccepted());
    EXPECT_EQ(move.dropAction(), Qt::CopyAction);
}

TEST_F(BorderImageViewTest, a_drag_that_offers_no_copy_is_never_told_of_a_move) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(picture(QStringLiteral("a.png"), 10, 10))});
    for (const Qt::DropAction offered : {Qt::MoveAction, Qt::LinkAction}) {
        view.setImage({});
        QDragEnterEvent enter(QPoint(5, 5), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &enter);
        QDragMoveEvent move(QPoint(6, 6), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &move);
        QDropEvent drop(QPointF(5, 5), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &drop);
        for (const QDropEvent* event :
             {static_cast<const QDropEvent*>(&enter), static_cast<const QDropEvent*>(&move),
              static_cast<const QDropEvent*>(&drop)}) {
            EXPECT_TRUE(event->isAccepted());
            EXPECT_EQ(event->dropAction(), Qt::IgnoreAction);
        }
        EXPECT_EQ(view.image().size(), QSizeF(10, 10)) << "taken all the same";
    }
}

TEST_F(BorderImageViewTest, assistive_technology_can_press_it_and_hears_what_it_shows) {
    int presses = 0;
    QObject::connect(&view, &BorderImageView::pressed, &view, [&] { ++presses; });
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(presses, 1);
    const QString empty = accessible->text(QAccessible::Description);
    drop({picture(QStringLiteral("a.png"), 10, 20)});
    EXPECT_EQ(accessible->text(QAccessible::Description), QStringLiteral("A picture of 10 × 20"));
    drop({textFile()});
    EXPECT_EQ(accessible->text(QAccessible::Description), empty);
}

TEST_F(BorderImageViewTest, a_drop_event_is_taken) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(picture(QStringLiteral("a.png"), 10, 10))});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &event);
    EXPECT_TRUE(event.isAccepted());
    EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    EXPECT_EQ(view.image().size(), QSizeF(10, 10));
}

TEST_F(BorderImageViewTest, the_outlines_radii_are_fractions_of_width_and_height) {
    view.setRoundCorner(true);
    view.setCornerRadiusPercent(0.25F);
    const Path path = view.outline(QRectF(0, 0, 200, 100));
    EXPECT_EQ(path.xRadius(), 50);
    EXPECT_EQ(path.yRadius(), 25);
    view.setRoundCorner(false);
    EXPECT_EQ(view.outline(QRectF(0, 0, 200, 100)).xRadius(), 0);
}

TEST_F(BorderImageViewTest, the_line_is_a_fraction_of_the_width_and_half_of_it_shows) {
    view.setBorder(true);
    view.setBorderWidth(0.05F);
    view.setBorderColor(Color{1, 0, 0, 1});
    view.setImage(Pictures::loadedImage(Pictures::flat(200, 100, Qt::white)));
    EXPECT_NEAR(view.outline(QRectF(0, 0, 200, 100)).lineWidth(), 10, 1e-6);
    const QImage shown = view.grab().toImage();
    for (const int y : {0, 4, 50, 95, 99})
        EXPECT_EQ(shown.pixelColor(100, y), y == 50 ? QColor(Qt::white) : QColor(Qt::red)) << y;
    EXPECT_EQ(shown.pixelColor(100, 5), QColor(Qt::white));
    EXPECT_EQ(shown.pixelColor(4, 50), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(5, 50), QColor(Qt::white));
    EXPECT_EQ(shown.pixelColor(194, 50), QColor(Qt::white));
}

TEST_F(BorderImageViewTest, a_part_that_is_drawn_anew_has_an_outline_of_its_own) {
    view.setBorder(true);
    view.setBorderWidth(0.1F);
    view.setBorderColor(Color{1, 0, 0, 1});
    view.setImage(Pictures::loadedImage(Pictures::flat(200, 100, Qt::white)));
    QImage shown(200, 100, QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::white);
    view.render(&shown, QPoint(50, 20), QRect(50, 20, 100, 40));
    // A line of width 10 around the part from (50, 20) to (150, 60). The part cuts off the outer half.
    EXPECT_EQ(shown.pixelColor(100, 19), QColor(Qt::white));
    EXPECT_EQ(shown.pixelColor(100, 20), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(100, 24), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(100, 25), QColor(Qt::white));
    EXPECT_EQ(shown.pixelColor(54, 40), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(55, 40), QColor(Qt::white));
}

TEST_F(BorderImageViewTest, without_the_border_nothing_is_stroked) {
    view.setBorderWidth(0.2F);
    view.setBorderColor(Color{1, 0, 0, 1});
    view.setRoundCorner(true);
    view.setCornerRadiusPercent(0.5F);
    view.setImage(Pictures::loadedImage(Pictures::flat(200, 100, Qt::white)));
    EXPECT_TRUE(Pictures::same(view.grab().toImage().convertToFormat(QImage::Format_RGBA8888_Premultiplied),
                               Pictures::flat(200, 100, Qt::white)))
        << "the outline clips nothing either";
}

TEST_F(BorderImageViewTest, a_border_of_no_width_is_no_hairline) {
    view.setBorder(true);
    view.setBorderColor(Color{1, 0, 0, 1});
    view.setImage(Pictures::loadedImage(Pictures::flat(200, 100, Qt::white)));
    EXPECT_EQ(view.grab().toImage().pixelColor(0, 0), QColor(Qt::white));
}

/// Draws into a painter. Its pen was blue when its state was saved, and is green now.
QImage drawnBetweenStates(TestView& view, QColor& penAfterwards) {
    QImage shown(200, 100, QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::white);
    QPainter painter(&shown);
    painter.setPen(Qt::blue);
    painter.save();
    painter.setPen(Qt::green);
    view.drawRect(painter, QRectF(0, 0, 200, 100));
    painter.restore();
    penAfterwards = painter.pen().color();
    return shown;
}

TEST_F(BorderImageViewTest, restores_the_state_before_the_border_and_saves_one_after_it) {
    view.setBorder(true);
    view.setBorderWidth(0.1F);
    QColor afterwards;
    // Without a colour of its own the border has the colour of the restored state.
    EXPECT_EQ(drawnBetweenStates(view, afterwards).pixelColor(100, 2), QColor(Qt::blue));
    EXPECT_EQ(afterwards, QColor(Qt::blue));
    // The state that is saved after the border has the border's colour.
    view.setBorderColor(Color{1, 0, 0, 1});
    EXPECT_EQ(drawnBetweenStates(view, afterwards).pixelColor(100, 2), QColor(Qt::red));
    EXPECT_EQ(afterwards, QColor(Qt::red));
}

TEST_F(BorderImageViewTest, setters_take_any_value_and_always_draw_anew) {
    view.show();
    Events::settle();
    const std::vector<std::function<void()>> setters{
        [this] { view.setRoundCorner(false); }, [this] { view.setCornerRadiusPercent(0); },
        [this] { view.setBorder(false); }, [this] { view.setBorderWidth(0); },
        [this] { view.setBorderColor(std::nullopt); }};
    for (const auto& set : setters) {
        const int before = view.paints;
        set();
        EXPECT_TRUE(Events::waitFor([&] { return view.paints == before + 1; }));
    }
    view.setCornerRadiusPercent(-3);
    view.setBorderWidth(17);
    EXPECT_EQ(view.cornerRadiusPercent(), -3.0F);
    EXPECT_EQ(view.borderWidth(), 17.0F);
}

TEST_F(BorderImageViewTest, space_return_and_a_click_press_it) {
    int presses = 0;
    QObject::connect(&view, &BorderImageView::pressed, &view, [&] { ++presses; });
    Events::key(&view, Qt::Key_Space);
    Events::key(&view, Qt::Key_Return);
    Events::click(&view);
    Events::key(&view, Qt::Key_A);
    EXPECT_EQ(presses, 3);
}

} // namespace
