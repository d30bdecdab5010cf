#include "platform/store/PersistentStoreCoordinator.h"

#include "files/AtomicFile.h"
#include "files/FileTime.h"
#include "files/RegularFile.h"
#include "platform/store/AttributeText.h"

#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

const QString PersistentStoreCoordinator::xmlStoreType = QStringLiteral("XML");

namespace {

constexpr int format = 1;
constexpr qint64 largestFile = qint64{256} << 20;

/// Reads a store's document. The first error ends the reading.
class Reader {
  public:
    Reader(const QByteArray& bytes, const ManagedObjectModel& model) : m_xml(bytes), m_model(model) {}

    std::optional<StoredObjects> read() {
        while (!m_xml.atEnd() && !m_error) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::DTD:
                fail(StoreErrorCode::Corrupt, QStringLiteral("The document declares a type."));
                break;
            case QXmlStreamReader::StartElement:
                readStore();
                break;
            default:
                break;
            }
        }
        if (m_xml.hasError() && !m_error)
            fail(StoreErrorCode::Corrupt, m_xml.errorString());
        return m_error ? std::nullopt : std::optional(std::move(m_objects));
    }

    const StoreError& error() const { return *m_error; }

  private:
    void fail(StoreErrorCode code, const QString& description) { m_error = storeError(code, description); }

    QString attribute(const char* name) const {
        return m_xml.attributes().value(QLatin1String(name)).toString();
    }

    /// Goes to the next child of the current element, or to the end of the element. Tells whether there is a
    /// child. Text between the children is an error.
    bool nextChild() {
        while (!m_error && !m_xml.atEnd()) {
            const QXmlStreamReader::TokenType token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement)
                return true;
            if (token == QXmlStreamReader::EndElement)
                return false;
            if (token == QXmlStreamReader::Characters && !m_xml.isWhitespace())
                fail(StoreErrorCode::Corrupt, QStringLiteral("There is text where none belongs."));
        }
        return false;
    }

    void readStore() {
        bool isNumber = false;
        const int found = attribute("format").toInt(&isNumber);
        if (m_xml.name() != QLatin1String("store") || !isNumber || m_xml.attributes().size() != 1)
            fail(StoreErrorCode::Corrupt, QStringLiteral("The document is no store."));
        else if (found != format)
            fail(StoreErrorCode::NewerFormat,
                 QStringLiteral("The store has format %1; this program knows %2.").arg(found).arg(format));
        while (nextChild())
            readObject();
    }

    void readObject() {
        const EntityDescription* entity = m_model.entity(attribute("entity"));
        bool isNumber = false;
        const qint64 id = attribute("id").toLongLong(&isNumber);
        if (m_xml.name() != QLatin1String("object") || m_xml.attributes().size() != 2 || !isNumber ||
            id < 1 || id > largestObjectNumber || m_objects.contains(id)) {
            fail(StoreErrorCode::Corrupt, QStringLiteral("An object has no number of its own."));
            return;
        }
        if (entity == nullptr) {
            fail(StoreErrorCode::WrongModel,
                 QStringLiteral("The model has no entity \"%1\".").arg(attribute("entity")));
            return;
        }
        StoredObject& object = m_objects[id];
        object.entity = entity->name;
        while (nextChild())
            readValue(*entity, object);
    }

    void readValue(const EntityDescription& entity, StoredObject& object) {
        const QString name = attribute("name");
        if (m_xml.name() != QLatin1String("value") || m_xml.attributes().size() != 2 ||
            object.values.contains(name)) {
            fail(StoreErrorCode::Corrupt,
                 QStringLiteral("An object has a part that is no value, or has it twice."));
            return;
        }
        const AttributeDescription* description = entity.attribute(name);
        if (description == nullptr || attribute("type") != nameOf(description->type)) {
            fail(StoreErrorCode::WrongModel,
                 QStringLiteral("The model has no attribute \"%1\" of that type in \"%2\".")
                     .arg(name, entity.name));
            return;
        }
        const std::optional<QVariant> value = attributeFromText(m_xml.readElementText(), description->type);
        if (!value)
            fail(StoreErrorCode::Corrupt,
                 QStringLiteral("The value of \"%1\" is of no such type.").arg(name));
        else
            object.values.insert(name, *value);
    }

    QXmlStreamReader m_xml;
    const ManagedObjectModel& m_model;
    StoredObjects m_objects;
    std::optional<StoreError> m_error;
};

