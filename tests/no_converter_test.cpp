// Where the system cannot convert code page 936, as in a container without the C library's tables.
// This program's iconv_open takes the place of the system's.

#include <cerrno>
#include <stdexcept>

#include <gtest/gtest.h>
#include <iconv.h>

#include <morandel/formula.hpp>

namespace {

int closed = 0;

}  // namespace

extern "C" iconv_t iconv_open(const char*, const char*) {
    errno = EINVAL;
    return reinterpret_cast<iconv_t>(-1);  // NOLINT
}

extern "C" int iconv_close(iconv_t) {
    ++closed;
    return 0;
}

namespace {

using morandel::Error;
using morandel::evaluate;
using morandel::Formula;

template <class Call>
Error error_of(const Call& call) {
    try {
        call();
    } catch (const Error& error) {
        return error;
    }
    throw std::logic_error("no error");
}

TEST(NoConverter, FormulasOfAsciiComputeAsEver) {
    EXPECT_EQ(evaluate("preci(price * qty, 2)", {{"price", 2.675}, {"qty", 3.0}}).number(), 8.03);
    EXPECT_EQ(evaluate(R"(strcat(name, "!"))", {{"name", "apple"}}).text(), "apple!");
}

TEST(NoConverter, OtherCharactersAreRefusedWithTheirPlace) {
    const Error formula = error_of([] { (void)evaluate(R"(strlen("苹果"))"); });
    EXPECT_EQ(formula.reason(), MORANDEL_REASON_NO_CONVERTER);
    EXPECT_EQ(formula.message(), "系统不能转换代码页 936");
    ASSERT_TRUE(formula.position());
    EXPECT_EQ(formula.position()->byte, 8U);
    EXPECT_EQ(formula.position()->bytes, 0U);

    const Error value = error_of([] { (void)evaluate("strlen(a)", {{"a", "x苹"}}); });
    EXPECT_EQ(value.reason(), MORANDEL_REASON_NO_CONVERTER);
    EXPECT_EQ(value.value(), 0);
    ASSERT_TRUE(value.position());
    EXPECT_EQ(value.position()->byte, 1U);
}

// A formula in bytes of the code page needs no converter, nor does what it gives.
TEST(NoConverter, BytesComputeAsEver) {
    const Formula formula("strcat(\"\xC6\xBB\", a)", {"a"}, MORANDEL_CODE_PAGE_936);
    EXPECT_EQ(formula("\xB9\xFB").text(), "\xC6\xBB\xB9\xFB");
}

TEST(NoConverter, MessagesOfTheTableAreEnglish) {
    const Error error = error_of([] { (void)evaluate("1/0"); });
    EXPECT_EQ(error.number(), 3);
    EXPECT_EQ(error.english(), "division by zero, or by a number too close to it");
    EXPECT_EQ(error.message(), error.english());
}

TEST(NoConverter, NothingIsClosedThatWasNotOpened) {
    (void)error_of([] { (void)evaluate("苹果"); });
    EXPECT_EQ(closed, 0);
}

}  // namespace
