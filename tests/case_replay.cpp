#include "tests/case_replay.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>

#include <morandel.h>
#include "cli/encoding.h"
#include "cli/output.h"

namespace morandel::cases {
namespace {

std::string readable(const std::string& bytes) {
    try {
        return '"' + cli::to_utf8(bytes) + '"';
    } catch (const cli::EncodingError&) {
        return "(bytes that are no text)";
    }
}

class Replay {
  public:
    explicit Replay(const Block& block) : m_block(block) {}

    std::vector<std::string> run() {
        for (const Line& line : m_block.lines) {
            m_line = &line;
            if (m_block.is_list) {
                compare_words(list_outcome(m_list, line));
            } else if (!line.verb.empty()) {
                play_check();
            } else if (line.let) {
                m_lets.push_back(&*line.let);
                if (m_block.is_sequence && m_evaluator) declare();
            } else {
                if (!m_block.is_sequence || !m_evaluator) {
                    m_evaluator = std::make_unique<CExpress>();
                    declare();
                }
                play();
            }
        }
        return m_problems;
    }

  private:
    void declare() { declare(*m_evaluator); }

    void declare(CExpress& e) {
        e.SetNumberOfPara(static_cast<int>(m_lets.size()));
        int index = 0;
        for (const Let* let : m_lets) {
            MYPARA para{let->name, let->number, let->text};
            expect(e.SetPara(&para, ++index, let->is_text) == 1, "SetPara failed");
        }
    }

    void play_check() {
        if (!m_block.is_sequence || !m_check) {
            m_check = std::make_unique<CExpressionCheck>();
            declare(*m_check);
        }
        if (m_line->verb == "reset") {
            m_check->Reset();
        } else {
            compare_words(check_outcome(*m_check, m_line->formula));
        }
    }

    void compare_words(const std::string& found) {
        expect(found == m_line->outcome, "gave \"" + found + "\" for \"" + m_line->outcome + '"');
    }

    void play() {
        const Expectation& e = m_line->expectation;
        const bool accepted = m_evaluator->SetExpression(m_line->formula.c_str()) == 1;
        expect(accepted != e.refused, e.refused ? "was accepted" : "was refused" + error_text());
        if (e.variables) check_variables(*e.variables);
        if (e.refused) {
            expect(e.silent == (m_evaluator->GetStatu() == 1), "the status is wrong");
            if (e.silent) expect(m_evaluator->m_ErrorMessage.empty(), "there is a message");
        }
        const bool evaluated = accepted && wants_evaluation(e);
        if (evaluated) {
            const bool succeeded = m_evaluator->CalcExpression() == 1;
            expect(succeeded != e.error.has_value(),
                   succeeded ? "succeeded" : "failed" + error_text());
        }
        if (e.error) check_error(*e.error);
        if (e.expression_status) {
            compare(m_evaluator->GetExpressionStatus(), *e.expression_status, "expression status");
        }
        if (e.number && evaluated) check_number(*e.number, e.inexact);
        if (e.text && evaluated) {
            expect(m_evaluator->m_StrResult == *e.text,
                   "gave " + readable(m_evaluator->m_StrResult) + " for " + readable(*e.text));
        }
        if (e.type && evaluated) compare(m_evaluator->GetResultType(), *e.type, "type");
    }

    static bool wants_evaluation(const Expectation& e) {
        return e.error || e.number || e.text || e.type;
    }

    std::string error_text() const {
        return " with error " + std::to_string(m_evaluator->GetErrorNumber()) + " " +
               readable(m_evaluator->m_ErrorMessage);
    }

    void check_error(int error) {
        compare(m_evaluator->GetErrorNumber(), error, "error");
        compare(m_evaluator->GetStatu(), 0, "status");
        expect(error_message(error) == m_evaluator->m_ErrorMessage, "the message is another one's");
        expect(m_evaluator->GetResult() == 0.0, "GetResult is not 0");
        compare(m_evaluator->GetResultType(), 0, "GetResultType");
    }

    void check_number(double wanted, bool inexact) {
        const double number = m_evaluator->GetResult();
        std::ostringstream text;
        text.precision(17);
        text << "gave " << number << " for " << wanted;
        expect(same_number(number, wanted, inexact), text.str());
    }

    void check_variables(const std::vector<std::pair<std::string, int>>& wanted) {
        compare(m_evaluator->GetVariableNum(), static_cast<int>(wanted.size()), "variables");
        int index = 0;
        for (const auto& [name, type] : wanted) {
            int found = -1;
            ++index;
            expect(m_evaluator->GetVariable(index, &found) == name,
                   "variable " + std::to_string(index) + " is not " + readable(name));
            compare(found, type, ("type of " + readable(name)).c_str());
        }
    }

