#include "generation/Platforms.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

constexpr char usualFolder[] = "AppIcon.appiconset";

struct Row {
    Platform platform;
    const char* idiom;
    const char* folder = usualFolder;
    bool hasContainer = false;
};

constexpr std::array<Row, Platforms::all.size()> rows{{
    {.platform = Platform::Iphone, .idiom = "iphone"},
    {.platform = Platform::Ipad, .idiom = "ipad"},
    {.platform = Platform::Watch, .idiom = "watch"},
    {.platform = Platform::Mac, .idiom = "mac", .hasContainer = true},
    {.platform = Platform::Android, .idiom = "android", .folder = "icons"},
}};
static_assert(std::ranges::equal(rows, Platforms::all, {}, &Row::platform));

constexpr std::array iphone{Platform::Iphone};
constexpr std::array ipad{Platform::Ipad};
constexpr std::array universal{Platform::Iphone, Platform::Ipad};
constexpr std::array watch{Platform::Watch};
constexpr std::array mac{Platform::Mac};
constexpr std::array android{Platform::Android};

constexpr std::array<Platforms::Choice, 6> choiceTable{{
    {"iphone", iphone},
    {"ipad", ipad},
    {"universal", universal},
    {"watch", watch},
    {"mac", mac},
    {"android", android},
}};

const Row& rowOf(Platform platform) {
    return rows.at(static_cast<std::size_t>(platform));
}

} // namespace

QString Platforms::idiom(Platform platform) {
    return QString::fromLatin1(rowOf(platform).idiom);
}

QString Platforms::folder(const QString& idiom) {
    const auto* row =
        std::ranges::find_if(rows, [&](const Row& other) { return idiom == QLatin1String(other.idiom); });
    return idiom + u'/' + QLatin1String(row != rows.end() ? row->folder : usualFolder);
}

bool Platforms::hasContainer(Platform platform) {
    return rowOf(platform).hasContainer;
}

std::span<const Platforms::Choice> Platforms::choices() {
    return choiceTable;
}

std::span<const Platform> Platforms::ofIndex(int index) {
    const bool isChoice = index >= 0 && index < std::ssize(choiceTable);
    return choiceTable.at(isChoice ? static_cast<std::size_t>(index) : 0).platforms;
}

int Platforms::indexOf(Platform platform) {
    const auto* choice = std::ranges::find_if(choiceTable, [&](const Choice& other) {
        return other.platforms.size() == 1 && other.platforms.front() == platform;
    });
    return static_cast<int>(choice - choiceTable.begin());
}
