#pragma once

#include "generation/GenerationInput.h"
#include "generation/GenerationObserver.h"
#include "generation/IconRenderer.h"
#include "generation/IconSizeCatalogue.h"
#include "generation/IconWriter.h"
#include "imaging/png/PngStore.h"
#include "platform/services/Screen.h"
#include "platform/services/Workspace.h"

/// Makes the icon files of the chosen platform from one picture, synchronously and on the calling thread.
/// Failures are logged or reported to the observer. Only a malformed catalogue ends a generation early.
class IconSetGenerator {
  public:
    /// The services that the generator uses, kept by reference.
    struct Surroundings {
        const Screen& screen;
        Workspace& workspace;
        GenerationObserver* observer = nullptr;
        IconGround ground = {}; ///< a value of its own
        OutputPlace& place = OutputPlace::disk();
        PngEffort effort = PngEffort::Fast; ///< for all PNG encodings; Best may change their samples
    };

    IconSetGenerator(const GenerationInput& input, const Surroundings& surroundings); ///< keeps `input`
    // The members refer to each other, so a copy would be wrong.
    IconSetGenerator(const IconSetGenerator&) = delete;
    IconSetGenerator& operator=(const IconSetGenerator&) = delete;

    /// While it lives, the sets of several platforms share what is compressed.
    [[nodiscard]] PngStore::Keeping keepPngs() const { return PngStore::Keeping(m_pngs); }

    /// Writes the whole set for the current platform index from `image`. `loaded` is the catalogue as loaded
    /// for this generation. If it is malformed, the generation ends before anything is written. If it is
    /// missing or can't be read, no icons are written, but all other steps are done.
    void generateIconsWithImage(const Image& image, const Result<IconSizeCatalogue>& loaded) const;

    /// Writes one idiom's PNG files, one for each key of `keysArr` from its entry in `InfoDict`. Then opens
    /// the output folder.
    void outputImage(const Image& image, const QVariantMap& InfoDict, const QStringList& keysArr,
                     const QString& idiom) const;

    /// The folder of an idiom's PNG files.
    QString appiconsetPathString(const QString& idiom) const;

    const IconRenderer& renderer() const { return m_renderer; } ///< of each icon
    const IconWriter& writer() const { return m_writer; }       ///< of each PNG file

  private:
    void writeContainer(const Image& image, const QString& idiom) const;
    void tellFailure(const QString& path, const Error& error) const;

    const GenerationInput& m_input;
    Surroundings m_surroundings;
    IconRenderer m_renderer;
    mutable PngStore m_pngs;
    IconWriter m_writer;
};
