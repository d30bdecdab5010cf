#include "mainwindow/BorderImageView.h"
#include "tests/support/Events.h"
#include "tests/support/Pictures.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// A drag over the view, with data of its own.
class DropHighlight : public testing::Test {
  protected:
    DropHighlight() {
        view.resize(200, 100);
        view.setImage(Pictures::loadedImage(Pictures::flat(200, 100, Qt::white)));
        unlit = view.grab().toImage();
        files->setUrls({file});
    }

    bool isLit() { return view.grab().toImage() != unlit; }

    void enter(const QMimeData& data, Qt::DropActions offered) {
        QDragEnterEvent event(QPoint(5, 5), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &event);
        EXPECT_TRUE(event.isAccepted());
    }

    void move(const QMimeData& data, Qt::DropActions offered) {
        QDragMoveEvent event(QPoint(6, 6), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &event);
        EXPECT_TRUE(event.isAccepted());
    }

    void leave() {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(&view, &event);
    }

    BorderImageView view;
    QUrl file = QUrl::fromLocalFile(QStringLiteral("/nowhere/a.png"));
    QImage unlit;
    std::unique_ptr<QMimeData> files = std::make_unique<QMimeData>();
};

TEST_F(DropHighlight, is_for_drags_that_carry_a_file_and_offer_a_copy) {
    QMimeData words;
    words.setText(QStringLiteral("words"));
    QMimeData page;
    page.setUrls({QUrl(QStringLiteral("http://localhost/a.png"))});
    struct Case {
        const QMimeData* data;
        Qt::DropActions offered;
        bool isLit;
    };
    for (const Case& expected :
         {Case{files.get(), Qt::CopyAction, true}, Case{files.get(), Qt::CopyAction | Qt::MoveAction, true},
          Case{files.get(), Qt::MoveAction, false}, Case{files.get(), Qt::LinkAction, false},
          Case{files.get(), Qt::MoveAction | Qt::LinkAction, false}, Case{&words, Qt::CopyAction, false},
          Case{&page, Qt::CopyAction, false}}) {
        enter(*expected.data, expected.offered);
        EXPECT_EQ(isLit(), expected.isLit);
        move(*expected.data, expected.offered);
        EXPECT_EQ(isLit(), expected.isLit);
        leave();
        EXPECT_FALSE(isLit());
    }
}

TEST_F(DropHighlight, follows_what_the_drag_offers_on_its_way) {
    enter(*files, Qt::MoveAction);
    EXPECT_FALSE(isLit());
    move(*files, Qt::CopyAction);
    EXPECT_TRUE(isLit());
    move(*files, Qt::MoveAction);
    EXPECT_FALSE(isLit());
}

TEST_F(DropHighlight, goes_out_with_the_drop) {
    enter(*files, Qt::CopyAction);
    ASSERT_TRUE(isLit());
    QMimeData words;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &words, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &drop);
    EXPECT_FALSE(isLit());
}

TEST_F(DropHighlight, goes_out_when_the_source_dies) {
    view.show();
    Events::settle();
    unlit = view.grab().toImage();
    enter(*files, Qt::CopyAction);
    Events::settle();
    ASSERT_TRUE(isLit());
    // No drag leaves. The mouse, which the source has had, comes to the window.
    QEnterEvent mouse(QPointF(6, 6), QPointF(6, 6), view.mapToGlobal(QPointF(6, 6)));
    QCoreApplication::sendEvent(view.windowHandle(), &mouse);
    EXPECT_FALSE(isLit());
    // Where the drag goes on all the same, the highlight comes back.
    move(*files, Qt::CopyAction);
    EXPECT_TRUE(isLit());
}

} // namespace
