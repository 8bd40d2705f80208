// Linked, without COM, for the compiler that the library is built by; Morandel10.dll lies beside
// the program. Another import library is ../lib/Morandel10.lib.
// x86_64-w64-mingw32-g++ -std=c++20 -static -I../include linked.cpp -L../lib -lMorandel10

#include <morandel.h>

#include <cstdio>

int main() {
    CVariableExpressList list;
    list.Append(CVariableExpress::given, "price", 12.5, "");
    list.Append(CVariableExpress::given, "qty", 3.0, "");
    list.Append(CVariableExpress::computed, "total", 0.0, "price*qty");
    if (list.Cal() == 0) {
        std::fprintf(stderr, "failed: %s\n", list.m_strError.c_str());
        return 1;
    }
    std::printf("total = %g\n", list.FindByNameAndGetValue("total"));
}
