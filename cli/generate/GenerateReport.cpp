#include "cli/generate/GenerateReport.h"

#include "base/StageTimes.h"
#include "cli/common/InputFile.h"
#include "files/FileItem.h"
#include "files/PathBytes.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace {

QString byteText(qint64 bytes) {
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

/// For people, and for programs.
std::pair<QString, QString> namesOf(Difference::Kind kind) {
    switch (kind) {
    case Difference::Kind::Missing:
        return {QStringLiteral("missing"), QStringLiteral("missing")};
    case Difference::Kind::OtherSize:
        return {QStringLiteral("has another size"), QStringLiteral("other-size")};
    case Difference::Kind::OtherBytes:
        break;
    }
    return {QStringLiteral("differs"), QStringLiteral("other-bytes")};
}

QString counted(qsizetype count, const QString& one, const QString& many) {
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : many);
}

/// The milliseconds of each stage, of everything else, and in all.
std::vector<std::pair<const char*, double>> stageTimes() {
    std::vector<std::pair<const char*, double>> times;
    const double total = StageTimes::total();
    double rest = total;
    const auto milliseconds = StageTimes::milliseconds();
    for (std::size_t i = 0; i < milliseconds.size(); ++i) {
        times.emplace_back(StageTimes::names[i], milliseconds[i]);
        rest -= milliseconds[i];
    }
    times.emplace_back("other", rest);
    times.emplace_back("total", total);
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
    m_errors.push_back(ErrorDocument::told(path, error));
    if (m_progress != nullptr)
        m_progress->advance();
}

std::vector<std::pair<QString, QString>> GenerateReport::failures() const {
    std::vector<std::pair<QString, QString>> failures;
    for (const Failure& failure : m_failures)
        failures.emplace_back(shortPath(failure.path), failure.cause);
    return failures;
}

void GenerateReport::note(const QString& path, const QString& line) {
    m_notes << QStringLiteral("%1 lacks the line: %2").arg(path, line);
    if (!m_options.json)
        Terminal::note(ofPicture(m_notes.last()));
}

void GenerateReport::warn(const QString& sentence) {
    m_warnings << sentence;
    Terminal::warning(ofPicture(sentence));
}

void GenerateReport::fail(const QString& path, const Error& error) {
    m_errors.push_back(ErrorDocument::told(path, error));
    const QString subject = InputFile::shown(PathBytes::encoded(path).toStdString());
    Terminal::error(path.isEmpty() ? error.sentence : about(subject, error).sentence);
}

/// The sentence, with the picture in front of it if there are several.
QString GenerateReport::ofPicture(const QString& sentence) const {
    return m_options.isOneOfSeveral
               ? QStringLiteral("%1: %2").arg(PathBytes::decoded(m_options.picture), sentence)
               : sentence;
}

QString GenerateReport::shortPath(const QString& path) const {
    const QString folder = m_options.out.endsWith(u'/') ? m_options.out : m_options.out + u'/';
    return path.startsWith(folder) ? path.mid(folder.size()) : path;
}

/// Prints one line for each cause, with all files that could not be written because of it.
void GenerateReport::printFailures() const {
    const bool isCheck = m_options.purpose == GeneratePurpose::Check;
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
            Terminal::error(ofPicture(QStringLiteral("%1: %2").arg(paths.first(), cause)));
        else
            Terminal::error(QStringLiteral("%1: %2 (in %3: %4)")
                                .arg(counted(paths.size(), {},
                                             isCheck ? QStringLiteral("files not compared")
                                                     : QStringLiteral("files not written")),
                                     cause, m_options.out, paths.join(QLatin1String(", "))));
    }
}

QString GenerateReport::fileLine(const File& file) const {
    const QString size =
        file.pixelSize.isEmpty()
            ? QStringLiteral("text")
            : QStringLiteral("%1 × %2").arg(file.pixelSize.width()).arg(file.pixelSize.height());
    const QString line = QStringLiteral("  %1  %2").arg(Terminal::escaped(shortPath(file.path)), size);
    return isListed() ? line : QStringLiteral("%1  %2 bytes").arg(line).arg(file.bytes);
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
        if (m_options.isOneOfSeveral)
            continue;
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
                               .arg(countedFiles(), 9)
                               .arg(byteText(allBytes), 12)
                               .arg(folder)) &&
           isPrinted;
}

