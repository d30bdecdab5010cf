#pragma once

#include "base/Color.h"
#include "cli/common/PictureLoading.h"
#include "generation/IconStyle.h"
#include "generation/Platforms.h"
#include "imaging/png/PngOptions.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

/// What becomes of the files that a run makes.
enum class GeneratePurpose {
    Write,  ///< they are written
    List,   ///< they are only listed
    Check,  ///< they are compared with those that are there
    Stream, ///< they go to standard output as a tar stream
};

/// The options of `tobrimax-cli generate`.
struct GenerateOptions {
    std::string picture;         ///< in the file system's own encoding
    bool isOneOfSeveral = false; ///< messages name the picture
    QString out;                 ///< empty for Stream
    GeneratePurpose purpose = GeneratePurpose::Write;
    std::vector<Platform> platforms; ///< each platform once, in the order of generation
    IconStyle style;
    PictureFit fit;
    std::vector<SmallPicture> small;
    QStringList layouts;             ///< names and paths; empty for the platforms' plain tree
    std::optional<Color> background; ///< opaque
    QString name;                    ///< of the app, for layouts; empty for the picture's
    // Further pictures for layouts, empty where they were not given.
    std::string dark;
    std::string tinted;
    std::string foreground;
    std::string monochrome;
    PngEffort effort = PngEffort::Fast;
    QString catalogue;      ///< empty for the built-in catalogue
    double svgSeconds = 10; ///< of processor time, for each SVG picture
    int jobs = 0;           ///< processes at a time; 0: one for each core
    QString proof;          ///< the file of the proof sheet; empty for none
    bool watch = false;
    bool open = false;
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    bool timings = false;

    /// Whether a terminal is told what is being done.
    bool tellsProgress() const { return !quiet && !verbose; }

    /// The picture with those for small icons.
    PictureFiles pictureFiles() const { return {picture, small, fit, tellsProgress(), svgSeconds}; }
};
