#pragma once

#include "platform/store/AttributeText.h"

#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

struct AttributeDescription {
    QString name;
    AttributeType type = AttributeType::String;
};

struct EntityDescription {
    QString name;
    std::vector<AttributeDescription> attributes;

    /// Null where the entity has no attribute of that name.
    const AttributeDescription* attribute(const QString& attributeName) const;
};

/// The kinds of objects that a store may hold. Immutable.
class ManagedObjectModel {
  public:
    ManagedObjectModel() = default;
    explicit ManagedObjectModel(std::vector<EntityDescription> entities) : m_entities(std::move(entities)) {}

    /// The model in the folder `path`. Its Model.plist is a dictionary of entities by name. Each entity is a
    /// dictionary of attribute types by name: "string", "integer", "double", "boolean", "date", "data". Null
    /// where Model.plist can't be read or names another type.
    static std::unique_ptr<ManagedObjectModel> initWithContentsOfURL(const QString& path);

    const std::vector<EntityDescription>& entities() const { return m_entities; }
    /// Null where the model has no entity of that name.
    const EntityDescription* entity(const QString& name) const;

  private:
    std::vector<EntityDescription> m_entities;
};
