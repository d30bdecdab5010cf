#include "platform/store/ManagedObjectContext.h"

#include "platform/store/AttributeText.h"

#include <QUndoCommand>

#include <algorithm>

/// Exchanges one whole object with another state of it. A state without a value means that the object does
/// not exist.
class ChangeObject final : public QUndoCommand {
  public:
    ChangeObject(ManagedObjectContext& context, qint64 object, std::optional<StoredObject> after)
        : m_context(context), m_object(object), m_other(std::move(after)) {}

    void redo() override { exchange(); }
    void undo() override { exchange(); }

  private:
    void exchange() {
        StoredObjects& objects = m_context.m_objects;
        const auto found = objects.find(m_object);
        std::optional<StoredObject> before;
        if (found != objects.end())
            before = std::move(found->second);
        if (m_other)
            objects.insert_or_assign(m_object, std::move(*m_other));
        else
            objects.erase(m_object);
        m_other = std::move(before);
    }

    ManagedObjectContext& m_context;
    qint64 m_object;
    std::optional<StoredObject> m_other;
};

ManagedObjectContext::ManagedObjectContext(PersistentStoreCoordinator& coordinator)
    : m_coordinator(coordinator), m_objects(coordinator.objects()) {
    if (!m_objects.empty())
        m_lastNumber = m_objects.rbegin()->first;
}

qint64 ManagedObjectContext::insertNewObjectForEntityForName(const QString& name) {
    if (m_coordinator.managedObjectModel().entity(name) == nullptr || m_lastNumber >= largestObjectNumber)
        return 0;
    m_undo.push(new ChangeObject(*this, ++m_lastNumber, StoredObject{name, {}}));
    return m_lastNumber;
}

bool ManagedObjectContext::setValue(qint64 object, const QString& forKey, const QVariant& value) {
    const auto found = m_objects.find(object);
    if (found == m_objects.end())
        return false;
    const AttributeDescription* attribute =
        m_coordinator.managedObjectModel().entity(found->second.entity)->attribute(forKey);
    const std::optional<QVariant> suited =
        attribute != nullptr ? attributeValue(value, attribute->type) : std::nullopt;
    if (!suited)
        return false;
    StoredObject after = found->second;
    if (suited->isValid())
        after.values.insert(forKey, *suited);
    else
        after.values.remove(forKey);
    // Setting the same value again needs no undo.
    if (after != found->second)
        m_undo.push(new ChangeObject(*this, object, std::move(after)));
    return true;
}

bool ManagedObjectContext::deleteObject(qint64 object) {
    if (!m_objects.contains(object))
        return false;
    m_undo.push(new ChangeObject(*this, object, std::nullopt));
    return true;
}

bool ManagedObjectContext::commitEditing() {
    // A copy, because an editor may register another editor.
    const std::vector<Editor> editors = m_editors;
    return std::ranges::all_of(
        editors, [](const Editor& editor) { return editor.editor.isNull() || editor.commit(); });
}
