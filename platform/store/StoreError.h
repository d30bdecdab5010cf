#pragma once

#include <QMetaType>
#include <QString>

#include <memory>
#include <optional>

/// An error of saved data: a code within a domain, and words for people.
struct StoreError {
    QString domain;
    qint64 code = 0;
    QString localizedDescription;
    QString localizedFailureReason; ///< may be empty
    std::shared_ptr<const StoreError> underlyingError{};

    /// One line: domain, code and description.
    QString description() const;

    /// One line: description, reason and underlying error.
    QString userInfoDescription() const;
};

/// The domain of the store's own errors.
inline const QString storeErrorDomain = QStringLiteral("TobrimaxStoreErrorDomain");

/// The codes of the store's own errors.
enum class StoreErrorCode {
    NotReadable = 256,
    NoSuchFile = 260,
    NotWritable = 512,
    Corrupt = 259,
    NewerFormat = 134020,
    WrongModel = 134100,
};

StoreError storeError(StoreErrorCode code, const QString& description);
