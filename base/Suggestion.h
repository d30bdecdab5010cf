#pragma once

#include <string>
#include <vector>

/// The one of `words` that `word` is most likely meant for; empty if none is near. Letter case and dashes in
/// front don't count. A word is near, in this order:
/// - if it begins with `word`, or has it between dashes, as "round-corner" has "corner";
/// - if `word` becomes it by few changes, at most one for each three characters of `word`: insertions,
///   deletions, replacements and exchanges of neighbours;
/// - if it holds `word`, or is the beginning or end of it, as "mac" is of "macos".
std::string nearestWord(const std::string& word, const std::vector<std::string>& words);

/// The end of a complaint about `word`: "; did you mean 'border'?" where one of `words` is near, or all that
/// there are: "; there are border, background and name". Empty if `words` is empty.
std::string suggestion(const std::string& word, const std::vector<std::string>& words, char quote = '\'');
