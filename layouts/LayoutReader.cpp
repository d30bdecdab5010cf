#include "layouts/LayoutReader.h"

#include "layouts/CheckedMap.h"
#include "layouts/Toml.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

namespace {

using Format = LayoutFile::Format;
using Shape = LayoutFile::Shape;

constexpr int largestSide = 16384;
constexpr int largestIcoSide = 256;

/// The format that the ending of `path` says.
Format formatOf(const QString& path) {
    constexpr std::pair<const char*, Format> endings[] = {
        {".png", Format::Png}, {".ico", Format::Ico}, {".icns", Format::Icns}, {".svg", Format::Svg}};
    const auto* found = std::ranges::find_if(endings, [&](const auto& ending) {
        return path.endsWith(QLatin1String(ending.first), Qt::CaseInsensitive);
    });
    return found != std::end(endings) ? found->second : Format::Text;
}

/// Whether `path` stays in its folder: neither from the root, nor with a component that leads elsewhere.
bool isInside(const QString& path) {
    const QStringList components = path.split(u'/');
    const bool isOdd = std::ranges::any_of(components, [](const QString& component) {
        return component.isEmpty() || component == QLatin1String(".") || component == QLatin1String("..");
    });
    return !isOdd && !path.contains(QChar::Null) && !path.contains(u'\\');
}

void readSizes(CheckedMap& map, LayoutFile& file) {
    switch (file.format) {
    case Format::Png:
        if (const std::optional<QSize> size = map.size("size", 1, largestSide))
            file.sizes = {*size};
        else if (!map.has("size"))
            map.refuse(QStringLiteral("\"size\" is missing"));
        return;
    case Format::Ico:
        for (const int side : map.wholeNumbers("sizes", 1, largestIcoSide))
            file.sizes.emplace_back(side, side);
        if (!map.has("sizes"))
            map.refuse(QStringLiteral("\"sizes\" is missing"));
        return;
    case Format::Icns:
    case Format::Svg:
    case Format::Text:
        if (map.has("size") || map.has("sizes"))
            map.refuse(QStringLiteral("this format takes no size"));
        return;
    }
}

LayoutFile readFile(const QVariantMap& values, std::size_t number, std::optional<Error>& error) {
    LayoutFile file;
    CheckedMap map(
        values,
        QStringLiteral("file %1 (%2)").arg(number).arg(values.value(QStringLiteral("path")).toString()),
        error);
    map.allow({"path", "format", "size", "sizes", "picture", "if-given", "ground", "channels", "shape",
               "radius", "inset", "slots", "text", "keep", "ours", "for"});
    file.path = map.text("path");
    if (!isInside(file.path))
        map.refuse(QStringLiteral("\"path\" takes a path below the output folder"));
    file.format = map.has("format")
                      ? static_cast<Format>(map.choice("format", {"png", "ico", "icns", "svg", "text"}))
                      : formatOf(file.path);
    readSizes(map, file);
    file.picture = static_cast<LayoutPicture>(
        map.choice("picture", {"main", "dark", "tinted", "foreground", "monochrome", "none"}));
    file.isOnlyIfGiven = map.flag("if-given");
    file.isOpaque = map.choice("channels", {"rgba", "rgb"}) == 1;
    file.hasGround = map.flag("ground") || file.isOpaque;
    file.shape = static_cast<Shape>(map.choice("shape", {"square", "circle", "rounded"}));
    file.radius = map.part("radius", 0);
    if (file.shape == Shape::Rounded && !map.has("radius"))
        map.refuse(QStringLiteral("a rounded shape wants a \"radius\""));
    if (file.isOpaque && file.shape != Shape::Square)
        map.refuse(QStringLiteral("without an alpha channel the shape is a square"));
    file.inset = map.part("inset", 1);
    file.places = map.maps("slots");
    file.text = map.text("text");
    if (file.format == Format::Text && !map.has("text"))
        map.refuse(QStringLiteral("\"text\" is missing"));
    file.keepsOthers = map.flag("keep");
    file.ours = map.text("ours");
    if (file.keepsOthers && file.ours.isEmpty())
        map.refuse(QStringLiteral("\"keep\" wants \"ours\""));
    file.purpose = map.text("for");
    return file;
}

LayoutUse readUse(const QVariantMap& values, std::optional<Error>& error) {
    CheckedMap map(values, QStringLiteral("use"), error);
    map.allow({"layout", "at", "without"});
    LayoutUse use{map.text("layout"), map.text("at"), map.texts("without")};
    if (use.layout.isEmpty())
        map.refuse(QStringLiteral("\"layout\" is missing"));
    if (!use.at.isEmpty() && !isInside(use.at))
        map.refuse(QStringLiteral("\"at\" takes a folder below the output folder"));
    return use;
}

void checkPattern(CheckedMap& map, const QString& pattern, int groups) {
    const QRegularExpression expression(pattern);
    if (!expression.isValid())
        map.refuse(QStringLiteral("\"pattern\" is no regular expression: %1").arg(expression.errorString()));
    else if (expression.captureCount() < groups)
        map.refuse(QStringLiteral("\"pattern\" wants a group in brackets"));
}

LayoutNote readNote(const QVariantMap& values, std::optional<Error>& error) {
    CheckedMap map(values, QStringLiteral("note"), error);
    map.allow({"file", "line", "pattern"});
    LayoutNote note{map.text("file"), map.text("line"), map.text("pattern")};
    if (!isInside(note.file) || note.line.isEmpty())
        map.refuse(QStringLiteral("it wants a \"file\" below the output folder and a \"line\""));
    checkPattern(map, note.pattern, 0);
    return note;
}

LayoutVariable readVariable(const QString& name, const QVariantMap& values, std::optional<Error>& error) {
    CheckedMap map(values, QStringLiteral("variable %1").arg(name), error);
    map.allow({"folder", "file", "pattern", "default"});
    LayoutVariable variable{name, map.text("folder"), map.text("file"), map.text("pattern"),
                            map.text("default")};
    if (variable.folder.isEmpty() == variable.file.isEmpty())
        map.refuse(QStringLiteral("it wants either a \"folder\" or a \"file\""));
    if (!variable.folder.isEmpty() && (!isInside(variable.folder) || variable.folder.count(u'*') != 1))
        map.refuse(QStringLiteral("\"folder\" takes a path below the output folder with one *"));
    if (!variable.file.isEmpty()) {
        if (!isInside(variable.file))
            map.refuse(QStringLiteral("\"file\" takes a path below the output folder"));
        checkPattern(map, variable.pattern, 1);
    }
    if (!isInside(variable.fallback))
        map.refuse(QStringLiteral("\"default\" takes a part of a path"));
    return variable;
}

void readVariables(CheckedMap& map, const QVariant& variables, Layout& layout, std::optional<Error>& error) {
    const QVariantMap named = variables.toMap();
    if (variables.isValid() && variables.typeId() != QMetaType::QVariantMap)
        map.refuse(QStringLiteral("\"variable\" takes tables, each with a name of its own"));
    for (auto entry = named.begin(); entry != named.end(); ++entry)
        layout.variables.push_back(readVariable(entry.key(), entry.value().toMap(), error));
}

} // namespace