/// Prints what would be written.
bool GenerateReport::printList() const {
    const bool isPrinted =
        std::ranges::all_of(m_files, [this](const File& file) { return Terminal::print(fileLine(file)); });
    return isPrinted && Terminal::print(QStringLiteral("%1 would be written in %2")
                                            .arg(countedFiles(),
                                                 Terminal::escaped(FileItem::absolutePath(m_options.out))));
}

/// Prints how the files that are there differ from what would be written.
bool GenerateReport::printComparison() const {
    for (const Difference& difference : m_differences) {
        QString line = QStringLiteral("%1: %2").arg(difference.path, namesOf(difference.kind).first);
        if (!difference.remark.isEmpty())
            line += QStringLiteral(" (%1)").arg(difference.remark);
        if (!Terminal::print(Terminal::escaped(line)))
            return false;
    }
    if (!m_differences.empty() || !m_errors.empty())
        return true;
    return Terminal::print(
        QStringLiteral("%1 in %2 as they would be written")
            .arg(countedFiles(), Terminal::escaped(FileItem::absolutePath(m_options.out))));
}

QString GenerateReport::countedFiles() const {
    return counted(static_cast<qsizetype>(m_files.size()), QStringLiteral("file"), QStringLiteral("files"));
}

bool GenerateReport::printResult() const {
    switch (m_options.purpose) {
    case GeneratePurpose::Write:
        return m_files.empty() || printSummary();
    case GeneratePurpose::List:
        return m_files.empty() || printList();
    case GeneratePurpose::Check:
        return printComparison();
    case GeneratePurpose::Stream:
        break;
    }
    return true;
}

bool GenerateReport::printTimings() const {
    bool isPrinted = true;
    for (const auto& [name, milliseconds] : stageTimes())
        isPrinted =
            Terminal::print(
                QStringLiteral("%1 %2 ms").arg(QLatin1String(name), -9).arg(milliseconds, 10, 'f', 1)) &&
            isPrinted;
    return isPrinted;
}

bool GenerateReport::printJson() const {
    JsonWriter json;
    json.beginObject();
    json.key("picture").value(PathBytes::decoded(m_options.picture));
    json.key("out").value(m_options.out);
    json.key("files").beginArray();
    for (const File& file : m_files) {
        json.beginObject();
        json.key(m_options.layouts.isEmpty() ? "platform" : "layout").value(file.idiom);
        json.key("path").value(file.path);
        if (!file.pixelSize.isEmpty()) {
            json.key("width").value(file.pixelSize.width());
            json.key("height").value(file.pixelSize.height());
        }
        if (!isListed())
            json.key("bytes").value(file.bytes);
        json.endObject();
    }
    json.endArray();
    if (m_options.purpose == GeneratePurpose::Check) {
        json.key("differences").beginArray();
        for (const Difference& difference : m_differences) {
            json.beginObject();
            json.key("path").value(difference.path);
            json.key("difference").value(namesOf(difference.kind).second);
            json.endObject();
        }
        json.endArray();
    }
    if (!m_options.layouts.isEmpty())
        json.key("notes").value(m_notes);
    if (!m_proof.isEmpty())
        json.key("proof").value(m_proof);
    json.key("warnings").value(m_warnings);
    ErrorDocument::writeMember(json, m_errors);
    if (m_options.timings) {
        json.key("timings").beginObject();
        for (const auto& [name, milliseconds] : stageTimes())
            json.key(name).value(milliseconds);
        json.endObject();
    }
    json.endObject();
    return json.finish();
}

/// Sorts each platform's files by size, since a catalogue has no order. A layout has one.
void GenerateReport::sortFiles() {
    if (!m_options.layouts.isEmpty())
        return;
    const auto pixels = [](const File& file) {
        return qint64{file.pixelSize.width()} * file.pixelSize.height();
    };
    for (auto begin = m_files.begin(); begin != m_files.end();) {
        const auto end =
            std::find_if(begin, m_files.end(), [&](const File& file) { return file.idiom != begin->idiom; });
        std::ranges::stable_sort(begin, end, {}, pixels);
        begin = end;
    }
}

int GenerateReport::finish() {
    printFailures();
    sortFiles();
    bool isPrinted = true;
    if (m_options.json)
        isPrinted = printJson();
    else if (!m_options.quiet)
        isPrinted = printResult();
    if (m_options.timings && !m_options.json)
        isPrinted = printTimings() && isPrinted;
    if (!isPrinted)
        return Terminal::outputFailure();
    return m_errors.empty() && m_differences.empty() ? 0 : 1;
}
