#pragma once

#include <string>
#include <vector>

/// The first of `words` that begins with `word`; else the one that takes the fewest single-character
/// insertions, deletions and replacements (Levenshtein distance, letter case ignored) to become `word`; the
/// first of several. Empty without words.
std::string nearestWord(const std::string& word, const std::vector<std::string>& words);
