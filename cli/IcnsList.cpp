#include "cli/IcnsCommands.h"
#include "cli/common/InputFile.h"
#include "cli/common/ProofOption.h"
#include "cli/text/ErrorDocument.h"
#include "cli/text/Terminal.h"
#include "files/PathBytes.h"
#include "imaging/icns/IcnsInspection.h"
#include "project/proof/ProofSets.h"

#include <QMap>

#include <algorithm>
#include <array>
#include <vector>

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

using ElementRow = std::array<QString, 5>;

ElementRow rowOf(const Element& element) {
    const QSize& size = element.info.size;
    return {Terminal::escaped(element.type.text()), icnsTypeDescription(element.type),
            size.isValid() ? QStringLiteral("%1 × %2").arg(size.width()).arg(size.height()) : QString(),
            hasPicture(element) ? icnsEncodingName(element.info.encoding) : QString(),
            QString::number(element.bytes)};
}

using Widths = std::array<qsizetype, 5>;

void widen(Widths& widths, const ElementRow& row) {
    for (std::size_t i = 0; i < row.size(); ++i)
        widths[i] = std::max(widths[i], row[i].size());
}

QString line(const ElementRow& row, const Widths& widths) {
    QString text;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const QString padding(widths[i] - row[i].size(), u' ');
        // The last column, a number, is right-aligned.
        text += i + 1 == row.size() ? padding + row[i] : row[i] + padding + QLatin1String("  ");
    }
    return text;
}

bool printTable(const IcnsInspection& inspection) {
    const ElementRow title{QStringLiteral("type"), QStringLiteral("what"), QStringLiteral("pixels"),
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
        lines.add(QStringLiteral("odd: %1: %2 more of the same type follow; only the first is used")
                      .arg(Terminal::escaped(FourCharCode(type).text()))
                      .arg(count));
    for (const QString& remark : inspection.remarks)
        lines.add(QStringLiteral("odd: %1").arg(remark));
    return lines.finish();
}

void write(JsonWriter& json, const Element& element) {
    QStringList remarks = element.remarks;
    if (element.isRepeated)
        remarks << QStringLiteral("another of the same type comes before it; only the first is used");
    json.beginObject();
    json.key("type").value(element.type.text());
    json.key("what").value(icnsTypeDescription(element.type));
    if (element.info.size.isValid()) {
        json.key("width").value(element.info.size.width());
        json.key("height").value(element.info.size.height());
    }
    if (hasPicture(element))
        json.key("encoding").value(icnsEncodingName(element.info.encoding));
    json.key("bytes").value(element.bytes);
    json.key("remarks").value(remarks);
    json.endObject();
}

bool printJson(const IcnsListOptions& options, const IcnsInspection& inspection, qint64 bytes,
               const std::vector<ToldError>& errors) {
    JsonWriter json;
    json.beginObject();
    json.key("file").value(PathBytes::decoded(options.file));
    json.key("bytes").value(bytes);
    json.key("elements").beginArray();
    for (const Element& element : inspection.elements)
        write(json, element);
    json.endArray();
    json.key("remarks").value(inspection.remarks);
    if (!options.proof.isEmpty() && errors.empty())
        json.key("proof").value(options.proof);
    ErrorDocument::writeMember(json, errors);
    json.endObject();
    return json.finish();
}

/// Reports why the file can't be listed, and returns the exit status.
int fail(const IcnsListOptions& options, const Error& error) {
    const int status = InputFile::fail(options.file, error);
    const ToldError told = ErrorDocument::told(PathBytes::decoded(options.file), error);
    if (options.json && !ErrorDocument::print(told))
        return Terminal::outputFailure();
    return status;
}

/// Writes the proof sheet. Elements that can't be shown are warnings.
Result<Done> writeProof(const IcnsListOptions& options, const QByteArray& bytes) {
    Result<ProofSheet> sheet = ProofSets::ofIcns(bytes);
    if (!sheet)
        return sheet.error();
    sheet->title = ProofOption::title(options.file);
    for (const QString& note : sheet->notes)
        Terminal::warning(note);
    return ProofOption::write(std::move(*sheet), options.proof);
}

} // namespace

int runIcnsList(const IcnsListOptions& options) {
    const Result<RegularFile::Part> file = InputFile::readIcns(options.file);
    if (!file)
        return fail(options, file.error());
    const Result<IcnsInspection> inspection = inspectIcns(file->bytes, file->fileSize);
    if (!inspection)
        return fail(options, inspection.error());
    std::vector<ToldError> errors;
    if (!options.proof.isEmpty()) {
        if (const Result<Done> written = writeProof(options, file->bytes); !written) {
            errors.push_back(ErrorDocument::told(options.proof, written.error()));
            Terminal::error(QStringLiteral("%1: %2").arg(options.proof, written.error().sentence));
        }
    }
    const bool isPrinted =
        options.json ? printJson(options, *inspection, file->fileSize, errors) : printTable(*inspection);
    if (!isPrinted)
        return Terminal::outputFailure();
    return errors.empty() ? 0 : 1;
}
