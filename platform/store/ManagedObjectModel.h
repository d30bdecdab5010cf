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

    /// Null where there is no such attribute.
    const AttributeDescription* attribute(const QString& attributeName) const;
};

/// What kinds of objects a store may hold. Immutable.
class ManagedObjectModel {
  public:
    ManagedObjectModel() = default;
    explicit ManagedObjectModel(std::vector<EntityDescription> entities) : m_entities(std::move(entities)) {}

    /// The model in the folder `path`: its Model.plist is a dictionary of entities by name, each a dictionary
    /// of attribute types ("string", "integer", "double", "boolean", "date", "data") by name. Null where it
    /// can't be read or names another type.
    static std::unique_ptr<ManagedObjectModel> initWithContentsOfURL(const QString& path);

    const std::vector<EntityDescription>& entities() const { return m_entities; }
    /// Null where there is no such entity.
    const EntityDescription* entity(const QString& name) const;

  private:
    std::vector<EntityDescription> m_entities;
};
