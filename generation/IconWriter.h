#pragma once

#include "files/OutputPlace.h"
#include "generation/GenerationObserver.h"
#include "generation/IconGround.h"
#include "generation/IconRenderer.h"
#include "imaging/png/PngStore.h"

/// Writes one icon as a PNG file into its idiom's folder.
class IconWriter {
    /// The PNG encoding of a render, and the size of its picture.
    struct EncodedIcon {
        QByteArray png;
        QSize pixelSize;
    };

  public:
    /// All are kept by reference; `observer` may be null.
    IconWriter(const GenerationInput& input, const IconRenderer& renderer, const IconGround& ground,
               PngStore& pngs, OutputPlace& place, GenerationObserver* observer)
        : m_input(input),
          m_renderer(renderer),
          m_ground(ground),
          m_pngs(pngs),
          m_place(place),
          m_observer(observer) {}

    /// Makes the idiom's folder, renders `image` at `withSize` points and writes it there as `andName`.png,
    /// replacing a file of that name. If the folder can't be made, this is logged and the writing is tried
    /// anyway. If the size is empty, the observer is told `sizeFault` as the reason, unless that is empty
    /// too.
    void saveImage(const Image& image, const QSizeF& withSize, const QString& andName, const QString& idiom,
                   const QString& sizeFault = {}) const;

    /// The error that the observer is told where an icon of `size` points can't be made because of `error`.
    static Error fault(const Error& error, const QSizeF& size, const QString& sizeFault);

  private:
    Result<EncodedIcon> encoded(Image render) const;
    Result<EncodedIcon> made(const Image& image, const QSizeF& size) const;
    QString appiconsetPath(const QString& idiom) const;

    const GenerationInput& m_input;
    const IconRenderer& m_renderer;
    const IconGround& m_ground;
    PngStore& m_pngs;
    OutputPlace& m_place;
    GenerationObserver* m_observer;
};
