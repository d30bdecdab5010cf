#pragma once

#include "platform/services/Bundle.h"

/// The program's resources with a size catalogue of the user's own in place of the built-in one.
class CatalogueBundle final : public Bundle {
  public:
    /// An empty path keeps the built-in catalogue.
    explicit CatalogueBundle(QString cataloguePath) : m_cataloguePath(std::move(cataloguePath)) {}

    QString pathForResource(const QString& name) const override;

  private:
    QString m_cataloguePath;
};
