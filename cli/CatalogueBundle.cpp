#include "cli/CatalogueBundle.h"

#include "generation/IconSizeCatalogue.h"

QString CatalogueBundle::pathForResource(const QString& name) const {
    const bool isCatalogue = name == QLatin1String(IconSizeCatalogue::resourceName);
    return isCatalogue && !m_cataloguePath.isEmpty() ? m_cataloguePath : Bundle::pathForResource(name);
}
