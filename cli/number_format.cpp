#include "cli/number_format.h"

#include <morandel.h>

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "cli/messages.h"

namespace morandel::cli {
namespace {

constexpr int most_decimals = 15;
constexpr std::size_t longest_number = 1100;  // the smallest one written out, and more

template <class... Format>
void append_digits(std::string& text, double number, Format... format) {
    std::array<char, longest_number> digits{};
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, format...);
    text.append(digits.data(), written.ptr);
}

// A NaN has no sign worth showing.
bool append_special(std::string& text, double number) {
    if (std::isfinite(number)) return false;
    text += std::isnan(number) ? "nan" : number < 0 ? "-inf" : "inf";
    return true;
}

}  // namespace

void append_number(std::string& text, double number) {
    std::array<char, 64> digits;  // NOLINT: it is written before it is read
    const double size = std::abs(number);
    const bool written_out = size == 0.0 || (size >= 1e-5 && size < 1e17);
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(), number,
                      written_out ? std::chars_format::fixed : std::chars_format::general);
    text.append(digits.data(), written.ptr);
}

std::string number_text(double number) {
    std::string text;
    append_number(text, number);
    return text;
}

NumberFormat::NumberFormat(const std::string& decimals, bool plain) : m_plain(plain) {
    if (decimals.empty()) return;
    const char* const end = decimals.data() + decimals.size();
    const auto read = std::from_chars(decimals.data(), end, m_decimals);
    const bool whole = read.ec == std::errc() && read.ptr == end;
    if (!whole || m_decimals < 0 || m_decimals > most_decimals) {
        throw UsageError(say("--decimals takes 0 to 15, not '{0}'", decimals));
    }
}

double NumberFormat::rounded(double number) const {
    if (m_decimals < 0 || !std::isfinite(number)) return number;
    CExpress express;
    MYPARA x{"x", number, ""};
    express.SetNumberOfPara(1);
    express.SetPara(&x, 1, false);
    const std::string formula = "preci(x, " + std::to_string(m_decimals) + ")";
    const bool done = express.SetExpression(formula.c_str()) != 0 && express.CalcExpression() != 0;
    return done ? express.GetResult() : number;
}

void NumberFormat::append(std::string& text, double number) const {
    if (append_special(text, number)) return;
    if (m_decimals >= 0) {
        append_digits(text, rounded(number), std::chars_format::fixed, m_decimals);
    } else if (m_plain) {
        append_digits(text, number, std::chars_format::fixed);
    } else {
        append_number(text, number);
    }
}

std::string NumberFormat::text(double number) const {
    std::string text;
    append(text, number);
    return text;
}

}  // namespace morandel::cli
