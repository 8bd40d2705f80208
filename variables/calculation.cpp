// The batch calculation: variables wait in line, and one whose formula cannot be evaluated yet goes
// back to its end.

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "engine/express.h"
#include "variables/record_store.h"
#include "variables/variables.h"

namespace morandel {

// Settles one list. That is bounded by n * (n + 1) attempts; those that cannot change anything any
// more are counted and not made.
class Calculation {
  public:
    Calculation(RecordStore& records, std::string& error, int& result_type)
        : m_records(records),
          m_error(error),
          m_result_type(result_type),
          m_attempts_left(bound(static_cast<std::int64_t>(records.size()))) {}

    bool run() {
        register_all();
        while (!m_waiting.empty()) {
            const int settled = m_settled;
            const Evaluator::Memory memory = m_evaluator.memory();
            if (!run_round()) return false;
            // Where a round has settled nothing and has left nothing behind that could make a
            // difference, all that follow are the same.
            if (m_settled == settled && m_evaluator.memory() == memory) {
                m_attempts_left %= static_cast<std::int64_t>(m_waiting.size());
            }
        }
        return true;
    }

  private:
    struct Evaluator : CExpress {
        using CExpress::has_parameter;
        using CExpress::Memory;
        using CExpress::memory;
        using CExpress::missing_name;
    };

    struct Waiting {
        CVariableExpress* record;
        // What it has failed for the lack of, if that is known, and what the evaluator was then.
        std::string missing_name;
        Evaluator::Memory memory;
    };

    static std::int64_t bound(std::int64_t count) { return count * (count + 1); }

    // Every variable with its stored value, in list order: what a formula sees that is evaluated
    // before anything is settled. Where names repeat, the first record stands for each of them.
    void register_all() {
        // Of more variables than there are parameters, formulas see none.
        m_evaluator.SetNumberOfPara(static_cast<int>(
            std::min<std::size_t>(m_records.size(), CExpress::max_parameters + 1)));
        m_waiting.reserve(m_records.size());
        int slot = 0;
        m_records.each_first_of_name([&](CVariableExpress& record) {
            m_waiting.push_back({&record, {}, {}});
            hand_on(record);
            m_evaluator.SetPara(&m_parameter, ++slot, record.IsString());
        });
    }

    // One attempt at each that waits; those that fail go on waiting in the same order.
    bool run_round() {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_waiting.size(); ++i) {
            const int settled = m_settled;
            if (!would_fail_again(m_waiting[i]) && !attempt(m_waiting[i])) return false;
            if (--m_attempts_left < 0) return fail();
            if (m_settled != settled) continue;
            if (kept != i) m_waiting[kept] = std::move(m_waiting[i]);
            ++kept;
        }
        m_waiting.resize(kept);
        return true;
    }

    // The last attempt of all is made in any case, for its message.
    [[nodiscard]] bool would_fail_again(const Waiting& waiting) const {
        return !waiting.missing_name.empty() && parameters_only_grow() && m_attempts_left > 0 &&
               m_evaluator.memory() == waiting.memory &&
               !m_evaluator.has_parameter(waiting.missing_name);
    }

    // So they do from the first one settled on, while there is room for them.
    [[nodiscard]] bool parameters_only_grow() const {
        return m_settled > 0 && m_settled <= CExpress::max_parameters;
    }

    // False where a formula is refused.
    bool attempt(Waiting& waiting) {
        CVariableExpress& record = *waiting.record;
        if (record.GetType() == CVariableExpress::given) {
            hand_on(record);
            settle(record.IsString());
            return true;
        }
        if (m_evaluator.SetExpression(RecordStore::formula_of(record).c_str()) == 0) return fail();
        if (m_evaluator.CalcExpression() != 0) {
            store_result(record);
        } else if (parameters_only_grow()) {
            waiting.missing_name = m_evaluator.missing_name();
            waiting.memory = m_evaluator.memory();
        }
        return true;
    }

    // Fills the one parameter that all share. Deliberate: what a variable does not have stays from
    // the one before.
    void hand_on(CVariableExpress& record) {
        m_parameter.name = RecordStore::name_of(record);
        if (record.IsString()) {
            m_parameter.strValue = record.GetStrValue();
        } else {
            m_parameter.value = record.GetValue();
        }
    }

    // From the first one settled on, formulas see those settled so far and no others.
    void settle(bool is_string) {
        m_evaluator.SetNumberOfPara(m_settled + 1);
        ++m_settled;
        m_evaluator.SetPara(&m_parameter, m_settled, is_string);
    }

    void store_result(CVariableExpress& record) {
        m_result_type = m_evaluator.GetResultType();
        m_parameter.name = RecordStore::name_of(record);
        if (m_result_type == type_text) {
            m_parameter.strValue = m_evaluator.m_StrResult;
            record.SetStrValue(m_evaluator.m_StrResult);
        } else {
            m_parameter.value = m_evaluator.GetResult();
            record.SetValue(m_parameter.value);
        }
        // Deliberate: as a number even where the result is a text; later formulas see the number
        // that was handed on last.
        settle(false);
    }

    bool fail() {
        m_error = m_evaluator.m_ErrorMessage;
        return false;
    }

    RecordStore& m_records;
    std::string& m_error;
    int& m_result_type;
    Evaluator m_evaluator;
    MYPARA m_parameter;
    std::int64_t m_attempts_left;  // before the one that is too many
    std::vector<Waiting> m_waiting;
    int m_settled = 0;
};

}  // namespace morandel

int CVariableExpressList::Cal() {
    return morandel::Calculation(*m_pRecords, m_strError, m_nResultType).run() ? 1 : 0;
}
