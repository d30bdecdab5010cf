#include "cli/common/CatalogueBundle.h"

#include "generation/IconSizeCatalogue.h"

QString CatalogueBundle::pathForResource(const QString& name) const {
    const bool isCatalogue = name == QLatin1String(IconSizeCatalogue::resourceName);
    if (!isCatalogue || m_cataloguePath.isEmpty())
        return Bundle::pathForResource(name);
    // A path that begins with a colon would be taken for a resource compiled into the program.
    return m_cataloguePath.startsWith(u':') ? QStringLiteral("./") + m_cataloguePath : m_cataloguePath;
}
