#pragma once

#include "base/FourCharCode.h"
#include "base/Result.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <optional>
#include <vector>

/// A picture of a file, as a proof sheet shows it.
struct ProofPicture {
    QImage raster; ///< RGBA8888_Premultiplied
    /// A PNG file or an SVG document: the file's own bytes, or those of its part, where they are one. Another
    /// picture is stored as a PNG file.
    QByteArray bytes;
    bool isDrawing = false;                   ///< an SVG document, shown at a size of its own
    std::optional<FourCharCode> element = {}; ///< the type of the icns element that holds it

    QSize size() const { return raster.size(); }
};

/// An element of an icns file that can't be shown.
struct ProofFailure {
    FourCharCode element;
    QString sentence;
};

struct ProofPictures {
    std::vector<ProofPicture> pictures; ///< in the file's order; those of a Windows icon smallest first
    std::vector<ProofFailure> failures;
};

/// The side of an SVG document on a proof sheet.
inline constexpr int proofDrawingSide = 128;

/// Whether these bytes begin a file that `proofPictures` may know.
bool isProofPicture(const QByteArray& file);

/// The pictures in a PNG file, an SVG document, an icns file or a Windows icon file. Damaged where the file
/// is broken, else as ImageSource and IcoReader say.
Result<ProofPictures> proofPictures(const QByteArray& file);

/// The picture of every element of an icns file that has one.
Result<ProofPictures> proofPicturesOfIcns(const QByteArray& file);
