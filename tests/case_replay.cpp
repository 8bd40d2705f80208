#include "tests/case_replay.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "cli/encoding.h"
#include "morandel.h"

namespace morandel::cases {
namespace {

std::string readable(const std::string& bytes) {
    try {
        return '"' + cli::to_utf8(bytes) + '"';
    } catch (const cli::EncodingError&) {
        return "(bytes that are no text)";
    }
}

// Equal to the last bit, or all NaN; inexact ones may be four places apart.
bool same(double a, double b, bool inexact) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    if (!inexact || std::signbit(a) != std::signbit(b)) {
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    }
    return std::llabs(std::bit_cast<std::int64_t>(a) - std::bit_cast<std::int64_t>(b)) <= 4;
}

class Replay {
  public:
    explicit Replay(const Block& block) : m_block(block) {}

    std::vector<std::string> run() {
        for (const Line& line : m_block.lines) {
            m_line = &line;
            if (line.let) {
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
    void declare() {
        m_evaluator->SetNumberOfPara(static_cast<int>(m_lets.size()));
        int index = 0;
        for (const Let* let : m_lets) {
            MYPARA para{let->name, let->number, let->text};
            expect(m_evaluator->SetPara(&para, ++index, let->is_text) == 1, "SetPara failed");
        }
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
        expect(same(number, wanted, inexact), text.str());
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
    std::vector<std::string> m_problems;
};

}  // namespace

std::vector<std::string> replay(const Block& block) {
    return Replay(block).run();
}

}  // namespace morandel::cases
