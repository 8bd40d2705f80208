// String functions that make a text of others.

#include <algorithm>

#include "base/characters.h"
#include "base/search.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

// The text with every occurrence of old in it, from the left and not overlapping, replaced. old
// may be empty, and is then nowhere.
Error replace_all(Call& call, std::string_view head, std::string_view text, std::string_view tail,
                  std::string_view old, std::string_view replacement) {
    const std::size_t count = count_occurrences(old, text);
    const std::size_t kept = head.size() + text.size() + tail.size() - count * old.size();
    if (kept > longest_text || (count > 0 && replacement.size() > (longest_text - kept) / count)) {
        return Error::longer_than_target;
    }
    char* const room = call.arena.allocate(kept + count * replacement.size());
    char* end = copy_text(head, room);
    for (std::size_t left_over = count; left_over > 0; --left_over) {
        const std::size_t at = find_piece(text, old);
        end = copy_text(text.substr(0, at), end);
        end = copy_text(replacement, end);
        text.remove_prefix(at + old.size());
    }
    end = copy_text(text, end);
    end = copy_text(tail, end);
    return call.give_text({room, end});
}

}  // namespace

// strcat(text, text, ...)
Error strcat(Call& call) {
    if (call.m_TempStr.empty()) return Error::too_few_texts;
    // Deliberate: a call finds its further texts by its first one, in a table whose only entry
    // ever filled a nested strcat has overwritten. The empty entries after it lead to index 0.
    const std::string_view first = call.value.text;
    const std::string_view entry = call.first_argument.text;
    const bool is_found =
        first.size() == entry.size() && (first.data() == entry.data() || first == entry);
    if (!is_found && !first.empty()) return Error::none;
    const std::size_t index = is_found ? call.first_argument.index : 0;
    if (index >= call.m_TempStr.size()) return Error::value_incorrect;

    std::size_t size = first.size();
    for (std::size_t i = index; i < call.m_TempStr.size(); ++i) size += call.m_TempStr[i].size();
    if (size > longest_text) return Error::longer_than_target;
    char* const room = call.arena.allocate(size);
    char* end = copy_text(first, room);
    for (std::size_t i = index; i < call.m_TempStr.size(); ++i) {
        end = copy_text(call.m_TempStr[i], end);
    }

    // Deliberate: only every second of the joined texts goes.
    call.m_TempStr.remove_every_second(index);
    return call.give_text({room, end});
}

// strreplace(new, old, text[, start, mode])
Error strreplace(Call& call) {
    if (call.m_TempStr.empty()) return Error::none;
    if (call.m_TempStr.size() < 2) return Error::too_few_texts;
    const std::string_view replacement = call.value.text;
    std::string_view old = call.m_TempStr.from_top(1);
    const std::string_view text = call.last_text();
    const int start = to_int(call.number_or(2, 1.0));
    const bool first_only = to_int(call.number_or(3, 1.0)) == 0;
    if (start < 1) return Error::not_positive;

    const std::size_t offset = std::min(static_cast<std::size_t>(start) - 1, text.size());
    std::string_view part = text.substr(offset);
    std::string_view rest;
    // Deliberate: a match that ends on the last byte of the range may be out of reach.
    if (part.size() <= old.size()) old = {};
    if (first_only) {
        const std::size_t last = part.size() - old.size();  // where it can stand, or does not
        const std::size_t end = std::min(find_piece(part, old), last) + old.size();
        rest = part.substr(end);
        part = part.substr(0, end);
    }
    const Error error = replace_all(call, text.substr(0, offset), part, rest, old, replacement);
    if (error == Error::none) call.PopTempStr(2);
    call.PopNumArray(2);
    return error;
}

// strdelete(piece, text)
Error strdelete(Call& call) {
    if (call.m_TempStr.empty()) return Error::none;
    const Error error = replace_all(call, {}, call.last_text(), {}, call.value.text, {});
    if (error == Error::none) call.PopTempStr(1);
    return error;
}

// strinsert(text, piece, offset)
Error strinsert(Call& call) {
    if (call.g_NumArray.empty()) return Error::none;
    if (!(call.g_NumArray.from_top(0) >= 0.0)) return Error::too_few_texts;
    if (call.m_TempStr.empty()) return Error::too_few_texts;
    const std::string_view text = call.value.text;
    const std::string_view piece = call.last_text();
    const int wanted = std::max(to_int(call.extra.values[1]), 0);
    const std::size_t offset = std::min(static_cast<std::size_t>(wanted), text.size());
    const Error error =
        replace_all(call, text.substr(0, offset), piece, text.substr(offset), {}, {});
    if (error == Error::none) {
        call.PopTempStr(1);
        call.PopNumArray(1);
    }
    return error;
}

// strcase(text[, 0]): letters byte by byte, in double-byte characters too.
Error strcase(Call& call) {
    if (!call.is_in_range()) return Error::out_of_range;
    const std::string_view text = call.value.text;
    char* changed = call.arena.allocate(text.size());
    std::ranges::transform(text, changed, call.extra.values[0] == 0.0 ? to_lower : to_upper);
    return call.give_text({changed, text.size()});
}

}  // namespace morandel
