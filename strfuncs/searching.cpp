// String functions that give a position or a count.

#include <algorithm>

#include "base/characters.h"
#include "base/search.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

// How many bytes are the same, or single-byte letters that differ in case alone.
std::size_t common_beginning(std::string_view a, std::string_view b, bool mind_case) {
    if (mind_case) return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
    const std::size_t most = std::min(a.size(), b.size());
    std::size_t length = 0;
    // So far both are the same, so a character of two bytes is one in both.
    for (bool is_second = false; length < most; ++length) {
        const bool is_first = !is_second && character_size(a, length) == 2;
        const bool is_single = !is_first && !is_second;
        if (is_single ? to_upper(a[length]) != to_upper(b[length]) : a[length] != b[length]) break;
        is_second = is_first;
    }
    return length;
}

// Whether a start counted from 1 lies outside of a text.
bool outside(std::string_view text, double start) {
    return start < 1.0 || start > static_cast<double>(text.size());
}

bool beyond(std::string_view text, double start) {
    return static_cast<double>(to_int(start)) - 1.0 > static_cast<double>(text.size());
}

std::string_view from(std::string_view text, double start) {
    return text.substr(static_cast<std::size_t>(std::max(to_int(start), 1)) - 1);
}

}  // namespace

// strmismatch(text, other[, start, other start, mode])
Error strmismatch(Call& call) {
    if (call.m_TempStr.empty()) return Error::too_few_texts;
    // Deliberate: without the start, none of the three counts; with it, the other start must be
    // given too.
    const bool given = call.given(1);
    const double start = given ? call.extra.values[1] : 1.0;
    const double other_start = given ? call.extra.values[2] : 1.0;
    const double mode = given ? call.extra.values[3] : 1.0;
    const std::string_view text = call.value.text;
    const std::string_view other = call.last_text();

    if (beyond(text, start) || beyond(other, other_start)) {
        call.PopTempStr(1);
        return Error::beyond_text;
    }
    if (outside(text, start) || outside(other, other_start)) return Error::value_incorrect;

    double length = call.value.number;
    if (const bool mind_case = mode == 0.0;
        mind_case || mode == 1.0 || mode == ExtraArguments::not_given) {
        length = static_cast<double>(
            common_beginning(from(text, start), from(other, other_start), mind_case));
    }
    call.PopTempStr(1);
    call.PopNumArray(3);
    return call.give_number(length, type_integer);
}

// strfind(piece, text[, start])
Error strfind(Call& call) {
    if (call.m_TempStr.empty()) return Error::too_few_texts;
    const std::string_view piece = call.value.text;
    const std::string_view text = call.last_text();
    const int start = to_int(call.number_or(1, 1.0));
    if (start < 1) return Error::not_positive;
    std::size_t at = std::string_view::npos;
    if (!piece.empty()) at = find_piece(text, piece, static_cast<std::size_t>(start) - 1);
    const double position = at == std::string_view::npos ? -1.0 : static_cast<double>(at) + 1.0;
    call.PopTempStr(1);
    call.PopNumArray(1);
    return call.give_number(position, type_integer);
}

// strfindn(piece, text)
Error strfindn(Call& call) {
    if (call.m_TempStr.empty()) return Error::value_missing;
    const double count = static_cast<double>(count_occurrences(call.value.text, call.last_text()));
    call.PopTempStr(1);
    call.PopNumArray(1);
    return call.give_number(count, type_number);
}

// strlen(text)
Error strlen(Call& call) {
    call.give_number(static_cast<double>(call.value.text.size()), type_number);
    // Deliberate: a further argument changes nothing, but is held to the range as well.
    return call.is_in_range() ? Error::none : Error::out_of_range;
}

}  // namespace morandel
