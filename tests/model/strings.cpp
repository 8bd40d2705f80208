#include "tests/model/strings.h"

#include <algorithm>

#include "tests/model/numbers.h"
#include "tests/model/words.h"

namespace model {
namespace {

// Every occurrence of old in the part of the text from begin to end, from the left and not
// overlapping, replaced.
Error replace(Call& call, const std::string& text, std::size_t begin, std::size_t end,
              const std::string& old, const std::string& replacement) {
    std::string part = text.substr(begin, end - begin);
    const std::size_t count = count_occurrences(old, part);
    const std::size_t kept = text.size() - count * old.size();
    if (kept + count * replacement.size() > longest_text) return longer_than_target;
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; ++i) {
        at = part.find(old, at);
        part.replace(at, old.size(), replacement);
        at += replacement.size();
    }
    return call.give_text(text.substr(0, begin) + part + text.substr(end));
}

// strreplace(new, old, text[, start, mode])
Error strreplace(Call& call) {
    if (call.texts.empty()) return none;
    if (call.texts.size() < 2) return too_few_texts;
    const std::string replacement = call.value.text;
    const std::string old = call.texts[call.texts.size() - 2];
    const std::string text = call.texts.back();
    const int start = to_int(call.number_or(2, 1.0));
    const bool first_only = to_int(call.number_or(3, 1.0)) == 0;
    if (start < 1) return not_positive;

    const auto begin = static_cast<std::size_t>(start) - 1;
    Error error = none;
    if (old.empty() || text.size() <= begin || text.size() - begin < old.size() + 1) {
        error = text.size() > longest_text ? longer_than_target : call.give_text(text);
    } else {
        std::size_t end = text.size();
        const std::size_t first = text.find(old, begin);
        if (first_only && first != std::string::npos) end = first + old.size();
        error = replace(call, text, begin, end, old, replacement);
    }
    if (error == none) call.consume(2, 2);
    return error;
}

// strdelete(piece, text)
Error strdelete(Call& call) {
    if (call.texts.empty()) return none;
    const std::string text = call.texts.back();
    const Error error = replace(call, text, 0, text.size(), call.value.text, "");
    if (error == none) call.consume(1, 0);
    return error;
}

// strcat(text, text, ...): finds its further texts by its first one, in a table whose only entry
// ever filled a nested strcat has overwritten. The empty entries after it lead to index 0.
Error strcat(Call& call) {
    if (call.texts.empty()) return too_few_texts;
    std::string text = call.value.text;
    const StringArgument& entry = call.string_argument;
    if (text != entry.text && !text.empty()) return none;
    const std::size_t index = text == entry.text ? entry.index : 0;
    if (index >= call.texts.size()) return value_incorrect;

    std::size_t size = text.size();
    for (std::size_t i = index; i < call.texts.size(); ++i) size += call.texts[i].size();
    if (size > longest_text) return longer_than_target;
    // Only every second of the joined texts goes.
    std::vector<std::string> kept(call.texts.begin(),
                                  call.texts.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t i = index; i < call.texts.size(); ++i) {
        text += call.texts[i];
        if ((i - index) % 2 == 1) kept.push_back(call.texts[i]);
    }
    call.texts = kept;
    return call.give_text(text);
}

// strinsert(text, piece, offset)
Error strinsert(Call& call) {
    if (call.numbers.empty()) return none;
    if (!(call.numbers.back() >= 0.0)) return too_few_texts;
    if (call.texts.empty()) return too_few_texts;
    std::string text = call.value.text;
    const std::string piece = call.texts.back();
    if (text.size() + piece.size() > longest_text) return longer_than_target;
    const auto offset = static_cast<std::size_t>(std::max(to_int(call.extra.values[1]), 0));
    text.insert(std::min(offset, text.size()), piece);
    call.consume(1, 1);
    return call.give_text(text);
}

// With the letters of one byte in upper case.
std::string upper_case(std::string text) {
    for (std::size_t i = 0; i < text.size(); i += character_size(text, i)) {
        if (character_size(text, i) == 1) text[i] = to_upper(text[i]);
    }
    return text;
}

// strmismatch(text, other[, start, other start, mode]): without the start, none of the three
// counts; with it, the other start must be given too.
Error strmismatch(Call& call) {
    if (call.texts.empty()) return too_few_texts;
    const bool given = call.given(1);
    const double starts[] = {given ? call.extra.values[1] : 1.0,
                             given ? call.extra.values[2] : 1.0};
    const double mode = given ? call.extra.values[3] : 1.0;
    std::string texts[] = {call.value.text, call.texts.back()};

    for (int i = 0; i < 2; ++i) {
        if (to_int(starts[i]) - 1.0 > static_cast<double>(texts[i].size())) {
            call.consume(1, 0);
            return beyond_text;
        }
    }
    for (int i = 0; i < 2; ++i) {
        const auto size = static_cast<double>(texts[i].size());
        if (starts[i] - 1.0 < 0.0 || size - starts[i] + 1.0 < 1.0) return value_incorrect;
    }
    double length = call.value.number;
    if (mode == 0.0 || mode == 1.0 || mode == ExtraArguments::not_given) {
        for (int i = 0; i < 2; ++i) {
            const auto skipped = static_cast<std::size_t>(std::max(to_int(starts[i]), 1) - 1);
            texts[i].erase(0, skipped);
            if (mode != 0.0) texts[i] = upper_case(texts[i]);
        }
        std::size_t same = 0;
        while (same < std::min(texts[0].size(), texts[1].size()) &&
               texts[0][same] == texts[1][same])
            ++same;
        length = static_cast<double>(same);
    }
    call.consume(1, 3);
    return call.give_number(length, type_integer);
}

// strfind(piece, text[, start])
Error strfind(Call& call) {
    if (call.texts.empty()) return too_few_texts;
    const std::string piece = call.value.text;
    const int start = to_int(call.number_or(1, 1.0));
    if (start < 1) return not_positive;
    std::size_t at = std::string::npos;
    if (!piece.empty()) at = call.texts.back().find(piece, static_cast<std::size_t>(start) - 1);
    call.consume(1, 1);
    return call.give_number(at == std::string::npos ? -1.0 : static_cast<double>(at) + 1.0,
                            type_integer);
}

// strfindn(piece, text)
Error strfindn(Call& call) {
    if (call.texts.empty()) return value_missing;
    const auto count = static_cast<double>(count_occurrences(call.value.text, call.texts.back()));
    call.consume(1, 1);
    return call.give_number(count, type_number);
}

}  // namespace

