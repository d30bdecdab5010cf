#pragma once

#include "platform/store/PersistentStoreCoordinator.h"

#include <QPointer>
#include <QUndoStack>

#include <functional>
#include <vector>

/// The objects of a store while they are being changed. Every change can be undone. The file changes only
/// with `save`. Main thread only.
class ManagedObjectContext {
  public:
    /// Starts with the objects of the coordinator's store. Keeps `coordinator` by reference.
    explicit ManagedObjectContext(PersistentStoreCoordinator& coordinator);
    ManagedObjectContext(const ManagedObjectContext&) = delete;
    ManagedObjectContext& operator=(const ManagedObjectContext&) = delete;

    const PersistentStoreCoordinator& persistentStoreCoordinator() const { return m_coordinator; }

    /// All objects as they are now, by number.
    const StoredObjects& objects() const { return m_objects; }

    /// Adds an object without values. Returns its number, or 0 where the model has no entity `name` or no
    /// number is left.
    qint64 insertNewObjectForEntityForName(const QString& name);

    /// Sets the attribute `forKey`, or removes it where `value` is invalid. False, and no change, where the
    /// object or the attribute does not exist, or where the value does not suit the attribute's type.
    bool setValue(qint64 object, const QString& forKey, const QVariant& value);

    bool deleteObject(qint64 object);

    /// Registers `commit`. It ends an edit that is under way, and tells whether that was possible. It is
    /// called as long as `editor` lives.
    void registerEditor(const QObject* editor, std::function<bool()> commit) {
        m_editors.push_back({editor, std::move(commit)});
    }
    /// Ends all edits that are under way, before a save. False at the first edit that can't be ended.
    bool commitEditing();

    /// Whether the objects differ from those in the file.
    bool hasChanges() const { return m_objects != m_coordinator.objects(); }

    /// Writes the objects to the file. After a failure the changes are still there, and `error` (if given)
    /// tells why.
    bool save(StoreError* error = nullptr) { return m_coordinator.save(m_objects, error); }

    QUndoStack* undoManager() { return &m_undo; }

  private:
    friend class ChangeObject;

    PersistentStoreCoordinator& m_coordinator;
    StoredObjects m_objects;
    qint64 m_lastNumber = 0;
    struct Editor {
        QPointer<const QObject> editor;
        std::function<bool()> commit;
    };
    std::vector<Editor> m_editors;
    QUndoStack m_undo;
};
