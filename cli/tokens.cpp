#include "cli/tokens.h"

#include <algorithm>
#include <array>

namespace morandel::cli {
namespace {

constexpr std::array<std::string_view, 10> words = {
    "like", "equal", "and", "or", ">=", "<=", "<>", "<", ">", "="};
constexpr std::array<std::string_view, 2> constants = {"pi", "exp"};

constexpr std::string_view digits = "0123456789";
constexpr std::string_view symbols = "+-*/%^()!,";
constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

bool is_one_of(char c, std::string_view characters) {
    return c != '\0' && characters.find(c) != std::string_view::npos;
}

bool is_lead(char c) { return static_cast<unsigned char>(c) >= 0xA0; }

std::string lower_case(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

template <class Names>
bool is_among(const Names& names, std::string_view name) {
    return std::ranges::find(names, lower_case(name)) != names.end();
}

std::size_t number_size(std::string_view text) {
    std::size_t size = 0;
    bool has_point = false;
    for (; size < text.size(); ++size) {
        if (text[size] == '.' && !has_point) {
            has_point = true;
        } else if (!is_one_of(text[size], digits)) {
            break;
        }
    }
    return size;
}

// A byte that begins a double-byte character takes the next one with it, whatever that is.
std::size_t name_size(std::string_view text) {
    std::size_t size = 0;
    while (size < text.size()) {
        if (is_lead(text[size])) {
            size = std::min(size + 2, text.size());
        } else if (is_one_of(text[size], " +-*/^()!,\r") || text[size] == '\0') {
            break;
        } else {
            ++size;
        }
    }
    return size;
}

FormulaToken read_name(std::string_view text) {
    FormulaToken token;
    token.text = text;
    token.function = find_function(text);
    token.kind = token.function != nullptr   ? TokenKind::function
                 : is_among(words, text)     ? TokenKind::word
                 : is_among(constants, text) ? TokenKind::constant
                                             : TokenKind::name;
    return token;
}

FormulaToken read_token(std::string_view rest) {
    FormulaToken token;
    if (rest.empty()) return token;
    const char first = rest.front();
    if (is_one_of(first, symbols)) {
        token.kind = TokenKind::symbol;
        token.text = rest.substr(0, 1);
    } else if (is_one_of(first, digits)) {
        token.kind = TokenKind::number;
        token.text = rest.substr(0, number_size(rest));
    } else if (first == '"') {
        const std::size_t close = rest.find('"', 1);
        token.kind = close == std::string_view::npos ? TokenKind::unclosed : TokenKind::text;
        token.text = rest.substr(0, close == std::string_view::npos ? close : close + 1);
        if (token.kind == TokenKind::text) {
            const FormulaToken meaning = read_name(rest.substr(1, close - 1));
            token.is_quoted_word =
                meaning.kind == TokenKind::function || meaning.kind == TokenKind::word;
            if (token.is_quoted_word) {
                token.kind = meaning.kind;
                token.function = meaning.function;
            }
        }
    } else if (is_lead(first) || is_one_of(first, letters) || is_one_of(first, ">\\<}{_~[=")) {
        token = read_name(rest.substr(0, name_size(rest)));
    } else {
        token.kind = TokenKind::ignored;
        token.text = rest;
    }
    return token;
}

}  // namespace

std::string FormulaToken::lower() const {
    return lower_case(is_quoted_word ? text.substr(1, text.size() - 2) : text);
}

std::vector<FormulaToken> tokens_of(std::string_view formula) {
    std::vector<FormulaToken> tokens;
    std::size_t at = 0;
    while (true) {
        at = std::min(formula.find_first_not_of(' ', at), formula.size());
        tokens.push_back(read_token(formula.substr(at)));
        tokens.back().position = at;
        const TokenKind kind = tokens.back().kind;
        if (kind == TokenKind::end || kind == TokenKind::ignored) return tokens;
        at = tokens.back().end();
    }
}

std::size_t character_size(char first) { return static_cast<unsigned char>(first) > 0x80 ? 2 : 1; }

bool is_reserved(std::string_view name) {
    return find_function(name) != nullptr || is_among(words, name) || is_among(constants, name);
}

std::string_view unnameable_in(std::string_view name) {
    for (std::size_t i = 0; i < name.size(); i += character_size(name[i])) {
        const auto byte = static_cast<unsigned char>(name[i]);
        if (byte >= 0x80 && !is_lead(name[i])) return name.substr(i, character_size(name[i]));
    }
    return {};
}

bool is_plain_name(std::string_view name) {
    const auto is_name_byte = [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || c == '_' || is_one_of(c, digits) ||
               is_one_of(c, letters);
    };
    return !name.empty() && !is_one_of(name.front(), digits) &&
           std::ranges::all_of(name, is_name_byte) && !is_reserved(name);
}

}  // namespace morandel::cli
