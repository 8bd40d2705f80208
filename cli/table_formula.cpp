#include "cli/table_formula.h"

#include <morandel.h>
#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "cli/encoding.h"
#include "cli/evaluate.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/suggestion.h"
#include "cli/syntax.h"
#include "cli/values.h"

namespace morandel::cli {
namespace {

using State = ComputedColumn::State;

bool is_convertible(const std::string& text, bool is_gbk) {
    try {
        if (!is_gbk) (void)to_gbk(text);
        return true;
    } catch (const EncodingError&) {
        return false;
    }
}

// Half a character cannot be shown anywhere.
bool is_whole(std::string_view gbk) {
    try {
        (void)to_utf8(gbk);
        return true;
    } catch (const EncodingError&) {
        return false;
    }
}

Message no_column(const std::string& name, const Columns& columns) {
    if (const auto relation = joined_relation(name); !relation.empty()) {
        return say("there is no column '{0}'; blanks are needed around '{1}'", name, relation);
    }
    const std::string gbk = to_gbk(name);
    if (const std::string_view character = unnameable_in(gbk); !character.empty()) {
        return say("there is no column '{0}'; write _ for '{1}', which a name cannot have", name,
                   to_utf8(character));
    }
    const std::string close = closest(name, columns.names());
    if (close.empty()) return say("there is no column '{0}'", name);
    return say("there is no column '{0}'; did you mean {1}?", name, close);
}

void check(int succeeded, morandel_error* error) {
    const morandel::detail::Owned<morandel_error> owned(error);
    if (succeeded != 0) return;
    if (morandel_error_reason(error) == MORANDEL_REASON_NO_MEMORY) throw std::bad_alloc();
    throw Problem({morandel_error_english(error, nullptr), morandel_error_message(error, nullptr)});
}

}  // namespace

TableFormula::TableFormula(std::string title, std::string formula)
    : m_title(std::move(title)), m_formula(std::move(formula)) {}

Message TableFormula::shown_title() const {
    const std::string title = m_title.empty() ? "--where" : shortened(m_title);
    return {title, title};
}

Kind TableFormula::kind_of_name(std::string_view name) const {
    const auto source = std::ranges::find(m_sources, name, &Source::name);
    if (source != m_sources.end()) return source->is_text ? Kind::text : Kind::number;
    const auto constant = std::ranges::find(m_constants, name, &Variable::name);
    return constant == m_constants.end() ? Kind::open : kind_of(constant->value);
}

std::vector<std::string> TableFormula::names() const {
    Evaluator evaluator;
    std::vector<std::string> names;
    if (!evaluator.load(m_formula).succeeded) return names;
    for (FreeVariable& variable : evaluator.free_variables())
        names.push_back(std::move(variable.name));
    return names;
}

void TableFormula::bind(const Columns& columns, const std::vector<Variable>& given,
                        EmptyFields empty_fields, bool is_gbk, const IsText& is_text) {
    const Message shown = shown_title();
    Evaluator evaluator;
    const Outcome loaded = evaluator.load(m_formula);
    if (!loaded.succeeded) {
        throw Problem(say("{0}: {1}", shown, failure_message(loaded)), loaded.picture);
    }
    for (const FreeVariable& used : evaluator.free_variables()) {
        const std::string name = to_gbk(used.name);
        const bool by_default = used.type == result_text;
        const auto value = std::ranges::find(given, name, &Variable::name);
        if (value != given.end()) {
            m_constants.push_back(*value);
            if (is_text(used.name, {}, by_default)) continue;
            const std::string text = to_utf8(std::get<std::string>(value->value));
            double number = 0.0;
            const bool is_zero = empty_fields == EmptyFields::are_zero && trim(text).empty();
            if (!is_zero && !read_number(trim(text), number)) {
                throw Problem(
                    say("{0}: {1}", shown, say("{0}: '{1}' is not a number", used.name, text)));
            }
            m_constants.back().value = number;
            continue;
        }
        const auto column = columns.find(used.name);
        if (!column) {
            throw Problem(say("{0}: {1}", shown, no_column(used.name, columns)));
        }
        m_sources.push_back({name, *column, is_text(used.name, *column, by_default)});
        m_titles.push_back(shortened(columns[*column].title));
    }
    if (m_sources.size() + m_constants.size() > std::size_t{CExpress::max_parameters}) {
        throw Problem(say("{0}: the formula uses more than 50 names", shown));
    }
    prepare(is_gbk);
}

// For values in the encoding of the file.
void TableFormula::prepare(bool is_gbk) {
    m_is_gbk = is_gbk;
    const auto encoded = [&](const std::string& gbk) { return is_gbk ? gbk : to_utf8(gbk); };
    std::vector<std::string> texts;
    std::vector<bool> are_texts;
    for (const Source& source : m_sources) {
        texts.push_back(encoded(source.name));
        are_texts.push_back(source.is_text);
    }
    for (const Variable& constant : m_constants) {
        texts.push_back(encoded(constant.name));
        const auto* text = std::get_if<std::string>(&constant.value);
        are_texts.push_back(text != nullptr);
        m_constant_texts.push_back(text == nullptr ? std::string() : encoded(*text));
    }
    std::vector<morandel::Name> names;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        names.emplace_back(texts[i], are_texts[i] ? morandel::Kind::text : morandel::Kind::number);
    }
    try {
        m_prepared.emplace(is_gbk ? to_gbk(m_formula) : m_formula, names,
                           is_gbk ? MORANDEL_CODE_PAGE_936 : 0);
    } catch (const morandel::Error& error) {
        throw Problem(say("{0}: {1}", shown_title(), Message{error.english(), error.message()}));
    }
}

