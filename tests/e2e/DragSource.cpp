// A window in the upper left corner of the screen. Its files or addresses can be dragged from it. It offers
// to copy and to move them, or to move them alone. Usage: DragSource [--move] FILE-OR-ADDRESS...
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

class Source final : public QWidget {
  public:
    explicit Source(QStringList items) {
        if (items.removeAll(QStringLiteral("--move")) > 0)
            m_offered = Qt::MoveAction;
        for (const QString& item : items)
            m_urls << (item.contains(QStringLiteral("://")) ? QUrl(item) : QUrl::fromLocalFile(item));
        setWindowTitle(QStringLiteral("DragSource"));
        setWindowFlag(Qt::X11BypassWindowManagerHint);
        setGeometry(0, 0, 60, 60);
    }

  protected:
    void mousePressEvent(QMouseEvent* /*event*/) override {
        auto* files = new QMimeData;
        files->setUrls(m_urls);
        // Qt deletes the drag later, because its data are asked for after exec has returned.
        auto* drag = new QDrag(this);
        drag->setMimeData(files);
        const Qt::DropAction action = drag->exec(m_offered, Qt::MoveAction);
        // Tells the test what the target has done.
        std::puts(action == Qt::CopyAction ? "copied" : action == Qt::IgnoreAction ? "ignored" : "other");
        std::fflush(stdout);
    }

  private:
    QList<QUrl> m_urls;
    Qt::DropActions m_offered = Qt::CopyAction | Qt::MoveAction;
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Source source(QCoreApplication::arguments().mid(1));
    source.show();
    return QApplication::exec();
}
