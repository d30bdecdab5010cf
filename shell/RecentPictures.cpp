#include "shell/RecentPictures.h"

#include "files/AtomicFile.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"

#include <QLockFile>
#include <QStandardPaths>
#include <QUrl>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr qint64 largestList = 8 << 20;
constexpr int lockMilliseconds = 200;

const QString program = QStringLiteral("Tobrimax");
const QString bookmarkElement = QStringLiteral("bookmark");
const QString infoElement = QStringLiteral("info");
const QString metadataElement = QStringLiteral("metadata");
const QString applicationsElement = QStringLiteral("bookmark:applications");
const QString applicationElement = QStringLiteral("bookmark:application");

QString addressOf(const QString& path) {
    return QStringLiteral("file://") +
           QString::fromLatin1(PathBytes::encoded(path).toPercentEncoding(QByteArrayLiteral("/")));
}

/// Empty where `address` is not of a file of this machine.
QString pathOf(const QString& address) {
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isLocalFile() || !url.host().isEmpty())
        return {};
    return PathBytes::decoded(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8()));
}

bool isOurs(const QXmlStreamReader& reader) {
    return reader.qualifiedName() == applicationElement &&
           reader.attributes().value(QLatin1String("name")) == program;
}

Result<QByteArray> bytesOf(const QString& path) {
    return RegularFile::read(PathBytes::encoded(path).toStdString(), largestList);
}

/// Copies a list, and notes in the copy that a file was opened.
class Noting {
  public:
    Noting(const QByteArray& list, QString address, const QDateTime& now)
        : m_reader(list),
          m_writer(&m_noted),
          m_address(std::move(address)),
          m_now(now.toUTC().toString(Qt::ISODateWithMs)) {
        // Names keep their prefixes, and so stay as they are.
        m_reader.setNamespaceProcessing(false);
    }

    /// Empty where the list is no such document.
    QByteArray noted() {
        bool isList = false;
        while (!m_reader.atEnd()) {
            m_reader.readNext();
            if (m_reader.hasError())
                return {};
            if (m_reader.isStartElement()) {
                isList = isList || m_reader.qualifiedName() == QLatin1String("xbel");
                copyStart();
            } else {
                if (m_reader.isEndElement())
                    beforeEnd(m_reader.qualifiedName().toString());
                m_writer.writeCurrentToken(m_reader);
            }
        }
        return isList ? m_noted : QByteArray();
    }

  private:
    void copyStart() {
        const auto name = m_reader.qualifiedName();
        if (name == bookmarkElement) {
            m_isInFile = m_reader.attributes().value(QLatin1String("href")) == m_address;
            m_isKnown = m_isKnown || m_isInFile;
            m_isNoted = false;
        }
        if (m_isInFile && name == bookmarkElement) {
            copyWith({{QStringLiteral("modified"), m_now}, {QStringLiteral("visited"), m_now}});
        } else if (m_isInFile && isOurs(m_reader)) {
            m_isNoted = true;
            const int count = m_reader.attributes().value(QLatin1String("count")).toInt();
            copyWith(
                {{QStringLiteral("modified"), m_now}, {QStringLiteral("count"), QString::number(count + 1)}});
        } else {
            copyWith({});
        }
    }

    /// The element that begins here, with these values in place of its own. The writer's own copy of a start
    /// would lose the prefix of its name.
    void copyWith(const std::vector<std::pair<QString, QString>>& values) {
        m_writer.writeStartElement(m_reader.qualifiedName().toString());
        for (const QXmlStreamAttribute& own : m_reader.attributes()) {
            const bool isReplaced = std::ranges::any_of(
                values, [&](const auto& value) { return own.qualifiedName() == value.first; });
            if (!isReplaced)
                m_writer.writeAttribute(own.qualifiedName().toString(), own.value().toString());
        }
        for (const auto& [name, value] : values)
            m_writer.writeAttribute(name, value);
    }

    void beforeEnd(const QString& name) {
        if (m_isInFile && name == applicationsElement && !m_isNoted) {
            writeApplication();
            m_isNoted = true;
        } else if (name == bookmarkElement) {
            m_isInFile = false;
        } else if (name == QLatin1String("xbel") && !m_isKnown) {
            writeBookmark();
        }
    }

    void writeApplication() {
        m_writer.writeEmptyElement(applicationElement);
        m_writer.writeAttribute(QStringLiteral("name"), program);
        m_writer.writeAttribute(QStringLiteral("exec"), QStringLiteral("tobrimax"));
        m_writer.writeAttribute(QStringLiteral("modified"), m_now);
        m_writer.writeAttribute(QStringLiteral("count"), QStringLiteral("1"));
    }

    void writeBookmark() {
        m_writer.writeCharacters(QStringLiteral("  "));
        m_writer.writeStartElement(bookmarkElement);
        m_writer.writeAttribute(QStringLiteral("href"), m_address);
        for (const char* time : {"added", "modified", "visited"})
            m_writer.writeAttribute(QString::fromLatin1(time), m_now);
        m_writer.writeStartElement(infoElement);
        m_writer.writeStartElement(metadataElement);
        m_writer.writeAttribute(QStringLiteral("owner"), QStringLiteral("http://freedesktop.org"));
        m_writer.writeStartElement(applicationsElement);
        writeApplication();
        for (int i = 0; i < 4; ++i)
            m_writer.writeEndElement();
        m_writer.writeCharacters(QStringLiteral("\n"));
    }

    QByteArray m_noted;
    QXmlStreamReader m_reader;
    QXmlStreamWriter m_writer;
    QString m_address;
    QString m_now;
    bool m_isInFile = false;
    bool m_isKnown = false;
    bool m_isNoted = false;
};

} // namespace

RecentPictures::RecentPictures()
    : RecentPictures(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                     QStringLiteral("/recently-used.xbel")) {}

RecentPictures::RecentPictures(QString path) : m_path(std::move(path)) {}

QStringList RecentPictures::paths() const {
    const Result<QByteArray> list = bytesOf(m_path);
    if (!list)
        return {};
    QXmlStreamReader reader(*list);
    reader.setNamespaceProcessing(false);
    std::vector<std::pair<QDateTime, QString>> found;
    QString path;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.qualifiedName() == bookmarkElement)
            path = pathOf(reader.attributes().value(QLatin1String("href")).toString());
        else if (isOurs(reader) && !path.isEmpty())
            found.emplace_back(
                QDateTime::fromString(reader.attributes().value(QLatin1String("modified")).toString(),
                                      Qt::ISODateWithMs),
                path);
    }
    std::ranges::stable_sort(found, [](const auto& a, const auto& b) { return a.first > b.first; });
    QStringList paths;
    for (const auto& [time, picture] : found) {
        if (paths.size() < most && !paths.contains(picture))
            paths << picture;
    }
    return paths;
}

void RecentPictures::add(const QString& picture, const QDateTime& now) const {
    // The lock file has the name that the libraries of other desktops give it.
    QLockFile lock(m_path + QStringLiteral(".lock"));
    const Result<QByteArray> before = bytesOf(m_path);
    if (!before || !lock.tryLock(lockMilliseconds))
        return;
    const Result<QByteArray> list = bytesOf(m_path);
    if (!list)
        return;
    const QByteArray noted = Noting(*list, addressOf(picture), now).noted();
    // A list that can't be written stays as it is.
    if (!noted.isEmpty())
        static_cast<void>(AtomicFile::write(m_path, noted));
}
