#include "tests/model/tokens.h"

#include <cstring>

#include "tests/model/numbers.h"
#include "tests/model/words.h"

namespace model {
namespace {

bool is_one_of(char c, const char* set) { return c != '\0' && std::strchr(set, c) != nullptr; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// First byte of a character of two bytes.
bool is_lead(char c) { return static_cast<unsigned char>(c) >= 0xA0; }

bool starts_name(char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return letter || is_lead(c) || is_one_of(c, ">\\<}{_~[=");
}

// % and the relations do not end a name.
bool ends_name(char c) { return c == '\0' || is_one_of(c, "+-*/^()!,\r "); }

class Scanner {
  public:
    explicit Scanner(const std::string& formula) : m_begin(formula.c_str()), m_next(m_begin) {}

    Token read() {
        while (*m_next == ' ') ++m_next;
        Token token;
        if (is_one_of(*m_next, "+-*/%^()!,")) {
            read_single(token);
        } else if (is_digit(*m_next)) {
            read_number(token);
        } else if (*m_next == '"') {
            read_literal(token);
        } else if (starts_name(*m_next)) {
            read_name(token);
        }
        token.end = static_cast<int>(m_next - m_begin);
        return token;
    }

  private:
    void read_single(Token& token) {
        token.token_class = TokenClass::delimiter;
        token.code = *m_next;
        if (*m_next == '+' || *m_next == '-') token.prefix = *m_next;
        token.text = *m_next++;
    }

    // 5. is a number, .5 is not.
    void read_number(Token& token) {
        const char* begin = m_next;
        while (is_digit(*m_next)) ++m_next;
        if (*m_next == '.') ++m_next;
        if (m_next[-1] == '.') {
            while (is_digit(*m_next)) ++m_next;
        }
        token.token_class = TokenClass::number;
        token.text.assign(begin, m_next);
        token.number = text_to_number(token.text);
    }

    void read_literal(Token& token) {
        const char* begin = ++m_next;
        while (*m_next != '"' && *m_next != '\0') ++m_next;
        token.token_class = TokenClass::literal;
        token.text.assign(begin, m_next);
        token.is_literal = true;
        token.quote_closed = *m_next == '"';
        if (token.quote_closed) ++m_next;
        classify(token);
    }

    void read_name(Token& token) {
        const char* begin = m_next;
        while (!ends_name(*m_next)) m_next += is_lead(*m_next) && m_next[1] != '\0' ? 2 : 1;
        token.token_class = TokenClass::name;
        token.text.assign(begin, m_next);
        classify(token);
    }

    // A literal that spells a word is that word.
    static void classify(Token& token) {
        const auto word = find_word(token.text);
        if (!word) return;
        token.token_class = word->code != 0 ? TokenClass::delimiter : TokenClass::constant;
        token.text = word->replacement;
        token.code = word->code;
        token.prefix = word->prefix;
        token.number = word->number;
    }

    const char* m_begin;
    const char* m_next;
};

}  // namespace

std::vector<Token> tokenize(const std::string& formula) {
    Scanner scanner(formula);
    std::vector<Token> tokens;
    do {
        tokens.push_back(scanner.read());
    } while (tokens.back().token_class != TokenClass::end);
    return tokens;
}

}  // namespace model
