// Counts heap allocations: a warm evaluator needs none.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "morandel.h"

namespace {

std::size_t allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* room = std::malloc(size)) return room;
    throw std::bad_alloc();
}
void operator delete(void* room) noexcept {
    std::free(room);
}
void operator delete(void* room, std::size_t) noexcept {
    std::free(room);
}

namespace {

std::size_t allocations_of(CExpress& e, const char* formula) {
    MYPARA a{"a", 1.25, ""};
    MYPARA s{"s", 0.0, std::string(100, 'x')};
    const auto run = [&] {
        e.SetNumberOfPara(2);
        e.SetPara(&a, 1, false);
        e.SetPara(&s, 2, true);
        EXPECT_EQ(e.SetExpression(formula), 1) << formula;
        EXPECT_EQ(e.CalcExpression(), 1) << formula;
        (void)e.GetResult();
    };
    run();
    const std::size_t before = allocations;
    run();
    return allocations - before;
}

TEST(Memory, CountsWhatIsAllocated) {
    const std::size_t before = allocations;
    ::operator delete(::operator new(1));
    EXPECT_EQ(allocations, before + 1);
}

TEST(Memory, AWarmEvaluatorAllocatesNothingForNumbers) {
    CExpress e;
    for (const char* formula : {"1+2*3", "a*3", "(a+1)*a-a/2", "sqrt(a^2+a^2)", "sin(30)+cos(60)",
                                "preci(2.675, 2)", "mod(a, 0.3)", "int(a)+deci(a)", "a and 1 > 2",
                                "if(a, 1, 2)", "5!", "((((((((a))))))))"}) {
        EXPECT_EQ(allocations_of(e, formula), 0U) << formula;
    }
}

TEST(Memory, NorForShortTexts) {
    CExpress e;
    for (const char* formula :
         {"strsub(s, 2, 50)", "strfind(\"y\", s)", "strreplace(\"yy\", \"x\", s)", "strcat(s, s)",
          "s equal s", "s like \"xx\"", "strcase(s)", "strtrims(s)", "strsubn(s, \"x\", 3)",
          "strlen(s)", "r2s(a, 2)", "r2s(123456.789012345)", "s2r(\"12.5\")", "strdelete(\"x\", s)",
          "strinsert(s, \"abc\", 5)", "strtrim(\"x\", s)", "strmismatch(s, s)"}) {
        EXPECT_EQ(allocations_of(e, formula), 0U) << formula;
    }
}

TEST(Memory, ANewEvaluatorTakesAtMost16Kibibytes) {
    EXPECT_LE(sizeof(CExpress), 16U * 1024);
}

}  // namespace
