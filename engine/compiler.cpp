#include "engine/compiler.h"

#include <array>

#include "engine/functions.h"
#include "engine/numbers.h"
#include "engine/scan.h"

namespace morandel {
namespace {

// How tightly operators hold their operands. Relations hold as tightly as powers do.
enum Precedence : std::uint8_t { open_parenthesis, sum, product, tight };

// Operators wait on a stack, with their left sides, until what follows holds less tightly.
class Compiler {
  public:
    Compiler(const char* formula, const Parameters& parameters, Program& program)
        : m_next(formula), m_parameters(parameters), m_program(program) {}

    Compilation run() {
        if (!read_all()) return {};
        return {m_missing_name.empty(), m_missing_name};
    }

  private:
    bool read_all() {
        m_program.clear();
        while (read_operand()) {
            while (at(')')) {
                if (!close()) return false;
            }
            if (*m_next == '\0') return finish();
            if (!read_operator()) return false;
        }
        return false;
    }

    struct Waiting {
        Precedence precedence;
        Operation operation;
        char code;  // of a relation; of an open parenthesis, its sign or function
        const double* left;
    };

    bool at(char wanted) {
        while (*m_next == ' ') ++m_next;
        if (*m_next != wanted) return false;
        ++m_next;
        return true;
    }

    std::string_view read_name() {
        const char* begin = m_next;
        m_next = end_of_name(begin);
        return {begin, static_cast<std::size_t>(m_next - begin)};
    }

    // { [ sign | function ] ( } [ sign | function ] ( number | name )
    bool read_operand() {
        while (true) {
            char prefix = 0;
            if (at('+')) {
                prefix = '+';
            } else if (at('-')) {
                prefix = '-';
            } else if (is_any(*m_next, name_start)) {
                const std::string_view name = read_name();
                const Word* word = find_word(name);
                if (word == nullptr || !is_numeric_function(*word)) return take_name(name, word);
                prefix = word->code;
            }
            if (at('(')) {
                wait({open_parenthesis, Operation::function, prefix, nullptr});
                continue;
            }
            if (is_any(*m_next, digit)) {
                if (!take_number()) return false;
            } else if (prefix == 0 || !is_any(*m_next, name_start)) {
                return false;
            } else {
                const std::string_view name = read_name();
                if (!take_name(name, find_word(name))) return false;
            }
            if (prefix != 0) apply(prefix);
            return true;
        }
    }

    static bool is_numeric_function(const Word& word) {
        const Function* row = word.code == word.prefix ? function_of_code(word.code) : nullptr;
        return row != nullptr && row->carrier == Carrier::numeric && row->first_type == type_number;
    }

    // One with hundreds of digits can lie beyond the range that programs take operands from.
    bool take_number() {
        const char* begin = m_next;
        m_next = end_of_number(begin);
        const double number = digits_to_number({begin, static_cast<std::size_t>(m_next - begin)});
        m_has_number = true;
        return in_range(number) && take_operand(m_program.keep(number));
    }

    // A named constant or a parameter, by what the name is as a word.
    bool take_name(std::string_view name, const Word* word) {
        if (word == nullptr) return take_parameter(name);
        return word->code == 0 && take_operand(m_program.keep(word->number));
    }

    bool take_parameter(std::string_view name) {
        const int slot = m_parameters.find(name);
        if (slot < 0) {
            if (m_missing_name.empty()) m_missing_name = name;
            return take_operand(nullptr);
        }
        const Parameter& parameter = m_parameters[static_cast<std::size_t>(slot)];
        if (parameter.is_text) return false;
        m_has_number = true;
        return take_operand(&parameter.number);
    }

    bool take_operand(const double* operand) {
        m_operand = operand;
        m_type = type_number;
        return true;
    }

    // A "+" before an operand changes nothing, not even that "int" gives an integer.
    void apply(char prefix) {
        if (prefix == '+') return;
        m_operand = m_program.append(Operation::function, prefix, m_operand, nullptr);
        m_type = prefix == 'o' ? type_integer : type_number;
    }

    void wait(Waiting waiting) { m_waiting[m_waiting_count++] = waiting; }
    [[nodiscard]] const Waiting& last_waiting() const { return m_waiting[m_waiting_count - 1]; }

    // Carries out what waits and holds at least that tightly.
    void reduce(Precedence precedence) {
        while (m_waiting_count > 0 && last_waiting().precedence >= precedence) {
            const Waiting waiting = m_waiting[--m_waiting_count];
            m_operand = m_program.append(waiting.operation, waiting.code, waiting.left, m_operand);
            m_type = type_number;
        }
    }

    bool close() {
        reduce(sum);
        if (m_waiting_count == 0) return false;
        const char prefix = m_waiting[--m_waiting_count].code;
        if (prefix != 0) apply(prefix);
        return true;
    }

    bool finish() {
        reduce(sum);
        m_program.finish(m_operand, m_type);
        // A named constant alone is what the constant read before it was.
        return m_waiting_count == 0 && (m_has_number || !m_missing_name.empty());
    }

    bool read_operator() {
        const char code = *m_next;
        if (is_any(code, name_start)) {
            const Word* word = find_word(read_name());
            return word != nullptr && read_relation(word->code);
        }
        ++m_next;
        switch (code) {
            case '+':
                return read_binary(sum, Operation::add);
            case '-':
                return read_binary(sum, Operation::subtract);
            case '*':
                return read_binary(product, Operation::multiply);
            case '/':
                return read_binary(product, Operation::divide);
            case '^':
                return read_power();
            default:
                return false;
        }
    }

    bool read_binary(Precedence precedence, Operation operation) {
        reduce(precedence);
        wait({precedence, operation, 0, m_operand});
        return true;
    }

    // Powers wait for one another. To the power of 0 the type of an integer stays, which only the
    // numbers tell.
    bool read_power() {
        if (m_type == type_integer || waits_for(Operation::relation)) return false;
        wait({tight, Operation::power, 0, m_operand});
        return true;
    }

    // One relation has two sides; more of them, or powers beside one, have an order of their own.
    bool read_relation(char code) {
        if (!is_relation(code) || code == code_like || code == code_equal) return false;
        if (waits_for(Operation::relation) || waits_for(Operation::power)) return false;
        wait({tight, Operation::relation, code, m_operand});
        return true;
    }

    [[nodiscard]] bool waits_for(Operation operation) const {
        return m_waiting_count > 0 && last_waiting().operation == operation;
    }

    const char* m_next;
    const Parameters& m_parameters;
    Program& m_program;
    const double* m_operand = nullptr;  // what was read or computed last
    ResultType m_type = type_number;    // of that
    bool m_has_number = false;          // besides named constants
    std::string_view m_missing_name;
    std::size_t m_waiting_count = 0;
    std::array<Waiting, Program::longest_formula> m_waiting;
};

}  // namespace

Compilation compile(const char* formula, const Parameters& parameters, Program& program) {
    return Compiler(formula, parameters, program).run();
}

}  // namespace morandel