    void compare(int found, int wanted, const char* what) {
        expect(found == wanted,
               std::string(what) + " " + std::to_string(found) + " for " + std::to_string(wanted));
    }

    void expect(bool holds, const std::string& otherwise) {
        if (holds) return;
        m_problems.push_back(m_block.name + ", line " + std::to_string(m_line->number) + ": " +
                             (m_line->let ? "let" : readable(m_line->formula)) + " " + otherwise);
    }

    const Block& m_block;
    const Line* m_line = nullptr;
    std::vector<const Let*> m_lets;
    std::unique_ptr<CExpress> m_evaluator;
    std::unique_ptr<CExpressionCheck> m_check;
    CVariableExpressList m_list;
    std::vector<std::string> m_problems;
};

}  // namespace

std::string check_outcome(CExpressionCheck& check, const std::string& formula) {
    const bool faulty = check.CheckExpression(formula.c_str());
    std::string words;
    for (const CheckexpressionError& fault : check.m_errors) {
        words += words.empty() ? "" : ", ";
        words += fault.strName + ' ' + std::to_string(fault.nType) + '/' +
                 std::to_string(fault.nIndex) + '@' + std::to_string(fault.nPosition);
    }
    if (words.empty()) words = faulty ? cli::to_utf8(check.m_current.strName) : "ok";
    if (check.m_resultKind != CExpressionCheck::kind_number) {
        words += "; kind " + std::to_string(check.m_resultKind);
    }
    if (check.m_step != -1) words += "; open " + std::to_string(check.m_step + 1);
    if (check.GetErrorNumber() >= 0) words += "; error " + std::to_string(check.GetErrorNumber());
    return words;
}

namespace {

std::string number_words(double number) { return cli::number_text(number); }

std::string error_words(const std::string& message) {
    for (const ErrorText& row : error_table()) {
        if (row.message == message)
            return "; error " + std::to_string(static_cast<int>(row.number));
    }
    return message.empty() ? "" : "; error without number";
}

// "name = number", "name = \"text\"" or "name := formula"
std::string append_words(CVariableExpressList& list, const std::string& definition) {
    const std::size_t equals = definition.find('=');
    const bool computed = definition[equals - 1] == ':';
    std::string name = definition.substr(0, equals - (computed ? 1 : 0));
    name.erase(name.find_last_not_of(' ') + 1);
    std::string value = definition.substr(equals + 1);
    value.erase(0, value.find_first_not_of(' '));
    if (computed) {
        list.Append(CVariableExpress::computed, name.c_str(), 0.0, value.c_str());
    } else if (value.starts_with('"')) {
        value = value.substr(1, value.size() - 2);
        list.AppendString(CVariableExpress::given, name.c_str(), value.c_str(), "");
    } else {
        list.Append(CVariableExpress::given, name.c_str(), std::strtod(value.c_str(), nullptr), "");
    }
    return "";
}

}  // namespace

std::string list_outcome(CVariableExpressList& list, const Line& line) {
    const char* name = line.formula.c_str();
    if (line.verb == "append") return append_words(list, line.formula);
    if (line.verb == "free") return std::to_string(list.Free());
    if (line.verb == "delete") return std::to_string(list.DeleteOneNodeByName(name));
    if (line.verb == "value") return number_words(list.FindByNameAndGetValue(name));
    if (line.verb == "text") return '"' + cli::to_utf8(list.FindByNameAndGetStrValue(name)) + '"';
    if (line.verb == "type") return std::to_string(list.m_nResultType);
    if (line.verb == "cal") {
        const int result = list.Cal();
        return std::to_string(result) + (result == 1 ? "" : error_words(list.m_strError));
    }
    if (line.verb != "find") return "no such call";
    CVariableExpress* record = list.FindByName(name);
    if (record == nullptr) return "nothing";
    std::string found;
    record->GetName(found);
    return cli::to_utf8(found);
}

bool same_number(double a, double b, bool inexact) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    if (!inexact || std::signbit(a) != std::signbit(b)) {
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    }
    return std::llabs(std::bit_cast<std::int64_t>(a) - std::bit_cast<std::int64_t>(b)) <= 4;
}

std::vector<std::string> replay(const Block& block) { return Replay(block).run(); }

}  // namespace morandel::cases
