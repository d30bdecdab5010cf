#pragma once

#include "files/FileItem.h"
#include "imaging/io/ImageSource.h"
#include "layouts/LayoutSources.h"

#include <QByteArray>
#include <QString>

/// A picture that a well shows, and where it came from. A well may keep fewer pixels than a file has.
class ShownPicture {
  public:
    /// No picture.
    ShownPicture() = default;
    /// A picture that was read from the file at `path`, or from `pasted` bytes where `path` is empty.
    ShownPicture(const QString& path, QByteArray pasted, LoadedPicture picture);

    bool isNull() const { return m_picture.image.isNull(); }
    const QString& path() const { return m_path; }
    const Image& image() const { return m_picture.image; }

    /// The file's name without its ending, or "icon" for pasted bytes.
    QString name() const;

    /// The picture as it is kept, for drawings on the screen. Nothing is read.
    LayoutSources::Source kept() const;
    /// The picture as it is in its file, read anew. Where the file is gone or has changed since it was shown,
    /// as it is kept: what was shown is what is written.
    LayoutSources::Source whole() const;
    /// The text of an SVG document; empty if it can't be had.
    QByteArray document() const;

  private:
    Result<LoadedPicture> fromKept(const ReducedCopies::Renders& renders) const;
    Result<LoadedPicture> fromSource(const ReducedCopies::Renders& renders) const;
    bool isUnchanged() const;

    QString m_path;
    QByteArray m_pasted;
    FileItem::Stamp m_stamp;
    LoadedPicture m_picture;
};
