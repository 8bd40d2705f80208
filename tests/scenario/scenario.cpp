// Plays scenarios of calls: one a line as JSON on standard input, its answers a line of JSON on
// standard output. Byte strings travel as characters U+0000 to U+00FF, doubles as hexadecimal
// text. Only public calls are used.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include <morandel.h>

namespace {

using nlohmann::json;

std::string to_bytes(const std::string& utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto first = static_cast<unsigned char>(utf8[i]);
        if (first < 0x80) {
            bytes += utf8[i];
        } else {
            const auto second = static_cast<unsigned char>(utf8.at(++i));
            bytes += static_cast<char>((first & 0x03) << 6 | (second & 0x3F));
        }
    }
    return bytes;
}

std::string from_bytes(const std::string& bytes) {
    std::string utf8;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

std::string text_of(const json& op, const char* field) {
    return to_bytes(op.at(field).get<std::string>());
}

double number_of(const json& op, const char* field) {
    const json& value = op.at(field);
    if (value.is_number()) return value.get<double>();
    return std::strtod(value.get<std::string>().c_str(), nullptr);
}

// As Python's float.hex() writes it.
std::string hex_of(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    if (value == 0.0) return std::signbit(value) ? "-0x0.0p+0" : "0x0.0p+0";
    int exponent = 0;
    std::frexp(value, &exponent);
    const int scale = std::max(exponent - 1, -1022);
    const double mantissa = std::ldexp(std::abs(value), 52 - scale);
    char text[64];
    std::snprintf(text, sizeof text, "%s0x%d.%013llxp%+d", value < 0 ? "-" : "",
                  mantissa < 0x1p52 ? 0 : 1,
                  static_cast<unsigned long long>(mantissa) & 0xFFFFFFFFFFFFFULL, scale);
    return text;
}

json state_of(CExpress& e) {
    json variables = json::array();
    for (int i = 1; i <= e.GetVariableNum(); ++i) {
        int type = -1;
        const std::string name = from_bytes(e.GetVariable(i, &type));
        variables.push_back(json::array({name, type}));
    }
    return {{"status", e.GetStatu()},
            {"result", hex_of(e.GetResult())},
            {"resultType", e.GetResultType()},
            {"strResult", from_bytes(e.m_StrResult)},
            {"message", from_bytes(e.m_ErrorMessage)},
            {"exprStatus", e.GetExpressionStatus()},
            {"variables", std::move(variables)}};
}

json returned(int result) { return {{"ret", result}}; }

json set_para(CExpress& e, const json& op) {
    MYPARA para{text_of(op, "name"), number_of(op, "value"), text_of(op, "str")};
    return returned(e.SetPara(&para, op.at("index"), op.at("isString")));
}

json set_expression(CExpress& e, const json& op) {
    if (op.at("text").is_null()) return returned(e.SetExpression(nullptr));
    return returned(e.SetExpression(text_of(op, "text").c_str()));
}

json get_variable(CExpress& e, const json& op) {
    int type = op.at("type");
    const std::string name = from_bytes(e.GetVariable(op.at("index"), &type));
    return {{"name", name}, {"type", type}};
}

json convert(const json& op) {
    std::string text;
    const auto error = morandel::number_to_text(number_of(op, "x"), op.at("digits"), text);
    const bool converted = error == morandel::ErrorNumber::none;
    return {{"ret", converted ? 1 : 0},
            {"text", from_bytes(text)},
            {"error", converted ? 0 : static_cast<int>(error)}};
}

using ExpressCall = json (*)(CExpress&, const json&);

const std::map<std::string, ExpressCall> express_calls = {
    {"SetNumberOfPara",
     [](CExpress& e, const json& op) { return returned(e.SetNumberOfPara(op.at("n"))); }},
    {"SetPara", set_para},
    {"SetExpression", set_expression},
    {"VerifyExpression", [](CExpress& e, const json&) { return returned(e.VerifyExpression()); }},
    {"CalcExpression", [](CExpress& e, const json&) { return returned(e.CalcExpression()); }},
    {"ClearOld",
     [](CExpress& e, const json&) {
         e.ClearOld();
         return json::object();
     }},
    {"GetVariable", get_variable},
    {"state", [](CExpress& e, const json&) { return state_of(e); }},
};

json check_state(CExpressionCheck& check) {
    json errors = json::array();
    for (const CheckexpressionError& fault : check.m_errors) {
        errors.push_back({{"nType", fault.nType},
                          {"nPosition", fault.nPosition},
                          {"nIndex", fault.nIndex},
                          {"strName", from_bytes(fault.strName)}});
    }
    return {{"errors", std::move(errors)},
            {"status", check.GetStatu()},
            {"message", from_bytes(check.m_ErrorMessage)},
            {"step", check.m_step},
            {"depth", check.m_depth},
            {"resultKind", check.m_resultKind}};
}

json reset(CExpressionCheck& check, const json&) {
    check.Reset();
    return json::object();
}

json check_expression(CExpressionCheck& check, const json& op) {
    const bool null = op.at("text").is_null();
    const std::string text = null ? "" : text_of(op, "text");
    return {{"ret", check.CheckExpression(null ? nullptr : text.c_str())}};
}

using CheckCall = json (*)(CExpressionCheck&, const json&);

const std::map<std::string, CheckCall> check_calls = {
    {"CheckExpression", check_expression},
    {"reset", reset},
    {"GetCommaNum", [](CExpressionCheck& c, const json&) { return returned(c.GetCommaNum()); }},
    {"GetLocalNumber",
     [](CExpressionCheck& c, const json&) { return returned(c.GetLocalNumber()); }},
    {"checkstate", [](CExpressionCheck& c, const json&) { return check_state(c); }},
};

std::string name_of(CVariableExpress& record) {
    std::string name;
    record.GetName(name);
    return name;
}

json list_state(CVariableExpressList& list, const json&) {
    json records = json::array();
    for (CVariableExpress* r = list.GetHead(); r != nullptr; r = r->GetNext()) {
        std::string exp;
        r->GetExp(exp);
        records.push_back({{"type", r->GetType()},
                           {"name", from_bytes(name_of(*r))},
                           {"value", hex_of(r->GetValue())},
                           {"str", from_bytes(r->GetStrValue())},
                           {"exp", from_bytes(exp)},
                           {"isString", r->IsString()}});
    }
    return {{"error", from_bytes(list.m_strError)},
            {"resultType", list.m_nResultType},
            {"records", std::move(records)}};
}

json append(CVariableExpressList& list, const json& op) {
    return returned(list.Append(op.at("type"), text_of(op, "name").c_str(), number_of(op, "value"),
                                text_of(op, "exp").c_str()));
}

json append_string(CVariableExpressList& list, const json& op) {
    return returned(list.AppendString(op.at("type"), text_of(op, "name").c_str(),
                                      text_of(op, "str").c_str(), text_of(op, "exp").c_str()));
}

json find_by_name(CVariableExpressList& list, const json& op) {
    CVariableExpress* record = list.FindByName(text_of(op, "name").c_str());
    if (record == nullptr) return {{"name", nullptr}};
    return {{"name", from_bytes(name_of(*record))}};
}

json find_value(CVariableExpressList& list, const json& op) {
    return {{"value", hex_of(list.FindByNameAndGetValue(text_of(op, "name").c_str()))}};
}

json find_text(CVariableExpressList& list, const json& op) {
    return {{"text", from_bytes(list.FindByNameAndGetStrValue(text_of(op, "name").c_str()))}};
}

json delete_one(CVariableExpressList& list, const json& op) {
    return returned(list.DeleteOneNodeByName(text_of(op, "name").c_str()));
}

using ListCall = json (*)(CVariableExpressList&, const json&);

const std::map<std::string, ListCall> list_calls = {
    {"Append", append},
    {"AppendString", append_string},
    {"Free", [](CVariableExpressList& l, const json&) { return returned(l.Free()); }},
    {"DeleteOneNodeByName", delete_one},
    {"Cal", [](CVariableExpressList& l, const json&) { return returned(l.Cal()); }},
    {"FindByName", find_by_name},
    {"FindByNameAndGetValue", find_value},
    {"FindByNameAndGetStrValue", find_text},
    {"liststate", list_state},
};

class Stage {
  public:
    json play(const json& op) {
        const std::string name = op.at("op");
        if (name == "convert") return convert(op);
        const std::string id = op.at("id");
        if (name == "new") return make(id, op.at("class"));
        if (name == "delete") return drop(id);
        if (const auto list = m_lists.find(id); list != m_lists.end()) {
            return list_calls.at(name)(*list->second, op);
        }
        const auto call = check_calls.find(name);
        if (call != check_calls.end()) return call->second(*m_checks.at(id), op);
        const auto check = m_checks.find(id);
        CExpress& e = check != m_checks.end() ? *check->second : *m_evaluators.at(id);
        return express_calls.at(name)(e, op);
    }

  private:
    json make(const std::string& id, const std::string& kind) {
        drop(id);
        if (kind == "express") {
            m_evaluators[id] = std::make_unique<CExpress>();
        } else if (kind == "check") {
            m_checks[id] = std::make_unique<CExpressionCheck>();
        } else if (kind == "list") {
            m_lists[id] = std::make_unique<CVariableExpressList>();
        } else {
            throw std::runtime_error("unknown class " + kind);
        }
        return json::object();
    }

    json drop(const std::string& id) {
        m_evaluators.erase(id);
        m_checks.erase(id);
        m_lists.erase(id);
        return json::object();
    }

    std::map<std::string, std::unique_ptr<CExpress>> m_evaluators;
    std::map<std::string, std::unique_ptr<CExpressionCheck>> m_checks;
    std::map<std::string, std::unique_ptr<CVariableExpressList>> m_lists;
};

json play_scenario(const json& scenario) {
    Stage stage;
    // A process-wide state as in a process just started: construction empties it.
    CExpress fresh;
    json out = json::array();
    for (const json& op : scenario.at("ops")) out.push_back(stage.play(op));
    return {{"name", scenario.at("name")}, {"out", std::move(out)}};
}

}  // namespace

int main() {
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
        json answer;
        try {
            answer = play_scenario(json::parse(line));
        } catch (const std::exception& problem) {
            answer = {{"name", nullptr}, {"out", json::array()}, {"problem", problem.what()}};
        }
        std::cout << answer.dump(-1, ' ', true) << '\n';
    }
    return 0;
}
