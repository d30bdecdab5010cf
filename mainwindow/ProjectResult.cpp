#include "mainwindow/ProjectResult.h"

#include "files/PathBytes.h"
#include "mainwindow/LabelSides.h"
#include "mainwindow/SentenceWords.h"
#include "platform/widgets/ScaledFont.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int partGap = 8;

QLabel* wrapped(const QString& text, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setText(text);
    return label;
}

/// A field that shows all of these lines, for people who copy them.
QPlainTextEdit* fieldOf(const QStringList& lines, QWidget* parent) {
    auto* field = new QPlainTextEdit(lines.join(u'\n'), parent);
    field->setReadOnly(true);
    field->setTabChangesFocus(true);
    field->setLineWrapMode(QPlainTextEdit::NoWrap);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont fixed = parent->font();
    fixed.setFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
    fixed.setFixedPitch(true);
    field->setFont(fixed);
    // Code is read from left to right in any language.
    field->setLayoutDirection(Qt::LeftToRight);
    constexpr int mostLines = 6;
    constexpr int around = 14;
    const int shown = qMin<int>(static_cast<int>(lines.size()), mostLines);
    const bool isWide = std::ranges::any_of(lines, [](const QString& line) { return line.size() > 70; });
    field->setFixedHeight((shown + (isWide ? 1 : 0)) * field->fontMetrics().lineSpacing() + around);
    return field;
}

} // namespace

ProjectResult::ProjectResult(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(partGap);
    m_heading = wrapped({}, this);
    m_folder = wrapped({}, this);
    m_files = new QTreeWidget(this);
    m_files->setAccessibleName(tr("Files"));
    m_files->setHeaderLabels({tr("File"), tr("Size")});
    m_files->setRootIsDecorated(false);
    m_files->setUniformRowHeights(true);
    m_files->setAlternatingRowColors(true);
    m_files->header()->setStretchLastSection(false);
    m_remarks = new QVBoxLayout;
    m_remarks->setSpacing(partGap);
    column->addWidget(m_heading);
    column->addWidget(m_folder);
    column->addWidget(m_files, 1);
    column->addLayout(m_remarks);
}

void ProjectResult::show(const ProjectOutcome& outcome, const QString& folder) {
    QFont large = font();
    large.setBold(true);
    m_heading->setFont(scaledFont(large, 1.3));
    const auto count = static_cast<int>(outcome.files.size());
    m_heading->setText(count == 1 ? tr("1 file was written")
                                  : tr("%1 files were written").arg(locale().toString(count)));
    m_folder->setText(PathBytes::withReplacements(folder));
    for (const GenerationObserver::File& file : outcome.files) {
        const QSize& size = file.pixelSize;
        auto* item = new QTreeWidgetItem(
            {PathBytes::withReplacements(file.path),
             size.isEmpty() ? QString() : tr("%1 × %2").arg(size.width()).arg(size.height())});
        item->setToolTip(0, item->text(0));
        m_files->addTopLevelItem(item);
    }
    m_files->resizeColumnToContents(1);
    m_files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    QStringList failures;
    for (const ProjectOutcome::Failure& failure : outcome.failures)
        failures << tr("Not written: %1: %2.")
                        .arg(PathBytes::withReplacements(failure.path), inUsersLanguage(failure.sentence));
    addWords(failures, tr("Failures"));
    QMap<QString, QStringList> lacking;
    for (const LayoutNote& note : outcome.notes)
        lacking[note.file] << note.line;
    for (auto note = lacking.cbegin(); note != lacking.cend(); ++note)
        addNote(note.key(), note.value());
    QStringList warnings;
    for (const Warning& warning : outcome.warnings)
        warnings << asSentence(inUsersLanguage(warning.sentence));
    addWords(warnings, tr("Warnings"));
    alignLabels(*this);
}

void ProjectResult::addWords(const QStringList& sentences, const QString& name) {
    if (sentences.isEmpty())
        return;
    QLabel* label = wrapped(sentences.join(u'\n'), this);
    label->setAccessibleName(QStringLiteral("%1: %2").arg(name, sentences.join(u'\n')));
    m_remarks->addWidget(label);
}

void ProjectResult::addNote(const QString& file, const QStringList& lines) {
    const QString shown = PathBytes::withReplacements(file);
    const QString sentence = lines.size() == 1
                                 ? tr("%1 lacks this line. Tobrimax does not change it.").arg(shown)
                                 : tr("%1 lacks these lines. Tobrimax does not change it.").arg(shown);
    m_remarks->addWidget(wrapped(sentence, this));
    auto* row = new QHBoxLayout;
    row->setSpacing(partGap);
    QPlainTextEdit* field = fieldOf(lines, this);
    field->setAccessibleName(sentence);
    auto* copy = new QPushButton(tr("Cop&y"), this);
    copy->setAutoDefault(false);
    //: %1 is the name of a file.
    copy->setAccessibleName(tr("Copy for %1").arg(shown));
    connect(copy, &QPushButton::clicked, field,
            [field] { QGuiApplication::clipboard()->setText(field->toPlainText()); });
    row->addWidget(field, 1);
    row->addWidget(copy, 0, Qt::AlignTop);
    m_remarks->addLayout(row);
}

void ProjectResult::addMessage(const QString& sentence) {
    addWords({sentence}, tr("Message"));
    alignLabels(*this);
}
