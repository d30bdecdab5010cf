#pragma once

#include "base/Result.h"
#include "generation/IconSizeCatalogue.h"
#include "generation/Platforms.h"

#include <QSize>
#include <QSizeF>
#include <QString>

#include <optional>
#include <span>
#include <vector>

/// A picture that a generation renders.
struct PlannedRender {
    QSizeF points; ///< the size of the rendering
    QSizeF pixels; ///< the same size in pixels, not rounded; for an icon, the catalogue's size
};

/// A PNG file of a catalogue, as the generator makes it.
struct PlannedIcon {
    QString name; ///< without ".png"
    PlannedRender render;
    QString sizeFault; ///< why the catalogue gives it no size; empty if it gives one
};

/// A file that a generation writes.
struct PlannedFile {
    QString idiom;
    QString name; ///< without its suffix
    /// Relative to the output folder, in whose path percent escapes are replaced (see OutputFolder). If
    /// `hasPath` is false, a text to show instead of a path.
    QString path;
    bool isContainer = false; ///< Application.icns; a PNG file otherwise
    /// A PNG file has one. A container has several, smallest first; some may have no element in it.
    std::vector<PlannedRender> renders;
    /// The size of the largest picture in the file; empty if no picture can be made.
    QSize pixelSize;
    /// Why the file can't be made or written, as far as the catalogue tells it.
    std::optional<Error> fault = std::nullopt;
    /// False if the name can't be part of a path, or leads out of the idiom's folder.
    bool hasPath = true;
    /// False if the file goes into a folder that the generation does not make: the folder must exist already.
    bool isFolderMade = true;

    /// Whether the catalogue's entry allows writing the file.
    bool canBeWritten() const { return hasPath && !pixelSize.isEmpty(); }
};

/// The files that a generation will write. The plan is made from the catalogue alone; it needs neither the
/// picture nor the disk. The generator takes its icons from here, in the same order.
class GenerationPlan {
  public:
    /// The icons of a platform's dictionary in the order of `keys`, for a display of that scale.
    static std::vector<PlannedIcon> icons(const QVariantMap& dictionary, const QStringList& keys, int scale);

    /// The plan for `platforms`, in their order, on a display of that scale.
    GenerationPlan(const IconSizeCatalogue& catalogue, std::span<const Platform> platforms, int scale);

    /// Every file, in the order in which it is written or fails. If several files have the same path, a later
    /// one replaces an earlier one.
    const std::vector<PlannedFile>& files() const { return m_files; }

    /// The files that exist afterwards, each once: the files that can be written and are not replaced by a
    /// later one.
    std::vector<PlannedFile> remainingFiles() const;

    /// The pixel size of every render, also of those that can't be made. Loading a picture needs these sizes.
    std::vector<QSizeF> renders() const;

  private:
    void addIcons(const IconSizeCatalogue& catalogue, Platform platform, int scale);
    void addContainer(const IconSizeCatalogue& catalogue, Platform platform, int scale);

    std::vector<PlannedFile> m_files;
};