std::vector<morandel_column> TableFormula::columns_of(TableBlock& block) const {
    std::vector<morandel_column> columns;
    for (const Source& source : m_sources) {
        if (source.is_text) {
            const Texts& texts = block.texts(source.column).texts;
            columns.push_back({MORANDEL_TEXT, nullptr, 0, texts.bytes.data(), texts.offsets.data(),
                               sizeof(std::size_t), texts.bytes.size()});
        } else {
            const NumberColumn& numbers = block.numbers(source.column);
            columns.push_back(
                {MORANDEL_NUMBER, numbers.values.data(), sizeof(double), nullptr, nullptr, 0, 0});
        }
    }
    for (std::size_t i = 0; i < m_constants.size(); ++i) {
        const std::string& text = m_constant_texts[i];
        if (const auto* number = std::get_if<double>(&m_constants[i].value)) {
            columns.push_back({MORANDEL_NUMBER, number, 0, nullptr, nullptr, 0, 0});
        } else {
            columns.push_back({MORANDEL_TEXT, nullptr, 0, text.data(), nullptr, 0, text.size()});
        }
    }
    return columns;
}

// Most formulas give one kind; rows of the other are asked for once more.
void TableFormula::compute(TableBlock& block, ComputedColumn& computed) {
    const std::size_t rows = block.chosen();
    computed.states.assign(rows, State::failed);
    computed.texts.clear();
    if (rows == 0) return;
    const std::vector<morandel_column> columns = columns_of(block);
    m_status.resize(rows);
    for (int tries = 0; tries < 2; ++tries) {
        if (m_gives_texts) {
            compute_texts(columns, computed);
        } else {
            compute_numbers(columns, computed);
        }
        const auto other = std::ranges::find(m_status, MORANDEL_ROW_OTHER_TYPE);
        if (other == m_status.end()) break;
        m_gives_texts = !m_gives_texts;
    }
    leave_out(block, computed);
}

