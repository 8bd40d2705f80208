// CExpress::StringFunction: hands a function call to the routine that carries it out.

#include <array>

#include "engine/express.h"
#include "engine/functions.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

struct TextFunction {
    char code;
    Routine routine;
};

// In the order of the function table.
constexpr TextFunction text_functions[] = {
    {'U', strsub},      {'T', strtrim}, {'A', strcat},     {'S', strtrims},
    {'M', strmismatch}, {'F', strfind}, {'R', strreplace}, {'D', strdelete},
    {'Y', strinsert},   {'V', r2s},     {'Z', s2r},        {'N', strsubn},
    {'l', left},        {'i', right},   {'f', strfindn},   {'h', choose},
};

constexpr std::array<Routine, 128> make_routines() {
    std::array<Routine, 128> routines{};
    for (const TextFunction& row : text_functions) {
        routines[static_cast<unsigned char>(row.code)] = row.routine;
    }
    return routines;
}

constexpr std::array<Routine, 128> routine_of_code = make_routines();

}  // namespace
}  // namespace morandel

void CExpress::StringFunction(char code, Value& value) {
    const morandel::ExtraArguments& extra = m_ExtraArguments.back();
    const morandel::Function* row = morandel::function_of_code(code);
    if (row == nullptr) return;
    // Deliberate: strlen has its result, but its further argument is held to the range as well.
    if (row->carrier == morandel::Carrier::arithmetic || code == 'L') {
        return atith(code, value, extra.values[0]);
    }
    const morandel::Routine routine = morandel::routine_of_code[static_cast<unsigned char>(code)];
    if (routine == nullptr) return;
    morandel::Call call{value, extra, m_TempStr, morandel::g_NumArray, m_StringArgument, m_Texts};
    const morandel::Error error = routine(call);
    if (error != morandel::Error::none) serror(error);
}
