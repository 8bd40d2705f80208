#include "cli/messages.h"

#include <cstddef>

namespace morandel::cli {
namespace {

std::string fill_one(std::string_view sentence, std::span<const Filling> fillings,
                     const std::string& (Filling::*text)() const) {
    std::string filled;
    for (std::size_t i = 0; i < sentence.size(); ++i) {
        const bool is_place =
            sentence[i] == '{' && i + 2 < sentence.size() && sentence[i + 2] == '}';
        if (!is_place) {
            filled += sentence[i];
            continue;
        }
        filled += (fillings[static_cast<std::size_t>(sentence[i + 1] - '0')].*text)();
        i += 2;
    }
    return filled;
}

}  // namespace

Message fill(const Phrase& phrase, std::span<const Filling> fillings) {
    return {fill_one(phrase.english, fillings, &Filling::english),
            fill_one(phrase.chinese, fillings, &Filling::chinese)};
}

}  // namespace morandel::cli
