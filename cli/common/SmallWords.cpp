#include "cli/common/SmallWords.h"

#include <algorithm>

namespace {

constexpr int largestSide = 16384;

/// The part of `text` in front of its last colon, or all of it; and the part behind.
std::pair<std::string, std::string> split(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return {text, {}};
    return {text.substr(0, colon), text.substr(colon + 1)};
}

/// The number that `text` consists of, from 1 to the largest side; else 0.
int sideOf(const std::string& text) {
    constexpr std::size_t mostDigits = 5;
    const bool hasDigits = text.size() <= mostDigits && std::ranges::all_of(text, [](char letter) {
                               return letter >= '0' && letter <= '9';
                           });
    const int side = hasDigits ? QString::fromStdString(text).toInt() : 0;
    return side <= largestSide ? side : 0;
}

/// What may have been meant.
std::string meant(const std::string& text) {
    const auto [picture, number] = split(text);
    const std::string digits = number.substr(0, number.find_first_not_of("0123456789"));
    const std::string side = sideOf(digits) > 0 ? std::to_string(sideOf(digits)) : "32";
    return (picture.empty() ? "small.png" : picture) + ":" + side;
}

} // namespace

void SmallWords::addTo(CLI::App& command) {
    command
        .add_option("--small", small,
                    "another picture for all icons of up to PX pixels; may be given several times")
        ->type_name("PICTURE:PX")
        ->take_all()
        ->allow_extra_args(false);
}

Parsed<std::vector<SmallPicture>> SmallWords::pictures() const {
    std::vector<SmallPicture> pictures;
    for (const std::string& text : small) {
        const auto [path, number] = split(text);
        const int side = sideOf(number);
        if (path.empty() || side == 0)
            return UsageError{"--small takes a picture and a side from 1 to " + std::to_string(largestSide) +
                              " pixels, not '" + text + "'; did you mean '" + meant(text) + "'?"};
        if (std::ranges::find(pictures, side, &SmallPicture::side) != pictures.end())
            return UsageError{"--small gives two pictures for icons of up to " + number + " pixels"};
        pictures.push_back({path, side});
    }
    return pictures;
}
