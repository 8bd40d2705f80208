// What somebody may have meant by a word that does not exist.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

// The one of the words that takes the fewest changes of letters, if those are few for a word of
// this length; else nothing.
std::string closest(std::string_view word, const std::vector<std::string>& words);

}  // namespace morandel::cli
