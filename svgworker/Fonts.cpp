#include "svgworker/Fonts.h"

#include "imaging/svgpipe/SvgMessages.h"

#include <fontconfig/fontconfig.h>

#include <cstddef>
#include <memory>
#include <string>

namespace {

/// Fonts are told apart by names as Pango does: without regard to case and blanks.
bool isInstalled(std::string_view family) {
    const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> pattern(FcPatternCreate(),
                                                                          FcPatternDestroy);
    const std::string name(family);
    FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(name.c_str()));
    const std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)> wanted(FcObjectSetCreate(),
                                                                             FcObjectSetDestroy);
    FcObjectSetAdd(wanted.get(), FC_FAMILY);
    const std::unique_ptr<FcFontSet, decltype(&FcFontSetDestroy)> found(
        FcFontList(nullptr, pattern.get(), wanted.get()), FcFontSetDestroy);
    return found != nullptr && found->nfont > 0;
}

/// Takes off what stands before `separator`, and the separator.
std::string_view taken(std::string_view& text, char separator) {
    const std::string_view part = text.substr(0, text.find(separator));
    text.remove_prefix(part.size() < text.size() ? part.size() + 1 : part.size());
    return part;
}

} // namespace

std::uint64_t Fonts::missing(std::string_view lists) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < SvgPipe::mostFontLists && !lists.empty(); ++i) {
        std::string_view names = taken(lists, '\n');
        bool isMissing = true;
        while (isMissing && !names.empty())
            isMissing = !isInstalled(taken(names, '\t'));
        bits |= std::uint64_t{isMissing} << i;
    }
    return bits;
}
