#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <vector>

/// The pictures that a layout's files are made from.
enum class LayoutPicture { Main, Dark, Tinted, Foreground, Monochrome, None };

/// One file of a layout.
struct LayoutFile {
    enum class Format { Png, Ico, Icns, Svg, Text };
    enum class Shape { Square, Circle, Rounded };

    QString path; ///< relative to the output folder, with {variables}
    Format format = Format::Png;
    std::vector<QSize> sizes; ///< in pixels: one of a PNG, several squares of an ico, else empty
    LayoutPicture picture = LayoutPicture::Main;
    bool isOnlyIfGiven = false; ///< left out where its picture was not given
    bool hasGround = false;     ///< lies on the background
    bool isOpaque = false;      ///< has no alpha channel
    Shape shape = Shape::Square;
    double radius = 0;               ///< of Rounded: a part of the shape's side
    double inset = 1;                ///< the part of the side that the shape takes
    std::vector<QVariantMap> places; ///< places of an asset catalogue that the file fills
    QString text;                    ///< a text file's template
    bool keepsOthers = false;        ///< a file that is there and lacks `ours` stays
    QString ours;
    bool hasOneEnding = false; ///< refused where the same name has another ending
    QString purpose;           ///< one line for people
};

/// A part of paths that the project says.
struct LayoutVariable {
    QString name;
    QString folder;  ///< a path with one *; the part that * stands for is the value
    QString file;    ///< a file in which `pattern` is looked for
    QString pattern; ///< a regular expression, whose first group is the value
    QString fallback;
};

/// A line that a file of the project wants.
struct LayoutNote {
    QString file;
    QString line;
    QString pattern; ///< a regular expression by which the line is known; empty: the line itself
};

/// The files that a kind of project wants, with those of the layouts that it uses.
struct Layout {
    QString name;
    QString title;
    QStringList markers;
    std::vector<LayoutVariable> variables;
    std::vector<LayoutFile> files;
    std::vector<LayoutNote> notes;
};
