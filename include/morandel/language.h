// The functions of the formula language, for help, completion and the like.

#pragma once

#include <string_view>

#include <morandel/export.h>
#include <morandel/table.h>

namespace morandel {

struct Function {
    std::string_view name;
    char code;  // what the function is called within the library
    // Of the arguments: n number, t text; behind '[' they may be left out, '*' repeats the last.
    std::string_view kinds;
    // Types that variables are expected to have: 0 integer, 1 number, 2 text; as 2nd, 3rd ...
    // argument, the last digit for all that follow, or none for the type of the variable before it.
    int first_type;
    std::string_view further_types;
    std::string_view arguments;
    std::string_view summary;
    std::string_view example;
};

// All 34 functions in the order people look for them.
//     for (const morandel::Function& f : morandel::functions()) std::cout << f.name << '\n';
MORANDEL_EXPORT Table<Function> functions();

// The row of a name, whatever its case; null where no function has that name.
//     find_function("StrSub")->code   // 'U'
MORANDEL_EXPORT const Function* find_function(std::string_view name);

}  // namespace morandel