Result<ReadLayout> readLayout(const QString& name, const QByteArray& toml) {
    const Result<QVariantMap> document = parsedToml(toml);
    if (!document)
        return document.error();
    std::optional<Error> error;
    CheckedMap map(*document, {}, error);
    map.allow({"title", "marker", "one-ending", "variable", "use", "file", "note"});
    ReadLayout read;
    read.layout.name = name;
    read.layout.title = map.text("title");
    read.layout.markers = map.texts("marker");
    const bool hasOneEnding = map.flag("one-ending");
    readVariables(map, document->value(QStringLiteral("variable")), read.layout, error);
    for (const QVariantMap& values : map.maps("use"))
        read.uses.push_back(readUse(values, error));
    for (const QVariantMap& values : map.maps("file")) {
        read.layout.files.push_back(readFile(values, read.layout.files.size() + 1, error));
        // Where Android's resources lie.
        const bool isResource = read.layout.files.back().path.split(u'/').contains(QStringLiteral("res"));
        read.layout.files.back().hasOneEnding = hasOneEnding && isResource;
    }
    for (const QVariantMap& values : map.maps("note"))
        read.layout.notes.push_back(readNote(values, error));
    if (read.layout.files.empty() && read.uses.empty())
        map.refuse(QStringLiteral("it has no files"));
    if (error)
        return *error;
    return read;
}
