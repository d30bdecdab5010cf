// A window in the upper left corner of the screen. Its files can be dragged from it. Usage: DragSource
// FILE...
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
    explicit Source(const QStringList& paths) {
        for (const QString& path : paths)
            m_urls << QUrl::fromLocalFile(path);
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
        const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
        // Tells the test what the target has done.
        std::puts(action == Qt::CopyAction ? "copied" : action == Qt::IgnoreAction ? "ignored" : "other");
        std::fflush(stdout);
    }

  private:
    QList<QUrl> m_urls;
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Source source(QCoreApplication::arguments().mid(1));
    source.show();
    return QApplication::exec();
}
