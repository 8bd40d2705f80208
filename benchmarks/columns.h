// What is measured by columns: formulas in the spelling of each contestant, numbers and texts.

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/workload.h"

namespace bench {

struct ColumnFormula {
    const char* group;  // of the report's tables
    std::string morandel;
    std::string muparser;
    std::string python;  // as numpy and numexpr read it
    std::vector<std::string> names;
};
const std::vector<ColumnFormula>& column_formulas();

// How many rows are measured, from the fewest.
const std::vector<std::size_t>& column_sizes();
constexpr std::size_t text_rows = 20'000;

// Numbers that begin a page, huge pages where there are enough, as numpy keeps its own.
class Numbers {
  public:
    explicit Numbers(std::size_t rows);
    [[nodiscard]] double* data() const { return m_numbers.get(); }
    [[nodiscard]] std::size_t rows() const { return m_rows; }

  private:
    struct Free {
        void operator()(double* numbers) const;
    };
    std::unique_ptr<double[], Free> m_numbers;
    std::size_t m_rows;
};

// Four columns by the rule of fill(), a round a row; made when they are first asked for.
const std::vector<Numbers>& columns_of(std::size_t rows);

// Texts of 100 bytes, one after the other, with where each begins.
struct Texts {
    std::string bytes;
    std::vector<std::size_t> offsets = {0};

    void add(std::string_view text) {
        bytes += text;
        offsets.push_back(bytes.size());
    }
};
// For s and t.
const std::vector<Texts>& columns_of_texts();

}  // namespace bench
