// The batch calculation: variables wait in line, and one whose formula cannot be evaluated yet goes
// back to its end.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <morandel/variables.h>

#include "engine/evaluator.h"
#include "language/characters.h"
#include "variables/record_store.h"

namespace morandel {

// Settles one list. That is bounded by n * (n + 1) attempts; those that cannot change anything any
// more are counted and not made.
class Calculation {
  public:
    Calculation(RecordStore& records, std::string& error, int& result_type)
        : m_records(records), m_error(error), m_result_type(result_type) {}

    bool run() {
        queue_all();
        while (!m_waiting.empty()) {
            const int settled = m_settled;
            const Evaluator::Memory memory = m_evaluator.memory();
            if (!run_round()) {
                m_error = m_message;
                return false;
            }
            // Where a round has settled nothing and has left nothing behind that could make a
            // difference, all that follow are the same.
            if (m_settled == settled && m_evaluator.memory() == memory) {
                m_attempts_left %= static_cast<std::int64_t>(m_waiting.size());
            }
        }
        return true;
    }

  private:
    struct Waiting {
        CVariableExpress* record;
        // What it has failed for the lack of, where it can only fail as long as that is missing,
        // and what the evaluator was then.
        std::string missing_name;
        Evaluator::Memory memory;
        int settled_texts;
    };

    // All wait in list order. Where names repeat, the first record stands for each of them.
    void queue_all() {
        const auto count = static_cast<std::int64_t>(m_records.size());
        m_attempts_left = count * (count + 1);
        // Of more variables than there are parameters, formulas see none.
        m_evaluator.parameters().set_count(
            static_cast<int>(std::min<std::int64_t>(count, Parameters::most + 1)));
        m_waiting.reserve(m_records.size());
        m_records.each_first_of_name([this](CVariableExpress& record) {
            m_waiting.push_back({&record, {}, {}, 0});
            hand_on(record);
        });
    }

    // Every variable with its stored value, in list order: what formulas see that are evaluated
    // before anything is settled. Those without a name see nothing of it.
    void show_stored_to(const std::string& formula) {
        const auto begins_name = [](char c) { return is_any(c, name_start); };
        if (m_settled > 0 || m_stored_shown || std::ranges::none_of(formula, begins_name)) return;
        m_stored_shown = true;
        int slot = 0;
        for (const Waiting& waiting : m_waiting) {
            CVariableExpress& record = *waiting.record;
            set_parameter(slot++, record, record.IsString(), record.GetValue(),
                          RecordStore::text_of(record));
        }
    }

    // One attempt at each that waits; those that fail go on waiting in the same order.
    bool run_round() {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_waiting.size(); ++i) {
            const int settled = m_settled;
            if (!would_fail_again(m_waiting[i]) && !attempt(m_waiting[i])) return false;
            if (--m_attempts_left < 0) return false;
            if (m_settled != settled) continue;
            if (kept != i) m_waiting[kept] = std::move(m_waiting[i]);
            ++kept;
        }
        m_waiting.resize(kept);
        return true;
    }

    // And leave the evaluator as it is: nothing in the formula touches what is pending, not even
    // where it comes further with names settled since; a number was read last, and so it would be
    // again, unless one of the formula's names is a text by now. The last attempt of all is made in
    // any case, for its message.
    [[nodiscard]] bool would_fail_again(const Waiting& waiting) const {
        return !waiting.missing_name.empty() && parameters_only_grow() && m_attempts_left > 0 &&
               m_evaluator.memory() == waiting.memory && waiting.memory.is_number &&
               m_settled_texts == waiting.settled_texts &&
               m_evaluator.parameters().find(waiting.missing_name) < 0;
    }

    // So they do from the first one settled on, while there is room for them.
    [[nodiscard]] bool parameters_only_grow() const {
        return m_settled > 0 && m_settled <= Parameters::most;
    }

    // False where a formula is refused.
    bool attempt(Waiting& waiting) {
        CVariableExpress& record = *waiting.record;
        if (record.GetType() == CVariableExpress::given) {
            hand_on(record);
            settle(record, record.IsString());
            return true;
        }
        const std::string& formula = RecordStore::formula_of(record);
        show_stored_to(formula);
        if (m_evaluator.SetExpression(formula.c_str()) == 0) return false;
        if (m_evaluator.CalcExpression() != 0) {
            store_result(record);
        } else if (const std::string_view lacks = m_evaluator.program().lacks;
                   parameters_only_grow() && !lacks.empty() &&
                   !m_evaluator.tokens().can_touch_pending()) {
            waiting.missing_name = lacks;
            waiting.memory = m_evaluator.memory();
            waiting.settled_texts = m_settled_texts;
        }
        return true;
    }

    // Deliberate: what a variable does not have, the number or the text, stays from the one before.
    void hand_on(CVariableExpress& record) {
        if (record.IsString()) {
            m_text = RecordStore::text_of(record);
        } else {
            m_number = record.GetValue();
        }
    }

    // From the first one settled on, formulas see those settled so far and no others.
    void settle(const CVariableExpress& record, bool is_string) {
        const int slot = m_settled++;
        if (is_string) ++m_settled_texts;
        m_evaluator.parameters().set_count(m_settled);
        set_parameter(slot, record, is_string, m_number, m_text);
    }

    // As SetPara, without a host's record in between.
    void set_parameter(int slot, const CVariableExpress& record, bool is_string, double number,
                       const std::string& text) {
        Parameters& parameters = m_evaluator.parameters();
        if (slot >= parameters.count()) return;
        parameters.set(static_cast<std::size_t>(slot), RecordStore::name_of(record), is_string,
                       number, text);
    }

    void store_result(CVariableExpress& record) {
        m_result_type = m_evaluator.GetResultType();
        if (m_result_type == type_text) {
            m_text = m_result_text;
            record.SetStrValue(m_text);
        } else {
            m_number = m_evaluator.GetResult();
            record.SetValue(m_number);
        }
        // Deliberate: as a number even where the result is a text; later formulas see the number
        // that was handed on last.
        settle(record, false);
    }

    RecordStore& m_records;
    std::string& m_error;
    int& m_result_type;
    std::string m_result_text;
    std::string m_message;
    int m_status = 1;
    Evaluator m_evaluator{m_result_text, m_message, m_status};
    double m_number = 0.0;  // handed on last
    std::string m_text;
    std::int64_t m_attempts_left = 0;  // before the one that is too many
    std::vector<Waiting> m_waiting;
    int m_settled = 0;
    int m_settled_texts = 0;  // of those
    bool m_stored_shown = false;
};

}  // namespace morandel

int CVariableExpressList::Cal() {
    // Not on the stack, which the deepest formula needs.
    const auto calculation =
        std::make_unique<morandel::Calculation>(*m_pRecords, m_strError, m_nResultType);
    return calculation->run() ? 1 : 0;
}
