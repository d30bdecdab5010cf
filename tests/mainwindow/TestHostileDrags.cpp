#include "mainwindow/BorderImageView.h"
#include "mainwindow/MimeContents.h"
#include "tests/mainwindow/MainWindowFixture.h"
#include "tests/support/Pictures.h"
#include "tests/support/Slowness.h"

#include <QBuffer>
#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>

namespace {

using HostileDrags = MainWindowFixture;

QByteArray png(int width, int height) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(Pictures::noise(width, height, 1).save(&buffer, "PNG"));
    return bytes;
}

/// A drag with `bytes` as its list of files.
std::unique_ptr<QMimeData> listed(const QByteArray& bytes) {
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("text/uri-list"), bytes);
    return data;
}

} // namespace

TEST_F(HostileDrags, lists_that_name_no_file_change_nothing) {
    drop(pictureFile());
    for (const QByteArray& list :
         {QByteArray(), QByteArray("\r\n\r\n"), QByteArray("# file:///a.png\r\n"), QByteArray(1 << 20, '\n'),
          QByteArray(1 << 20, '\0'), QByteArray(1 << 20, '\xff'), QByteArray("http://localhost:9/a.png"),
          QByteArray("file"), QByteArray("\xff\xfe file"), QByteArray("smb://localhost/a.png"),
          QByteArray("javascript:alert(1)"), QByteArray("data:image/png;base64,AAAA")}) {
        SCOPED_TRACE(list.left(40).toHex().constData());
        EXPECT_TRUE(controller->imgViewIcon->performDragOperation(listed(list).get()));
        EXPECT_EQ(controller->imgViewIcon->image().size(), QSizeF(64, 64));
    }
}

TEST_F(HostileDrags, files_that_are_none_clear_the_well) {
    for (const QByteArray& url :
         {QByteArray("file:///"), QByteArray("file:///dev/zero"), QByteArray("file:///dev/stdin"),
          QByteArray("file:///proc/self/mem"), QByteArray("file:///nothing%00.png"),
          QByteArray("file:///%ff%fe.png"), QByteArray("file:///%2e%2e/%2e%2e/"),
          QByteArray("file:///") + QByteArray(1 << 20, 'a'),
          QByteArray("file:///") + QByteArray("../").repeated(100000), QByteArray("file:///a\xff\xfe.png")}) {
        SCOPED_TRACE(url.left(60).constData());
        drop(pictureFile());
        ASSERT_FALSE(controller->imgViewIcon->image().isNull());
        EXPECT_TRUE(controller->imgViewIcon->performDragOperation(listed(url).get()));
        EXPECT_TRUE(controller->imgViewIcon->image().isNull());
    }
}

TEST_F(HostileDrags, of_megabytes_of_names_the_last_is_taken_soon) {
    const QByteArray last = QUrl::fromLocalFile(pictureFile()).toEncoded();
    QElapsedTimer timer;
    timer.start();
    const auto data = listed(QByteArray("file:///nothing/at/all.png\r\n").repeated(200000) + last);
    EXPECT_TRUE(MainWindowController::canPaste(data.get()));
    EXPECT_TRUE(controller->imgViewIcon->performDragOperation(data.get()));
    EXPECT_EQ(controller->imgViewIcon->image().size(), QSizeF(64, 64));
    EXPECT_LT(timer.elapsed(), 5000 * slowness);
}

TEST_F(HostileDrags, pictures_that_lie_or_break_off_clear_the_well) {
    QByteArray enormous = png(8, 8);
    enormous.replace(16, 8, QByteArray::fromHex("0000ffff0000ffff"));
    const QByteArray curious =
        "<!DOCTYPE svg [<!ENTITY a SYSTEM 'ha'>]><svg xmlns='http://www.w3.org/2000/svg' width='9' "
        "height='9'><text>&a;</text></svg>";
    struct Lie {
        const char* form;
        QByteArray bytes;
    };
    for (const Lie& lie : {Lie{"image/png", enormous}, Lie{"image/png", png(8, 8).left(60)},
                           Lie{"image/png", QByteArray("words")}, Lie{"image/svg+xml", curious},
                           Lie{"image/tiff", QByteArray(1 << 20, '\0')},
                           Lie{"image/x-icns", QByteArray("icns\xff\xff\xff\xff", 8)}}) {
        SCOPED_TRACE(lie.form);
        drop(pictureFile());
        QMimeData data;
        data.setData(QLatin1String(lie.form), lie.bytes);
        controller->imgViewIcon->takePicture(MimeContents::picture(data));
        EXPECT_TRUE(controller->imgViewIcon->image().isNull());
    }
}

TEST_F(HostileDrags, what_is_no_image_is_no_picture) {
    QMimeData words;
    words.setImageData(QStringLiteral("words"));
    QMimeData null;
    null.setImageData(QImage());
    QMimeData empty;
    empty.setData(QStringLiteral("image/png"), {});
    QMimeData unknown;
    unknown.setData(QStringLiteral("application/x-qt-image"), "P6 30000 30000 255\n");
    for (const QMimeData* data : {&words, &null, &empty, &unknown}) {
        EXPECT_TRUE(MimeContents::picture(*data).isEmpty());
        EXPECT_TRUE(controller->imgViewIcon->performDragOperation(
            listed(QUrl::fromLocalFile(pictureFile()).toEncoded()).get()));
        ASSERT_FALSE(controller->imgViewIcon->image().isNull());
        controller->imgViewIcon->takePicture(MimeContents::picture(*data));
        EXPECT_TRUE(controller->imgViewIcon->image().isNull());
    }
}

TEST_F(HostileDrags, a_drawing_of_a_size_beyond_memory_is_shown_and_not_copied) {
    for (const char* side : {"1e9", "20000"}) {
        const QByteArray document = QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='") + side +
                                    "' height='" + side +
                                    "' viewBox='0 0 9 9'><rect width='9' height='9'/></svg>";
        controller->imgViewIcon->takePicture(document);
        EXPECT_FALSE(controller->imgViewIcon->image().isNull());
        controller->imgViewIcon->grab();
        QGuiApplication::clipboard()->clear();
        controller->copyPicture();
        const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
        EXPECT_TRUE(copied == nullptr || !copied->hasImage());
    }
}
