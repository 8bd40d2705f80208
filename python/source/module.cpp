// morandel._core: what the package stands on. Its Python files have the face and the types.

#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <morandel/formula.hpp>

#include "source/columns.h"
#include "source/objects.h"
#include "source/texts.h"
#include "source/values.h"

namespace morandel::python {
namespace {

py::object position_of(const std::optional<Position>& position) {
    if (!position) return py::none();
    return py::make_tuple(position->byte, position->character, position->bytes,
                          position->characters);
}

py::tuple told(const Notice& notice) {
    return py::make_tuple(notice.number(), notice.reason(), notice.message(), notice.english(),
                          position_of(notice.position()), notice.value());
}

std::vector<Source> sources_of(const py::sequence& values) {
    std::vector<Source> sources;
    sources.reserve(values.size());
    for (const py::handle& value : values) sources.emplace_back(value);
    return sources;
}

// What a formula has in quotes, one after the other.
std::string literals_of(std::string_view formula) {
    std::string all;
    bool is_quoted = false;
    for (const char c : formula) {
        if (c == '"') {
            is_quoted = !is_quoted;
        } else if (is_quoted) {
            all += c;
        }
    }
    return all;
}

class Prepared {
  public:
    Prepared(std::string_view text, const py::dict& kinds)
        : m_formula(text), m_literals(literals_of(text)) {
        std::vector<Name> names = m_formula.names();
        for (Name& name : names) {
            if (kinds.contains(name.text))
                name.kind = kinds[name.text.c_str()].cast<int>() == 2 ? Kind::text : Kind::number;
        }
        if (!kinds.empty()) m_formula = Formula(text, names);
    }

    [[nodiscard]] py::list names() const {
        py::list names;
        for (const Name& name : m_formula.names()) {
            names.append(py::make_tuple(name.text, name.kind == Kind::text));
        }
        return names;
    }

    // What the formula gives cannot be read off its text, so it is computed for values that most
    // formulas take.
    [[nodiscard]] bool gives_text() const {
        const std::string many = "2026-01-02,abc;def 12.5/xyz:0123456789";
        // With what the formula looks for in it, twice, and long.
        const std::string own =
            many + m_literals + many + m_literals + std::string(200, 'x') + many;
        const std::vector<Name> names = m_formula.names();
        const detail::Owned<morandel_result> result(morandel_result_create());
        if (!result) throw std::bad_alloc();
        for (const std::string& text : {std::string("1"), many, own, std::string()}) {
            for (const double number :
                 {1.0, 0.5, 2.0, 0.0, 10.0, 100.0, -1.0, 2000.0, 1e6, -1000.0, 1e9, -1e9}) {
                std::vector<morandel_value> values;
                for (const Name& name : names) {
                    values.push_back(name.kind == Kind::text
                                         ? morandel_text(text.data(), text.size())
                                         : morandel_number(number));
                }
                if (morandel_formula_compute(m_formula.handle(), values.data(), values.size(),
                                             result.get(), nullptr) == 1) {
                    return morandel_result_type(result.get()) == MORANDEL_TEXT;
                }
            }
        }
        return false;
    }

    [[nodiscard]] py::list warnings() const {
        py::list list;
        for (const Notice& notice : m_formula.warnings()) list.append(told(notice));
        return list;
    }

    [[nodiscard]] py::list check() const {
        py::list list;
        for (const Fault& fault : m_formula.check()) {
            list.append(py::make_tuple(fault.kind, fault.operand, static_cast<int>(fault.wants),
                                       fault.name, position_of(fault.position)));
        }
        return list;
    }

    // A number, a text, or what is told of the error.
    [[nodiscard]] py::object compute(const py::sequence& values) const {
        const std::vector<Source> sources = sources_of(values);
        std::vector<std::string> rooms(sources.size());
        std::vector<morandel_value> given;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const morandel_column column = sources[i].single(0, rooms[i]);
            given.push_back(column.type == MORANDEL_TEXT ? morandel_text(column.text, column.size)
                                                         : morandel_number(*column.numbers));
        }
        const detail::Owned<morandel_result> result(morandel_result_create());
        if (!result) throw std::bad_alloc();
        morandel_error* error = nullptr;
        if (morandel_formula_compute(m_formula.handle(), given.data(), given.size(), result.get(),
                                     &error) == 0) {
            return told(detail::take(error).notice());
        }
        switch (morandel_result_type(result.get())) {
            case MORANDEL_TEXT: {
                std::size_t size = 0;
                const char* text = morandel_result_text(result.get(), &size);
                return py::str(text, size);
            }
            case MORANDEL_INTEGER:
                if (std::isfinite(morandel_result_number(result.get()))) {
                    return py::int_(py::float_(morandel_result_number(result.get())));
                }
                [[fallthrough]];
            default:
                return py::float_(morandel_result_number(result.get()));
        }
    }

    [[nodiscard]] py::tuple columns(const py::sequence& values, std::size_t rows, bool wants_text,
                                    bool ends_at_failure) const {
        return compute_columns(m_formula, sources_of(values), rows, wants_text, ends_at_failure);
    }

    // Why rows fail, in the order of the rows given.
    [[nodiscard]] py::list row_errors(const py::sequence& values,
                                      const std::vector<std::size_t>& rows, bool wants_text) const {
        const std::vector<Source> sources = sources_of(values);
        py::list errors;
        for (const std::size_t row : rows) {
            constexpr std::size_t rows_between_signals = 1024;
            if (errors.size() % rows_between_signals == 0) end_if_interrupted();
            try {
                throw_row_error(m_formula, sources, row, wants_text);
                errors.append(py::none());
            } catch (const Error& error) {
                errors.append(told(error.notice()));
            }
        }
        return errors;
    }

  private:
    Formula m_formula;
    std::string m_literals;
};

// A C++ FormulaError becomes the package's.
void translate(std::exception_ptr thrown) {
    try {
        if (thrown) std::rethrow_exception(thrown);
    } catch (const Error& error) {
        const py::object type = py::module_::import("morandel._errors").attr("FormulaError");
        const py::object made = type.attr("_of")(told(error.notice()));
        PyErr_SetObject(type.ptr(), made.ptr());
    }
}

py::list functions() {
    py::list list;
    for (std::size_t i = 0; i < morandel_function_count(); ++i) {
        morandel_function function{};
        morandel_function_get(i, &function);
        list.append(
            py::make_tuple(function.name, function.arguments, function.summary, function.example));
    }
    return list;
}

}  // namespace
}  // namespace morandel::python

PYBIND11_MODULE(_core, module) {
    using namespace morandel::python;
    py::register_exception_translator(translate);
    py::class_<Prepared>(module, "Prepared")
        .def("names", &Prepared::names)
        .def("gives_text", &Prepared::gives_text)
        .def("warnings", &Prepared::warnings)
        .def("check", &Prepared::check)
        .def("compute", &Prepared::compute)
        .def("columns", &Prepared::columns)
        .def("row_errors", &Prepared::row_errors);
    // Not the class's own call: pybind11 would end the program where memory runs out after it.
    module.def("prepare", [](const py::str& text, const py::dict& kinds) {
        std::string bytes;
        append_utf8(text.ptr(), bytes);
        return Prepared(bytes, kinds);
    });
    module.def("is_missing", [](const py::object& value) { return is_missing(value.ptr()); });
    module.def("number_of", &number_of);
    module.def("numbers_of", &numbers_of);
    module.def("check_texts", &check_texts);
    module.def("wrong_rows", &wrong_rows);
    module.def("functions", &functions);
    module.def("version", &morandel_version);
}
