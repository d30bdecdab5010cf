#pragma once

#include "platform/store/PersistentStoreCoordinator.h"

#include <QPointer>
#include <QUndoStack>

#include <functional>
#include <vector>

/// The objects of a store while they are being changed. Every change can be undone; nothing reaches the file
/// before `save`. Main thread only.
class ManagedObjectContext {
  public:
    /// Starts with what the coordinator's store holds; it is kept by reference.
    explicit ManagedObjectContext(PersistentStoreCoordinator& coordinator);
    ManagedObjectContext(const ManagedObjectContext&) = delete;
    ManagedObjectContext& operator=(const ManagedObjectContext&) = delete;

    const PersistentStoreCoordinator& persistentStoreCoordinator() const { return m_coordinator; }

    /// All objects as they are now, by number.
    const StoredObjects& objects() const { return m_objects; }

    /// A new object without values; its number, or 0 where the model has no such entity or no number is left.
    qint64 insertNewObjectForEntityForName(const QString& name);

    /// Sets an attribute, or takes it away with an invalid value. False, and no change, where there is no
    /// such object or attribute or the value does not suit its type.
    bool setValue(qint64 object, const QString& forKey, const QVariant& value);

    bool deleteObject(qint64 object);

    /// Asked before saving: whether an edit that is under way could be brought to its end.
    /// For as long as `editor` lives.
    void registerEditor(const QObject* editor, std::function<bool()> commit) {
        m_editors.push_back({editor, std::move(commit)});
    }
    bool commitEditing();

    /// Whether the objects differ from those in the file.
    bool hasChanges() const { return m_objects != m_coordinator.objects(); }

    /// After a failure the changes are still there.
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
