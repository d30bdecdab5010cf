#include "cli/text/JsonWriter.h"

#include "cli/text/Terminal.h"
#include "files/PathBytes.h"

#include <QLocale>

namespace {

QString quoted(const QString& text) {
    QString escaped = u'"' + QString();
    for (const QChar unit : PathBytes::withReplacements(text)) {
        if (unit == u'"' || unit == u'\\')
            escaped += QStringLiteral("\\") + unit;
        else if (unit == u'\n')
            escaped += QStringLiteral("\\n");
        else
            escaped += unit;
    }
    return Terminal::escapedJson(escaped) + u'"';
}

} // namespace

JsonWriter& JsonWriter::key(const char* name) {
    startLine();
    m_text += quoted(QString::fromLatin1(name)) + QStringLiteral(": ");
    m_hasKey = true;
    return *this;
}

void JsonWriter::value(const QString& text) {
    addValue(quoted(text));
}

void JsonWriter::value(double number) {
    addValue(QString::number(number, 'g', QLocale::FloatingPointShortest));
}

void JsonWriter::value(const QStringList& texts) {
    beginArray();
    for (const QString& text : texts)
        value(text);
    endArray();
}

bool JsonWriter::finish() {
    m_text += u'\n';
    print();
    return m_isPrinted;
}

void JsonWriter::addValue(const QString& text) {
    startLine();
    m_text += text;
}

void JsonWriter::begin(QChar bracket) {
    startLine();
    m_text += bracket;
    m_isFilled.push_back(false);
}

void JsonWriter::end(QChar bracket) {
    const bool isFilled = m_isFilled.back();
    m_isFilled.pop_back();
    if (isFilled)
        m_text += u'\n' + QString(static_cast<qsizetype>(2 * m_isFilled.size()), u' ');
    m_text += bracket;
}

/// Goes to where the next key or value stands: behind its key, or on a line of its own.
void JsonWriter::startLine() {
    constexpr qsizetype enough = 1 << 16;
    if (m_text.size() > enough)
        print();
    if (m_hasKey || m_isFilled.empty()) {
        m_hasKey = false;
        return;
    }
    m_text += m_isFilled.back() ? QStringLiteral(",\n") : QStringLiteral("\n");
    m_text += QString(static_cast<qsizetype>(2 * m_isFilled.size()), u' ');
    m_isFilled.back() = true;
}

void JsonWriter::print() {
    m_isPrinted = m_isPrinted && Terminal::printText(m_text);
    m_text.clear();
}
