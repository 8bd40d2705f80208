// The values of a formula's names as Python has them, a block of rows at a time.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <morandel/c.h>

namespace morandel::python {

namespace py = pybind11;

// Of one name for all rows: a float, a str, a double array of any stride, an object array of
// texts, or a pair of codes and the texts that they stand for.
class Source {
  public:
    explicit Source(const py::handle& value);

    // Whether Python's objects are looked at, for which its lock is needed.
    [[nodiscard]] bool has_objects() const { return m_kind == Kind::objects; }
    // Throws where there are fewer rows.
    void check(std::size_t rows) const;
    // Marks rows without a value. Objects that are no texts throw.
    bool mark_missing(std::size_t begin, std::vector<unsigned char>& missing) const;

    // One value for all rows, or what one row has.
    [[nodiscard]] morandel_column single(std::size_t row, std::string& room) const;

    struct Room {
        std::string bytes;
        std::vector<std::size_t> offsets;
        std::vector<double> numbers;
    };
    // Those rows, counted from the first of the block; null for all of them.
    morandel_column block(std::size_t begin, std::size_t count,
                          const std::vector<std::size_t>* rows, Room& room) const;

  private:
    enum class Kind { number, text, numbers, objects, categories };

    [[nodiscard]] bool is_plain_column() const;
    [[nodiscard]] const char* at(std::size_t row) const;
    [[nodiscard]] std::size_t category(std::size_t row) const;
    void append_text(std::size_t row, std::string& bytes) const;
    void read_array(const py::array& array);
    void read_categories(const py::tuple& pair);

    Kind m_kind = Kind::number;
    py::object m_owner;
    double m_number = 0.0;
    std::string m_text;
    const char* m_data = nullptr;
    std::ptrdiff_t m_stride = 0;
    std::size_t m_rows = 0;
    std::vector<std::string> m_categories;
};

}  // namespace morandel::python
