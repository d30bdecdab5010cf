#include "cli/CatalogueBundle.h"

QString CatalogueBundle::pathForResource(const QString& name) const {
    const bool isCatalogue = name == QLatin1String("ImageSizeFile.plist");
    return isCatalogue && !m_cataloguePath.isEmpty() ? m_cataloguePath : Bundle::pathForResource(name);
}
