// Prepared formulas for C++17 and later: made ready once, shared by threads, computed for one set
// of values or for columns of them.
//
//     double total = morandel::evaluate("preci(price * qty, 2)",
//                                       {{"price", 2.675}, {"qty", 3.0}}).number();
//     morandel::Formula label("strcat(name, \": \", r2s(price, 2))", {"name", "price"});
//     std::string text = label("pear", 12.5).text();    // "pear: 12.5"
//
// Texts are UTF-8. This header has all its code in itself, over morandel/c.h, so a host of any
// compiler can use the same library. What fails throws Error; where memory runs out, that
// is std::bad_alloc. Other exceptions are std::invalid_argument from compute by name where a name
// has no value, and where a column has too few rows; std::length_error where there are more rows
// than a vector can have; and std::logic_error where a text is asked for as a number, also by
// compute_numbers, or a number as a text.

#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <morandel/c.h>

namespace morandel {
inline namespace formulas {

enum class Kind : int {
    deduced = MORANDEL_DEDUCED,
    integer = MORANDEL_INTEGER,  // of a result of "int", and of a name that is to be whole
    number = MORANDEL_NUMBER,
    text = MORANDEL_TEXT,
};

// In a text, from 0, with how long it is.
struct Position {
    std::size_t byte = 0;
    std::size_t character = 0;
    std::size_t bytes = 0;
    std::size_t characters = 0;
};

// What is told of an error or a warning.
class Notice {
  public:
    explicit Notice(const morandel_error* error)
        : m_number(morandel_error_number(error)),
          m_reason(morandel_error_reason(error)),
          m_value(morandel_error_value(error)) {
        std::size_t size = 0;
        const char* text = morandel_error_message(error, &size);
        m_message.assign(text, size);
        text = morandel_error_english(error, &size);
        m_english.assign(text, size);
        morandel_position at{};
        if (morandel_error_position(error, &at) == 1) {
            m_position = Position{at.byte, at.character, at.bytes, at.characters};
        }
    }

    // Of the error table; -1 for what it has no number for, which the reason then tells.
    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] int reason() const { return m_reason; }                   // MORANDEL_REASON_...
    [[nodiscard]] const std::string& message() const { return m_message; }  // Chinese
    [[nodiscard]] const std::string& english() const { return m_english; }
    // The token of the formula that it is about; where value() is one, the character of that value.
    [[nodiscard]] const std::optional<Position>& position() const { return m_position; }
    // The place of the value or name that it is about; -1 for the formula itself.
    [[nodiscard]] int value() const { return m_value; }

  private:
    int m_number;
    int m_reason;
    int m_value;
    std::string m_message;
    std::string m_english;
    std::optional<Position> m_position;
};

// what() is the English message, with where it is.
class Error : public std::runtime_error {
  public:
    explicit Error(Notice notice)
        : std::runtime_error(text_of(notice)),
          m_notice(std::make_shared<const Notice>(std::move(notice))) {}

    [[nodiscard]] int number() const noexcept { return m_notice->number(); }
    [[nodiscard]] int reason() const noexcept { return m_notice->reason(); }
    [[nodiscard]] const std::string& message() const noexcept { return m_notice->message(); }
    [[nodiscard]] const std::string& english() const noexcept { return m_notice->english(); }
    [[nodiscard]] const std::optional<Position>& position() const noexcept {
        return m_notice->position();
    }
    [[nodiscard]] int value() const noexcept { return m_notice->value(); }
    [[nodiscard]] const Notice& notice() const noexcept { return *m_notice; }

  private:
    static std::string text_of(const Notice& notice) {
        std::string text = notice.english();
        if (notice.number() >= 0) text += " (error " + std::to_string(notice.number()) + ')';
        if (notice.position()) {
            text += ", at character " + std::to_string(notice.position()->character + 1);
        }
        return text;
    }

    std::shared_ptr<const Notice> m_notice;
};

namespace detail {

struct Free {
    void operator()(morandel_error* p) const { morandel_error_free(p); }
    void operator()(morandel_result* p) const { morandel_result_free(p); }
    void operator()(morandel_warnings* p) const { morandel_warnings_free(p); }
    void operator()(morandel_faults* p) const { morandel_faults_free(p); }
    void operator()(morandel_texts* p) const { morandel_texts_free(p); }
};

template <class Handle>
using Owned = std::unique_ptr<Handle, Free>;

// Takes the error of a call that gave 0.
inline Error take(morandel_error* error) {
    const Owned<morandel_error> owned(error);
    if (morandel_error_reason(error) == MORANDEL_REASON_NO_MEMORY) throw std::bad_alloc();
    return Error(Notice(error));
}

inline void check(int succeeded, morandel_error*& error) {
    if (succeeded == 0) throw take(error);
}

}  // namespace detail

// A value for a name. A text is looked at, not copied: it lives until the call returns.
class Argument {
  public:
    template <class Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
    Argument(Number number) : m_value(morandel_number(static_cast<double>(number))) {}
    Argument(std::string_view text) : m_value(morandel_text(text.data(), text.size())) {}
    Argument(const std::string& text) : Argument(std::string_view(text)) {}
    Argument(const char* text) : Argument(std::string_view(text)) {}

