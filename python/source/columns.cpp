#include "source/columns.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "source/objects.h"
#include "source/texts.h"

namespace morandel::python {
namespace {

// So many that values, results and what is between them stay in the cache; texts take more of it.
constexpr std::size_t rows_of_block = 16384;
constexpr std::size_t rows_of_block_of_texts = 2048;
// So soon Ctrl-C is noticed.
constexpr std::chrono::milliseconds between_signals(200);

class Computation {
  public:
    Computation(const Formula& formula, const std::vector<Source>& sources)
        : m_formula(formula), m_sources(sources), m_rooms(sources.size()) {}

    [[nodiscard]] std::size_t count() const { return m_rows ? m_rows->size() : m_count; }
    [[nodiscard]] bool all_present() const { return !m_rows; }
    [[nodiscard]] std::size_t row(std::size_t i) const { return m_rows ? (*m_rows)[i] : i; }
    [[nodiscard]] const std::vector<std::size_t>& failed() const { return m_failed; }
    [[nodiscard]] bool is_ok(std::size_t i) const { return m_status[i] == MORANDEL_ROW_OK; }

    // Rows whose values are all there. Needs Python's lock where there are objects.
    void load(std::size_t begin, std::size_t count) {
        m_begin = begin;
        m_count = count;
        m_missing.assign(count, 0);
        bool any = false;
        for (const Source& source : m_sources) any = source.mark_missing(begin, m_missing) || any;
        m_rows.reset();
        if (any) {
            m_rows.emplace();
            for (std::size_t i = 0; i < count; ++i) {
                if (m_missing[i] == 0) m_rows->push_back(i);
            }
        }
        m_columns.clear();
        for (std::size_t i = 0; i < m_sources.size(); ++i) {
            m_columns.push_back(
                m_sources[i].block(begin, count, m_rows ? &*m_rows : nullptr, m_rooms[i]));
        }
        m_status.assign(this->count(), 0);
    }

    // Without Python's lock.
    void compute_numbers(double* results) {
        morandel_error* error = nullptr;
        detail::check(
            morandel_formula_columns(m_formula.handle(), m_columns.data(), m_columns.size(),
                                     count(), results, m_status.data(), &error),
            error);
        note_failures();
    }

    // To where there is room for all rows.
    void compute_present_numbers(double* results) {
        if (all_present()) {
            compute_numbers(results);
        } else {
            m_results.resize(count());
            compute_numbers(m_results.data());
            std::fill_n(results, m_count, NAN);
            for (std::size_t i = 0; i < count(); ++i) results[row(i)] = m_results[i];
        }
        for (const std::size_t failure : m_failed) results[failure - m_begin] = NAN;
    }

    detail::Owned<morandel_texts> compute_texts() {
        morandel_error* error = nullptr;
        morandel_texts* texts = nullptr;
        const int succeeded =
            morandel_formula_text_columns(m_formula.handle(), m_columns.data(), m_columns.size(),
                                          count(), &texts, m_status.data(), &error);
        detail::Owned<morandel_texts> owned(texts);
        detail::check(succeeded, error);
        note_failures();
        return owned;
    }

  private:
    void note_failures() {
        m_failed.clear();
        // First as a plain loop, which the compiler makes vector code of.
        unsigned char any = 0;
        for (const unsigned char status : m_status) any |= status;
        if (any == MORANDEL_ROW_OK) return;
        for (std::size_t i = 0; i < count(); ++i) {
            if (!is_ok(i)) m_failed.push_back(m_begin + row(i));
        }
    }

    const Formula& m_formula;
    const std::vector<Source>& m_sources;
    std::vector<Source::Room> m_rooms;
    std::size_t m_begin = 0;
    std::size_t m_count = 0;
    std::vector<unsigned char> m_missing;
    std::optional<std::vector<std::size_t>> m_rows;  // of the block, where some are missing
    std::vector<morandel_column> m_columns;
    std::vector<unsigned char> m_status;
    std::vector<double> m_results;
    std::vector<std::size_t> m_failed;
};

// The array's elements are null at first.
void set_object(char* place, PyObject* object) {
    PyObject* before = nullptr;
    std::memcpy(&before, place, sizeof before);
    std::memcpy(place, &object, sizeof object);
    Py_XDECREF(before);
}

bool is_main_thread() {
    const py::module_ threading = py::module_::import("threading");
    const py::object main = threading.attr("main_thread")();
    const py::object ident = main.attr("ident");
    return ident.equal(threading.attr("get_ident")());
}

class Run {
  public:
    Run(const Formula& formula, const std::vector<Source>& sources, std::size_t rows,
        std::size_t block, bool ends)
        : m_computation(formula, sources),
          m_rows(rows),
          m_rows_of_block(block),
          m_ends_at_failure(ends) {}

