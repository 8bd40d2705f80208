// Prints the case files as a VBScript, in code page 936, that makes their calls and ends with the
// number of calls that gave something else. Scripts compare numbers to 15 digits.

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "tests/automation/host_steps.h"

namespace {

using namespace morandel;
using namespace morandel::hosts;

// False for what no literal holds.
bool literal(const HostValue& value, std::string& text) {
    char digits[64];
    if (const auto* number = std::get_if<double>(&value)) {
        std::snprintf(digits, sizeof digits, "CDbl(%.17g)", *number);
        text = digits;
        return std::isfinite(*number) && (*number == 0.0 || std::fabs(*number) > 1e-300);
    }
    if (const auto* whole = std::get_if<int>(&value)) {
        text = std::to_string(*whole);
        return true;
    }
    text = '"';
    for (const char c : std::get<std::string>(value)) {
        if (static_cast<unsigned char>(c) < ' ') return false;
        text.append(c == '"' ? 2 : 1, c);
    }
    text += '"';
    return true;
}

bool write(const Step& step, std::string& script) {
    if (step.begins()) {
        script += "Set o = CreateObject(\"Morandel10.ComExpress\")\n";
        return true;
    }
    std::string call = std::string("o.") + step.method;
    std::string checks;
    std::string separator = " ";
    std::string text;
    for (const HostValue& input : step.inputs) {
        if (!literal(input, text)) return false;
        call += separator + text;
        separator = ", ";
    }
    for (std::size_t i = 0; i < step.outputs.size(); ++i) {
        const std::string variable = "r" + std::to_string(i);
        call += separator + variable;
        separator = ", ";
        if (step.outputs[i] && literal(*step.outputs[i], text)) {
            const bool is_number = std::holds_alternative<double>(*step.outputs[i]);
            checks += std::string(is_number ? "Near " : "Same ") + std::to_string(step.line) +
                      ", " + variable + ", " + text + "\n";
        }
    }
    script += call + "\n" + checks;
    return true;
}

constexpr const char* beginning =
    "Dim o, r0, r1, r2, r3, r4, checks, failures\n"
    "checks = 0\nfailures = 0\n"
    "Sub Count(where, holds)\n"
    "  checks = checks + 1\n"
    "  If Not holds Then\n"
    "    failures = failures + 1\n"
    "    WScript.Echo \"line \" & where\n"
    "  End If\n"
    "End Sub\n"
    "Sub Same(where, found, wanted)\n"
    "  Count where, found = wanted\n"
    "End Sub\n"
    "Sub Near(where, found, wanted)\n"
    "  Count where, Abs(found - wanted) <= Abs(wanted) * 1E-15\n"
    "End Sub\n";

}  // namespace

// make_script FILE.cases
int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::string script = beginning;
    for (const cases::Block& block : cases::read_case_file(argv[1])) {
        std::string calls;
        for (const Step& step : steps_of(block)) {
            // What no literal holds breaks the calls that follow it on the same variables.
            if (!write(step, calls)) {
                calls.clear();
                break;
            }
        }
        script += calls;
    }
    script +=
        "WScript.Echo checks & \" checks, \" & failures & \" failures\"\n"
        "If failures > 0 Then WScript.Quit 1\n";
    std::fwrite(script.data(), 1, script.size(), stdout);
    return 0;
}
