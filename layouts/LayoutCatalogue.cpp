#include "layouts/LayoutCatalogue.h"

#include "base/Suggestion.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "layouts/LayoutReader.h"
#include "layouts/LayoutTemplate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr char builtInFolder[] = ":/resources/layouts/";
constexpr char ending[] = ".toml";
constexpr qint64 mostBytes = 1 << 20;

bool isPath(const QString& nameOrPath) {
    return nameOrPath.contains(u'/') || nameOrPath.endsWith(QLatin1String(ending));
}

Result<QByteArray> bytesOf(const QString& nameOrPath) {
    if (isPath(nameOrPath)) {
        Result<QByteArray> bytes = RegularFile::read(PathBytes::encoded(nameOrPath).toStdString(), mostBytes);
        // The sentence about a missing layout names it, as below.
        const bool isMissing = !bytes && bytes.error().code == ErrorCode::NotFound;
        return isMissing ? about(nameOrPath, bytes.error()) : bytes;
    }
    QFile file(QLatin1String(builtInFolder) + nameOrPath + QLatin1String(ending));
    if (file.open(QIODevice::ReadOnly))
        return file.readAll();
    std::vector<std::string> words;
    for (const QString& name : LayoutCatalogue::names())
        words.push_back(name.toStdString());
    return Error{
        ErrorCode::NotFound,
        QStringLiteral("there is no layout \"%1\"%2")
            .arg(nameOrPath, QString::fromStdString(suggestion(nameOrPath.toStdString(), words, '"')))};
}

/// The name of a layout, from its own file's name.
QString layoutName(const QString& nameOrPath) {
    return isPath(nameOrPath) ? QFileInfo(nameOrPath).completeBaseName() : nameOrPath;
}

QString below(const QString& folder, const QString& path) {
    return folder.isEmpty() ? path : folder + u'/' + path;
}

/// Takes the parts of `used` into `layout`.
void takeIn(const Layout& used, const LayoutUse& use, Layout& layout) {
    for (LayoutVariable variable : used.variables) {
        QString& place = variable.folder.isEmpty() ? variable.file : variable.folder;
        place = below(use.at, place);
        const auto hasName = [&](const LayoutVariable& other) { return other.name == variable.name; };
        if (std::ranges::none_of(layout.variables, hasName))
            layout.variables.push_back(std::move(variable));
    }
    for (LayoutFile file : used.files) {
        if (use.without.contains(file.path))
            continue;
        file.path = below(use.at, file.path);
        layout.files.push_back(std::move(file));
    }
    for (LayoutNote note : used.notes) {
        note.file = below(use.at, note.file);
        layout.notes.push_back(std::move(note));
    }
}

/// Why two of the files can't be written together, if that is so.
std::optional<Error> doubledPath(const std::vector<LayoutFile>& files) {
    QStringList paths;
    for (const LayoutFile& file : files)
        paths << file.path;
    paths.sort();
    for (qsizetype i = 1; i < paths.size(); ++i) {
        if (paths[i] == paths[i - 1])
            return Error{ErrorCode::Malformed,
                         QStringLiteral("two files have the path \"%1\"").arg(paths[i])};
    }
    return std::nullopt;
}

/// `chain` are the layouts that led here.
Result<Layout> loaded(const QString& nameOrPath, QStringList chain) {
    if (chain.contains(nameOrPath))
        return Error{
            ErrorCode::Malformed,
            QStringLiteral("it uses itself: %1").arg((chain << nameOrPath).join(QStringLiteral(" → ")))};
    chain << nameOrPath;
    const Result<QByteArray> bytes = bytesOf(nameOrPath);
    if (!bytes)
        return bytes.error();
    Result<ReadLayout> read = readLayout(layoutName(nameOrPath), *bytes);
    if (!read)
        return read.error();
    Layout layout{
        read->layout.name, read->layout.title, read->layout.markers, read->layout.variables, {}, {}};
    for (const LayoutUse& use : read->uses) {
        // A layout in a file of its own may use its neighbours.
        const bool isNeighbour = isPath(nameOrPath) && isPath(use.layout);
        const QString other =
            isNeighbour ? QDir::cleanPath(QFileInfo(nameOrPath).dir().filePath(use.layout)) : use.layout;
        const Result<Layout> used = loaded(other, chain);
        if (!used)
            return about(QStringLiteral("layout \"%1\"").arg(use.layout), used.error());
        takeIn(*used, use, layout);
    }
    layout.files.insert(layout.files.end(), read->layout.files.begin(), read->layout.files.end());
    layout.notes.insert(layout.notes.end(), read->layout.notes.begin(), read->layout.notes.end());
    if (const std::optional<Error> error = doubledPath(layout.files))
        return *error;
    return layout;
}

} // namespace

QStringList LayoutCatalogue::names() {
    QStringList names = QDir(QLatin1String(builtInFolder))
                            .entryList({QLatin1Char('*') + QLatin1String(ending)}, QDir::Files, QDir::Name);
    for (QString& name : names)
        name.chop(static_cast<qsizetype>(sizeof ending) - 1);
    names.sort();
    return names;
}

Result<Layout> LayoutCatalogue::load(const QString& nameOrPath) {
    Result<Layout> layout = loaded(isPath(nameOrPath) ? QDir::cleanPath(nameOrPath) : nameOrPath, {});
    if (!layout)
        return layout;
    for (const LayoutFile& file : layout->files) {
        if (file.format != LayoutFile::Format::Text)
            continue;
        if (const Result<Done> checked = checkTemplate(file, layout->files); !checked)
            return checked.error();
    }
    return layout;
}
