#pragma once

#include "base/Result.h"
#include "layouts/Layout.h"

#include <QByteArray>

/// Another layout whose files a layout takes in.
struct LayoutUse {
    QString layout;
    QString at; ///< the folder that the files go into; may be empty
    QStringList without;
};

/// A layout's own file, before the layouts that it uses are taken in.
struct ReadLayout {
    Layout layout;
    std::vector<LayoutUse> uses;
};

/// Reads a layout file (docs/layouts.md). `name` is the layout's name and stands in sentences. Malformed with
/// the key and the nearest one where a key, a type or a value is wrong.
Result<ReadLayout> readLayout(const QString& name, const QByteArray& toml);
