#pragma once

#include "generation/IconSizeCatalogue.h"
#include "generation/Platforms.h"

#include <QSize>
#include <QSizeF>
#include <QString>

#include <span>
#include <vector>

/// One picture that a generation renders.
struct PlannedRender {
    QSizeF points; ///< what it is rendered at
    QSizeF pixels; ///< the same in pixels, not rounded: for an icon the catalogue's size
};

/// One PNG file of a catalogue, as the generator makes it.
struct PlannedIcon {
    QString name; ///< without ".png"
    PlannedRender render;
};

/// One file that a generation writes.
struct PlannedFile {
    QString idiom;
    QString name; ///< without its suffix
    /// Relative to the output folder, whose percent escapes are replaced (see OutputFolder). Without a path
    /// it is the text that is told in its place.
    QString path;
    bool isContainer = false; ///< Application.icns; a PNG file otherwise
    /// A PNG file has one. The container's are smallest first; those that it has no element for are among
    /// them.
    std::vector<PlannedRender> renders;
    /// Of the largest picture in it; empty where none can be made.
    QSize pixelSize;
    /// False where its name can't stand in a path, or leads out of the idiom's folder.
    bool hasPath = true;
    /// False where it goes into a folder that the generation does not make, and that must be there.
    bool isFolderMade = true;

    /// Whether nothing in the catalogue keeps it from being written.
    bool canBeWritten() const { return hasPath && !pixelSize.isEmpty(); }
};

/// What a generation will write. It is worked out from the catalogue alone, without the picture and without
/// the disk. The generator takes its icons from here, in the same order.
class GenerationPlan {
  public:
    /// The icons of a platform's dictionary in the order of `keys`, for a display of that scale.
    static std::vector<PlannedIcon> icons(const QVariantMap& dictionary, const QStringList& keys, int scale);

    /// What is made of `platforms`, in their order, on a display of that scale.
    GenerationPlan(const IconSizeCatalogue& catalogue, std::span<const Platform> platforms, int scale);

    /// Every file in the order in which it is written or fails. Of several with one path a later one replaces
    /// an earlier one.
    const std::vector<PlannedFile>& files() const { return m_files; }

    /// The files that are there afterwards, each once: those that can be written and that no later one
    /// replaces.
    std::vector<PlannedFile> remainingFiles() const;

    /// The pixel size of every render, also of those that can't be made: what a picture is loaded by.
    std::vector<QSizeF> renders() const;

    /// The longest side of all renders in pixels, those left out that are not finite; 0 without renders.
    double largestSide() const;

  private:
    void addIcons(const IconSizeCatalogue& catalogue, Platform platform, int scale);
    void addContainer(const IconSizeCatalogue& catalogue, Platform platform, int scale);

    std::vector<PlannedFile> m_files;
};
