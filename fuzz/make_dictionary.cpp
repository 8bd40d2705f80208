// Prints the words of the formula language as a fuzzing dictionary, from the library's table.

#include <iostream>

#include <morandel.h>

int main() {
    for (const morandel::Function& row : morandel::functions())
        std::cout << '"' << row.name << "(\"\n";
    for (const char* word : {" like ", " equal ", " and ", " or ", " >= ", " <= ", " <> ", " < ",
                             " > ", " = ", "pi", "exp", "\\\"\\\"", "\\\"a\\\"", "\\xD6\\xD0"}) {
        std::cout << '"' << word << "\"\n";
    }
}