QByteArray document(const StoredObjects& objects, const ManagedObjectModel& model) {
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("store"));
    xml.writeAttribute(QStringLiteral("format"), QString::number(format));
    for (const auto& [id, object] : objects) {
        const EntityDescription* entity = model.entity(object.entity);
        xml.writeStartElement(QStringLiteral("object"));
        xml.writeAttribute(QStringLiteral("entity"), object.entity);
        xml.writeAttribute(QStringLiteral("id"), QString::number(id));
        for (auto value = object.values.begin(); value != object.values.end(); ++value) {
            const AttributeType type = entity->attribute(value.key())->type;
            xml.writeStartElement(QStringLiteral("value"));
            xml.writeAttribute(QStringLiteral("name"), value.key());
            xml.writeAttribute(QStringLiteral("type"), nameOf(type));
            xml.writeCharacters(attributeText(value.value(), type));
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    // Nothing follows the last end tag. A file that breaks off anywhere is therefore recognised as broken.
    xml.writeEndElement();
    return bytes;
}

bool hand(StoreError* to, StoreError error) {
    if (to != nullptr)
        *to = std::move(error);
    return false;
}

/// The error of a save that has failed: what could not be saved, and where. `cause` tells why.
StoreError notSaved(const QString& path, const QString& cause) {
    StoreError error =
        storeError(StoreErrorCode::NotWritable,
                   QStringLiteral("The application's data could not be saved in \"%1\"").arg(path));
    error.localizedFailureReason = cause;
    return error;
}

} // namespace

PersistentStoreCoordinator::FileState PersistentStoreCoordinator::fileState() const {
    struct stat status = {};
    if (stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return {};
    const timespec changed = modificationTime(status);
    return {true,
            static_cast<quint64>(status.st_dev),
            static_cast<quint64>(status.st_ino),
            status.st_size,
            changed.tv_sec,
            changed.tv_nsec};
}

bool PersistentStoreCoordinator::addPersistentStoreWithType(const QString& type, const QString& path,
                                                            StoreError* error) {
    if (type != xmlStoreType)
        return hand(error, storeError(StoreErrorCode::NotReadable,
                                      QStringLiteral("There is no store of the type %1.").arg(type)));
    m_path = path;
    m_fileState = fileState();
    const Result<QByteArray> bytes = RegularFile::read(QFile::encodeName(path).toStdString(), largestFile);
    if (!bytes && bytes.error().code != ErrorCode::NotFound)
        return hand(error, storeError(StoreErrorCode::NotReadable, bytes.error().sentence));
    if (bytes) {
        Reader reader(*bytes, m_model);
        std::optional<StoredObjects> objects = reader.read();
        if (!objects)
            return hand(error, reader.error());
        m_objects = std::move(*objects);
    }
    return true;
}

bool PersistentStoreCoordinator::save(const StoredObjects& objects, StoreError* error) {
    if (fileState() != m_fileState)
        return hand(error, notSaved(m_path, QStringLiteral("Another program has changed the file.")));
    const QByteArray bytes = document(objects, m_model);
    const Result<Done> written = AtomicFile::write(m_path, bytes, {AtomicFile::Durability::Synced});
    if (!written) {
        // The file may be in place, but perhaps not on the disk. The next save then does not take it for the
        // file of another program.
        const FileState state = fileState();
        const Result<QByteArray> found =
            RegularFile::read(QFile::encodeName(m_path).toStdString(), largestFile);
        if (found && *found == bytes)
            m_fileState = state;
        return hand(error, notSaved(m_path, written.error().sentence));
    }
    m_objects = objects;
    m_fileState = fileState();
    return true;
}
