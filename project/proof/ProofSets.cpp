#include "project/proof/ProofSets.h"

#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"
#include "imaging/icns/IcnsInspection.h"
#include "imaging/image/PictureReader.h"

#include <algorithm>

namespace {

using File = GenerationObserver::File;

constexpr qint64 mostBytes = 8 * PictureReader::maximumPixels;

struct PlatformShow {
    const char* idiom;
    const char* title;
    std::vector<ProofCut> cuts;
};

const PlatformShow& platformShow(const QString& idiom) {
    static const std::vector<PlatformShow> platforms{
        {"iphone", "iPhone", {ProofCut::Squircle}},
        {"ipad", "iPad", {ProofCut::Squircle}},
        {"watch", "Apple Watch", {ProofCut::Circle}},
        {"mac", "Mac", {}},
        {"android", "Android", {ProofCut::Circle, ProofCut::RoundedSquare, ProofCut::Teardrop}},
    };
    const auto found = std::ranges::find_if(
        platforms, [&](const PlatformShow& platform) { return idiom == QLatin1String(platform.idiom); });
    return found == platforms.end() ? platforms.front() : *found;
}

/// The group or part of that title, a new one at the end if there is none.
template <typename Titled>
Titled& titled(std::vector<Titled>& all, const QString& title) {
    const auto found = std::ranges::find(all, title, &Titled::title);
    if (found != all.end())
        return *found;
    all.push_back({title, {}});
    return all.back();
}

void addDetail(ProofIcon& icon, const QString& detail) {
    icon.detail = icon.detail.isEmpty() ? detail : QStringLiteral("%1 · %2").arg(icon.detail, detail);
}

void addNote(const QString& name, const QString& cause, ProofSheet& sheet) {
    sheet.notes << QStringLiteral("%1 is left out: %2").arg(name, cause);
}

/// Adds what the file at `path` shows to `icons`, each picture as a copy of `pattern`, and notes about the
/// rest to `sheet`.
void addPictures(const QString& path, const ProofIcon& pattern, std::vector<ProofIcon>& icons,
                 ProofSheet& sheet) {
    const Result<QByteArray> bytes = RegularFile::read(PathBytes::encoded(path).toStdString(), mostBytes);
    if (!bytes)
        return addNote(pattern.name, bytes.error().sentence, sheet);
    if (!isProofPicture(*bytes))
        return;
    Result<ProofPictures> found = proofPictures(*bytes);
    if (!found)
        return addNote(pattern.name, found.error().sentence, sheet);
    for (ProofPicture& picture : found->pictures) {
        ProofIcon icon = pattern;
        if (picture.element)
            addDetail(icon, picture.element->text());
        if (picture.isDrawing)
            addDetail(icon, QStringLiteral("drawn anew at each size"));
        icon.picture = std::move(picture);
        icons.push_back(std::move(icon));
    }
    for (const ProofFailure& failure : found->failures)
        addNote(QStringLiteral("%1 of %2").arg(failure.element.text(), pattern.name), failure.sentence,
                sheet);
}

/// A purpose as a heading. A name such as "iPhone" stays.
QString heading(QString purpose) {
    const qsizetype firstWord = purpose.indexOf(u' ') < 0 ? purpose.size() : purpose.indexOf(u' ');
    if (!purpose.isEmpty() && purpose.first(firstWord).isLower())
        purpose[0] = purpose[0].toUpper();
    return purpose;
}

/// Sorts the icons of each part by their sizes, the smallest first.
ProofSheet sorted(ProofSheet sheet) {
    const auto longest = [](const ProofIcon& icon) {
        return std::max(icon.picture.size().width(), icon.picture.size().height());
    };
    for (ProofGroup& group : sheet.groups) {
        for (ProofPart& part : group.parts)
            std::ranges::stable_sort(part.icons, {}, longest);
    }
    return sheet;
}

bool isForWatch(const LayoutFile& file) {
    return std::ranges::any_of(file.places, [](const QVariantMap& place) {
        return place.value(QStringLiteral("idiom")).toString().startsWith(QLatin1String("watch")) ||
               place.value(QStringLiteral("platform")) == QLatin1String("watchos");
    });
}

bool isForPhone(const LayoutFile& file) {
    static const QStringList idioms{QStringLiteral("iphone"), QStringLiteral("ipad"),
                                    QStringLiteral("ios-marketing"), QStringLiteral("universal")};
    return lastPathComponent(file.path).startsWith(QLatin1String("apple-touch-icon")) ||
           std::ranges::any_of(file.places, [](const QVariantMap& place) {
               return idioms.contains(place.value(QStringLiteral("idiom")).toString());
           });
}

} // namespace

