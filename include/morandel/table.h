// The rows of one of the library's tables. They live as long as the program.
//     for (const morandel::Function& row : morandel::functions()) std::cout << row.name << '\n';

#pragma once

#include <cstddef>

namespace morandel {

template <class Row>
class Table {
  public:
    constexpr Table(const Row* rows, std::size_t size) : m_rows(rows), m_size(size) {}

    [[nodiscard]] constexpr std::size_t size() const { return m_size; }
    [[nodiscard]] constexpr bool empty() const { return m_size == 0; }
    [[nodiscard]] constexpr const Row* begin() const { return m_rows; }
    [[nodiscard]] constexpr const Row* end() const { return m_rows + m_size; }
    constexpr const Row& operator[](std::size_t index) const { return m_rows[index]; }

  private:
    const Row* m_rows;
    std::size_t m_size;
};

}  // namespace morandel
