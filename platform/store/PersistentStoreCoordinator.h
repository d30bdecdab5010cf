#pragma once

#include "platform/store/ManagedObjectModel.h"
#include "platform/store/StoreError.h"

#include <QVariantMap>

#include <map>

/// One object as a store holds it.
struct StoredObject {
    QString entity;
    QVariantMap values;

    bool operator==(const StoredObject&) const = default;
};

/// The objects of a store by their numbers, from 1 to `largestObjectNumber`.
inline constexpr qint64 largestObjectNumber = qint64{1} << 53;
using StoredObjects = std::map<qint64, StoredObject>;

/// A file of objects: an XML document, read and written as a whole.
///
///     <store format="1"><object entity="NAME" id="1"><value name="NAME"
///     type="TYPE">TEXT</value>…</object>…</store>
class PersistentStoreCoordinator {
  public:
    /// The type of the only kind of store.
    static const QString xmlStoreType;

    /// The model is kept by reference.
    explicit PersistentStoreCoordinator(const ManagedObjectModel& model) : m_model(model) {}

    /// Opens the store in the file `path`, which need not exist yet. One that can't be read, breaks off, is
    /// of a newer format or holds what the model does not know is an error; the file is not touched.
    bool addPersistentStoreWithType(const QString& type, const QString& path, StoreError* error = nullptr);

    const ManagedObjectModel& managedObjectModel() const { return m_model; }

    /// What the file holds.
    const StoredObjects& objects() const { return m_objects; }

    /// Puts `objects` in place of what the file holds, at once and synced to the disk, or leaves it as it is:
    /// also where another program has changed it since it was opened or saved.
    bool save(const StoredObjects& objects, StoreError* error = nullptr);

  private:
    const ManagedObjectModel& m_model;
    QString m_path;
    StoredObjects m_objects;

    /// Which file it was, to see whether it still is.
    struct FileState {
        bool exists = false;
        quint64 device = 0;
        quint64 number = 0;
        qint64 size = 0;
        qint64 seconds = 0;
        qint64 nanoseconds = 0;
        bool operator==(const FileState&) const = default;
    };
    FileState fileState() const;
    FileState m_fileState;
};
