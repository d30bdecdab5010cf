#pragma once

#include <QString>
#include <QVariantMap>

/// The program's own resources.
class Bundle {
  public:
    virtual ~Bundle() = default;

    /// The path of the resource with the file name `name`, suffix included. The installed resource folder
    /// comes first: share/tobrimax beside the program's bin, or Resources beside its MacOS folder. The copy
    /// compiled into the program comes second. Empty where neither has the resource.
    virtual QString pathForResource(const QString& name) const;

    /// The path of the installed document `name`, for example "README.md": in share/doc/tobrimax beside the
    /// program's bin, or in Resources/doc beside its MacOS folder. Empty where it is not installed.
    virtual QString pathForDocument(const QString& name) const;

    /// The path of the program `name`, which only other programs start. It is libexec/tobrimax beside the
    /// program's bin, or Helpers beside its MacOS folder; in the build folder, it has a folder of its own.
    /// The first of these paths where there is none.
    static QString pathOfHelper(const QString& name);

    /// The dictionary in the resource Info.plist. Empty where it can't be read.
    QVariantMap infoDictionary() const;

    /// The text for `key` from `table`, in the current language. Where the table has no text for it: `value`,
    /// or `key` itself where `value` is empty. An empty `table` means the default table, "Localizable".
    static QString localizedStringForKey(const QString& key, const QString& value, const QString& table);
};
