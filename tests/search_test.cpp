// Finding texts: what the standard's own search finds, in time that no text can stretch.

#include "base/search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include <morandel.h>

namespace {

// Few letters, so that pieces repeat themselves and nearly match everywhere.
std::string random_text(std::mt19937& random, std::size_t most, std::size_t letters) {
    std::string text(random() % (most + 1), 'a');
    for (char& c : text) c = static_cast<char>('a' + random() % letters);
    return text;
}

TEST(Search, TwoWaysFindWhatTheSimpleWayFinds) {
    std::mt19937 random(5);
    for (int round = 0; round < 300'000; ++round) {
        const std::size_t letters = 1 + random() % 3;
        const std::string text = random_text(random, 40, letters);
        std::string piece = random_text(random, 12, letters);
        if (piece.empty()) piece = "b";
        // Periods longer than chance makes them.
        if (round % 3 == 0) piece += piece;
        ASSERT_EQ(morandel::find_two_way(text, piece), text.find(piece)) << text << ' ' << piece;
    }
}

TEST(Search, BothWaysFromAnyStart) {
    const std::string piece = std::string(1000, 'a') + 'b';
    const std::string text = std::string(5000, 'a') + piece + piece;
    for (const std::size_t from :
         {0U, 1U, 4999U, 5000U, 5001U, 6001U, 6002U, 7002U, 7003U, 9999U}) {
        EXPECT_EQ(morandel::find_piece(text, piece, from), text.find(piece, from)) << from;
        EXPECT_EQ(morandel::find_piece(text, "ab", from), text.find("ab", from)) << from;
        EXPECT_EQ(morandel::find_piece(text, "", from), text.find("", from)) << from;
    }
    EXPECT_EQ(morandel::find_piece("short", std::string(9999, 's')), std::string::npos);
}

// At one comparison a nanosecond, a search that begins anew at each byte would take ten hours.
TEST(Search, MegabytesOfOneLetter) {
    CExpress e;
    e.SetNumberOfPara(2);
    MYPARA text{"s", 0.0, std::string(std::size_t{8} << 20, 'a')};
    MYPARA piece{"p", 0.0, std::string(std::size_t{4} << 20, 'a') + 'b'};
    e.SetPara(&text, 1, true);
    e.SetPara(&piece, 2, true);
    for (const char* formula :
         {"strfind(p, s)", "strfindn(p, s)", "strlen(strreplace(\"x\", p, s))",
          "strlen(strdelete(p, s))", "s like p", "strlen(strsubn(s, p, 2))"}) {
        ASSERT_EQ(e.SetExpression(formula), 1) << formula;
        EXPECT_EQ(e.CalcExpression(), 1) << formula;
    }
}

}  // namespace
