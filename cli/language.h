// The language that the command speaks: Chinese where the system does, else English.

#pragma once

#include <optional>
#include <string_view>

namespace morandel::cli {

enum class Language { english, chinese };

Language language();
void speak(Language language);

// "zh", "en", and locales such as "zh_CN.UTF-8"; nothing for others.
std::optional<Language> find_language(std::string_view name);

}  // namespace morandel::cli
