// The calls of the C interface on what is found in a formula without computing it.

#include <memory>

#include "formula/handles.h"

using namespace morandel::formula;

int morandel_formula_warnings(const morandel_formula* formula, morandel_warnings** warnings,
                              morandel_error** error) {
    if (warnings != nullptr) *warnings = nullptr;
    return attempt(error, [&] {
        morandel_warnings*& made = used(warnings);
        auto list = std::make_unique<morandel_warnings>();
        for (Report& report : used(formula).prepared.warnings()) {
            list->warnings.push_back({std::move(report)});
        }
        made = list.release();
    });
}

size_t morandel_warnings_count(const morandel_warnings* warnings) {
    return warnings == nullptr ? 0 : warnings->warnings.size();
}

const morandel_error* morandel_warnings_get(const morandel_warnings* warnings, size_t index) {
    return index < morandel_warnings_count(warnings) ? &warnings->warnings[index] : nullptr;
}

void morandel_warnings_free(morandel_warnings* warnings) { delete warnings; }

int morandel_formula_check(const morandel_formula* formula, morandel_faults** faults,
                           morandel_error** error) {
    if (faults != nullptr) *faults = nullptr;
    return attempt(error, [&] {
        morandel_faults*& made = used(faults);
        auto list = std::make_unique<morandel_faults>();
        list->faults = used(formula).prepared.check();
        made = list.release();
    });
}

size_t morandel_faults_count(const morandel_faults* faults) {
    return faults == nullptr ? 0 : faults->faults.size();
}

int morandel_faults_get(const morandel_faults* faults, size_t index, morandel_fault* fault) {
    if (index >= morandel_faults_count(faults) || fault == nullptr) return 0;
    const CheckFault& found = faults->faults[index];
    *fault = {found.kind,         found.operand,     found.wants,
              found.name.c_str(), found.name.size(), found.position};
    return 1;
}

void morandel_faults_free(morandel_faults* faults) { delete faults; }