    template <class Work>
    void each_block(const Work& work) {
        for (std::size_t begin = 0; begin < m_rows; begin += m_rows_of_block) {
            work(m_computation, begin, std::min(m_rows_of_block, m_rows - begin));
            const std::vector<std::size_t>& failed = m_computation.failed();
            m_failed.insert(m_failed.end(), failed.begin(), failed.end());
            if (m_ends_at_failure && !m_failed.empty()) break;
            check_signals();
        }
    }

    [[nodiscard]] py::array_t<std::int64_t> failed() const {
        py::array_t<std::int64_t> rows(static_cast<py::ssize_t>(m_failed.size()));
        std::copy(m_failed.begin(), m_failed.end(), rows.mutable_data());
        return rows;
    }

  private:
    // Throws KeyboardInterrupt where one came. Whether Python's lock is held or not. Signals are
    // the main thread's; others would wait for the lock in vain.
    void check_signals() {
        if (!m_is_main) return;
        const auto now = std::chrono::steady_clock::now();
        if (now < m_next_check) return;
        m_next_check = now + between_signals;
        const py::gil_scoped_acquire locked;
        end_if_interrupted();
    }

    Computation m_computation;
    bool m_is_main = is_main_thread();
    std::chrono::steady_clock::time_point m_next_check =
        std::chrono::steady_clock::now() + between_signals;
    std::size_t m_rows;
    std::size_t m_rows_of_block;
    bool m_ends_at_failure;
    std::vector<std::size_t> m_failed;
};

py::array numbers(Run& run, std::size_t rows, bool has_objects) {
    py::array_t<double> results(static_cast<py::ssize_t>(rows));
    double* out = results.mutable_data();
    // Taken again for each block, the lock would be waited for each time.
    std::optional<py::gil_scoped_release> unlocked;
    if (!has_objects) unlocked.emplace();
    run.each_block([&](Computation& computation, std::size_t begin, std::size_t count) {
        computation.load(begin, count);
        std::optional<py::gil_scoped_release> unlocked_for_block;
        if (has_objects) unlocked_for_block.emplace();
        computation.compute_present_numbers(out + begin);
    });
    return results;
}

py::array texts(Run& run, std::size_t rows) {
    py::array results(py::dtype("O"), std::vector<py::ssize_t>{static_cast<py::ssize_t>(rows)});
    auto* out = static_cast<char*>(results.mutable_data());
    for (std::size_t row = 0; row < rows; ++row) {
        set_object(out + row * sizeof(PyObject*), py::none().release().ptr());
    }
    run.each_block([&](Computation& computation, std::size_t begin, std::size_t count) {
        computation.load(begin, count);
        detail::Owned<morandel_texts> made;
        {
            const py::gil_scoped_release unlocked;
            made = computation.compute_texts();
        }
        const char* bytes = morandel_texts_bytes(made.get(), nullptr);
        const std::size_t* offsets = morandel_texts_offsets(made.get());
        for (std::size_t i = 0; i < computation.count(); ++i) {
            if (!computation.is_ok(i)) continue;
            set_object(out + (begin + computation.row(i)) * sizeof(PyObject*),
                       str_of({bytes + offsets[i], offsets[i + 1] - offsets[i]}));
        }
    });
    return results;
}

}  // namespace

py::tuple compute_columns(const Formula& formula, const std::vector<Source>& sources,
                          std::size_t rows, bool wants_text, bool ends_at_failure) {
    for (const Source& source : sources) source.check(rows);
    const bool has_objects = std::any_of(sources.begin(), sources.end(),
                                         [](const Source& source) { return source.has_objects(); });
    const std::size_t block = has_objects || wants_text ? rows_of_block_of_texts : rows_of_block;
    Run run(formula, sources, rows, block, ends_at_failure);
    py::array results = wants_text ? texts(run, rows) : numbers(run, rows, has_objects);
    return py::make_tuple(std::move(results), run.failed());
}

void throw_row_error(const Formula& formula, const std::vector<Source>& sources, std::size_t row,
                     bool wants_text) {
    std::vector<std::string> rooms(sources.size());
    std::vector<morandel_column> columns;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        sources[i].check(row + 1);
        columns.push_back(sources[i].single(row, rooms[i]));
    }
    morandel_error* error = nullptr;
    const int wants = wants_text ? MORANDEL_TEXT : MORANDEL_NUMBER;
    if (morandel_formula_row_error(formula.handle(), columns.data(), columns.size(), 1, 0, wants,
                                   &error) == 1) {
        throw detail::take(error);
    }
}

}  // namespace morandel::python
