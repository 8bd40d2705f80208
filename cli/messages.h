// What the command says, in both languages at once: the one to be shown is chosen last.

#pragma once

#include <array>
#include <concepts>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "cli/language.h"
#include "cli/phrases.h"

namespace morandel::cli {

struct Message {
    std::string english;
    std::string chinese;

    // In the language that the command speaks.
    [[nodiscard]] const std::string& shown() const {
        return language() == Language::chinese ? chinese : english;
    }
    [[nodiscard]] bool empty() const { return english.empty(); }
};

// One sentence of the table of phrases, by its English text; one that is not there does not
// compile.
class Sentence {
  public:
    consteval Sentence(const char* english) : m_phrase(find(english)) {}  // NOLINT: a conversion

    [[nodiscard]] const Phrase& phrase() const { return *m_phrase; }

  private:
    static consteval const Phrase* find(std::string_view english) {
        for (const Phrase& phrase : phrases) {
            if (phrase.english == english) return &phrase;
        }
        throw "no such phrase";  // ends the compilation
    }

    const Phrase* m_phrase;
};

// What stands for {0}, {1} ... in a sentence: the same in both languages, or a message itself.
class Filling {
  public:
    Filling(std::string_view text) : m_english(text), m_chinese(text) {}       // NOLINT
    Filling(const char* text) : Filling(std::string_view(text)) {}             // NOLINT
    Filling(const std::string& text) : Filling(std::string_view(text)) {}      // NOLINT
    Filling(const Message& m) : m_english(m.english), m_chinese(m.chinese) {}  // NOLINT
    template <std::integral Number>
    Filling(Number number) : Filling(std::to_string(number)) {}  // NOLINT

    [[nodiscard]] const std::string& english() const { return m_english; }
    [[nodiscard]] const std::string& chinese() const { return m_chinese; }

  private:
    std::string m_english;
    std::string m_chinese;
};

// The first 60 characters of a longer text, and "...".
std::string shortened(std::string_view text);

// What a sentence quotes is shortened.
Message fill(const Phrase& phrase, std::span<const Filling> fillings);

template <class... Fillings>
Message say(Sentence sentence, const Fillings&... fillings) {
    const std::array<Filling, sizeof...(fillings)> all{Filling(fillings)...};
    return fill(sentence.phrase(), all);
}

// Ends what was begun; the command tells it.
class Problem : public std::runtime_error {
  public:
    // The picture shows the place in a formula, if there is one.
    explicit Problem(Message message, std::string picture = {})
        : std::runtime_error(message.english),
          m_message(std::move(message)),
          m_picture(std::move(picture)) {}
    [[nodiscard]] const Message& message() const { return m_message; }
    [[nodiscard]] const std::string& picture() const { return m_picture; }

  private:
    Message m_message;
    std::string m_picture;
};

// Wrong use of the command, exit status 2.
class UsageError : public Problem {
  public:
    using Problem::Problem;
};

}  // namespace morandel::cli
