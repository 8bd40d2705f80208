// A formula prepared and computed for columns: each row must give what it gives by itself, and that
// is what a new evaluator gives.

#include "fuzz/bytes.h"
#include "fuzz/growth.h"
#include "tests/formula_outcome.h"

namespace {

using namespace morandel::tests;

constexpr std::size_t rows = 3;
constexpr int flags = MORANDEL_CODE_PAGE_936 | MORANDEL_ALLOW_FREE_NAMES;

void expect(bool holds) {
    if (!holds) __builtin_trap();
}

struct Columns {
    std::vector<NamedValue> of_row[rows];
    double numbers[rows] = {};
    std::string texts;
    std::int64_t offsets[rows + 1] = {};
    morandel_column columns[2] = {};

    explicit Columns(Bytes& bytes) {
        for (std::size_t row = 0; row < rows; ++row) {
            numbers[row] = bytes.number();
            const std::string text = bytes.line();
            texts += text;
            offsets[row + 1] = static_cast<std::int64_t>(texts.size());
            of_row[row] = {{"a", false, numbers[row], ""}, {"s", true, 0.0, text}};
        }
        columns[0] = {MORANDEL_NUMBER, numbers, sizeof(double), nullptr, nullptr, 0, 0};
        columns[1] = {MORANDEL_TEXT, nullptr, 0, texts.data(), offsets, 8, texts.size()};
    }
};

void compare_rows(const morandel_formula* formula, const std::string& text, const Columns& given) {
    double results[rows];
    unsigned char status[rows];
    unsigned char text_status[rows];
    morandel_texts* texts = nullptr;
    expect(morandel_formula_columns(formula, given.columns, 2, rows, results, status, nullptr) ==
           1);
    expect(morandel_formula_text_columns(formula, given.columns, 2, rows, &texts, text_status,
                                         nullptr) == 1);
    const char* bytes = morandel_texts_bytes(texts, nullptr);
    const std::size_t* offsets = morandel_texts_offsets(texts);
    for (std::size_t row = 0; row < rows; ++row) {
        const ComputedValue one = by_prepared(formula, given.of_row[row]);
        expect(difference(by_evaluator(text, given.of_row[row]), one, text.size()).empty());
        const bool is_text = one.type == MORANDEL_TEXT;
        expect((status[row] == MORANDEL_ROW_OK) == (one.succeeded && !is_text));
        expect((text_status[row] == MORANDEL_ROW_OK) == (one.succeeded && is_text));
        const double wanted = status[row] == MORANDEL_ROW_OK ? one.number : 0.0;
        expect(morandel::pairs::same_number(results[row], wanted));
        const std::string found(bytes + offsets[row], offsets[row + 1] - offsets[row]);
        expect(found == (text_status[row] == MORANDEL_ROW_OK ? one.text : ""));
    }
    morandel_texts_free(texts);
}

// Whatever the bytes are, as UTF-8.
void prepare_as_text(const std::string& text) {
    morandel_formula* formula = nullptr;
    morandel_error* error = nullptr;
    morandel_warnings* warnings = nullptr;
    if (morandel_formula_prepare(text.data(), text.size(), nullptr, 0, 0, &formula, &error) == 1) {
        expect(morandel_formula_warnings(formula, &warnings, nullptr) == 1);
        for (std::size_t i = 0; i < morandel_warnings_count(warnings); ++i) {
            morandel_position at{};
            expect(morandel_error_position(morandel_warnings_get(warnings, i), &at) == 1);
            expect(at.byte + at.bytes <= text.size() && at.characters <= at.bytes);
        }
    }
    morandel_warnings_free(warnings);
    morandel_error_free(error);
    morandel_formula_free(formula);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::string text = bytes.line();
    if (may_grow_large(text) || text.find('\0') != std::string::npos) return -1;
    const Columns given(bytes);
    prepare_as_text(text);
    ComputedValue refusal;
    const OwnedFormula formula = prepare(text, given.of_row[0], flags, true, refusal);
    if (formula == nullptr) {
        expect(by_evaluator(text, given.of_row[0]).refused);
    } else {
        compare_rows(formula.get(), text, given);
    }
    return 0;
}
