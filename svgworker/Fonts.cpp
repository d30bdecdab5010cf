#include "svgworker/Fonts.h"

#include "svgworker/Owned.h"

#include <dlfcn.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

namespace {

std::set<std::string> seenNames; // NOLINT: of the process' only thread that draws
std::string untoldLines;         // NOLINT

/// Whether any font of a kind will do. Also names that the library and editors use for that.
bool isGeneric(std::string_view family) {
    constexpr std::array<std::string_view, 11> names{"serif",   "sans-serif", "monospace", "cursive",
                                                     "fantasy", "system-ui",  "emoji",     "math",
                                                     "sans",    "mono",       "sans serif"};
    std::string lower(family);
    std::ranges::transform(lower, lower.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
    return lower.starts_with("ui-") || lower.starts_with("-apple-") ||
           std::ranges::find(names, lower) != names.end();
}

bool isInstalled(const std::string& family) {
    const Owned<FcPattern, &FcPatternDestroy> pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    const Owned<FcObjectSet, &FcObjectSetDestroy> wanted(FcObjectSetCreate());
    FcObjectSetAdd(wanted.get(), FC_FAMILY);
    const Owned<FcFontSet, &FcFontSetDestroy> found(FcFontList(nullptr, pattern.get(), wanted.get()));
    return found != nullptr && found->nfont > 0;
}

/// Looks at a list of families that Pango looks for a font for.
void notice(const FcPattern* asked) {
    std::string first;
    FcChar8* text = nullptr;
    for (int i = 0; FcPatternGetString(asked, FC_FAMILY, i, &text) == FcResultMatch; ++i) {
        std::string family(reinterpret_cast<const char*>(text));
        std::erase_if(family, [](char c) { return c == '"' || c == '\'' || c == '\n'; });
        if (isGeneric(family))
            break;
        if (family.empty())
            continue;
        if (isInstalled(family))
            return;
        if (first.empty())
            first = std::move(family);
    }
    if (!first.empty() && seenNames.insert(first).second)
        untoldLines += first + '\n';
}

} // namespace

// Stands in front of fontconfig's function of that name. Pango calls it with each list of families, before
// fontconfig adds those that may stand for them.
extern "C" FcBool FcConfigSubstitute(FcConfig* config, FcPattern* pattern, FcMatchKind kind) {
    using Function = decltype(&FcConfigSubstitute);
    static const auto original = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "FcConfigSubstitute"));
    if (kind == FcMatchPattern)
        notice(pattern);
    return original(config, pattern, kind);
}

std::string Fonts::takeMissing() {
    return std::exchange(untoldLines, {});
}
