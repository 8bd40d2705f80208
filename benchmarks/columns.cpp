#include "benchmarks/columns.h"

#include <cstdlib>
#include <map>

#include <sys/mman.h>

namespace bench {
namespace {

constexpr std::size_t huge_page = std::size_t{2} << 20;

ColumnFormula sums(const std::string& text, std::vector<std::string> names) {
    return {"columns-sums", text, text, text, std::move(names)};
}

const char* const radians = "*0.017453292519943295";

}  // namespace

const std::vector<ColumnFormula>& column_formulas() {
    static const std::vector<ColumnFormula> all = {
        sums("(a+b)*c-d/2", {"a", "b", "c", "d"}),
        sums("a*b+c*d-a/b", {"a", "b", "c", "d"}),
        sums("a+b", {"a", "b"}),
        sums("a*a+b*b-c*d+a/d", {"a", "b", "c", "d"}),
        sums("(a-b)*(c-d)+a*d", {"a", "b", "c", "d"}),
        {"columns-roots", "sqrt(a*b+c*d)", "sqrt(a*b+c*d)", "sqrt(a*b+c*d)", {"a", "b", "c", "d"}},
        {"columns-roots", "sqrt(a^2+b^2)", "sqrt(a^2+b^2)", "sqrt(a**2+b**2)", {"a", "b"}},
        {"columns-roots",
         "(a > 2) and (b > 3)",
         "(a > 2) && (b > 3)",
         "(a > 2) & (b > 3)",
         {"a", "b"}},
        {"columns-functions",
         "sin(a)*ln(b)+c^1.5",
         std::string("sin(a") + radians + ")*ln(b)+c^1.5",
         std::string("sin(a") + radians + ")*log(b)+c**1.5",
         {"a", "b", "c"}},
        {"columns-functions",
         "a^2.5-ln(b)*cos(c)",
         std::string("a^2.5-ln(b)*cos(c") + radians + ')',
         std::string("a**2.5-log(b)*cos(c") + radians + ')',
         {"a", "b", "c"}},
    };
    return all;
}

const std::vector<std::size_t>& column_sizes() {
    static const std::vector<std::size_t> all = {1'000, 20'000, 1'000'000};
    return all;
}

Numbers::Numbers(std::size_t rows) : m_rows(rows) {
    const std::size_t page = rows * sizeof(double) < 2 * huge_page ? 4096 : huge_page;
    const std::size_t size = (rows * sizeof(double) + page - 1) / page * page;
    m_numbers.reset(static_cast<double*>(std::aligned_alloc(page, size)));
    if (page == huge_page) madvise(m_numbers.get(), size, MADV_HUGEPAGE);
}

void Numbers::Free::operator()(double* numbers) const { std::free(numbers); }

const std::vector<Numbers>& columns_of(std::size_t rows) {
    static std::map<std::size_t, std::vector<Numbers>> all;
    std::vector<Numbers>& columns = all[rows];
    if (!columns.empty()) return columns;
    for (int i = 0; i < 4; ++i) columns.emplace_back(rows);
    std::vector<double> row(columns.size());
    for (unsigned round = 0; round < rows; ++round) {
        fill(row, round);
        for (std::size_t i = 0; i < row.size(); ++i) columns[i].data()[round] = row[i];
    }
    return columns;
}

const std::vector<Texts>& columns_of_texts() {
    static const std::vector<Texts> all = [] {
        std::vector<Texts> columns(2);
        for (std::size_t row = 0; row < text_rows; ++row) {
            const std::string start(row % 90, 'x');
            const std::string rest(94 - start.size(), 'y');
            columns[0].add(start + "needle" + rest);
            columns[1].add(rest + "needle" + start);
        }
        return columns;
    }();
    return all;
}

}  // namespace bench
