// The batch calculation: variables wait in a queue, and one whose formula cannot be evaluated yet
// goes back to its end.

#include <algorithm>
#include <cstdint>
#include <deque>

#include "engine/express.h"
#include "variables/record_store.h"
#include "variables/variables.h"

namespace morandel {

// Settles one list. That is bounded by n * (n + 1) attempts; of those that cannot change anything
// any more, all but the last few are not made.
class Calculation {
  public:
    Calculation(RecordStore& records, std::string& error, int& result_type)
        : m_records(records), m_error(error), m_result_type(result_type) {}

    bool run() {
        register_and_queue_all();
        const auto count = static_cast<std::int64_t>(m_records.size());
        std::int64_t attempts = 0;
        while (!m_queue.empty()) {
            CVariableExpress& record = *m_queue.front();
            m_queue.pop_front();
            if (record.GetType() == CVariableExpress::given) {
                hand_on(record);
                settle(record.IsString());
            } else if (!evaluate(record)) {
                return false;
            }
            ++attempts;
            attempts += attempts_without_effect(count * (count + 1) - attempts);
            if (attempts > count * (count + 1)) return fail();
        }
        return true;
    }

  private:
    struct Evaluator : CExpress {
        using CExpress::Memory;
        using CExpress::memory;
    };

    // When all that wait have failed one after the other, and have left nothing behind that could
    // make a difference, they will fail the same way again, round after round. How many whole
    // rounds of that fit into the attempts that are left.
    std::int64_t attempts_without_effect(std::int64_t left) {
        if (m_round_left > 0) --m_round_left;
        if (m_round_left > 0 || m_queue.empty()) return 0;
        const auto round = static_cast<std::int64_t>(m_queue.size());
        const Evaluator::Memory memory = m_evaluator.memory();
        const bool settled_none = m_round_settled == m_settled;
        const bool repeats = settled_none && memory == m_round_memory;
        m_round_left = round;
        m_round_settled = m_settled;
        m_round_memory = memory;
        return repeats && left > 0 ? left / round * round : 0;
    }

    // Every variable with its stored value, in list order: what a formula sees that is evaluated
    // before anything is settled. Where names repeat, the first record stands for each of them.
    void register_and_queue_all() {
        // Of more variables than there are parameters, formulas see none.
        m_evaluator.SetNumberOfPara(static_cast<int>(
            std::min<std::size_t>(m_records.size(), CExpress::max_parameters + 1)));
        int slot = 0;
        m_records.each_first_of_name([&](CVariableExpress& record) {
            m_queue.push_back(&record);
            hand_on(record);
            m_evaluator.SetPara(&m_parameter, ++slot, record.IsString());
        });
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

    // False where the formula is refused; one that fails waits for another time.
    bool evaluate(CVariableExpress& record) {
        const std::string& formula = RecordStore::formula_of(record);
        if (m_evaluator.SetExpression(formula.c_str()) == 0) return fail();
        if (m_evaluator.CalcExpression() == 0) {
            m_queue.push_back(&record);
            return true;
        }
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
        return true;
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
    std::deque<CVariableExpress*> m_queue;
    int m_settled = 0;

    // The round of attempts under way: how many of it are left, and what it began with.
    std::int64_t m_round_left = 0;
    int m_round_settled = -1;
    Evaluator::Memory m_round_memory{};
};

}  // namespace morandel

int CVariableExpressList::Cal() {
    return morandel::Calculation(*m_pRecords, m_strError, m_nResultType).run() ? 1 : 0;
}
