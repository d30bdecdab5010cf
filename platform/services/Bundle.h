#pragma once

#include <QString>
#include <QVariantMap>

/// The program's own resources.
class Bundle {
  public:
    virtual ~Bundle() = default;

    /// The path of the resource of that whole file name: in the installed resource folder (share/tobrimax
    /// beside the program's bin, or Resources beside its MacOS folder), else the copy compiled into the
    /// program; empty where there is none.
    virtual QString pathForResource(const QString& name) const;

    /// The resource Info.plist; empty where there is none.
    QVariantMap infoDictionary() const;

    /// The text of that key in a table of the current language; without one `value`, or the key itself where
    /// that is empty. An empty table name is the default table, "Localizable".
    static QString localizedStringForKey(const QString& key, const QString& value, const QString& table);
};
