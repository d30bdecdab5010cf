#pragma once

#include <QString>

#include <array>

/// Another application of the same maker.
struct SuggestedApp {
    QString imageName; ///< of an image resource
    QString appName;   ///< its name, also that of its bundle in the applications folder
    QString url;       ///< its store page
    QString Desc;      ///< what it is for

    bool operator==(const SuggestedApp&) const = default;
};

/// All there are, in the order in which they are suggested.
std::array<SuggestedApp, 8> suggestedApps();
