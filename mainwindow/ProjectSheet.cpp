#include "mainwindow/ProjectSheet.h"

#include "files/PathBytes.h"
#include "imaging/svg/SvgTime.h"
#include "mainwindow/LabelSides.h"
#include "mainwindow/SentenceWords.h"
#include "platform/widgets/ChangeFollower.h"
#include "platform/widgets/WaitCursor.h"
#include "ui_ProjectSheet.h"

#include <QDir>
#include <QFileDialog>
#include <QScreen>
#include <QScrollBar>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace {

/// The value beside the slider is as wide as any.
constexpr double widestPadding = 0.3888;

/// As the value beside the slider says it, with two decimals in percent.
double roundedPart(float value) {
    constexpr double steps = 10000;
    return std::round(static_cast<double>(value) * steps) / steps;
}

} // namespace

ProjectSheet::ProjectSheet(QWidget* parent, ShownPicture picture, const IconStyle& style,
                           ProjectSettings& settings, Workspace& workspace)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::ProjectSheet>()),
      m_picture(std::move(picture)),
      m_generation(m_picture, style),
      m_settings(settings),
      m_workspace(workspace) {
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    alignLabels(*this);
    fill();
    follow();
    refresh();
    resize(firstSize());
}

ProjectSheet::~ProjectSheet() = default;

/// Puts the settings into the controls.
void ProjectSheet::fill() {
    m_ui->darkFrame->surround(*m_ui->darkWell);
    m_ui->tintedFrame->surround(*m_ui->tintedWell);
    m_ui->foregroundFrame->surround(*m_ui->foregroundWell);
    m_ui->monochromeFrame->surround(*m_ui->monochromeWell);
    m_ui->layoutList->setTicked(m_settings.layouts);
    m_ui->fitSelection->setCurrentIndex(static_cast<int>(m_settings.fit.shape));
    m_ui->paddingSlider->setFloatValue(static_cast<float>(m_settings.fit.padding));
    m_ui->paddingValue->setText(m_ui->paddingSlider->valueText());
    new ChangeFollower(*m_ui->paddingValue, QEvent::FontChange, *m_ui->paddingValue, [this] {
        m_ui->paddingValue->setMinimumWidth(m_ui->paddingValue->fontMetrics().horizontalAdvance(
            m_ui->paddingSlider->percentText(widestPadding)));
    });
    for (QPushButton* button : findChildren<QPushButton*>())
        new ChangeFollower(*button, QEvent::FontChange, *button, [button] {
            constexpr int around = 6;
            const QFontMetrics metrics = button->fontMetrics();
            button->setMinimumWidth(metrics.size(Qt::TextShowMnemonic, button->text()).width() +
                                    around * metrics.averageCharWidth());
        });
    new ChangeFollower(*m_ui->proofPreview, QEvent::FontChange, *m_ui->proofArea, [this] {
        const int bar = m_ui->proofArea->verticalScrollBar()->sizeHint().width();
        m_ui->proofArea->setMinimumWidth(m_ui->proofPreview->minimumSizeHint().width() + bar + 2);
    });
    m_ui->backgroundWell->setColor(m_settings.background.value_or(Color{1, 1, 1, 1}));
    m_ui->darkWell->setPicture(m_settings.dark);
    m_ui->tintedWell->setPicture(m_settings.tinted);
    m_ui->foregroundWell->setPicture(m_settings.foreground);
    m_ui->monochromeWell->setPicture(m_settings.monochrome);
    m_ui->folderEdit->setText(m_settings.folder);
}

void ProjectSheet::follow() {
    connect(m_ui->layoutList, &LayoutList::tickedChanged, this, &ProjectSheet::changeLayouts);
    connect(m_ui->folderEdit, &QLineEdit::textChanged, this, &ProjectSheet::changeLayouts);
    connect(m_ui->fitSelection, &QComboBox::activated, this, &ProjectSheet::refreshSoon);
    connect(m_ui->paddingSlider, &FloatSlider::action, this, &ProjectSheet::refreshSoon);
    connect(m_ui->backgroundWell, &ColorWell::action, this, [this] {
        m_settings.background = m_ui->backgroundWell->color();
        refreshSoon();
    });
    for (PictureWell* well : {m_ui->darkWell, m_ui->tintedWell, m_ui->foregroundWell, m_ui->monochromeWell}) {
        connect(well, &PictureWell::pictureChanged, this, &ProjectSheet::refreshSoon);
        connect(well, &PictureWell::pictureRefused, this, &ProjectSheet::refusePicture);
    }
    connect(m_ui->chooseButton, &QPushButton::clicked, this, &ProjectSheet::chooseFolder);
    connect(m_ui->generateButton, &QPushButton::clicked, this, &ProjectSheet::generate);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->openButton, &QPushButton::clicked, this, &ProjectSheet::openFolder);
    connect(m_ui->doneButton, &QPushButton::clicked, this, &QDialog::accept);
}

