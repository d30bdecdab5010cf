#pragma once

#include "generation/GenerationInput.h"
#include "generation/GenerationObserver.h"
#include "generation/IconRenderer.h"
#include "generation/IconSizeCatalogue.h"
#include "generation/IconWriter.h"
#include "imaging/png/PngStore.h"
#include "platform/services/Screen.h"
#include "platform/services/Workspace.h"

/// Turns one picture into the icon files of the chosen platform, synchronously and on the calling thread.
/// Failures are logged or told to the observer; none ends a generation but a malformed catalogue.
class IconSetGenerator {
  public:
    /// What the generator needs of the world around it, kept by reference.
    struct Surroundings {
        const Screen& screen;
        Workspace& workspace;
        GenerationObserver* observer = nullptr;
    };

    IconSetGenerator(const GenerationInput& input, const Surroundings& surroundings);
    // Its parts refer to each other.
    IconSetGenerator(const IconSetGenerator&) = delete;
    IconSetGenerator& operator=(const IconSetGenerator&) = delete;

    /// Writes the whole set for the current platform index from `image`, with the icons of the catalogue as
    /// it was loaded for this generation. One that is malformed ends the generation before anything is
    /// written; without one there are no icons, and everything else is done.
    void generateIconsWithImage(const Image& image, const Result<IconSizeCatalogue>& loaded) const;

    /// Writes one idiom's PNG files, for each key of `keysArr` the entry of `InfoDict`, then opens the output
    /// folder.
    void outputImage(const Image& image, const QVariantMap& InfoDict, const QStringList& keysArr,
                     const QString& idiom) const;

    /// The folder that an idiom's PNG files go into.
    QString appiconsetPathString(const QString& idiom) const;

    const IconRenderer& renderer() const { return m_renderer; }
    const IconWriter& writer() const { return m_writer; }

  private:
    void writeContainer(const Image& image, const QString& idiom) const;
    void tellFailure(const QString& path, const Error& error) const;

    const GenerationInput& m_input;
    Surroundings m_surroundings;
    IconRenderer m_renderer;
    mutable PngStore m_pngs; ///< of the generation under way
    IconWriter m_writer;
};
