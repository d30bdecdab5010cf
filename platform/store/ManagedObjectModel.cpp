#include "platform/store/ManagedObjectModel.h"

#include "platform/services/PropertyList.h"

#include <QFile>

#include <algorithm>

const AttributeDescription* EntityDescription::attribute(const QString& attributeName) const {
    const auto found = std::ranges::find(attributes, attributeName, &AttributeDescription::name);
    return found != attributes.end() ? &*found : nullptr;
}

const EntityDescription* ManagedObjectModel::entity(const QString& name) const {
    const auto found = std::ranges::find(m_entities, name, &EntityDescription::name);
    return found != m_entities.end() ? &*found : nullptr;
}

std::unique_ptr<ManagedObjectModel> ManagedObjectModel::initWithContentsOfURL(const QString& path) {
    QFile file(path + QStringLiteral("/Model.plist"));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    const Result<QVariant> list = PropertyList::parse(file.readAll());
    if (!list || list->typeId() != QMetaType::QVariantMap)
        return nullptr;
    std::vector<EntityDescription> entities;
    const QVariantMap dictionary = list->toMap();
    for (auto entity = dictionary.begin(); entity != dictionary.end(); ++entity) {
        EntityDescription description{entity.key(), {}};
        const QVariantMap attributes = entity.value().toMap();
        for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
            const std::optional<AttributeType> type = attributeTypeNamed(attribute.value().toString());
            if (!type)
                return nullptr;
            description.attributes.push_back({attribute.key(), *type});
        }
        entities.push_back(std::move(description));
    }
    return std::make_unique<ManagedObjectModel>(std::move(entities));
}