    [[nodiscard]] const morandel_value& value() const { return m_value; }

  private:
    morandel_value m_value;
};

struct NamedArgument {
    std::string_view name;
    Argument value;
};

// A name that is to get a value. The kind, where it is told, is made ready for and warned by.
struct Name {
    Name(std::string_view name_text, Kind name_kind = Kind::deduced)
        : text(name_text), kind(name_kind) {}
    Name(const std::string& name_text, Kind name_kind = Kind::deduced)
        : text(name_text), kind(name_kind) {}
    Name(const char* name_text, Kind name_kind = Kind::deduced)
        : text(name_text), kind(name_kind) {}

    std::string text;
    Kind kind;
};

// What a formula gave.
class Result {
  public:
    Result(double number, Kind kind) : m_kind(kind), m_number(number) {}
    explicit Result(std::string text) : m_kind(Kind::text), m_text(std::move(text)) {}

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] bool is_text() const { return m_kind == Kind::text; }
    // Throw std::logic_error where it is the other.
    [[nodiscard]] double number() const {
        if (is_text()) throw std::logic_error("the result is a text, not a number");
        return m_number;
    }
    [[nodiscard]] const std::string& text() const& {
        if (!is_text()) throw std::logic_error("the result is a number, not a text");
        return m_text;
    }
    [[nodiscard]] std::string text() && {
        if (!is_text()) throw std::logic_error("the result is a number, not a text");
        return std::move(m_text);
    }

  private:
    Kind m_kind;
    double m_number = 0.0;
    std::string m_text;
};

// What the checker finds, see morandel_fault.
struct Fault {
    int kind = 0;
    int operand = 0;
    Kind wants = Kind::deduced;
    std::string name;
    Position position;
};

// A value, or the error that it is missing for.
template <class T>
class Expected {
  public:
    Expected(T value) : m_value(std::move(value)) {}
    Expected(Error error) : m_error(std::move(error)) {}

    [[nodiscard]] bool has_value() const { return m_value.has_value(); }
    explicit operator bool() const { return has_value(); }
    // Throws the error where there is no value.
    [[nodiscard]] const T& value() const {
        if (!m_value) throw Error(*m_error);
        return *m_value;
    }
    // Only where there is one.
    [[nodiscard]] const T& operator*() const { return *m_value; }
    [[nodiscard]] const T* operator->() const { return &*m_value; }
    // Only where there is no value.
    [[nodiscard]] const Error& error() const { return *m_error; }

  private:
    std::optional<T> m_value;
    std::optional<Error> m_error;
};

// The values of a name for all rows. They are looked at, not copied, but where that is said.
class Column {
  public:
    // One for all rows.
    template <class Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
    Column(Number number)
        : m_column{MORANDEL_NUMBER, nullptr, 0, nullptr, nullptr, 0, 0},
          m_single(static_cast<double>(number)) {}
    Column(const char* text) : Column(std::string_view(text)) {}
    Column(const std::string& text) : Column(std::string_view(text)) {}
    Column(std::string_view text)
        : m_column{MORANDEL_TEXT, nullptr, 0, text.data(), nullptr, 0, text.size()} {}

