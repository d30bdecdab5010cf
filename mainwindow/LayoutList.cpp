#include "mainwindow/LayoutList.h"

#include "layouts/LayoutCatalogue.h"
#include "mainwindow/SentenceWords.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QStyle>

#include <algorithm>

namespace {

enum Column { Name, Purpose };

/// Beside a name, in points.
constexpr int besideName = 14;

} // namespace

LayoutList::LayoutList(QWidget* parent) : QTreeWidget(parent) {
    setColumnCount(2);
    // A screen reader says them.
    setHeaderLabels({tr("Layout"), tr("For")});
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setStretchLastSection(true);
    for (const QString& name : LayoutCatalogue::names()) {
        const Result<Layout> layout = LayoutCatalogue::load(name);
        const QString title = layout ? inUsersLanguage(layout->title) : layout.error().sentence;
        auto* item = new QTreeWidgetItem({name, title});
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Name, Qt::Unchecked);
        item->setData(Name, Qt::AccessibleTextRole, QStringLiteral("%1, %2").arg(name, title));
        item->setToolTip(Purpose, title);
        addTopLevelItem(item);
    }
    setCurrentItem(topLevelItem(0));
    clearSelection();
    fitColumns();
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* /*item*/, int column) {
        if (column == Name && !m_isFitting)
            Q_EMIT tickedChanged();
    });
    // The box itself is the name's. A click on the words beside it does the same.
    connect(this, &QTreeWidget::itemClicked, this, [](QTreeWidgetItem* item, int column) {
        if (column == Purpose)
            toggle(item);
    });
}

QStringList LayoutList::ticked() const {
    QStringList names;
    for (int row = 0; row < topLevelItemCount(); ++row) {
        if (topLevelItem(row)->checkState(Name) == Qt::Checked)
            names << topLevelItem(row)->text(Name);
    }
    return names;
}

void LayoutList::setTicked(const QStringList& names) {
    const QSignalBlocker quiet(this);
    for (int row = 0; row < topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = topLevelItem(row);
        item->setCheckState(Name, names.contains(item->text(Name)) ? Qt::Checked : Qt::Unchecked);
    }
    viewport()->update();
}

void LayoutList::toggle(QTreeWidgetItem* item) {
    item->setCheckState(Name, item->checkState(Name) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

void LayoutList::fitColumns() {
    m_isFitting = true;
    constexpr int padding = 6;
    const int box = style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this);
    int widest = 0;
    for (int row = 0; row < topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = topLevelItem(row);
        item->setSizeHint(Name, QSize(0, fontMetrics().height() + padding));
        widest = std::max(widest, fontMetrics().horizontalAdvance(item->text(Name)));
    }
    setColumnWidth(Name, box + besideName + widest + besideName);
    m_isFitting = false;
}

QSize LayoutList::sizeHint() const {
    constexpr int characters = 92;
    constexpr int rows = 10;
    return {characters * fontMetrics().averageCharWidth(), rows * (fontMetrics().height() + 6)};
}

QSize LayoutList::minimumSizeHint() const {
    constexpr int rows = 4;
    return {sizeHint().width() / 2, rows * (fontMetrics().height() + 6)};
}

void LayoutList::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && currentItem() != nullptr)
        toggle(currentItem());
    else
        QTreeWidget::keyPressEvent(event);
}

void LayoutList::changeEvent(QEvent* event) {
    QTreeWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitColumns();
}
