// How numbers are written.

#pragma once

#include <string>

namespace morandel::cli {

// The shortest digits that read back to the same number, written out from 1e-5 up to 1e17.
std::string number_text(double number);
void append_number(std::string& text, double number);

class NumberFormat {
  public:
    NumberFormat() = default;
    // The decimals are empty, or 0 to 15; UsageError for others. Plain: never an exponent.
    NumberFormat(const std::string& decimals, bool plain);

    void append(std::string& text, double number) const;
    [[nodiscard]] std::string text(double number) const;
    [[nodiscard]] bool is_plain() const { return m_plain; }
    // As the decimals ask, halves away from zero as preci rounds them.
    [[nodiscard]] double rounded(double number) const;

  private:
    int m_decimals = -1;
    bool m_plain = false;
};

}  // namespace morandel::cli
