// Random formulas, texts and numbers: well formed, mutated, broken, at the limits.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::tests {

class RandomFormulas {
  public:
    explicit RandomFormulas(std::uint32_t seed) : m_random(seed) {}

    std::uint32_t below(std::size_t limit) {
        return static_cast<std::uint32_t>(m_random() % limit);
    }
    template <class Choices>
    auto& pick(const Choices& choices) {
        return choices[below(std::size(choices))];
    }

    std::string name();  // of few, so that some are declared
    std::string text();  // any bytes but the null byte and quotes
    double number();
    // Of the kind that it is asked for, but for some.
    std::string expression(char kind, int depth);
    std::string formula();

    // Names to use besides those that there always are.
    std::vector<std::string> more_names;

  private:
    std::string operand(char kind);
    std::string call(char kind, int depth);
    std::string arguments(std::string_view kinds, int depth);
    std::string soup();
    void mutate(std::string& formula);

    std::mt19937 m_random;
    std::vector<std::string> m_earlier;
    int m_strcats = 0;
};

// A number from the environment, or the fallback.
inline std::uint64_t setting(const char* name, std::uint64_t fallback) {
    const char* text = std::getenv(name);
    return text == nullptr ? fallback : std::strtoull(text, nullptr, 10);
}

}  // namespace morandel::tests
