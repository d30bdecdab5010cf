#pragma once

#include "base/Result.h"
#include "layouts/LayoutRenderer.h"

#include <QSize>
#include <QSizeF>

#include <vector>

/// The layouts that are written together into one folder.
class LayoutSet {
  public:
    LayoutSet() = default;

    /// The layouts of these names and paths, with the values of their variables for the project in `out`, as
    /// `withVariables` says. The error of the first that can't be used; Malformed where two of them write one
    /// file.
    static Result<LayoutSet> load(const QStringList& names, const QString& out, const QString& name);

    /// In the order of their names and paths.
    const std::vector<Layout>& layouts() const { return m_layouts; }

    /// The sizes in which `picture` will be drawn, in their order, where it and the pictures `given` are
    /// there beside the main one.
    std::vector<QSizeF> renders(LayoutPicture picture, const std::set<LayoutPicture>& given) const;
    /// The sizes of all icons, in pixels.
    std::vector<QSize> sizes() const;
    /// The files that are written with these pictures.
    std::vector<LayoutFile> writtenFiles(const LayoutPictures& pictures) const;
    /// The lines that the files of the project in `out` lack.
    std::vector<LayoutNote> notes(const QString& out) const;

  private:
    std::vector<Layout> m_layouts;
};
