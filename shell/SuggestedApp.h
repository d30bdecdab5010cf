#pragma once

#include <QString>

#include <array>

/// Another application of the same maker.
struct SuggestedApp {
    QString imageName; ///< name of an SVG resource, without suffix
    QString appName;   ///< also the name of its bundle in /Applications, without suffix
    QString url;       ///< its store page
    QString Desc;      ///< what it is for

    bool operator==(const SuggestedApp&) const = default;
};

/// All suggested applications, in the order in which they are suggested.
std::array<SuggestedApp, 8> suggestedApps();
