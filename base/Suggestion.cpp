#include "base/Suggestion.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <numeric>

namespace {

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::string nearestWord(const std::string& word, const std::vector<std::string>& words) {
    std::string nearest;
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const std::string& candidate : words) {
        // A word that is the beginning of a candidate counts as that candidate, cut short.
        const std::size_t d = candidate.starts_with(word) ? 0 : distance(word, candidate);
        if (d < least) {
            least = d;
            nearest = candidate;
        }
    }
    return nearest;
}
