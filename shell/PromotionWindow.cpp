#include "shell/PromotionWindow.h"

#include "platform/widgets/BackgroundMover.h"
#include "platform/widgets/ScaledFont.h"
#include "shell/BFPageControl.h"
#include "shell/PageGround.h"
#include "ui_PromotionWindow.h"

#include <QBoxLayout>
#include <QScreen>
#include <QShortcut>

namespace {

/// The top left corner of a window that has the size of `wanted` and lies inside of `screen`, as near to
/// `wanted` as possible.
QPoint onScreen(const QRect& wanted, const QRect& screen) {
    return {qMax(screen.left(), qMin(wanted.left(), screen.right() + 1 - wanted.width())),
            qMax(screen.top(), qMin(wanted.top(), screen.bottom() + 1 - wanted.height()))};
}

/// The dots stand at a fixed distance from the bottom edge. A row of buttons that is too high to stand below
/// them stands above them.
void makeRoomForDots(QBoxLayout& column, QLayout& row, QSpacerItem& gapForDots) {
    constexpr int dotsFromBottom = 50;
    constexpr int dotsHeight = 25;
    constexpr int gap = 8;
    const int below = column.contentsMargins().bottom();
    if (row.sizeHint().height() + gap <= dotsFromBottom - below)
        return;
    column.removeItem(&row);
    row.setParent(nullptr);
    constexpr int gapAbove = 16;
    column.insertSpacing(column.indexOf(&gapForDots), gapAbove);
    column.insertLayout(column.indexOf(&gapForDots), &row);
    gapForDots.changeSize(0, dotsFromBottom + dotsHeight + gap - below, QSizePolicy::Minimum,
                          QSizePolicy::Fixed);
}

} // namespace

PromotionWindow::PromotionWindow() : m_window(std::make_unique<ELGRoundWindow>()) {
    Ui::PromotionWindow layout;
    layout.setupUi(m_window.get());
    // The lighter colour sets the card off from the window behind it.
    layout.contentView->setBackgroundRole(QPalette::Base);
    m_window->setContentView(layout.contentView);
    imgViewAppLogo = layout.imgViewAppLogo;
    lblAppName = layout.lblAppName;
    lblAppDesc = layout.lblAppDesc;
    btnCheckDontShow = layout.btnCheckDontShow;
    m_open = layout.btnOpenSuggestedApp;
    QFont heading = lblAppName->font();
    constexpr double headingScale = 1.6;
    heading.setBold(true);
    lblAppName->setFont(scaledFont(heading, headingScale));
    HighlightedButton::awakeAll(*m_window);
    // Room for the longest description, in any font.
    constexpr int lines = 3;
    lblAppDesc->setMinimumHeight(lines * lblAppDesc->fontMetrics().lineSpacing());
    lblAppName->setMinimumHeight(lblAppName->fontMetrics().lineSpacing());
    // Only polished parts have the style's fonts and sizes. The size of the window depends on these.
    for (QWidget* part : layout.contentView->findChildren<QWidget*>())
        part->ensurePolished();
    makeRoomForDots(*layout.column, *layout.bottomRow, *layout.pageControlGap);
    layout.contentView->layout()->activate();
    m_window->setFixedSize(m_window->size().expandedTo(layout.contentView->minimumSizeHint()));
    layout.contentView->resize(m_window->size());

    ELGRoundWindow* shown = m_window.get();
    connect(m_open, &QPushButton::clicked, this, [this] { Q_EMIT openClicked(m_open); });
    connect(layout.btnQuitApp, &QPushButton::clicked, this,
            [this, button = layout.btnQuitApp] { Q_EMIT quitClicked(button); });
    connect(layout.btnBack, &QPushButton::clicked, shown, &QWidget::hide);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), shown);
    connect(escape, &QShortcut::activated, shown, &QWidget::hide);
    new BackgroundMover(*shown);
}

PromotionWindow::~PromotionWindow() = default;

void PromotionWindow::setEmpty(bool isEmpty) {
    m_open->setHidden(isEmpty);
    imgViewAppLogo->setHidden(isEmpty);
    if (!isEmpty)
        return;
    lblAppName->setText(tr("You have them all"));
    lblAppDesc->setText(tr("Every other application of ours is installed already. Thank you!"));
}

void PromotionWindow::placePageControl(BFPageControl& control) {
    control.setVisible(control.numberOfPages() > 0);
    new PageGround(control);
    QWidget::setTabOrder(m_open, &control);
    QWidget::setTabOrder(&control, btnCheckDontShow);
}

void PromotionWindow::show(const QWidget* other) {
    if (other != nullptr && !m_window->isVisible())
        m_window->move(
            onScreen(QRect(other->frameGeometry().center() - m_window->rect().center(), m_window->size()),
                     other->screen()->availableGeometry()));
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}
