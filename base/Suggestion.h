#pragma once

#include <string>
#include <vector>

/// The first of `words` that begins with `word`. If there is none, the first of those with the smallest
/// Levenshtein distance to `word`: the fewest single-character insertions, deletions and replacements,
/// ignoring letter case. Empty if `words` is empty.
std::string nearestWord(const std::string& word, const std::vector<std::string>& words);