void ProjectSheet::done(int result) {
    readControls();
    QDialog::done(result);
}

void ProjectSheet::readControls() {
    m_settings.layouts = m_ui->layoutList->ticked();
    m_settings.fit = {static_cast<PictureFit::Shape>(m_ui->fitSelection->currentIndex()),
                      roundedPart(m_ui->paddingSlider->floatValue())};
    m_settings.dark = m_ui->darkWell->picture();
    m_settings.tinted = m_ui->tintedWell->picture();
    m_settings.foreground = m_ui->foregroundWell->picture();
    m_settings.monochrome = m_ui->monochromeWell->picture();
    m_settings.folder = m_ui->folderEdit->text();
}

void ProjectSheet::changeLayouts() {
    m_areLayoutsNew = true;
    refreshSoon();
}

void ProjectSheet::refreshSoon() {
    if (m_isRefreshing)
        return;
    m_isRefreshing = true;
    QMetaObject::invokeMethod(this, &ProjectSheet::refresh, Qt::QueuedConnection);
}

/// What is still to be done before icons can be written; empty where nothing is.
QString ProjectSheet::lacking() const {
    if (m_settings.layouts.isEmpty())
        return tr("Tick what the project needs.");
    return m_settings.folder.isEmpty() ? tr("Choose the project's folder.") : QString();
}

void ProjectSheet::refresh() {
    m_isRefreshing = false;
    readControls();
    if (std::exchange(m_areLayoutsNew, false))
        m_layouts = LayoutSet::load(m_settings.layouts, m_settings.folder, m_picture.name());
    const SvgRequest request(svgTimeInWindow.seconds);
    const Result<SourcedPictures> pictures =
        m_layouts ? m_generation.preview(*m_layouts, m_settings) : m_layouts.error();
    QStringList warnings;
    if (!pictures || m_settings.layouts.isEmpty()) {
        m_ui->proofPreview->setWords(pictures ? tr("The icons of the layouts that are ticked") : QString());
    } else {
        m_ui->proofPreview->setProof(*m_layouts, pictures->pictures,
                                     {m_generation.style(), m_settings.background});
        for (const Warning& warning : pictures->warnings)
            warnings << asSentence(inUsersLanguage(warning.sentence));
    }
    m_ui->warningsLabel->setText(warnings.join(u'\n'));
    m_ui->warningsLabel->setVisible(!warnings.isEmpty());
    if (pictures)
        tell(lacking(), lacking().isEmpty());
    else
        tell(asSentence(inUsersLanguage(pictures.error().sentence)), false);
}

void ProjectSheet::tell(const QString& sentence, bool isReady) {
    m_ui->messageLabel->setText(sentence);
    m_ui->generateButton->setEnabled(isReady);
}

void ProjectSheet::refusePicture(const QString& path, const QString& sentence) {
    const QString name = PathBytes::withReplacements(path.section(u'/', -1));
    tell(asSentence(QStringLiteral("%1: %2").arg(name, inUsersLanguage(sentence))),
         m_ui->generateButton->isEnabled());
}

void ProjectSheet::chooseFolder() {
    auto* panel = new QFileDialog(this);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    const QString folder = m_ui->folderEdit->text();
    panel->setDirectory(folder.isEmpty() ? QDir::homePath() : folder);
    connect(panel, &QFileDialog::accepted, this, [this, panel] {
        m_ui->folderEdit->setText(panel->selectedUrls().value(0).toLocalFile());
        m_ui->generateButton->setFocus();
    });
    panel->open();
}

void ProjectSheet::generate() {
    readControls();
    const WaitCursor cursor;
    const Result<ProjectOutcome> outcome = m_generation.write(m_settings);
    if (!outcome) {
        tell(asSentence(inUsersLanguage(outcome.error().sentence)), true);
        return;
    }
    m_ui->projectResult->show(*outcome, m_settings.folder);
    m_ui->pages->setCurrentWidget(m_ui->resultPage);
    m_ui->doneButton->setDefault(true);
    m_ui->doneButton->setFocus();
}

void ProjectSheet::openFolder() {
    if (!m_workspace.openURL(QUrl::fromLocalFile(m_settings.folder)))
        m_ui->projectResult->addMessage(tr("The folder could not be opened."));
}

/// As large as the sheet likes to be, where the display has the room.
QSize ProjectSheet::firstSize() const {
    constexpr int characters = 190;
    constexpr int lines = 46;
    constexpr double partOfDisplay = 0.92;
    const QSize wanted(characters * fontMetrics().averageCharWidth(), lines * fontMetrics().height());
    const QSize least = minimumSizeHint();
    return wanted.boundedTo(screen()->availableGeometry().size() * partOfDisplay).expandedTo(least);
}
