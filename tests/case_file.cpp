#include "tests/case_file.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "cli/encoding.h"

namespace morandel::cases {
namespace {

constexpr std::string_view arrow = " --> ";

std::string_view trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

[[noreturn]] void complain(const std::string& problem) { throw std::runtime_error(problem); }

double read_number(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    const bool hexadecimal = text.starts_with("0x");
    if (hexadecimal) text.remove_prefix(2);
    double value = 0.0;
    const auto read =
        std::from_chars(text.data(), text.data() + text.size(), value,
                        hexadecimal ? std::chars_format::hex : std::chars_format::general);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
        complain("no number: " + std::string(text));
    }
    return negative ? -value : value;
}

int read_integer(std::string_view text) { return static_cast<int>(read_number(text)); }

// UTF-8 to code page 936, with {XX} for single bytes, {XX*n} for n of them.
std::string to_bytes(std::string_view text) {
    std::string bytes;
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t close = text[i] == '{' ? text.find('}', i) : std::string_view::npos;
        const std::string_view inside =
            close == std::string_view::npos ? "" : text.substr(i + 1, close - i - 1);
        unsigned byte = 0;
        const auto read = std::from_chars(inside.data(), inside.data() + inside.size(), byte, 16);
        const bool is_byte = inside.size() >= 2 && read.ptr == inside.data() + 2;
        if (!is_byte || (inside.size() > 2 && inside[2] != '*')) {
            plain += text[i];
            continue;
        }
        bytes += cli::to_gbk(plain);
        plain.clear();
        const int count = inside.size() > 2 ? read_integer(inside.substr(3)) : 1;
        bytes.append(static_cast<std::size_t>(count), static_cast<char>(byte));
        i = close;
    }
    return bytes + cli::to_gbk(plain);
}

bool is_quoted(std::string_view text) {
    return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

std::string_view unquote(std::string_view text) { return text.substr(1, text.size() - 2); }

// What « and » enclose keeps its blanks.
std::string_view unwrap(std::string_view text) {
    constexpr std::string_view open = "\xC2\xAB";
    constexpr std::string_view shut = "\xC2\xBB";
    if (!text.starts_with(open) || !text.ends_with(shut)) return text;
    return text.substr(open.size(), text.size() - open.size() - shut.size());
}

int type_of(std::string_view word) {
    if (word == "integer") return 0;
    if (word == "number") return 1;
    if (word == "string") return 2;
    complain("no type: " + std::string(word));
}

// "a string, b number"
std::vector<std::pair<std::string, int>> read_variables(std::string_view list) {
    std::vector<std::pair<std::string, int>> variables;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        const std::string_view item = trim(list.substr(0, comma));
        const std::size_t blank = item.rfind(' ');
        if (blank == std::string_view::npos) complain("no type: " + std::string(item));
        variables.emplace_back(to_bytes(item.substr(0, blank)), type_of(item.substr(blank + 1)));
        if (comma == std::string_view::npos) break;
        list.remove_prefix(comma + 1);
    }
    return variables;
}

// One item of an outcome; semicolons stand between them.
void read_item(std::string_view item, Expectation& e) {
    const std::size_t blank = item.find(' ');
    const std::string_view word = item.substr(0, blank);
    const std::string_view rest =
        blank == std::string_view::npos ? "" : trim(item.substr(blank + 1));
    if (is_quoted(item)) {
        e.text = to_bytes(unquote(item));
        if (!e.type) e.type = 2;
    } else if (word == "error") {
        e.error = read_integer(rest);
    } else if (word == "refused") {
        e.refused = true;
        if (!rest.empty()) e.error = read_integer(rest);
    } else if (word == "silent") {
        e.refused = e.silent = true;
    } else if (word == "status") {
        e.expression_status = read_integer(rest);
    } else if (word == "variables") {
        e.variables = read_variables(rest);
    } else if (word == "integer" || word == "number" || word == "string") {
        e.type = type_of(word);
        if (!rest.empty()) e.number = read_number(rest);
    } else if (word == "about") {
        e.inexact = true;
        e.number = read_number(rest);
        e.type = 1;
    } else {
        e.number = read_number(item);
        if (!e.type) e.type = 1;
    }
}

Expectation read_expectation(std::string_view text) {
    Expectation e;
    bool quoted = false;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == '"') quoted = !quoted;
        if (i < text.size() && (text[i] != ';' || quoted)) continue;
        read_item(trim(text.substr(begin, i - begin)), e);
        begin = i + 1;
    }
    return e;
}

Let read_let(std::string_view definition) {
    const std::size_t equals = definition.find(" = ");
    if (equals == std::string_view::npos) complain("let name = value");
    const std::string_view value = trim(definition.substr(equals + 3));
    Let let{to_bytes(trim(definition.substr(0, equals))), is_quoted(value), 0.0, ""};
    if (let.is_text) {
        let.text = to_bytes(unquote(value));
    } else {
        let.number = read_number(value);
    }
    return let;
}

void read_line(std::string_view text, int number, std::vector<Block>& blocks) {
    if (text.starts_with('[') && text.ends_with(']')) {
        constexpr std::string_view sequence_mark = ", in sequence";
        constexpr std::string_view list_mark = ", a list";
        std::string_view name = unquote(text);
        const bool is_sequence = name.ends_with(sequence_mark);
        const bool is_list = name.ends_with(list_mark);
        if (is_sequence) name.remove_suffix(sequence_mark.size());
        if (is_list) name.remove_suffix(list_mark.size());
        blocks.push_back({std::string(name), is_sequence, is_list, {}});
        return;
    }
    if (blocks.empty()) blocks.push_back({"cases", false, false, {}});
    Line line;
    line.number = number;
    const std::string_view verb = text.substr(0, text.find(' '));
    if (blocks.back().is_list || verb == "check" || verb == "reset") {
        const std::size_t at = std::min(text.rfind(arrow), text.size());
        const std::string_view operand = text.substr(0, at).substr(verb.size());
        line.verb = verb;
        line.formula = to_bytes(unwrap(trim(operand)));
        if (at < text.size()) line.outcome = trim(text.substr(at + arrow.size()));
    } else if (text.starts_with("let ")) {
        line.let = read_let(text.substr(4));
    } else {
        const std::size_t at = text.rfind(arrow);
        if (at == std::string_view::npos) complain("no -->");
        line.formula = to_bytes(unwrap(trim(text.substr(0, at))));
        line.expectation = read_expectation(text.substr(at + arrow.size()));
    }
    blocks.back().lines.push_back(std::move(line));
}

}  // namespace

std::vector<Block> read_cases(std::string_view text, const std::string& source) {
    std::vector<Block> blocks;
    std::istringstream in{std::string(text)};
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string_view trimmed = trim(line);
        if (trimmed.empty() || trimmed.starts_with('#')) continue;
        try {
            read_line(trimmed, number, blocks);
        } catch (const std::exception& problem) {
            throw std::runtime_error(source + ":" + std::to_string(number) + ": " + problem.what());
        }
    }
    return blocks;
}

std::vector<Block> read_case_file(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + file.string());
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    return read_cases(text, file.filename().string());
}

}  // namespace morandel::cases