    // One for each row: numbers that lie stride bytes apart, or texts one after the other with
    // offsets of rows + 1 integers of 4 or 8 bytes, those of 4 below 2^31.
    Column(const std::vector<double>& numbers) : Column(numbers.data(), numbers.size()) {}
    // Keeps what is handed over.
    Column(std::vector<double>&& numbers)
        : m_numbers(std::make_shared<const std::vector<double>>(std::move(numbers))),
          m_rows(m_numbers->size()) {
        m_column = {MORANDEL_NUMBER, m_numbers->data(), sizeof(double), nullptr, nullptr, 0, 0};
    }
    Column(const double* numbers, std::size_t rows, std::size_t stride = sizeof(double))
        : m_column{MORANDEL_NUMBER, numbers, stride, nullptr, nullptr, 0, 0}, m_rows(rows) {}
    template <class Integer>
    Column(const char* bytes, const Integer* offsets, std::size_t rows)
        : m_column{MORANDEL_TEXT,
                   nullptr,
                   0,
                   bytes,
                   offsets,
                   sizeof(Integer),
                   static_cast<std::size_t>(offsets[rows])},
          m_rows(rows) {
        static_assert(std::is_integral_v<Integer> && (sizeof(Integer) == 4 || sizeof(Integer) == 8),
                      "offsets are integers of 4 or 8 bytes");
    }
    // Copies the texts, which lie anywhere.
    Column(const std::vector<std::string>& texts)
        : m_texts(std::make_shared<Texts>()), m_rows(texts.size()) {
        m_texts->offsets.push_back(0);
        for (const std::string& text : texts) {
            m_texts->bytes += text;
            m_texts->offsets.push_back(m_texts->bytes.size());
        }
        m_column = {MORANDEL_TEXT,
                    nullptr,
                    0,
                    m_texts->bytes.data(),
                    m_texts->offsets.data(),
                    sizeof(std::size_t),
                    m_texts->bytes.size()};
    }

    // Nothing for one value for all rows.
    [[nodiscard]] std::optional<std::size_t> rows() const { return m_rows; }
    [[nodiscard]] morandel_column column() const {
        morandel_column column = m_column;
        if (column.type == MORANDEL_NUMBER && !m_rows) column.numbers = &m_single;
        return column;
    }

  private:
    struct Texts {
        std::string bytes;
        std::vector<std::size_t> offsets;
    };

    morandel_column m_column{};
    double m_single = 0.0;
    std::shared_ptr<const std::vector<double>> m_numbers;
    std::shared_ptr<Texts> m_texts;
    std::optional<std::size_t> m_rows;
};

// Ready to be computed. It cannot change, is cheap to copy, and any number of threads may use one,
// or copies of one, at the same time. A formula that was moved from can only be assigned to.
class Formula {
  public:
    // With all names that it uses, in the order of their first appearance.
    explicit Formula(std::string_view text, int flags = 0) : Formula(text, nullptr, 0, flags) {}
    // With those names, whose values are given in the same order.
    Formula(std::string_view text, const std::vector<Name>& names, int flags = 0)
        : Formula(text, given(names)->data(), names.size(), flags) {}
    Formula(std::string_view text, std::initializer_list<Name> names, int flags = 0)
        : Formula(text, std::vector<Name>(names), flags) {}

    // The same without an exception for a formula that is refused.
    template <class... Names>
    [[nodiscard]] static Expected<Formula> prepare(std::string_view text, const Names&... names) {
        try {
            return Formula(text, names...);
        } catch (const Error& error) {
            return error;
        }
    }
    [[nodiscard]] static Expected<Formula> prepare(std::string_view text,
                                                   std::initializer_list<Name> names,
                                                   int flags = 0) {
        return prepare(text, std::vector<Name>(names), flags);
    }

    // By place.
    template <class... Values>
    Result operator()(const Values&... values) const {
        const morandel_value list[sizeof...(Values) + 1] = {Argument(values).value()...,
                                                            morandel_value{}};
        return compute(list, sizeof...(Values));
    }
    Result compute(const std::vector<Argument>& values) const {
        std::vector<morandel_value> list;
        list.reserve(values.size());
        for (const Argument& value : values) list.push_back(value.value());
        return compute(list.data(), list.size());
    }
    // By name, in any order; names that the formula does not have are passed over, and each that
    // it has must be there.
    Result compute(std::initializer_list<NamedArgument> values) const {
        std::vector<morandel_value> list(morandel_formula_name_count(m_formula.get()));
        std::vector<bool> is_given(list.size());
        for (const NamedArgument& argument : values) {
            const int place = find(argument.name);
            if (place < 0) continue;
            list[static_cast<std::size_t>(place)] = argument.value.value();
            is_given[static_cast<std::size_t>(place)] = true;
        }
        if (std::find(is_given.begin(), is_given.end(), false) != is_given.end()) {
            for (const Name& name : names()) {  // one that stands twice is the first
                if (is_given[static_cast<std::size_t>(find(name.text))]) continue;
                throw std::invalid_argument("no value for " + name.text);
            }
        }
        return compute(list.data(), list.size());
    }
    // For numbers alone, where the result is a number: the quickest way.
    [[nodiscard]] double compute_numbers(const double* numbers, std::size_t count) const {
        double result = 0.0;
        const bool succeeded =
            morandel_formula_compute_numbers(m_formula.get(), numbers, count, &result) == 1;
        return succeeded ? result : compute_slowly(numbers, count);
    }

