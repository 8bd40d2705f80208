// The calls of the C interface on columns.

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

#include "formula/handles.h"

namespace {

using namespace morandel::formula;

std::span<const morandel_column> items(const morandel_column* columns, std::size_t count) {
    if (count > 0 && columns == nullptr) refuse_misuse("columns == NULL");
    return {columns, count};
}

}  // namespace

int morandel_formula_columns(const morandel_formula* formula, const morandel_column* columns,
                             size_t count, size_t rows, double* results, unsigned char* status,
                             morandel_error** error) {
    return attempt(error, [&] {
        const Prepared& prepared = used(formula).prepared;
        if (rows > 0) (void)used(results);
        const Columns values(items(columns, count), rows);
        // Rows are read, some of them twice, when others are written.
        std::vector<double> apart(rows > 0 && values.overlap(results, rows) ? rows : 0);
        compute_columns(prepared, values, apart.empty() ? results : apart.data(), status);
        std::ranges::copy(apart, results);
    });
}

int morandel_formula_text_columns(const morandel_formula* formula, const morandel_column* columns,
                                  size_t count, size_t rows, morandel_texts** texts,
                                  unsigned char* status, morandel_error** error) {
    if (texts != nullptr) *texts = nullptr;
    return attempt(error, [&] {
        const Prepared& prepared = used(formula).prepared;
        morandel_texts*& made = used(texts);
        auto list = std::make_unique<morandel_texts>();
        const Columns values(items(columns, count), rows);
        list->texts = compute_text_columns(prepared, values, status);
        made = list.release();
    });
}

const char* morandel_texts_bytes(const morandel_texts* texts, size_t* size) {
    return give_text(texts == nullptr ? nullptr : &texts->texts.bytes, size);
}

const size_t* morandel_texts_offsets(const morandel_texts* texts) {
    return texts == nullptr ? nullptr : texts->texts.offsets.data();
}

void morandel_texts_free(morandel_texts* texts) { delete texts; }

int morandel_formula_row_error(const morandel_formula* formula, const morandel_column* columns,
                               size_t count, size_t rows, size_t row, int wants,
                               morandel_error** error) {
    bool fails = false;
    const int completed = attempt(error, [&] {
        const Prepared& prepared = used(formula).prepared;
        if (row >= rows) refuse_misuse("row");
        const Columns values(items(columns, count), rows);
        const auto report = report_of_row(prepared, values, row, is_text_type(wants));
        fails = report.has_value();
        if (fails) give(error, *report);
    });
    return completed == 0 || fails ? 1 : 0;
}
