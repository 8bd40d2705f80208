// The calls of the C interface that tell of the language and the library.

#include <morandel/c.h>
#include <morandel/language.h>

// The texts of the table are literals, so they end with a NUL.
size_t morandel_function_count() { return morandel::functions().size(); }

int morandel_function_get(size_t index, morandel_function* function) {
    const auto rows = morandel::functions();
    if (index >= rows.size() || function == nullptr) return 0;
    const morandel::Function& row = rows[index];
    *function = {row.name.data(), row.kinds.data(), row.arguments.data(), row.summary.data(),
                 row.example.data()};
    return 1;
}

const char* morandel_version() { return MORANDEL_VERSION; }
