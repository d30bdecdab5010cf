#pragma once

#include "files/OutputPlace.h"
#include "generation/GenerationObserver.h"
#include "imaging/png/PngOptions.h"
#include "layouts/LayoutRenderer.h"

#include <QSizeF>

/// What a layout is written with.
struct LayoutInput {
    LayoutPictures pictures;
    IconStyle style;
    Color background{1, 1, 1, 1}; ///< opaque
    QString name;                 ///< the app's name
    QString out;                  ///< the project's folder, as the user typed it; empty if there is none
    PngEffort effort = PngEffort::Fast;
};

/// Writes the files of layouts. Their variables are replaced already.
namespace LayoutWriter {

/// The files that are written with these pictures.
std::vector<LayoutFile> writtenFiles(const Layout& layout, const LayoutPictures& pictures);

/// The sizes in which a picture will be drawn.
std::vector<QSizeF> renders(const std::vector<LayoutFile>& files);

/// Writes each file to `place` and tells `observer` of it; a failure does not stop the others. Missing
/// folders are made.
void write(const Layout& layout, const LayoutInput& input, GenerationObserver& observer,
           OutputPlace& place = OutputPlace::disk());

/// Does the same with empty files, which need not be drawn, and for which `observer` is told 0 bytes.
void list(const Layout& layout, const LayoutInput& input, GenerationObserver& observer, OutputPlace& place);

/// Of the layout's notes those whose line the project's file lacks.
std::vector<LayoutNote> notes(const Layout& layout, const QString& out);

} // namespace LayoutWriter
