#include "cli/IcnsCommands.h"
#include "cli/common/InputFile.h"
#include "cli/text/Terminal.h"
#include "files/PathBytes.h"
#include "imaging/icns/IcnsInspection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <algorithm>
#include <array>

namespace {

using Element = IcnsInspection::Element;

bool hasPicture(const Element& element) {
    return element.info.encoding != IcnsEncoding::Unknown;
}

/// Prints many lines in large portions.
class Lines {
  public:
    void add(const QString& line) {
        constexpr qsizetype enough = 1 << 16;
        m_text += line;
        m_text += u'\n';
        if (m_text.size() > enough)
            print();
    }

    /// Prints the rest. Returns whether all lines could be printed.
    bool finish() {
        print();
        return m_isPrinted;
    }

  private:
    void print() {
        m_text.chop(1);
        m_isPrinted = m_isPrinted && (m_text.isEmpty() || Terminal::print(m_text));
        m_text.clear();
    }

    QString m_text;
    bool m_isPrinted = true;
};

using Row = std::array<QString, 5>;

Row rowOf(const Element& element) {
    const QSize& size = element.info.size;
    return {Terminal::escaped(element.type.text()), icnsTypeDescription(element.type),
            size.isValid() ? QStringLiteral("%1 × %2").arg(size.width()).arg(size.height()) : QString(),
            hasPicture(element) ? icnsEncodingName(element.info.encoding) : QString(),
            QString::number(element.bytes)};
}

using Widths = std::array<qsizetype, 5>;

void widen(Widths& widths, const Row& row) {
    for (std::size_t i = 0; i < row.size(); ++i)
        widths[i] = std::max(widths[i], row[i].size());
}

QString line(const Row& row, const Widths& widths) {
    QString text;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const QString padding(widths[i] - row[i].size(), u' ');
        // The last column, a number, is right-aligned.
        text += i + 1 == row.size() ? padding + row[i] : row[i] + padding + QLatin1String("  ");
    }
    return text;
}

bool printTable(const IcnsInspection& inspection) {
    const Row title{QStringLiteral("type"), QStringLiteral("what"), QStringLiteral("pixels"),
                    QStringLiteral("encoding"), QStringLiteral("bytes")};
    Widths widths{};
    widen(widths, title);
    QMap<quint32, int> repeated;
    for (const Element& element : inspection.elements) {
        widen(widths, rowOf(element));
        if (element.isRepeated)
            ++repeated[element.type.value];
    }
    Lines lines;
    lines.add(line(title, widths));
    for (const Element& element : inspection.elements)
        lines.add(line(rowOf(element), widths));
    for (const Element& element : inspection.elements) {
        for (const QString& remark : element.remarks)
            lines.add(QStringLiteral("odd: %1: %2").arg(Terminal::escaped(element.type.text()), remark));
    }
    for (const auto& [type, count] : repeated.asKeyValueRange())
        lines.add(
            QStringLiteral("odd: %1: %2 more of its type follow the first, which is the one that counts")
                .arg(Terminal::escaped(FourCharCode(type).text()))
                .arg(count));
    for (const QString& remark : inspection.remarks)
        lines.add(QStringLiteral("odd: %1").arg(remark));
    return lines.finish();
}

QString compact(const QJsonObject& object) {
    return Terminal::escapedJson(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

QJsonObject jsonOf(const Element& element) {
    QStringList remarks = element.remarks;
    if (element.isRepeated)
        remarks << QStringLiteral("another of its type stands before it, which is the one that counts");
    QJsonObject object{{QStringLiteral("type"), element.type.text()},
                       {QStringLiteral("what"), icnsTypeDescription(element.type)},
                       {QStringLiteral("bytes"), element.bytes},
                       {QStringLiteral("remarks"), QJsonArray::fromStringList(remarks)}};
    if (hasPicture(element))
        object.insert(QStringLiteral("encoding"), icnsEncodingName(element.info.encoding));
    if (element.info.size.isValid()) {
        object.insert(QStringLiteral("width"), element.info.size.width());
        object.insert(QStringLiteral("height"), element.info.size.height());
    }
    return object;
}

/// Prints one document in portions, since a file may have very many elements.
bool printJson(const IcnsListOptions& options, const IcnsInspection& inspection, qint64 bytes) {
    const QString head =
        compact({{QStringLiteral("file"), PathBytes::withReplacements(PathBytes::decoded(options.file))},
                 {QStringLiteral("bytes"), bytes},
                 {QStringLiteral("remarks"), QJsonArray::fromStringList(inspection.remarks)}});
    Lines lines;
    lines.add(head.chopped(1) + QStringLiteral(",\"elements\":["));
    for (std::size_t i = 0; i < inspection.elements.size(); ++i)
        lines.add(compact(jsonOf(inspection.elements[i])) +
                  (i + 1 < inspection.elements.size() ? QStringLiteral(",") : QString()));
    lines.add(QStringLiteral("]}"));
    return lines.finish();
}

} // namespace

int runIcnsList(const IcnsListOptions& options) {
    const std::optional<RegularFile::Part> file = InputFile::readIcns(options.file);
    if (!file)
        return 1;
    const Result<IcnsInspection> inspection = inspectIcns(file->bytes, file->fileSize);
    if (!inspection)
        return InputFile::fail(options.file, inspection.error());
    const bool isPrinted =
        options.json ? printJson(options, *inspection, file->fileSize) : printTable(*inspection);
    return isPrinted ? 0 : Terminal::outputFailure();
}
