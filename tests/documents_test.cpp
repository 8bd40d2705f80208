// The documents cannot lie: every formula in them is replayed, and their tables of errors are the
// library's, byte for byte.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <morandel.h>
#include "cli/encoding.h"
#include "tests/case_replay.h"

namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    EXPECT_TRUE(in) << file;
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<fs::path> documents() {
    std::vector<fs::path> files{fs::path(MORANDEL_SOURCE_FOLDER) / "README.md",
                                fs::path(MORANDEL_SOURCE_FOLDER) / "README.zh.md"};
    for (const auto& entry :
         fs::recursive_directory_iterator(fs::path(MORANDEL_SOURCE_FOLDER) / "docs")) {
        if (entry.path().extension() == ".md") files.push_back(entry.path());
    }
    return files;
}

// The insides of all blocks fenced as that language.
std::vector<std::string> blocks_of(const std::string& document, const std::string& language) {
    std::vector<std::string> blocks;
    std::istringstream in(document);
    std::string line;
    bool inside = false;
    while (std::getline(in, line)) {
        if (!inside && line == "```" + language) {
            inside = true;
            blocks.emplace_back();
        } else if (inside && line == "```") {
            inside = false;
        } else if (inside) {
            blocks.back() += line + '\n';
        }
    }
    EXPECT_FALSE(inside) << "a block is not closed";
    return blocks;
}

TEST(Documents, EveryFormulaGivesWhatTheySay) {
    std::size_t formulas = 0;
    for (const fs::path& file : documents()) {
        for (const std::string& text : blocks_of(contents(file), "formulas")) {
            for (const auto& block : morandel::cases::read_cases(text, file.filename().string())) {
                formulas += block.lines.size();
                for (const std::string& problem : morandel::cases::replay(block)) {
                    ADD_FAILURE() << file << ": " << problem;
                }
            }
        }
    }
    EXPECT_GE(formulas, 80U);
}

TEST(Documents, NoBlockGoesUntested) {
    // text holds no claims, cmake is what the consumer in tests/ does; vb, js and what hosts of the
    // automation object say run under Wine; python runs with the Python package, and js of web.md
    // in Node.js.
    const std::set<std::string> known = {"",           "formulas", "console", "cpp", "cmake",
                                         "text",       "vb",       "js",      "vba", "asp",
                                         "powershell", "python",   "sh"};
    for (const fs::path& file : documents()) {
        std::istringstream in(contents(file));
        for (std::string line; std::getline(in, line);) {
            if (!line.starts_with("```")) continue;
            EXPECT_TRUE(known.contains(line.substr(3))) << file << line;
        }
    }
}

// The rows "| 34 | `缺少操作符` | ..." of a table of errors.
std::map<int, std::string> error_rows(const fs::path& file) {
    std::map<int, std::string> rows;
    std::istringstream in(contents(file));
    for (std::string line; std::getline(in, line);) {
        const std::size_t open = line.find("| `");
        const std::size_t close = line.find("` |", open);
        if (!line.starts_with("| ") || open == std::string::npos || close == std::string::npos)
            continue;
        rows[std::stoi(line.substr(2))] = line.substr(open + 3, close - open - 3);
    }
    return rows;
}

TEST(Documents, TheErrorTablesAreTheLibrarys) {
    for (const char* name : {"docs/errors.md", "docs/zh/errors.md"}) {
        const auto rows = error_rows(fs::path(MORANDEL_SOURCE_FOLDER) / name);
        EXPECT_EQ(rows.size(), morandel::error_table().size()) << name;
        for (const auto& [number, message] : rows) {
            const auto bytes = morandel::error_message(number);
            ASSERT_TRUE(bytes.has_value()) << number;
            EXPECT_EQ(*bytes, morandel::cli::to_gbk(message)) << number;
        }
    }
    for (const int number : {-1, 6, 19, 22, 29, 80}) {
        EXPECT_FALSE(morandel::error_message(number).has_value());
    }
}

TEST(Documents, NoTwoErrorsSayTheSame) {
    std::set<std::string_view> messages;
    for (const morandel::ErrorText& row : morandel::error_table()) {
        EXPECT_TRUE(messages.insert(row.message).second) << row.english;
    }
}

// The kinds of arguments and the types that variables have there say the same.
TEST(Documents, FunctionsExpectOfVariablesWhatTheirArgumentsAre) {
    for (const morandel::Function& row : morandel::functions()) {
        std::string kinds(row.kinds);
        std::erase_if(kinds, [](char c) { return c == '[' || c == '*'; });
        EXPECT_EQ(kinds[0] == 't', row.first_type == 2) << row.name;
        const std::string_view types = row.further_types;
        for (std::size_t i = 1; i < kinds.size() && !types.empty(); ++i) {
            const char type = types[std::min(i, types.size()) - 1];
            EXPECT_EQ(kinds[i] == 't', type == '2') << row.name << " " << i;
        }
    }
}

TEST(Documents, TheTableOfFunctionsIsWhole) {
    std::size_t count = 0;
    std::string codes;
    for (const morandel::Function& row : morandel::functions()) {
        ++count;
        codes += row.code;
        EXPECT_EQ(morandel::find_function(row.name), &row);
        CExpress e;
        EXPECT_EQ(e.SetExpression(std::string(row.example).c_str()), 1) << row.example;
        EXPECT_EQ(e.CalcExpression(), 1) << row.example;
        EXPECT_NE(row.example.find(row.name), std::string_view::npos) << row.name;
    }
    EXPECT_EQ(count, 34U);
    EXPECT_EQ(codes, "scteqxyzwmnopurCLUTASMFRDYVZNlifjh");
    EXPECT_EQ(morandel::find_function("STRSUB")->code, 'U');
    for (const char* name : {"", "like", "pi", "strmismatchx", "s", "strsub "}) {
        EXPECT_EQ(morandel::find_function(name), nullptr) << name;
    }
}

}  // namespace
