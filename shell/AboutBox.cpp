#include "shell/AboutBox.h"

#include "platform/widgets/ScaledFont.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <array>

namespace {

struct Library {
    const char* name;
    const char* purpose;
    const char* licence;
};

constexpr std::array libraries{
    Library{"Qt", QT_TRANSLATE_NOOP("AboutBox", "windows, BMP and WebP pictures"), "LGPL 3"},
    Library{"librsvg", QT_TRANSLATE_NOOP("AboutBox", "SVG pictures"), "LGPL 2.1 or later"},
    Library{"cairo", QT_TRANSLATE_NOOP("AboutBox", "SVG pictures"), "LGPL 2.1 or MPL 1.1"},
    Library{"Expat", QT_TRANSLATE_NOOP("AboutBox", "SVG pictures"), "MIT"},
    Library{"fontconfig", QT_TRANSLATE_NOOP("AboutBox", "fonts of SVG pictures"), "MIT"},
    Library{"libseccomp", QT_TRANSLATE_NOOP("AboutBox", "limits of what draws SVG pictures"), "LGPL 2.1"},
    Library{"Little CMS", QT_TRANSLATE_NOOP("AboutBox", "colour profiles"), "MIT"},
    Library{"libpng", QT_TRANSLATE_NOOP("AboutBox", "PNG pictures"), "libpng 2.0"},
    Library{"libjpeg-turbo", QT_TRANSLATE_NOOP("AboutBox", "JPEG pictures"), "IJG and BSD 3-clause"},
    Library{"libtiff", QT_TRANSLATE_NOOP("AboutBox", "TIFF pictures"), "libtiff"},
    Library{"giflib", QT_TRANSLATE_NOOP("AboutBox", "GIF pictures"), "MIT"},
    Library{"OpenJPEG", QT_TRANSLATE_NOOP("AboutBox", "JPEG 2000 pictures"), "BSD 2-clause"},
    Library{"libdeflate", QT_TRANSLATE_NOOP("AboutBox", "PNG compression, compressed SVG pictures"), "MIT"},
    Library{"ISA-L", QT_TRANSLATE_NOOP("AboutBox", "PNG decompression"), "BSD 3-clause"},
    Library{"libplist", QT_TRANSLATE_NOOP("AboutBox", "property lists"), "LGPL 2.1 or later"},
    Library{"Highway", QT_TRANSLATE_NOOP("AboutBox", "portable SIMD"), "Apache 2.0 or BSD 3-clause"},
};

constexpr int gap = 8;

/// The program's icon, its name and its version.
QLayout* makeHeading(double devicePixelRatio) {
    constexpr int iconSize = 64;
    auto* heading = new QHBoxLayout;
    heading->setSpacing(2 * gap);
    auto* icon = new QLabel;
    icon->setPixmap(QGuiApplication::windowIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatio));
    heading->addWidget(icon);
    auto* words = new QVBoxLayout;
    words->setSpacing(gap / 2);
    auto* name = new QLabel(QStringLiteral("Tobrimax"));
    QFont large = name->font();
    large.setBold(true);
    name->setFont(scaledFont(large, 1.8));
    words->addStretch();
    words->addWidget(name);
    words->addWidget(new QLabel(AboutBox::tr("Version %1").arg(QCoreApplication::applicationVersion())));
    words->addStretch();
    heading->addLayout(words, 1);
    return heading;
}

QWidget* makeLibraryTable() {
    auto* table = new QTreeWidget;
    table->setAccessibleName(AboutBox::tr("Libraries"));
    table->setHeaderLabels({AboutBox::tr("Library"), AboutBox::tr("For"), AboutBox::tr("Licence")});
    table->setRootIsDecorated(false);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    for (const Library& library : libraries) {
        const QString version =
            qstrcmp(library.name, "Qt") == 0 ? QLatin1Char(' ') + QString::fromLatin1(qVersion()) : QString();
        table->addTopLevelItem(
            new QTreeWidgetItem({QString::fromLatin1(library.name) + version, AboutBox::tr(library.purpose),
                                 QString::fromLatin1(library.licence)}));
    }
    int width = 2 * table->frameWidth() + table->fontMetrics().averageCharWidth() * 4;
    for (int column = 0; column < table->columnCount(); ++column) {
        table->resizeColumnToContents(column);
        width += table->columnWidth(column) + gap;
        table->setColumnWidth(column, table->columnWidth(column) + gap);
    }
    const int rows = table->topLevelItemCount() + 2;
    table->setMinimumSize(width, (table->fontMetrics().height() + 2) * rows);
    return table;
}

} // namespace

AboutBox::AboutBox(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("About Tobrimax"));
    setAttribute(Qt::WA_DeleteOnClose);
    constexpr int margin = 24;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(gap);
    layout->addLayout(makeHeading(devicePixelRatioF()));
    layout->addSpacing(gap);
    auto* about =
        new QLabel(tr("One picture in, the app icons of every platform out. Free software under the "
                      "MIT licence. It is made with these libraries:"));
    about->setWordWrap(true);
    layout->addWidget(about);
    layout->addWidget(makeLibraryTable(), 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    layout->addSpacing(gap);
    layout->addWidget(buttons);
    buttons->button(QDialogButtonBox::Close)->setFocus();
}