void Call::consume(std::size_t text_count, std::size_t number_count) {
    for (; text_count > 0 && !texts.empty(); --text_count) texts.pop_back();
    for (; number_count > 0 && !numbers.empty(); --number_count) numbers.pop_back();
}

Error Call::give_text(const std::string& text) {
    value.text = text;
    value.type = type_text;
    return none;
}

Error Call::give_number(double number, ResultType type) {
    value.number = number;
    value.type = type;
    return none;
}

std::size_t count_occurrences(const std::string& piece, const std::string& text) {
    if (piece.empty()) return 0;
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + piece.size())) {
        ++count;
    }
    return count;
}

std::size_t character_size(const std::string& text, std::size_t index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    return byte >= 0x81 && byte <= 0xFE && index + 1 < text.size() ? 2 : 1;
}

Error string_function(char code, Call& call) {
    switch (code) {
        case 'U':
            return strsub(call);
        case 'T':
            return strtrim(call);
        case 'A':
            return strcat(call);
        case 'S':
            return strtrims(call);
        case 'M':
            return strmismatch(call);
        case 'F':
            return strfind(call);
        case 'R':
            return strreplace(call);
        case 'D':
            return strdelete(call);
        case 'Y':
            return strinsert(call);
        case 'V':
            return r2s(call);
        case 'Z':
            return s2r(call);
        case 'N':
            return strsubn(call);
        case 'l':
            return end_of(call, false);
        case 'i':
            return end_of(call, true);
        case 'f':
            return strfindn(call);
        case 'h':
            return choose(call);
        default:
            return none;
    }
}

}  // namespace model
