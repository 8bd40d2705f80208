#include "base/search.h"

#include <algorithm>

namespace morandel {
namespace {

// Where a piece is cut for the search in both directions, and the period of its right part.
struct Cut {
    std::size_t place;
    std::size_t period;
};

// The greatest suffix of a piece, by the order of bytes or by the opposite one.
Cut greatest_suffix(std::string_view piece, bool opposite) {
    std::size_t suffix = 0;     // where the greatest one so far begins
    std::size_t candidate = 1;  // where one begins that may be greater
    std::size_t same = 0;       // bytes that both have in common
    std::size_t period = 1;
    while (candidate + same < piece.size()) {
        const char a = piece[suffix + same];
        const char b = piece[candidate + same];
        if (a == b) {
            if (++same < period) continue;
            candidate += period;
        } else if ((a > b) != opposite) {
            candidate += same + 1;
            period = candidate - suffix;
        } else {
            suffix = candidate++;
            period = 1;
        }
        same = 0;
    }
    return {suffix, period};
}

}  // namespace

// The two-way search of Crochemore and Perrin: the right side of the cut forwards, then the left
// side backwards. It needs no memory and looks at no byte more than twice.
std::size_t find_two_way(std::string_view text, std::string_view piece) {
    const Cut by_order = greatest_suffix(piece, false);
    const Cut by_opposite = greatest_suffix(piece, true);
    const Cut cut = by_order.place > by_opposite.place ? by_order : by_opposite;

    // Where the left part repeats too, a shift by the period keeps what has matched.
    const bool repeats =
        piece.substr(0, cut.place) == piece.substr(cut.period).substr(0, cut.place);
    const std::size_t shift =
        repeats ? cut.period : std::max(cut.place, piece.size() - cut.place) + 1;
    const std::size_t kept = repeats ? piece.size() - cut.period : 0;

    std::size_t matched = 0;  // bytes at the front that are known to match
    for (std::size_t at = 0; at + piece.size() <= text.size();) {
        std::size_t right = std::max(cut.place, matched);
        while (right < piece.size() && piece[right] == text[at + right]) ++right;
        if (right < piece.size()) {
            at += right - cut.place + 1;
            matched = 0;
            continue;
        }
        std::size_t left = cut.place;
        while (left > matched && piece[left - 1] == text[at + left - 1]) --left;
        if (left <= matched) return at;
        at += shift;
        matched = kept;
    }
    return std::string_view::npos;
}

std::size_t find_piece(std::string_view text, std::string_view piece, std::size_t from) {
    // Up to here the simple search is the faster one.
    constexpr std::size_t few_comparisons = std::size_t{1} << 18;
    constexpr std::size_t short_piece = 16;
    if (piece.size() <= short_piece || text.size() <= few_comparisons / piece.size()) {
        return text.find(piece, from);
    }
    if (from > text.size()) return std::string_view::npos;
    const std::size_t found = find_two_way(text.substr(from), piece);
    return found == std::string_view::npos ? found : found + from;
}

std::size_t count_occurrences(std::string_view piece, std::string_view text) {
    if (piece.empty()) return 0;
    std::size_t count = 0;
    std::size_t at = 0;
    for (; (at = find_piece(text, piece, at)) != std::string_view::npos; at += piece.size())
        ++count;
    return count;
}

}  // namespace morandel
