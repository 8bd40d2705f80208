// How a formula is loaded: compiled where it is of numbers alone, else cut into tokens, checked and
// walked for its variables. One that is loaded again as it stands is not read again.

#include <cstring>

#include "engine/compiler.h"
#include "engine/express.h"
#include "engine/floating_point.h"
#include "engine/tokenizer.h"

static_assert(morandel::Program::longest_formula == CExpress::max_formula);

int CExpress::SetExpression(const char* text) {
    if (text == nullptr) {
        m_ErrorMessage = morandel::null_formula_message;
        m_ErrorNumber = -1;
        return 0;
    }
    if (!is_loaded(text)) return load(text);
    forget_faults();
    load_again();
    return 1;
}

int CExpress::load(const char* text) {
    const morandel::DefaultFloatingPoint environment;
    const void* terminator = std::memchr(text, '\0', max_formula + 1);
    if (terminator == nullptr) return 0;
    const auto length = static_cast<std::size_t>(static_cast<const char*>(terminator) - text);

    // Should memory run out on the way, there is no formula.
    drop_formula();
    // The text may be this evaluator's own message, so it is copied before that goes.
    std::memcpy(m_Formula, text, length + 1);
    forget_faults();
    m_LoadedGeneration = m_Para.generation();
    if (load_program() || load_tokens()) return 1;
    drop_formula();
    return 0;
}

void CExpress::drop_formula() {
    m_Formula[0] = '\0';
    m_Tokens.clear();
    m_Loaded = Loaded::nothing;
    m_MissingName = {};
    rewind();
}

void CExpress::forget_faults() {
    m_Status = 1;
    m_ErrorMessage.clear();
    m_ErrorNumber = -1;
}

// Whether this formula would be loaded just as it was last time.
bool CExpress::is_loaded(const char* text) const {
    return m_Loaded >= Loaded::constant_tokens && m_LoadedGeneration == m_Para.generation() &&
           std::strcmp(text, m_Formula) == 0;
}

void CExpress::load_again() {
    m_ExpressionStatus = 0;
    if (m_ReadIsNumber) m_IsNumber = *m_ReadIsNumber;
    if (m_Loaded == Loaded::constant_tokens) {
        rewind();
    } else {
        m_Loaded = Loaded::program;
    }
}

bool CExpress::load_program() {
    if (!m_Program) m_Program = std::make_unique_for_overwrite<morandel::Program>();
    const morandel::Compilation compilation = morandel::compile(m_Formula, m_Para, *m_Program);
    m_MissingName = compilation.missing_name;
    if (!compilation.done) return false;
    m_Loaded = Loaded::program;
    m_ExpressionStatus = 0;
    m_ReadIsNumber = m_IsNumber = true;
    m_VariableList = nullptr;
    m_VariableNum = 0;
    return true;
}

bool CExpress::load_tokens() {
    morandel::tokenize(m_Formula, m_Tokens);
    m_Loaded = Loaded::tokens;
    rewind();
    if (!verify_plain() && VerifyExpression() == 0) return false;
    rewind();
    list_variables();
    rewind();
    return true;
}

// Cuts a compiled formula into the tokens that all but its computation works with.
void CExpress::cut_tokens() {
    const morandel::DefaultFloatingPoint environment;
    const bool finished = m_Loaded == Loaded::finished_program;
    morandel::tokenize(m_Formula, m_Tokens);
    m_Loaded = Loaded::constant_tokens;
    seek(finished ? m_Tokens.size() : 0);
}
