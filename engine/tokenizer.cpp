#include "engine/tokenizer.h"

#include <cstring>

#include "engine/functions.h"
#include "engine/numbers.h"
#include "engine/scan.h"

namespace morandel {
namespace {

class Scanner {
  public:
    explicit Scanner(const char* formula) : m_formula(formula), m_next(formula) {}

    // Fills a fresh token.
    void read(Token& token) {
        while (is_any(*m_next, blank)) ++m_next;
        if (is_any(*m_next, single)) {
            read_single(token);
        } else if (is_any(*m_next, digit)) {
            read_number(token);
        } else if (*m_next == '"') {
            read_literal(token);
            classify_word(token);
        } else if (is_any(*m_next, name_start)) {
            read_name(token);
            classify_word(token);
        }
        token.end = static_cast<std::uint16_t>(m_next - m_formula);
    }

  private:
    void set_text(Token& token, const char* begin, const char* end) {
        token.text_begin = begin;
        token.text_length = static_cast<std::uint16_t>(end - begin);
    }

    void read_single(Token& token) {
        token.token_class = TokenClass::delimiter;
        token.code = *m_next;
        token.prefix = *m_next == '+' || *m_next == '-' ? *m_next : '\0';
        set_text(token, m_next, m_next + 1);
        ++m_next;
    }

    void read_number(Token& token) {
        const char* begin = m_next;
        m_next = end_of_number(begin);
        token.token_class = TokenClass::number;
        set_text(token, begin, m_next);
        token.number = digits_to_number(token.text());
    }

    // The inside of the quotes. Without a closing quote it reaches to the end of the formula.
    void read_literal(Token& token) {
        const char* begin = ++m_next;
        while (*m_next != '"' && *m_next != '\0') ++m_next;
        set_text(token, begin, m_next);
        token.token_class = TokenClass::literal;
        token.is_literal = true;
        token.quote_closed = *m_next == '"';
        if (token.quote_closed) ++m_next;
    }

    void read_name(Token& token) {
        const char* begin = m_next;
        m_next = end_of_name(begin);
        token.token_class = TokenClass::name;
        set_text(token, begin, m_next);
    }

    // Deliberate: a literal that spells a function, an operator or a constant is taken as one.
    static void classify_word(Token& token) {
        const Word* word = find_word(token.text());
        if (word == nullptr) return;
        token.text_begin = word->replacement.data();
        token.text_length = static_cast<std::uint16_t>(word->replacement.size());
        token.code = word->code;
        token.prefix = word->prefix;
        token.token_class = word->code != 0 ? TokenClass::delimiter : TokenClass::constant;
        token.number = word->number;
    }

    const char* m_formula;
    const char* m_next;
};

}  // namespace

void tokenize(const char* formula, std::vector<Token>& tokens) {
    tokens.clear();
    tokens.reserve(std::strlen(formula) + 1);  // no token without a byte, but the last
    Scanner scanner(formula);
    do {
        scanner.read(tokens.emplace_back());
    } while (tokens.back().token_class != TokenClass::end);
}

}  // namespace morandel
