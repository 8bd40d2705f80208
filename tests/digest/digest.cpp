// Computes the formulas of a file, a line each, and many random ones, and prints a digest of all
// outcomes, to be the same on every platform. Formulas that call what platforms compute differently
// in the last place have a digest of their own.
// usage: digest FORMULAS [COUNT [OUTCOMES]]   the last one is a file for all outcomes, a line each

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include <morandel.h>
#include "tests/random_formulas.h"

namespace {

class Digest {  // FNV-1a
  public:
    void add(std::string_view text) {
        for (const char c : text) {
            m_value = (m_value ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
        }
        ++m_count;
    }
    void print(const char* what) const {
        std::printf("%-32s %8llu %016llx\n", what, static_cast<unsigned long long>(m_count),
                    static_cast<unsigned long long>(m_value));
    }

  private:
    std::uint64_t m_value = 0xcbf29ce484222325u;
    std::uint64_t m_count = 0;
};

// Whether the platform's mathematics may show in the last place.
bool is_transcendental(std::string formula) {
    for (char& c : formula) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    for (const char* name : {"sin", "cos", "tan", "ln", "log", "^"}) {
        if (formula.find(name) != std::string::npos) return true;
    }
    return false;
}

void add_number(std::string& line, double number) {
    char room[24];
    // One NaN is as good as another; processors choose its sign.
    const std::uint64_t bits =
        std::isnan(number) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(number);
    std::snprintf(room, sizeof room, " %016llx ", static_cast<unsigned long long>(bits));
    line += room;
}

// For a line of a file.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == '\\') {
            result += '\\';
            result += static_cast<char>('@' + (c & 0x1f));
        } else {
            result += c;
        }
    }
    return result;
}

// Not streams, which some C++ libraries come without.
struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

// False at the end of the file.
bool read_line(std::FILE* file, std::string& line) {
    line.clear();
    int c = 0;
    while ((c = std::fgetc(file)) != EOF && c != '\n') line += static_cast<char>(c);
    return c != EOF || !line.empty();
}

// All that a host sees of a formula, evaluated twice and checked.
std::string outcome(const std::string& formula) {
    CExpress evaluator;
    evaluator.SetNumberOfPara(4);
    const auto declare = [&evaluator](int place, const char* name, double number,
                                      const char* text) {
        MYPARA para{name, number, text};
        evaluator.SetPara(&para, place, *text != '\0');
    };
    declare(1, "a", 2.675, "");
    declare(2, "b", -7.0, "");
    declare(3, "s", 0.0, "abcab");
    declare(4, "t", 0.0, "12.5 kg");
    std::string line;
    const bool accepted = evaluator.SetExpression(formula.c_str()) != 0;
    line += accepted ? "accepted" : "refused";
    for (int times = 0; times < 2; ++times) {
        const bool computed = evaluator.CalcExpression() != 0;
        line += computed ? " computed" : " failed";
        add_number(line, evaluator.GetResult());
        line += std::to_string(evaluator.GetResultType()) + ' ' +
                std::to_string(evaluator.GetErrorNumber()) + ' ' +
                std::to_string(evaluator.GetExpressionStatus()) + ' ' + evaluator.m_StrResult +
                ' ' + evaluator.m_ErrorMessage;
    }
    for (int i = 1; i <= evaluator.GetVariableNum(); ++i) {
        int kind = 0;
        line += ' ' + evaluator.GetVariable(i, &kind);
        line += ':' + std::to_string(kind);
    }
    return line;
}

}  // namespace

int main(int argument_count, char** arguments) {
    if (argument_count < 2) {
        std::fputs("usage: digest FORMULAS [COUNT [OUTCOMES]]\n", stderr);
        return 2;
    }
    const File file(std::fopen(arguments[1], "rb"));
    if (file == nullptr) {
        std::fprintf(stderr, "digest: %s cannot be read\n", arguments[1]);
        return 2;
    }
    const unsigned long count =
        argument_count > 2 ? std::strtoul(arguments[2], nullptr, 10) : 1'000'000;
    const File outcomes(argument_count > 3 ? std::fopen(arguments[3], "wb") : nullptr);

    Digest texts;
    Digest exact;
    Digest transcendental;
    const auto compute = [&](const std::string& formula) {
        const std::string line = outcome(formula);
        texts.add(formula);
        (is_transcendental(formula) ? transcendental : exact).add(line);
        if (outcomes == nullptr) return;
        const std::string record = escaped(formula) + '\t' + escaped(line) + '\n';
        std::fwrite(record.data(), 1, record.size(), outcomes.get());
    };
    std::string formula;
    while (read_line(file.get(), formula)) compute(formula);
    morandel::tests::RandomFormulas random(1);
    for (unsigned long i = 0; i < count; ++i) compute(random.formula());
    texts.print("formulas");
    exact.print("outcomes, exact");
    transcendental.print("outcomes, transcendental");
    return 0;
}
