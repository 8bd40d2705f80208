#include "cli/language.h"

#include <cstdlib>

#include "cli/system.h"

namespace morandel::cli {
namespace {

// The first of the settings that is made decides, whether it names a language of ours or not.
Language language_of_system() {
    for (const char* setting : {"MORANDEL_LANG", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* name = std::getenv(setting);
        if (name == nullptr || *name == '\0') continue;
        return find_language(name).value_or(Language::english);
    }
    return is_system_chinese() ? Language::chinese : Language::english;
}

Language& current() {
    static Language chosen = language_of_system();
    return chosen;
}

}  // namespace

Language language() { return current(); }

void speak(Language language) { current() = language; }

std::optional<Language> find_language(std::string_view name) {
    const std::string_view first = name.substr(0, name.find_first_of("_-.@"));
    if (first == "zh") return Language::chinese;
    if (first == "en") return Language::english;
    return std::nullopt;
}

}  // namespace morandel::cli
