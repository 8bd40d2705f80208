// String functions that give a part of a text.

#include <algorithm>

#include "base/characters.h"
#include "base/search.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

// So much from an offset on, or what is there of it; or mirrored, from the end of the text.
std::string_view part_of(std::string_view text, std::size_t offset, std::size_t length,
                         bool from_end) {
    offset = std::min(offset, text.size());
    length = std::min(length, text.size() - offset);
    return text.substr(from_end ? text.size() - offset - length : offset, length);
}

// The first n bytes of a text, or the last ones.
Error end_of(Call& call, bool last) {
    // Deliberate: two pending numbers are required though the function takes one.
    if (call.g_NumArray.size() < 2) return Error::value_missing;
    const int count = to_int(call.extra.values[0]);
    if (count < 1) return Error::not_positive;
    call.PopNumArray(1);
    return call.give_text(part_of(call.value.text, 0, static_cast<std::size_t>(count), last));
}

}  // namespace

// strsub(text, start, length[, direction])
Error strsub(Call& call) {
    const auto& numbers = call.g_NumArray;
    if (numbers.empty()) return Error::none;
    if (numbers.size() < 2) return Error::value_missing;
    // Deliberate: any third number that is pending, also another call's, makes the last one the
    // direction.
    const bool directed = numbers.size() > 2;
    const std::size_t below = directed ? 1 : 0;
    const bool from_end = directed && to_int(numbers.from_top(0)) == 0;
    const int start = to_int(numbers.from_top(below + 1));
    const int length = to_int(numbers.from_top(below));

    constexpr int rest = -1;  // which is more than any text has
    if (start < 1) return Error::value_incorrect;
    if (length < rest) return Error::negative_length;

    call.PopNumArray(3);
    return call.give_text(part_of(call.value.text, static_cast<std::size_t>(start) - 1,
                                  static_cast<std::size_t>(length), from_end));
}

// strtrim(piece, text[, side])
Error strtrim(Call& call) {
    if (call.m_TempStr.empty()) return Error::too_few_texts;
    const std::string_view piece = call.value.text;
    std::string_view text = call.last_text();
    const bool at_start = call.g_NumArray.empty() || to_int(call.g_NumArray.from_top(0)) != 0;
    if (at_start && text.starts_with(piece)) {
        text.remove_prefix(piece.size());
    } else if (!at_start && text.ends_with(piece)) {
        text.remove_suffix(piece.size());
    }
    const Error error = call.give_copy(text);
    call.PopTempStr(1);
    call.PopNumArray(1);
    return error;
}

// strtrims(text)
Error strtrims(Call& call) {
    const std::string_view text = call.value.text;
    std::size_t begin = text.size();
    std::size_t end = text.size();
    for (std::size_t i = 0; i < text.size(); i += character_size(text, i)) {
        if (is_white_space(text[i])) continue;
        if (begin == text.size()) begin = i;
        end = i + character_size(text, i);
    }
    return call.give_text(text.substr(begin, end - begin));
}

// strsubn(text, separator, n)
Error strsubn(Call& call) {
    if (call.g_NumArray.empty()) return Error::none;
    const double place = call.extra.values[1];
    if (call.m_TempStr.empty() || !(place >= 1.0)) return Error::value_missing;
    const std::string_view separator = call.last_text();
    std::string_view rest = call.value.text;
    std::string_view piece;
    int left_over = to_int(place);
    std::size_t found = separator.empty() ? std::string_view::npos : 0;
    for (; left_over > 0 && found != std::string_view::npos; --left_over) {
        found = find_piece(rest, separator);
        piece = rest.substr(0, found);
        if (found != std::string_view::npos) rest.remove_prefix(found + separator.size());
    }
    call.PopTempStr(1);
    call.PopNumArray(1);
    return call.give_text(left_over > 0 ? std::string_view() : piece);
}

// left(text, n)
Error left(Call& call) { return end_of(call, false); }

// right(text, n)
Error right(Call& call) { return end_of(call, true); }

}  // namespace morandel
