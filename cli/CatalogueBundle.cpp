#include "cli/CatalogueBundle.h"

#include "generation/IconSizeCatalogue.h"

QString CatalogueBundle::pathForResource(const QString& name) const {
    const bool isCatalogue = name == QLatin1String(IconSizeCatalogue::resourceName);
    if (!isCatalogue || m_cataloguePath.isEmpty())
        return Bundle::pathForResource(name);
    // A colon at the start would stand for what is compiled into the program.
    return m_cataloguePath.startsWith(u':') ? QStringLiteral("./") + m_cataloguePath : m_cataloguePath;
}
