#pragma once

#include "platform/services/Bundle.h"

/// The program's resources, with the user's own size catalogue in place of the built-in one.
class CatalogueBundle final : public Bundle {
  public:
    /// If the path is empty, the built-in catalogue stays.
    explicit CatalogueBundle(QString cataloguePath) : m_cataloguePath(std::move(cataloguePath)) {}

    QString pathForResource(const QString& name) const override;

  private:
    QString m_cataloguePath;
};
