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
    /// The only type of store.
    static const QString xmlStoreType;

    /// Keeps `model` by reference.
    explicit PersistentStoreCoordinator(const ManagedObjectModel& model) : m_model(model) {}

    /// Opens the store in the file `path`. A file that does not exist yet is an empty store. False, with
    /// `error`, for another type, and for a file that can't be read, breaks off, has a newer format or holds
    /// something that the model does not know. The file is not touched.
    bool addPersistentStoreWithType(const QString& type, const QString& path, StoreError* error = nullptr);

    const ManagedObjectModel& managedObjectModel() const { return m_model; }

    /// The objects in the file.
    const StoredObjects& objects() const { return m_objects; }

    /// Replaces the file's objects with `objects`, whole and synced to the disk. False, with `error`, on a
    /// failure, and where another program has changed the file since it was opened or saved. The file then
    /// stays as it is, unless only syncing the folder has failed: then the new file is in place. The error
    /// says where the objects could not be saved; its failure reason tells why.
    bool save(const StoredObjects& objects, StoreError* error = nullptr);

  private:
    const ManagedObjectModel& m_model;
    QString m_path;
    StoredObjects m_objects;

    /// Identifies the file and its last change, to notice changes by other programs.
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