    // A number for each row, and a status, MORANDEL_ROW_... A failed row gives 0.0.
    std::vector<unsigned char> columns(const std::vector<Column>& values, std::size_t rows,
                                       double* results) const {
        const std::vector<morandel_column> list = checked(values, rows);
        std::vector<unsigned char> status(rows);
        morandel_error* error = nullptr;
        detail::check(morandel_formula_columns(m_formula.get(), list.data(), list.size(), rows,
                                               results, status.data(), &error),
                      error);
        return status;
    }
    // As many rows as the columns have.
    std::vector<unsigned char> columns(const std::vector<Column>& values,
                                       std::vector<double>& results) const {
        const std::size_t rows = rows_of(values);
        // Values may lie in the results, which do not move before they are read.
        std::vector<double> larger(results.capacity() < rows ? rows : 0);
        std::vector<double>& made = larger.empty() ? results : larger;
        made.resize(rows);
        std::vector<unsigned char> status = columns(values, rows, made.data());
        if (!larger.empty()) results.swap(larger);
        return status;
    }
    // A text for each row.
    std::vector<unsigned char> columns(const std::vector<Column>& values,
                                       std::vector<std::string>& results) const {
        const std::size_t rows = rows_of(values);
        const std::vector<morandel_column> list = checked(values, rows);
        std::vector<unsigned char> status(rows);
        morandel_error* error = nullptr;
        morandel_texts* made = nullptr;
        const int succeeded = morandel_formula_text_columns(
            m_formula.get(), list.data(), list.size(), rows, &made, status.data(), &error);
        const detail::Owned<morandel_texts> texts(made);
        detail::check(succeeded, error);
        const char* bytes = morandel_texts_bytes(made, nullptr);
        const std::size_t* offsets = morandel_texts_offsets(made);
        results.clear();
        for (std::size_t i = 0; i < rows; ++i) {
            results.emplace_back(bytes + offsets[i], offsets[i + 1] - offsets[i]);
        }
        return status;
    }
    // Why a row fails; nothing where it does not.
    [[nodiscard]] std::optional<Error> row_error(const std::vector<Column>& values, std::size_t row,
                                                 Kind wants = Kind::number) const {
        const std::size_t rows = row + 1;
        if (rows == 0) throw std::invalid_argument("there is no such row");
        const std::vector<morandel_column> list = checked(values, rows);
        morandel_error* error = nullptr;
        if (morandel_formula_row_error(m_formula.get(), list.data(), list.size(), rows, row,
                                       static_cast<int>(wants), &error) == 0) {
            return std::nullopt;
        }
        return detail::take(error);
    }

    // By place.
    [[nodiscard]] std::vector<Name> names() const {
        return list(morandel_formula_name_count(m_formula.get()), morandel_formula_name);
    }
    // What the formula uses and nobody gives, with the kinds that it asks for.
    [[nodiscard]] std::vector<Name> free_names() const {
        return list(morandel_formula_free_name_count(m_formula.get()), morandel_formula_free_name);
    }
    // What the language accepts and a person rarely means, by position.
    [[nodiscard]] std::vector<Notice> warnings() const {
        morandel_warnings* made = nullptr;
        morandel_error* error = nullptr;
        const int succeeded = morandel_formula_warnings(m_formula.get(), &made, &error);
        const detail::Owned<morandel_warnings> owned(made);
        detail::check(succeeded, error);
        std::vector<Notice> notices;
        for (std::size_t i = 0; i < morandel_warnings_count(made); ++i) {
            notices.emplace_back(morandel_warnings_get(made, i));
        }
        return notices;
    }

    // In the order in which the checker records them.
    [[nodiscard]] std::vector<Fault> check() const {
        morandel_faults* made = nullptr;
        morandel_error* error = nullptr;
        const int succeeded = morandel_formula_check(m_formula.get(), &made, &error);
        const detail::Owned<morandel_faults> owned(made);
        detail::check(succeeded, error);
        std::vector<Fault> faults;
        for (std::size_t i = 0; i < morandel_faults_count(made); ++i) {
            morandel_fault fault{};
            morandel_faults_get(made, i, &fault);
            const morandel_position& at = fault.position;
            faults.push_back({fault.kind,
                              fault.operand,
                              static_cast<Kind>(fault.wants),
                              std::string(fault.name, fault.size),
                              {at.byte, at.character, at.bytes, at.characters}});
        }
        return faults;
    }

