#include "cli/generate/GenerateReport.h"

#include "base/StageTimes.h"
#include "files/FileItem.h"
#include "files/PathBytes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace {

QString byteText(qint64 bytes) {
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

QString counted(qsizetype count, const QString& one, const QString& many) {
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : many);
}

QJsonArray jsonTexts(const QStringList& texts) {
    QJsonArray array;
    for (const QString& text : texts)
        array.append(PathBytes::withReplacements(text));
    return array;
}

/// The milliseconds of each stage, of everything else, and in all.
std::vector<std::pair<QString, double>> stageTimes() {
    std::vector<std::pair<QString, double>> times;
    const double total = StageTimes::total();
    double rest = total;
    const auto milliseconds = StageTimes::milliseconds();
    for (std::size_t i = 0; i < milliseconds.size(); ++i) {
        times.emplace_back(QString::fromLatin1(StageTimes::names[i]), milliseconds[i]);
        rest -= milliseconds[i];
    }
    times.emplace_back(QStringLiteral("other"), rest);
    times.emplace_back(QStringLiteral("total"), total);
    return times;
}

} // namespace

void GenerateReport::fileWritten(const File& file) {
    // If two entries have the same name, they write the same file. It is listed once, with the last values.
    std::erase_if(m_files, [&](const File& other) { return other.path == file.path; });
    m_files.push_back(file);
    if (m_progress != nullptr)
        m_progress->advance();
}

void GenerateReport::failed(const QString& path, const Error& error) {
    m_failures.push_back({path, error.sentence});
    m_errors << QStringLiteral("%1: %2").arg(path, error.sentence);
    if (m_progress != nullptr)
        m_progress->advance();
}

void GenerateReport::note(const QString& path, const QString& line) {
    m_notes << QStringLiteral("%1 lacks the line: %2").arg(path, line);
    if (!m_options.json)
        Terminal::note(m_notes.last());
}

void GenerateReport::warn(const QString& sentence) {
    m_warnings << sentence;
    Terminal::warning(sentence);
}

void GenerateReport::fail(const QString& sentence) {
    m_errors << sentence;
    Terminal::error(sentence);
}

QString GenerateReport::shortPath(const QString& path) const {
    const QString folder = m_options.out.endsWith(u'/') ? m_options.out : m_options.out + u'/';
    return path.startsWith(folder) ? path.mid(folder.size()) : path;
}

/// Prints one line for each cause, with all files that could not be written because of it.
void GenerateReport::printFailures() const {
    QStringList causes;
    for (const Failure& failure : m_failures) {
        if (!causes.contains(failure.cause))
            causes << failure.cause;
    }
    for (const QString& cause : std::as_const(causes)) {
        QStringList paths;
        for (const Failure& failure : m_failures) {
            if (failure.cause == cause)
                paths << shortPath(failure.path);
        }
        if (paths.size() == 1)
            Terminal::error(QStringLiteral("%1: %2").arg(paths.first(), cause));
        else
            Terminal::error(QStringLiteral("%1: %2 (in %3: %4)")
                                .arg(counted(paths.size(), {}, QStringLiteral("files not written")), cause,
                                     m_options.out, paths.join(QLatin1String(", "))));
    }
}

QString GenerateReport::fileLine(const File& file) const {
    const QString size =
        file.pixelSize.isEmpty()
            ? QStringLiteral("text")
            : QStringLiteral("%1 × %2").arg(file.pixelSize.width()).arg(file.pixelSize.height());
    return QStringLiteral("  %1  %2  %3 bytes")
        .arg(Terminal::escaped(shortPath(file.path)), size, QString::number(file.bytes));
}

bool GenerateReport::printSummary() const {
    QStringList idioms;
    for (const File& file : m_files) {
        if (!idioms.contains(file.idiom))
            idioms << file.idiom;
    }
    qint64 allBytes = 0;
    bool isPrinted = true;
    for (const QString& idiom : std::as_const(idioms)) {
        qsizetype count = 0;
        qint64 bytes = 0;
        for (const File& file : m_files) {
            if (file.idiom != idiom)
                continue;
            ++count;
            bytes += file.bytes;
            if (m_options.verbose)
                isPrinted = Terminal::print(fileLine(file)) && isPrinted;
        }
        allBytes += bytes;
        isPrinted =
            Terminal::print(QStringLiteral("%1 %2 %3")
                                .arg(idiom, -9)
                                .arg(counted(count, QStringLiteral("file"), QStringLiteral("files")), 9)
                                .arg(byteText(bytes), 12)) &&
            isPrinted;
    }
    const QString folder = Terminal::escaped(FileItem::absolutePath(m_options.out));
    return Terminal::print(QStringLiteral("%1 %2 %3  in %4")
                               .arg(QStringLiteral("all"), -9)
                               .arg(counted(static_cast<qsizetype>(m_files.size()), QStringLiteral("file"),
                                            QStringLiteral("files")),
                                    9)
                               .arg(byteText(allBytes), 12)
                               .arg(folder)) &&
           isPrinted;
}

bool GenerateReport::printTimings() const {
    bool isPrinted = true;
    for (const auto& [name, milliseconds] : stageTimes())
        isPrinted = Terminal::print(QStringLiteral("%1 %2 ms").arg(name, -9).arg(milliseconds, 10, 'f', 1)) &&
                    isPrinted;
    return isPrinted;
}

bool GenerateReport::printJson() const {
    QJsonArray files;
    for (const File& file : m_files) {
        QJsonObject object{
            {m_options.layouts.isEmpty() ? QStringLiteral("platform") : QStringLiteral("layout"), file.idiom},
            {QStringLiteral("path"), PathBytes::withReplacements(file.path)},
            {QStringLiteral("bytes"), file.bytes}};
        if (!file.pixelSize.isEmpty()) {
            object.insert(QStringLiteral("width"), file.pixelSize.width());
            object.insert(QStringLiteral("height"), file.pixelSize.height());
        }
        files.append(object);
    }
    QJsonObject document{
        {QStringLiteral("picture"), PathBytes::withReplacements(PathBytes::decoded(m_options.picture))},
        {QStringLiteral("out"), PathBytes::withReplacements(m_options.out)},
        {QStringLiteral("files"), files},
        {QStringLiteral("warnings"), jsonTexts(m_warnings)},
        {QStringLiteral("errors"), jsonTexts(m_errors)}};
    if (!m_options.layouts.isEmpty())
        document.insert(QStringLiteral("notes"), jsonTexts(m_notes));
    if (m_options.timings) {
        QJsonObject timings;
        for (const auto& [name, milliseconds] : stageTimes())
            timings.insert(name, milliseconds);
        document.insert(QStringLiteral("timings"), timings);
    }
    return Terminal::print(
        Terminal::escapedJson(QString::fromUtf8(QJsonDocument(document).toJson()).trimmed()));
}

int GenerateReport::finish() {
    printFailures();
    bool isPrinted = true;
    if (m_options.json)
        isPrinted = printJson();
    else if (!m_options.quiet && !m_files.empty())
        isPrinted = printSummary();
    if (m_options.timings && !m_options.json)
        isPrinted = printTimings() && isPrinted;
    if (!isPrinted)
        return Terminal::outputFailure();
    return m_errors.isEmpty() ? 0 : 1;
}