void TableFormula::compute_numbers(std::span<const morandel_column> columns,
                                   ComputedColumn& computed) {
    computed.numbers.resize(computed.states.size());
    morandel_error* error = nullptr;
    check(morandel_formula_columns(m_prepared->handle(), columns.data(), columns.size(),
                                   computed.states.size(), computed.numbers.data(), m_status.data(),
                                   &error),
          error);
    for (std::size_t i = 0; i < m_status.size(); ++i) {
        if (m_status[i] == MORANDEL_ROW_OK) computed.states[i] = State::number;
    }
}

void TableFormula::compute_texts(std::span<const morandel_column> columns,
                                 ComputedColumn& computed) {
    const std::size_t rows = computed.states.size();
    morandel_error* error = nullptr;
    morandel_texts* made = nullptr;
    const int succeeded = morandel_formula_text_columns(
        m_prepared->handle(), columns.data(), columns.size(), rows, &made, m_status.data(), &error);
    const morandel::detail::Owned<morandel_texts> owned(made);
    check(succeeded, error);
    std::size_t size = 0;
    const char* bytes = morandel_texts_bytes(made, &size);
    const std::size_t* offsets = morandel_texts_offsets(made);
    computed.texts.bytes.assign(bytes, size);
    computed.texts.offsets.assign(offsets, offsets + rows + 1);
    for (std::size_t i = 0; i < rows; ++i) {
        if (m_status[i] == MORANDEL_ROW_OK && (!m_is_gbk || is_whole(computed.texts[i]))) {
            computed.states[i] = State::text;
        }
    }
}

// Rows whose values are not all there are not computed, whatever was made of them.
void TableFormula::leave_out(TableBlock& block, ComputedColumn& computed) const {
    for (const Source& source : m_sources) {
        const std::vector<Read>& reads =
            source.is_text ? block.texts(source.column).reads : block.numbers(source.column).reads;
        for (std::size_t i = 0; i < reads.size(); ++i) {
            if (reads[i] == Read::value) continue;
            computed.states[i] =
                fails_to_read(block, block.chosen_place(i)) ? State::failed : State::empty;
        }
    }
}

// The first value that is not there decides. What failed before is reported already, and an empty
// field may be asked to stay empty.
bool TableFormula::fails_to_read(const TableBlock& block, Place place) const {
    for (const Source& source : m_sources) {
        std::string text;
        double number = 0.0;
        const Read read = source.is_text ? block.text(source.column, place, text)
                                         : block.number(source.column, place, number);
        if (read == Read::empty) return !block.empty_fields_stay_empty();
        if (read == Read::no_value) return false;
        if (read == Read::no_number || !is_convertible(text, m_is_gbk)) return true;
    }
    return false;
}

Outcome TableFormula::explain(const TableBlock& block, Place place) const {
    std::vector<Variable> variables;
    for (std::size_t i = 0; i < m_sources.size(); ++i) {
        const Source& source = m_sources[i];
        double number = 0.0;
        std::string text;
        try {
            const Read read = source.is_text ? block.text(source.column, place, text)
                                             : block.number(source.column, place, number);
            if (read == Read::empty) return failed(say("{0}: the field is empty", m_titles[i]));
            if (read == Read::no_number) {
                return failed(say("{0}: '{1}' is not a number", m_titles[i],
                                  block.shown(source.column, place)));
            }
            if (source.is_text) {
                variables.push_back({source.name, m_is_gbk ? text : to_gbk(text)});
            } else {
                variables.push_back({source.name, number});
            }
        } catch (const EncodingError& problem) {
            return failed(is_utf8(text) ? problem.message()
                                        : say("{0}: the text is not UTF-8; is it --encoding gbk?",
                                              m_titles[i]));
        }
    }
    std::ranges::copy(m_constants, std::back_inserter(variables));
    Evaluator evaluator;
    evaluator.set_variables(std::move(variables));
    Outcome outcome = evaluator.evaluate(m_formula);
    const CExpress forgets_what_is_left;
    return outcome;
}

}  // namespace morandel::cli
