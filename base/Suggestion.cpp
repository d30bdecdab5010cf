#include "base/Suggestion.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <numeric>

namespace {

/// The shortest word that is taken for the beginning of another, and for a part of it.
constexpr std::size_t shortestBeginning = 2;
constexpr std::size_t shortestPart = 3;

/// `word` in lower case, without dashes in front.
std::string plain(const std::string& word) {
    std::string text = word.substr(std::min(word.find_first_not_of('-'), word.size()));
    std::ranges::transform(text, text.begin(), [](char c) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    });
    return text;
}

/// The optimal string alignment distance: the fewest insertions, deletions, replacements and exchanges of
/// neighbours, where no character is changed twice.
std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> before;
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::vector<std::size_t> next(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            next[j] = std::min({row[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1), row[j] + 1, next[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                next[j] = std::min(next[j], before[j - 2] + 1);
        }
        before = std::move(row);
        row = std::move(next);
    }
    return row.back();
}

/// Whether `word` is a part of `candidate` between dashes.
bool isWholePart(const std::string& word, const std::string& candidate) {
    return ('-' + candidate + '-').find('-' + word + '-') != std::string::npos;
}

/// Whether one of both holds the other.
bool arePartOfEachOther(const std::string& word, const std::string& candidate) {
    if (std::min(word.size(), candidate.size()) < shortestPart)
        return false;
    return candidate.find(word) != std::string::npos || word.starts_with(candidate) ||
           word.ends_with(candidate);
}

/// How far `candidate` is from `word`, smaller is nearer; the largest number where it is not near.
std::size_t farness(const std::string& word, const std::string& candidate) {
    constexpr std::size_t partsFarness = 1000;
    if (word == candidate)
        return 0;
    if (word.size() >= shortestBeginning && (candidate.starts_with(word) || isWholePart(word, candidate)))
        return 1;
    // A very long word is near to nothing; the distance to it need not be counted.
    if (word.size() < 2 * candidate.size() + shortestPart) {
        if (const std::size_t changes = distance(word, candidate); changes <= word.size() / 3)
            return 1 + changes;
    }
    return arePartOfEachOther(word, candidate) ? partsFarness : std::numeric_limits<std::size_t>::max();
}

} // namespace

std::string nearestWord(const std::string& word, const std::vector<std::string>& words) {
    std::string nearest;
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const std::string& candidate : words) {
        if (const std::size_t far = farness(plain(word), plain(candidate)); far < least) {
            least = far;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string suggestion(const std::string& word, const std::vector<std::string>& words, char quote) {
    if (words.empty())
        return {};
    if (const std::string nearest = nearestWord(word, words); !nearest.empty())
        return "; did you mean " + (quote + nearest) + quote + "?";
    std::string text = words.size() == 1 ? "; there is " : "; there are ";
    for (std::size_t i = 0; i < words.size(); ++i)
        text += (i == 0 ? "" : i + 1 == words.size() ? " and " : ", ") + words[i];
    return text;
}
