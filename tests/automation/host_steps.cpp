#include "tests/automation/host_steps.h"

#include <cstdlib>

#include <morandel.h>
#include <morandel/errors.h>
#include "base/value.h"
#include "cli/encoding.h"

namespace morandel::hosts {
namespace {

using cases::Expectation;
using cases::Let;
using cases::Line;

// A name that no case uses.
constexpr const char* outcome_name = "the_outcome";

// Whether a script's UTF-16 can hold the text and give the same bytes back.
bool is_text(const std::string& bytes) {
    try {
        return cli::to_gbk(cli::to_utf8(bytes)) == bytes;
    } catch (const cli::EncodingError&) {
        return false;
    }
}

class Translation {
  public:
    std::vector<Step> translate(const cases::Block& block) {
        for (const Line& line : block.lines) {
            m_line = &line;
            if (line.let) {
                m_lets.push_back(&*line.let);
            } else if (line.verb == "check") {
                if (m_lets.empty()) check();
            } else if (line.verb.empty() && is_text(line.formula)) {
                if (m_lets.empty()) validate(line.expectation);
                evaluate(line.expectation);
            }
        }
        return std::move(m_steps);
    }

  private:
    Step& add(const char* method, std::vector<HostValue> inputs,
              std::vector<std::optional<HostValue>> outputs = {}) {
        m_steps.push_back({method, std::move(inputs), std::move(outputs),
                           m_line->expectation.inexact, m_line->number});
        return m_steps.back();
    }

    // By an evaluator without parameters.
    void validate(const Expectation& e) {
        add(new_object, {});
        add("ValidateExpression", {m_line->formula}, {e.refused ? 0 : 1});
        if (e.refused && e.error)
            add("GetErrMsg", {}, {std::string(error_message(*e.error).value())});
        if (!e.variables || e.refused) return;
        add("GetVariableCount", {}, {static_cast<int>(e.variables->size())});
        int index = 0;
        for (const auto& [name, type] : *e.variables) {
            ++index;
            add("get_Variable", {index}, {name});
            add("get_Variable_Type", {index}, {type});
        }
    }

    void evaluate(const Expectation& e) {
        for (const Let* let : m_lets) {
            if (!is_text(let->name) || (let->is_text && !is_text(let->text))) return;
        }
        if (e.refused || (!e.error && !e.number && !e.text && !e.type)) return;
        if (e.error && !fails_alike(*e.error)) return;
        add(new_object, {});
        for (const Let* let : m_lets) {
            if (let->is_text) {
                add("SetStringValue", {1, let->name, let->text, std::string()});
            } else {
                add("SetValue", {1, let->name, let->number, std::string()});
            }
        }
        add("SetValue", {0, std::string(outcome_name), 0.0, m_line->formula});
        const std::string name = outcome_name;
        // A list stores the text of a result, or its number, whichever the result is.
        const bool is_string = e.type ? *e.type == type_text : e.text && !e.number;
        if (e.error) {
            add("GetValue", {name}, {0.0});
            add("GetLastErrorNum", {}, {0});
            add("GetErrMsg", {}, {std::string(error_message(*e.error).value())});
        } else if (is_string) {
            add("GetValue", {name}, {std::nullopt});
            add("GetLastErrorNum", {}, {1});
            if (e.text && is_text(*e.text)) add("GetStringValue", {name}, {*e.text});
            add("GetResultType", {}, {static_cast<int>(type_text)});
        } else {
            add("GetValue", {name},
                {e.number ? std::optional<HostValue>(*e.number) : std::nullopt});
            add("GetLastErrorNum", {}, {1});
            if (e.type) add("GetResultType", {}, {*e.type});
        }
    }

    // A list tries a formula that failed once more, and then it may find what the first attempt
    // left behind.
    [[nodiscard]] bool fails_alike(int error) const {
        CVariableExpressList list;
        for (const Let* let : m_lets) {
            if (let->is_text) {
                list.AppendString(1, let->name.c_str(), let->text.c_str(), "");
            } else {
                list.Append(1, let->name.c_str(), let->number, "");
            }
        }
        list.Append(0, outcome_name, 0.0, m_line->formula.c_str());
        return list.Cal() == 0 && list.m_strError == error_message(error);
    }

    // "name type/operand@position, ...", "ok", and words after a semicolon that no host sees.
    void check() {
        const std::string faults = m_line->outcome.substr(0, m_line->outcome.find(';'));
        if (faults == "ok") {
            add(new_object, {});
            add("ExpressionCheck", {m_line->formula}, {1, std::nullopt});
            return;
        }
        if (faults.find('@') == std::string::npos) return;
        add(new_object, {});
        int count = 1;
        for (const char c : faults) count += c == ',' ? 1 : 0;
        const std::string first = faults.substr(0, faults.find(','));
        const std::size_t blank = first.rfind(' ');
        char* rest = nullptr;
        const int type = static_cast<int>(std::strtol(first.c_str() + blank + 1, &rest, 10));
        const int operand = static_cast<int>(std::strtol(rest + 1, &rest, 10));
        const int position = static_cast<int>(std::strtol(rest + 1, &rest, 10));
        add("ExpressionCheck", {m_line->formula}, {0, count});
        add("GetExpressionError", {}, {count - 1, type, position, operand, first.substr(0, blank)});
    }

    const Line* m_line = nullptr;
    std::vector<const Let*> m_lets;
    std::vector<Step> m_steps;
};

}  // namespace

std::vector<Step> steps_of(const cases::Block& block) {
    if (block.is_sequence || block.is_list) return {};
    return Translation().translate(block);
}

}  // namespace morandel::hosts
