// Counts heap allocations: a warm evaluator needs none.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include <morandel.h>

namespace {

std::size_t allocations = 0;
std::size_t bytes = 0;  // that are not given back
std::size_t most_bytes = 0;

// Before each block, its size.
constexpr std::size_t header = 16;

}  // namespace

void* operator new(std::size_t size) {
    ++allocations;
    auto* room = static_cast<char*>(std::malloc(size + header));
    if (room == nullptr) throw std::bad_alloc();
    bytes += size;
    most_bytes = std::max(most_bytes, bytes);
    std::memcpy(room, &size, sizeof size);
    return room + header;
}
void operator delete(void* room) noexcept {
    if (room == nullptr) return;
    char* block = static_cast<char*>(room) - header;
    std::size_t size = 0;
    std::memcpy(&size, block, sizeof size);
    bytes -= size;
    std::free(block);
}
void operator delete(void* room, std::size_t) noexcept { ::operator delete(room); }

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

// Whatever formulas leave behind for one another.
TEST(Memory, PendingTextsAndNumbersAreBounded) {
    const std::size_t before = bytes;
    CExpress e;
    e.SetNumberOfPara(1);
    MYPARA megabyte{"s", 0.0, std::string(std::size_t{1} << 20, 'x')};
    e.SetPara(&megabyte, 1, true);
    const auto leave_megabytes = [&] {
        for (int i = 0; i < 1000; ++i) {
            e.SetExpression("if(1, s, s)");  // takes neither
            e.CalcExpression();
            ASSERT_LT(bytes - before, std::size_t{300} << 20) << i;
        }
    };
    leave_megabytes();
    for (int i = 0; i < 300'000; ++i) {
        e.SetExpression("sin(1, 2, \"text\")");
        e.CalcExpression();
    }
    EXPECT_LT(bytes - before, std::size_t{300} << 20);
    leave_megabytes();  // where each of many places could keep one
}

TEST(Memory, OneFormulaNeedsLessThanAGibibyte) {
    const std::size_t before = bytes;
    CExpress e;
    std::string text = "\"aaaaaaaaaaaaaaaa\"";
    for (int i = 0; i < 6; ++i) text = "strreplace(\"aaaaaaaaaaaaaaaa\", \"a\", " + text + ")";
    ASSERT_LE(text.size(), CExpress::max_formula / 2);
    for (const std::string& formula : {text, "strcat(" + text + ", " + text + ")"}) {
        e.SetExpression(formula.c_str());
        e.CalcExpression();
        EXPECT_LT(bytes - before, std::size_t{1} << 30);
    }
}

// Each may make one, as long as the longest that is given or, by joining and replacing, 64 MiB.
TEST(Memory, OneFormulaNeedsNoMoreTextsThanItHasCalls) {
    constexpr std::size_t length = std::size_t{1} << 20;
    CExpress e;
    MYPARA s{"s", 0.0, std::string(length, 'x')};
    e.SetNumberOfPara(1);
    e.SetPara(&s, 1, true);
    std::string text = "s";
    std::size_t calls = 0;
    for (; text.size() + 9 <= CExpress::max_formula; ++calls) text = "strcase(" + text + ")";
    EXPECT_EQ(calls, 56U);
    ASSERT_EQ(e.SetExpression(text.c_str()), 1);
    const std::size_t before = bytes;
    most_bytes = bytes;
    EXPECT_EQ(e.CalcExpression(), 1);
    EXPECT_LT(most_bytes - before, (calls + 2) * length);
}

TEST(Memory, ANewEvaluatorTakesAtMost16Kibibytes) { EXPECT_LE(sizeof(CExpress), 16U * 1024); }

}  // namespace
