#include "platform/store/StoreError.h"

#include <QStringList>

QString StoreError::description() const {
    return QStringLiteral("Error Domain=%1 Code=%2 \"%3\"").arg(domain).arg(code).arg(localizedDescription);
}

QString StoreError::userInfoDescription() const {
    QStringList entries{QStringLiteral("NSLocalizedDescription=%1").arg(localizedDescription)};
    if (!localizedFailureReason.isEmpty())
        entries << QStringLiteral("NSLocalizedFailureReason=%1").arg(localizedFailureReason);
    if (underlyingError != nullptr)
        entries << QStringLiteral("NSUnderlyingError=%1").arg(underlyingError->description());
    return QLatin1Char('{') + entries.join(QStringLiteral(", ")) + QLatin1Char('}');
}

StoreError storeError(StoreErrorCode code, const QString& description) {
    return {storeErrorDomain, static_cast<qint64>(code), description, {}};
}