void ProofSets::addShapes(const LayoutFile& file, const Color& background, ProofIcon& icon) {
    const std::vector<ProofCut> android{ProofCut::Circle, ProofCut::RoundedSquare, ProofCut::Teardrop};
    const bool isLayer =
        file.picture == LayoutPicture::Foreground || file.picture == LayoutPicture::Monochrome;
    if (file.format != LayoutFile::Format::Png)
        return;
    if (isLayer) {
        icon.cuts = android;
        icon.cutPart = ProofShapes::adaptiveCut;
        icon.safePart = ProofShapes::adaptiveSafe;
        icon.ground = background;
    } else if (lastPathComponent(file.path).contains(QLatin1String("maskable"), Qt::CaseInsensitive)) {
        icon.cuts = android;
        icon.safePart = ProofShapes::maskableSafe;
    } else if (isForWatch(file)) {
        icon.cuts = {ProofCut::Circle};
    } else if (isForPhone(file)) {
        icon.cuts = {ProofCut::Squircle};
    }
}

ProofSheet ProofSets::ofPlatforms(const std::vector<File>& files) {
    ProofSheet sheet;
    for (const File& file : files) {
        const PlatformShow& show = platformShow(file.idiom);
        ProofGroup& group = titled(sheet.groups, QLatin1String(show.title));
        const QString name = lastPathComponent(file.path);
        const bool isContainer = name.endsWith(QLatin1String(".icns"));
        ProofIcon pattern;
        pattern.name = name;
        if (!isContainer)
            pattern.cuts = show.cuts;
        ProofPart& part = titled(group.parts, isContainer ? name : QString());
        addPictures(file.path, pattern, part.icons, sheet);
    }
    return sorted(std::move(sheet));
}

ProofSheet ProofSets::ofLayouts(const std::vector<File>& files, std::span<const Layout> layouts,
                                const QString& out, const Color& background) {
    ProofSheet sheet;
    for (const Layout& layout : layouts) {
        for (const LayoutFile& file : layout.files) {
            const QString path = appendingPathComponent(out, file.path);
            if (std::ranges::find(files, path, &File::path) == files.end())
                continue;
            ProofIcon pattern;
            pattern.name = lastPathComponent(file.path);
            pattern.detail = deletingLastPathComponent(file.path);
            addShapes(file, background, pattern);
            std::vector<ProofIcon> icons;
            addPictures(path, pattern, icons, sheet);
            if (icons.empty())
                continue;
            ProofGroup& group = titled(sheet.groups, layout.title.isEmpty() ? layout.name : layout.title);
            std::ranges::move(icons, std::back_inserter(titled(group.parts, heading(file.purpose)).icons));
        }
    }
    return sorted(std::move(sheet));
}

Result<ProofSheet> ProofSets::ofIcns(const QByteArray& file) {
    Result<ProofPictures> found = proofPicturesOfIcns(file);
    if (!found)
        return found.error();
    ProofSheet sheet;
    ProofPart part;
    for (ProofPicture& picture : found->pictures) {
        ProofIcon icon;
        const FourCharCode type = picture.element.value_or(FourCharCode());
        icon.name = type.text();
        icon.detail = icnsTypeDescription(type);
        icon.picture = std::move(picture);
        part.icons.push_back(std::move(icon));
    }
    sheet.groups.push_back({QStringLiteral("Elements"), {std::move(part)}});
    for (const ProofFailure& failure : found->failures)
        addNote(failure.element.text(), failure.sentence, sheet);
    return sorted(std::move(sheet));
}
