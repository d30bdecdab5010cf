#include "mainwindow/PictureCaption.h"
#include "platform/services/NotificationCenter.h"
#include "tests/mainwindow/MainWindowFixture.h"

#include <QCursor>

#include <unistd.h>

namespace {

/// Counts what is painted of a widget, and the mouse's presses on it.
class PaintCount final : public QObject {
  public:
    int paints = 0;
    int presses = 0;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        presses += event->type() == QEvent::MouseButtonPress ? 1 : 0;
        return false;
    }
};

class Waiting : public MainWindowFixture {
  protected:
    PictureCaption& caption() { return *controller->window()->findChild<PictureCaption*>(); }

    static std::optional<Qt::CursorShape> cursorOfAll() {
        const QCursor* cursor = QGuiApplication::overrideCursor();
        return cursor != nullptr ? std::optional(cursor->shape()) : std::nullopt;
    }

    QString flatPicture(int side) {
        const QString path = pictures.filePath(QStringLiteral("flat.png"));
        QImage picture(side, side, QImage::Format_Mono);
        picture.fill(1);
        EXPECT_TRUE(picture.save(path, "PNG"));
        return path;
    }

    /// A press that the desktop has sent and the program has not taken yet.
    static void queuePress(QWidget* widget) {
        QCoreApplication::postEvent(widget, new QMouseEvent(QEvent::MouseButtonPress, {3, 3}, {3, 3},
                                                            Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    }
};

TEST_F(Waiting, the_pointer_is_a_wait_cursor_until_the_picture_is_there) {
    std::vector<std::optional<Qt::CursorShape>> seen;
    QObject observer;
    NotificationCenter::defaultCenter().addObserver(
        &observer, BorderImageView::imageAdded, [&](const Notification&) { seen.push_back(cursorOfAll()); });
    for (const QString& path : {pictureFile(), textFile()}) {
        drop(path);
        EXPECT_EQ(cursorOfAll(), std::nullopt) << path.toStdString();
    }
    EXPECT_EQ(seen, std::vector(2, std::optional(Qt::WaitCursor)));
}

TEST_F(Waiting, a_picture_that_takes_long_is_named_before_its_reading_goes_on) {
    PaintCount count;
    caption().installEventFilter(&count);
    QStringList painted;
    QObject::connect(controller->imgViewIcon, &BorderImageView::readingTakesLong, &caption(), [&] {
        EXPECT_EQ(count.paints, 1);
        EXPECT_TRUE(controller->imgViewIcon->image().isNull()) << "the reading goes on";
        painted << caption().text();
    });
    controller->imgViewIcon->setPatience(LongWork::Milliseconds(0));
    drop(pictureFile());
    EXPECT_EQ(painted, QStringList(QStringLiteral("Reading 64x64.png…")));
    EXPECT_EQ(caption().text().section(u'\n', 0, 0), QStringLiteral("64x64.png, 64 × 64"));
}

TEST_F(Waiting, a_picture_that_is_there_at_once_changes_the_caption_once) {
    int told = 0;
    QObject::connect(controller->imgViewIcon, &BorderImageView::readingTakesLong, &caption(),
                     [&] { ++told; });
    controller->imgViewIcon->setPatience(LongWork::Milliseconds(60'000));
    drop(pictureFile());
    EXPECT_EQ(told, 0);
}

TEST_F(Waiting, nothing_that_the_user_does_meanwhile_comes_in_between) {
    PaintCount count;
    controller->imgViewIcon->installEventFilter(&count);
    controller->imgViewIcon->setPatience(LongWork::Milliseconds(0));
    queuePress(controller->imgViewIcon);
    drop(pictureFile(300, 300));
    EXPECT_EQ(count.presses, 0);
    Events::settle();
    EXPECT_EQ(count.presses, 1);
}

TEST_F(Waiting, a_long_name_is_cut_so_that_the_words_around_it_stay) {
    const QString path = pictures.filePath(QStringLiteral("n").repeated(200) + QStringLiteral(".png"));
    ASSERT_TRUE(Pictures::flat(10, 10, Qt::red).save(path, "PNG"));
    QString said;
    QObject::connect(controller->imgViewIcon, &BorderImageView::readingTakesLong, &caption(),
                     [&] { said = caption().text(); });
    controller->imgViewIcon->setPatience(LongWork::Milliseconds(0));
    drop(path);
    EXPECT_TRUE(said.startsWith(QStringLiteral("Reading n"))) << said.toStdString();
    EXPECT_LE(caption().fontMetrics().horizontalAdvance(said), caption().width());
}

#ifdef Q_OS_LINUX
/// The memory of the process, in MiB.
double residentMemory() {
    QFile file(QStringLiteral("/proc/self/statm"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) /
           (1 << 20);
}

TEST_F(Waiting, of_the_largest_picture_only_what_icons_need_is_kept) {
    const QString path = flatPicture(16384);
    drop(pictureFile());
    const double before = residentMemory();
    drop(path);
    EXPECT_EQ(controller->imgViewIcon->image().size(), QSizeF(16384, 16384));
    EXPECT_EQ(caption().text().section(u'\n', 0, 0), QStringLiteral("flat.png, 16384 × 16384"));
    // All its pixels take 1,365 MiB with their reduced copies.
    EXPECT_LT(residentMemory() - before, 36);
}
#endif

TEST_F(Waiting, a_picture_keeps_the_pixels_for_a_catalogue_with_larger_icons) {
    const auto keptSide = [&] {
        drop(flatPicture(4096));
        return controller->imgViewIcon->image().largestRaster().valueOr({}).width();
    };
    EXPECT_EQ(keptSide(), 2048) << "the largest icon, of 1024, with a margin";
    bundle.catalogue = pictures.filePath(QStringLiteral("ImageSizeFile.plist"));
    QFile file(bundle.catalogue);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "<plist version=\"1.0\"><array><dict><key>a</key><dict><key>Dimensions</key><string>{2000, 2000}"
        "</string><key>Name</key><string>a</string></dict></dict><dict/><dict/><dict/><dict/></array></"
        "plist>");
    file.close();
    EXPECT_EQ(keptSide(), 4096);
    EXPECT_TRUE(QFile::remove(bundle.catalogue));
    EXPECT_EQ(keptSide(), 4096) << "who knows what will be asked for";
}

} // namespace
