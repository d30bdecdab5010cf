#include "cli/IcnsCommands.h"
#include "cli/InputFile.h"
#include "cli/Terminal.h"
#include "platform/icns/IcnsInspection.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace {

using Element = IcnsInspection::Element;

bool hasPicture(const Element& element) {
    return element.info.encoding != IcnsEncoding::Unknown;
}

/// A table's row before its columns have their widths.
using Row = std::array<QString, 5>;

Row rowOf(const Element& element) {
    const QSize& size = element.info.size;
    return {Terminal::escaped(element.type.text()), element.what,
            size.isValid() ? QStringLiteral("%1 × %2").arg(size.width()).arg(size.height()) : QString(),
            hasPicture(element) ? icnsEncodingName(element.info.encoding) : QString(),
            QString::number(element.bytes)};
}

QString line(const Row& row, const std::array<qsizetype, 5>& widths) {
    QString text;
    for (std::size_t i = 0; i < row.size(); ++i) {
        // Numbers stand to the right.
        const bool isNumber = i + 1 == row.size();
        const qsizetype width = isNumber ? -widths[i] : widths[i];
        const QString padding(std::abs(width) - row[i].size(), u' ');
        text += isNumber ? padding + row[i] : row[i] + padding + QLatin1String("  ");
    }
    return text;
}

bool printTable(const IcnsInspection& inspection) {
    std::vector<Row> rows{{QStringLiteral("type"), QStringLiteral("what"), QStringLiteral("pixels"),
                           QStringLiteral("encoding"), QStringLiteral("bytes")}};
    for (const Element& element : inspection.elements)
        rows.push_back(rowOf(element));
    std::array<qsizetype, 5> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    QStringList lines;
    for (const Row& row : rows)
        lines << line(row, widths);
    for (const Element& element : inspection.elements) {
        for (const QString& remark : element.remarks)
            lines << QStringLiteral("odd: %1: %2").arg(Terminal::escaped(element.type.text()), remark);
    }
    for (const QString& remark : inspection.remarks)
        lines << QStringLiteral("odd: %1").arg(remark);
    return Terminal::print(lines.join(u'\n'));
}

bool printJson(const IcnsListOptions& options, const IcnsInspection& inspection, qsizetype bytes) {
    QJsonArray elements;
    for (const Element& element : inspection.elements) {
        QJsonObject object{{QStringLiteral("type"), element.type.text()},
                           {QStringLiteral("what"), element.what},
                           {QStringLiteral("bytes"), element.bytes},
                           {QStringLiteral("remarks"), QJsonArray::fromStringList(element.remarks)}};
        if (hasPicture(element))
            object.insert(QStringLiteral("encoding"), icnsEncodingName(element.info.encoding));
        if (element.info.size.isValid()) {
            object.insert(QStringLiteral("width"), element.info.size.width());
            object.insert(QStringLiteral("height"), element.info.size.height());
        }
        elements.append(object);
    }
    const QJsonObject document{{QStringLiteral("file"), QFile::decodeName(options.file.c_str())},
                               {QStringLiteral("bytes"), bytes},
                               {QStringLiteral("elements"), elements},
                               {QStringLiteral("remarks"), QJsonArray::fromStringList(inspection.remarks)}};
    return Terminal::print(QString::fromUtf8(QJsonDocument(document).toJson()).trimmed());
}

} // namespace

int runIcnsList(const IcnsListOptions& options) {
    const std::optional<QByteArray> bytes = InputFile::readIcns(options.file);
    if (!bytes)
        return 1;
    const Result<IcnsInspection> inspection = inspectIcns(*bytes);
    if (!inspection)
        return InputFile::fail(options.file, inspection.error());
    const bool isPrinted =
        options.json ? printJson(options, *inspection, bytes->size()) : printTable(*inspection);
    return isPrinted ? 0 : Terminal::outputFailure();
}
