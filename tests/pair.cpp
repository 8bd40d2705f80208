#include "tests/pair.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace morandel::pairs {
namespace {

void compare_variables(CExpress& library, model::Express& model, Difference& difference) {
    difference.expect("GetVariableNum", library.GetVariableNum(), model.GetVariableNum());
    const VariableNode* node = library.GetVariableList();
    const model::VariableNode* wanted = model.GetVariableList();
    for (; node != nullptr && wanted != nullptr; node = node->next, wanted = wanted->next) {
        difference.expect("name of a variable", node->name, wanted->name);
        difference.expect("type of a variable", node->type, wanted->type);
    }
    difference.expect("end of the variables", node == nullptr, wanted == nullptr);
    for (int i = 0; i <= model.GetVariableNum() + 1; ++i) {
        int type = -7;
        int wanted_type = -7;
        difference.expect("GetVariable", library.GetVariable(i, &type),
                          model.GetVariable(i, &wanted_type));
        difference.expect("type by GetVariable", type, wanted_type);
    }
}

}  // namespace

bool same_number(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

void Difference::expect_number(const char* what, double library, double model) {
    if (same_number(library, model) || !none()) return;
    std::ostringstream out;
    out << std::hexfloat << what << ": " << library << ", the model has " << model;
    m_text = out.str();
}

void compare(CExpress& library, model::Express& model, Difference& difference) {
    difference.expect("m_Status", library.m_Status, model.m_Status);
    difference.expect("GetStatu", library.GetStatu(), model.GetStatu());
    difference.expect("GetErrorNumber", library.GetErrorNumber(), model.GetErrorNumber());
    difference.expect("m_ErrorMessage", library.m_ErrorMessage, model.m_ErrorMessage);
    difference.expect("GetExpressionStatus", library.GetExpressionStatus(),
                      model.GetExpressionStatus());
    difference.expect("GetResultType", library.GetResultType(), model.GetResultType());
    difference.expect_number("GetResult", library.GetResult(), model.GetResult());
    difference.expect("m_StrResult", library.m_StrResult, model.m_StrResult);
    compare_variables(library, model, difference);
}

int Evaluators::seen(const char* call, int library, int model) {
    m_difference.expect(call, library, model);
    compare(m_library, m_model, m_difference);
    return model;
}

void Evaluators::set_count(int count) {
    seen("SetNumberOfPara", m_library.SetNumberOfPara(count), m_model.SetNumberOfPara(count));
}

void Evaluators::set_number(int index, const std::string& name, double value) {
    MYPARA library{name, value, "not used"};
    const model::Para model{name, value, "not used"};
    seen("SetPara", m_library.SetPara(&library, index, false),
         m_model.SetPara(&model, index, false));
}

void Evaluators::set_text(int index, const std::string& name, const std::string& text) {
    MYPARA library{name, 7.0, text};
    const model::Para model{name, 7.0, text};
    seen("SetPara", m_library.SetPara(&library, index, true), m_model.SetPara(&model, index, true));
}

int Evaluators::load(const char* formula) {
    return seen("SetExpression", m_library.SetExpression(formula), m_model.SetExpression(formula));
}

int Evaluators::load_own_message() {
    return seen("SetExpression", m_library.SetExpression(m_library.m_ErrorMessage.c_str()),
                m_model.SetExpression(m_model.m_ErrorMessage.c_str()));
}

int Evaluators::verify() {
    return seen("VerifyExpression", m_library.VerifyExpression(), m_model.VerifyExpression());
}

int Evaluators::calculate() {
    return seen("CalcExpression", m_library.CalcExpression(), m_model.CalcExpression());
}

void Evaluators::clear() {
    m_library.ClearOld();
    m_model.ClearOld();
    seen("ClearOld", 0, 0);
}

void Checkers::set_number(int index, const std::string& name, double value) {
    MYPARA library{name, value, ""};
    const model::Para model{name, value, ""};
    m_library.SetNumberOfPara(index);
    m_model.SetNumberOfPara(index);
    seen("SetPara", m_library.SetPara(&library, index, false),
         m_model.SetPara(&model, index, false));
}

void Checkers::set_text(int index, const std::string& name, const std::string& text) {
    MYPARA library{name, 0.0, text};
    const model::Para model{name, 0.0, text};
    m_library.SetNumberOfPara(index);
    m_model.SetNumberOfPara(index);
    seen("SetPara", m_library.SetPara(&library, index, true), m_model.SetPara(&model, index, true));
}

bool Checkers::check(const std::string& formula) {
    return seen("CheckExpression", m_library.CheckExpression(formula.c_str()) ? 1 : 0,
                m_model.CheckExpression(formula.c_str()) ? 1 : 0) == 1;
}

int Checkers::count_commas() {
    return seen("CountCommaCheck", m_library.CountCommaCheck(), m_model.CountCommaCheck());
}

void Checkers::reset() {
    m_library.Reset();
    m_model.Reset();
    seen("Reset", 0, 0);
}

void Checkers::init_step() {
    m_library.InitStep();
    m_model.InitStep();
    seen("InitStep", 0, 0);
}

void Checkers::forget_arguments() {
    m_library.InitTempHolde(nullptr, 0);
    m_model.InitTempHolde();
    seen("InitTempHolde", 0, 0);
}

int Checkers::calculate() {
    return seen("CalcExpression", m_library.CalcExpression(), m_model.CalcExpression());
}

int Checkers::seen(const char* call, int library, int model) {
    Difference& d = m_difference;
    d.expect(call, library, model);
    compare(m_library, m_model, d);
    d.expect("m_step", m_library.m_step, m_model.m_step);
    d.expect("m_depth", m_library.m_depth, m_model.m_depth);
    d.expect("m_resultKind", m_library.m_resultKind, m_model.m_resultKind);
    d.expect("m_tokenCount", m_library.m_tokenCount, m_model.m_tokenCount);
    d.expect("GetCommaNum", m_library.GetCommaNum(), m_model.GetCommaNum());
    d.expect("GetLocalNumber", m_library.GetLocalNumber(), m_model.GetLocalNumber());
    d.expect("number of m_argKinds", m_library.m_argKinds.size(), m_model.m_argKinds.size());
    d.expect("number of faults", m_library.m_errors.size(), m_model.m_errors.size());
    if (!d.none()) return model;
    for (std::size_t i = 0; i < m_model.m_argKinds.size(); ++i) {
        d.expect("kind of an argument", m_library.m_argKinds[i], m_model.m_argKinds[i]);
    }
    const auto compare_faults = [&d](const CheckexpressionError& fault,
                                     const model::Fault& wanted) {
        d.expect("name of a fault", fault.strName, wanted.strName);
        d.expect("type of a fault", fault.nType, wanted.nType);
        d.expect("position of a fault", fault.nPosition, wanted.nPosition);
        d.expect("index of a fault", fault.nIndex, wanted.nIndex);
    };
    for (std::size_t i = 0; i < m_model.m_errors.size(); ++i) {
        compare_faults(m_library.m_errors[i], m_model.m_errors[i]);
    }
    compare_faults(m_library.m_current, m_model.m_current);
    return model;
}

void Lists::append(std::size_t list, int type, const std::string& name, double value,
                   const std::string& formula) {
    seen("Append", m_library[list].Append(type, name.c_str(), value, formula.c_str()),
         m_model[list].Append(type, name.c_str(), value, formula.c_str()));
}

void Lists::append_string(std::size_t list, int type, const std::string& name,
                          const std::string& text, const std::string& formula) {
    seen("AppendString",
         m_library[list].AppendString(type, name.c_str(), text.c_str(), formula.c_str()),
         m_model[list].AppendString(type, name.c_str(), text.c_str(), formula.c_str()));
}

void Lists::assign(std::size_t to, std::size_t from) {
    m_library[to] = m_library[from];
    m_model[to] = m_model[from];
    seen("operator=", 0, 0);
}

void Lists::free(std::size_t list) { seen("Free", m_library[list].Free(), m_model[list].Free()); }

int Lists::remove(std::size_t list, const std::string& name) {
    return seen("DeleteOneNodeByName", m_library[list].DeleteOneNodeByName(name.c_str()),
                m_model[list].DeleteOneNodeByName(name.c_str()));
}

void Lists::rename(std::size_t list, const std::string& name, const std::string& new_name) {
    CVariableExpress* record = m_library[list].FindByName(name.c_str());
    model::Record* wanted = m_model[list].FindByName(name.c_str());
    m_difference.expect("FindByName", record == nullptr, wanted == nullptr);
    if (record == nullptr || wanted == nullptr) return;
    record->SetName(new_name.c_str());
    wanted->name = new_name.c_str();
    seen("SetName", 0, 0);
}

void Lists::set(std::size_t list, const std::string& name, int type, double value,
                const std::string& text, const std::string& formula) {
    CVariableExpress* record = m_library[list].FindByName(name.c_str());
    model::Record* wanted = m_model[list].FindByName(name.c_str());
    m_difference.expect("FindByName", record == nullptr, wanted == nullptr);
    if (record == nullptr || wanted == nullptr) return;
    record->SetType(wanted->type = type);
    record->SetValue(wanted->value = value);
    record->SetStrValue(wanted->text = text);
    record->SetExp(formula.c_str());
    wanted->formula = formula.c_str();
    seen("setters", 0, 0);
}

int Lists::calculate(std::size_t list) {
    return seen("Cal", m_library[list].Cal(), m_model[list].Cal());
}

void Lists::expression_error(std::size_t list) {
    int a = 5;
    int b = 6;
    seen("GetExpressionError", m_library[list].GetExpressionError(&a, &b),
         m_model[list].GetExpressionError());
    m_difference.expect("outputs", a * 10 + b, 56);
}

int Lists::seen(const char* call, int library, int model) {
    Difference& d = m_difference;
    d.expect(call, library, model);
    for (std::size_t list = 0; list < count; ++list) {
        d.expect("m_strError", m_library[list].m_strError, m_model[list].m_strError);
        d.expect("m_nResultType", m_library[list].m_nResultType, m_model[list].m_nResultType);
        CVariableExpress* record = m_library[list].GetHead();
        for (const model::Record& wanted : m_model[list].records()) {
            d.expect("end of the records", record == nullptr, false);
            if (record == nullptr) break;
            std::string text;
            record->GetName(text);
            d.expect("name of a record", text, wanted.name);
            record->GetExp(text);
            d.expect("formula of a record", text, wanted.formula);
            d.expect("text of a record", record->GetStrValue(), wanted.text);
            d.expect("type of a record", record->GetType(), wanted.type);
            d.expect("string flag of a record", record->IsString(), wanted.is_string);
            d.expect_number(("value of " + wanted.name).c_str(), record->GetValue(), wanted.value);
            record = record->GetNext();
        }
        d.expect("end of the records", record == nullptr, true);
    }
    return model;
}

}  // namespace morandel::pairs
