#pragma once

#include <QString>

/// The program's own resources.
class Bundle {
  public:
    virtual ~Bundle() = default;

    /// The path of the resource of that whole file name: in the installed resource folder (share/tobrimax
    /// beside the program's bin, or Resources beside its MacOS folder), else the copy compiled into the
    /// program; empty where there is none.
    virtual QString pathForResource(const QString& name) const;
};
