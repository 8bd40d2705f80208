// String functions that give a part of a text.

#include <algorithm>
#include <cstdint>

#include "tests/model/numbers.h"
#include "tests/model/strings.h"

namespace model {

// strsub(text, start, length[, direction])
Error strsub(Call& call) {
    if (call.numbers.empty()) return none;
    if (call.numbers.size() < 2) return value_missing;
    // Any third number that is pending makes the last one the direction.
    std::vector<double> last = call.numbers;
    bool from_end = false;
    if (last.size() > 2) {
        from_end = to_int(last.back()) == 0;
        last.pop_back();
    }
    const std::int64_t length = to_int(last.back());
    const std::int64_t start = to_int(last[last.size() - 2]);
    if (start < 1) return value_incorrect;
    if (length < -1) return negative_length;

    std::string text = call.value.text;
    const auto size = static_cast<std::int64_t>(text.size());
    const std::int64_t most = std::max<std::int64_t>(size - start + 1, 0);
    const std::int64_t count = length == -1 ? most : std::min(length, most);
    if (count == 0) {
        text.clear();
    } else {
        const std::int64_t offset = from_end ? size - (start - 1) - count : start - 1;
        text = text.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(count));
    }
    call.consume(0, 3);
    return call.give_text(text);
}

// strtrim(piece, text[, side])
Error strtrim(Call& call) {
    if (call.texts.empty()) return too_few_texts;
    const std::string piece = call.value.text;
    std::string text = call.texts.back();
    const bool at_start = call.numbers.empty() || to_int(call.numbers.back()) != 0;
    if (at_start && text.starts_with(piece)) {
        text.erase(0, piece.size());
    } else if (!at_start && text.ends_with(piece)) {
        text.resize(text.size() - piece.size());
    }
    call.consume(1, 1);
    return call.give_text(text);
}

// strtrims(text)
Error strtrims(Call& call) {
    const std::string text = call.value.text;
    std::size_t begin = text.size();
    std::size_t end = text.size();
    for (std::size_t i = 0; i < text.size(); i += character_size(text, i)) {
        if (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r')) continue;
        if (begin == text.size()) begin = i;
        end = i + character_size(text, i);
    }
    return call.give_text(text.substr(begin, end - begin));
}

// strsubn(text, separator, n)
Error strsubn(Call& call) {
    if (call.numbers.empty()) return none;
    const double place = call.extra.values[1];
    if (call.texts.empty() || !(place >= 1.0)) return value_missing;
    const std::string separator = call.texts.back();
    std::string rest = call.value.text;
    std::string piece;
    if (!separator.empty()) {
        for (int left_over = to_int(place); left_over > 0; --left_over) {
            const std::size_t found = rest.find(separator);
            piece = rest.substr(0, found);
            if (found == std::string::npos) {
                if (left_over > 1) piece.clear();
                break;
            }
            rest.erase(0, found + separator.size());
        }
    }
    call.consume(1, 1);
    return call.give_text(piece);
}

// left(text, n) and right(text, n). Two pending numbers are required though they take one.
Error end_of(Call& call, bool last) {
    if (call.numbers.size() < 2) return value_missing;
    const int count = to_int(call.extra.values[0]);
    if (count < 1) return not_positive;
    std::string text = call.value.text;
    const auto length = static_cast<std::size_t>(count);
    if (text.size() > length) {
        text = last ? text.substr(text.size() - length) : text.substr(0, length);
    }
    call.consume(0, 1);
    return call.give_text(text);
}

}  // namespace model
