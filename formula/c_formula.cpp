// The calls of the C interface on formulas and results.

#include <algorithm>
#include <memory>
#include <optional>
#include <span>

#include "formula/handles.h"

namespace {

using namespace morandel::formula;

constexpr int all_flags = MORANDEL_ALLOW_FREE_NAMES | MORANDEL_CODE_PAGE_936;

std::vector<GivenName> given_names(const morandel_name* names, std::size_t count) {
    if (count > 0 && names == nullptr) refuse_misuse("names == NULL");
    if (count > most_names) refuse(MORANDEL_REASON_TOO_MANY_NAMES, std::to_string(count));
    std::vector<GivenName> given;
    for (const morandel_name& name : std::span(names, count)) {
        if (name.type != MORANDEL_DEDUCED) (void)is_text_type(name.type);
        given.push_back({view(name.text, name.size), name.type});
    }
    return given;
}

template <class Item>
std::span<const Item> items(const Item* first, std::size_t count) {
    if (count > 0 && first == nullptr) refuse_misuse("NULL");
    return {first, count};
}

int give_name(const std::vector<Name>& names, std::size_t index, morandel_name* name) {
    if (index >= names.size() || name == nullptr) return 0;
    const Name& found = names[index];
    *name = {found.text.c_str(), found.text.size(), found.type};
    return 1;
}

int compute_numbers(const morandel_formula* formula, const double* numbers, std::size_t count,
                    double* result) {
    bool succeeded = false;
    double computed = 0.0;  // the result's own place may be one of the numbers
    const int completed = attempt(nullptr, [&] {
        (void)used(result);
        succeeded = used(formula).prepared.compute_numbers(items(numbers, count), computed);
    });
    if (result != nullptr) *result = computed;
    return completed == 1 && succeeded ? 1 : 0;
}

}  // namespace

int morandel_formula_prepare(const char* text, size_t size, const morandel_name* names,
                             size_t count, int flags, morandel_formula** formula,
                             morandel_error** error) {
    if (formula != nullptr) *formula = nullptr;
    return attempt(error, [&] {
        morandel_formula*& made = used(formula);
        if ((flags & ~all_flags) != 0) refuse_misuse("flags");
        const std::vector<GivenName> given = given_names(names, count);
        std::optional<std::span<const GivenName>> wanted;
        if (names != nullptr) wanted = given;
        made = new morandel_formula(view(text, size), wanted, flags);
    });
}

morandel_formula* morandel_formula_retain(morandel_formula* formula) {
    if (formula != nullptr) formula->owners.fetch_add(1, std::memory_order_relaxed);
    return formula;
}

void morandel_formula_free(morandel_formula* formula) {
    if (formula == nullptr) return;
    if (formula->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) delete formula;
}

size_t morandel_formula_name_count(const morandel_formula* formula) {
    return formula == nullptr ? 0 : formula->prepared.names().size();
}

int morandel_formula_name(const morandel_formula* formula, size_t index, morandel_name* name) {
    return formula == nullptr ? 0 : give_name(formula->prepared.names(), index, name);
}

int morandel_formula_find_name(const morandel_formula* formula, const char* text, size_t size) {
    int place = -1;
    (void)attempt(nullptr, [&] { place = used(formula).prepared.find_name(view(text, size)); });
    return place;
}

size_t morandel_formula_free_name_count(const morandel_formula* formula) {
    return formula == nullptr ? 0 : formula->prepared.free_names().size();
}

int morandel_formula_free_name(const morandel_formula* formula, size_t index, morandel_name* name) {
    return formula == nullptr ? 0 : give_name(formula->prepared.free_names(), index, name);
}

int morandel_formula_compute(const morandel_formula* formula, const morandel_value* values,
                             size_t count, morandel_result* result, morandel_error** error) {
    bool succeeded = false;
    const int completed = attempt(error, [&] {
        Result& room = used(result).result;
        room.clear();
        const Prepared& prepared = used(formula).prepared;
        const auto given = items(values, count);
        if (error == nullptr) {
            succeeded = prepared.try_compute(given, room);
        } else {
            prepared.compute(given, room);
            succeeded = true;
        }
    });
    return completed == 1 && succeeded ? 1 : 0;
}

int morandel_formula_compute_numbers(const morandel_formula* formula, const double* numbers,
                                     size_t count, double* result) {
    if (formula != nullptr && result != nullptr && (numbers != nullptr || count == 0) &&
        formula->prepared.compute_quickly({numbers, count}, *result)) {
        return 1;
    }
    return compute_numbers(formula, numbers, count, result);
}

int morandel_evaluate(const char* text, size_t size, const morandel_name* names,
                      const morandel_value* values, size_t count, morandel_result* result,
                      morandel_error** error) {
    return attempt(error, [&] {
        Result& room = used(result).result;
        room.clear();
        std::vector<GivenName> given = given_names(names, count);
        const auto given_values = items(values, count);
        // What a value is, is what its name is made ready for.
        for (std::size_t i = 0; i < count; ++i) given[i].type = given_values[i].type;
        Prepared(view(text, size), given, 0).compute(given_values, room);
    });
}

morandel_value morandel_number(double number) { return {MORANDEL_NUMBER, number, nullptr, 0}; }

morandel_value morandel_text(const char* text, size_t size) {
    return {MORANDEL_TEXT, 0.0, text, size};
}

morandel_result* morandel_result_create() { return new (std::nothrow) morandel_result; }

void morandel_result_free(morandel_result* result) { delete result; }

int morandel_result_type(const morandel_result* result) {
    return result == nullptr ? int{MORANDEL_INTEGER} : result->result.type;
}

double morandel_result_number(const morandel_result* result) {
    return result == nullptr ? 0.0 : result->result.number;
}

const char* morandel_result_text(const morandel_result* result, size_t* size) {
    const bool has_text = result != nullptr && result->result.type == MORANDEL_TEXT;
    return give_text(has_text ? &result->result.text() : nullptr, size);
}