    // For calls of morandel/c.h; it lives as long as this formula.
    [[nodiscard]] const morandel_formula* handle() const { return m_formula.get(); }

  private:
    class Handle {
      public:
        explicit Handle(morandel_formula* formula) : m_formula(formula) {}
        Handle(const Handle& other) : m_formula(morandel_formula_retain(other.m_formula)) {}
        Handle(Handle&& other) noexcept : m_formula(std::exchange(other.m_formula, nullptr)) {}
        Handle& operator=(Handle other) noexcept {
            std::swap(m_formula, other.m_formula);
            return *this;
        }
        ~Handle() { morandel_formula_free(m_formula); }
        [[nodiscard]] morandel_formula* get() const { return m_formula; }

      private:
        morandel_formula* m_formula;
    };

    Formula(std::string_view text, const morandel_name* names, std::size_t count, int flags)
        : m_formula(prepared(text, names, count, flags)) {}

    static morandel_formula* prepared(std::string_view text, const morandel_name* names,
                                      std::size_t count, int flags) {
        morandel_formula* formula = nullptr;
        morandel_error* error = nullptr;
        detail::check(morandel_formula_prepare(text.data(), text.size(), names, count, flags,
                                               &formula, &error),
                      error);
        return formula;
    }

    // One more than there are, so that no names are not taken for all names.
    static std::unique_ptr<std::vector<morandel_name>> given(const std::vector<Name>& names) {
        auto list = std::make_unique<std::vector<morandel_name>>();
        for (const Name& name : names) {
            list->push_back({name.text.data(), name.text.size(), static_cast<int>(name.kind)});
        }
        list->push_back({});
        return list;
    }

    // Tells why it fails.
    [[nodiscard]] double compute_slowly(const double* numbers, std::size_t count) const {
        if (numbers == nullptr) return compute(nullptr, count).number();
        std::vector<morandel_value> list;
        for (std::size_t i = 0; i < count && i < morandel_formula_name_count(m_formula.get());
             ++i) {
            list.push_back(morandel_number(numbers[i]));
        }
        list.push_back({});  // so that there is a list for any count
        return compute(list.data(), count).number();
    }
    Result compute(const morandel_value* values, std::size_t count) const {
        const detail::Owned<morandel_result> result(morandel_result_create());
        if (!result) throw std::bad_alloc();
        morandel_error* error = nullptr;
        detail::check(
            morandel_formula_compute(m_formula.get(), values, count, result.get(), &error), error);
        const auto kind = static_cast<Kind>(morandel_result_type(result.get()));
        if (kind != Kind::text) return Result(morandel_result_number(result.get()), kind);
        std::size_t size = 0;
        const char* text = morandel_result_text(result.get(), &size);
        return Result(std::string(text, size));
    }

    [[nodiscard]] int find(std::string_view name) const {
        return morandel_formula_find_name(m_formula.get(), name.data(), name.size());
    }

    template <class Get>
    [[nodiscard]] std::vector<Name> list(std::size_t count, Get get) const {
        std::vector<Name> names;
        for (std::size_t i = 0; i < count; ++i) {
            morandel_name name{};
            get(m_formula.get(), i, &name);
            names.emplace_back(std::string_view(name.text, name.size),
                               static_cast<Kind>(name.type));
        }
        return names;
    }

    // As many as the first column that has rows; one where none has.
    static std::size_t rows_of(const std::vector<Column>& values) {
        for (const Column& column : values) {
            if (column.rows()) return *column.rows();
        }
        return 1;
    }
    static std::vector<morandel_column> checked(const std::vector<Column>& values,
                                                std::size_t rows) {
        std::vector<morandel_column> list;
        list.reserve(values.size());
        for (const Column& column : values) {
            if (column.rows().value_or(rows) < rows) {
                throw std::invalid_argument("a column has too few rows");
            }
            list.push_back(column.column());
        }
        return list;
    }

    Handle m_formula;
};

// Prepares a formula with those names, and computes it once.
inline Result evaluate(std::string_view text, std::initializer_list<NamedArgument> values = {}) {
    std::vector<Name> names;
    std::vector<Argument> arguments;
    for (const NamedArgument& argument : values) {
        const bool is_text = argument.value.value().type == MORANDEL_TEXT;
        names.emplace_back(argument.name, is_text ? Kind::text : Kind::number);
        arguments.push_back(argument.value);
    }
    return Formula(text, names).compute(arguments);
}

}  // namespace formulas
}  // namespace morandel
