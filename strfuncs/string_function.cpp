// CExpress::StringFunction: hands a function call to the routine that carries it out.

#include <array>

#include "engine/express.h"
#include "engine/functions.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

constexpr std::int16_t untouched = -1;

struct TextFunction {
    char code;
    Routine routine;
    std::int16_t float_word;  // that the call begins with
};

// In the order of the function table.
constexpr TextFunction text_functions[] = {
    {'U', strsub, 2},     {'T', strtrim, 2},     {'A', strcat, 2},
    {'S', strtrims, 2},   {'M', strmismatch, 0}, {'F', strfind, 0},
    {'R', strreplace, 2}, {'D', strdelete, 2},   {'Y', strinsert, 2},
    {'V', r2s, 2},        {'Z', s2r, 1},         {'N', strsubn, 2},
    {'l', left, 2},       {'i', right, 2},       {'f', strfindn, untouched},
    {'h', choose, 1},
};

constexpr std::array<TextFunction, 128> make_routines() {
    std::array<TextFunction, 128> routines{};
    for (const TextFunction& row : text_functions) {
        routines[static_cast<unsigned char>(row.code)] = row;
    }
    return routines;
}

constexpr std::array<TextFunction, 128> routine_of_code = make_routines();

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
    const auto [known, routine, float_word] =
        morandel::routine_of_code[static_cast<unsigned char>(code)];
    if (routine == nullptr) return;
    if (float_word != morandel::untouched) value.float_word = float_word;
    morandel::Call call{value, extra, m_TempStr, morandel::g_NumArray, m_StringArgument, m_Texts};
    const morandel::Error error = routine(call);
    if (error != morandel::Error::none) serror(error);
}
