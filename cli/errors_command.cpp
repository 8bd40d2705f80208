// morandel errors [NUMBER]: what each error means, a formula that has it, and the way out.

#include <charconv>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/encoding.h"
#include "cli/error_help.h"
#include "cli/evaluate.h"
#include "cli/output.h"

namespace morandel::cli {
namespace {

std::string library_text(const ErrorHelp& help) {
    return to_utf8(error_message(help.number).value_or(""));
}

Message text_of(const ErrorHelp& help) { return {std::string(help.english), library_text(help)}; }

nlohmann::json error_json(const ErrorHelp& help) {
    const auto text_or_null = [](std::string_view text) {
        return text.empty() ? nlohmann::json() : nlohmann::json(text);
    };
    return {{"error", help.number},
            {"message", library_text(help)},
            {"message_en", help.english},
            {"when", text_or_null(help.when_chinese)},
            {"when_en", text_or_null(help.when_english)},
            {"example", text_or_null(help.example)},
            {"instead", text_or_null(help.better)},
            {"way_out", text_or_null(help.way_chinese)},
            {"way_out_en", text_or_null(help.way_english)}};
}

void print_indented(const std::string& text) { print_line("    " + text); }

// The examples are evaluated as they are shown.
void print_example(std::string_view formula) {
    const Outcome outcome = Evaluator().evaluate(formula);
    if (outcome.succeeded)
        return print_indented(std::string(formula) + " = " + value_text(outcome));
    print_line(outcome.picture.empty() ? "    " + std::string(formula) : outcome.picture);
    print_indented(failure_message(outcome).shown());
}

void print_error(const ErrorHelp& help) {
    print_line(say("error {0}: {1}", help.number, text_of(help)).shown());
    if (help.when_english.empty()) {
        print_indented(say("No formula raises it.").shown());
        return;
    }
    const bool chinese = language() == Language::chinese;
    print_indented(std::string(chinese ? help.when_chinese : help.when_english));
    if (!help.example.empty()) {
        print_line(say("for example:").shown());
        print_example(help.example);
    }
    print_line(say("the way out:").shown());
    print_indented(std::string(chinese ? help.way_chinese : help.way_english));
    if (!help.better.empty()) print_example(help.better);
}

const ErrorHelp& error_of(std::string_view text, std::string_view list) {
    int number = -1;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const ErrorHelp* help = read.ec == std::errc() && read.ptr == text.data() + text.size()
                                ? find_error_help(number)
                                : nullptr;
    if (help == nullptr)
        throw UsageError(say("there is no error '{0}'; {1} lists them", text, list));
    return *help;
}

}  // namespace

int errors_command(const Request& request) { return show_errors(request, "morandel errors"); }

int show_errors(const Request& request, std::string_view name) {
    if (!request.operands.empty()) {
        const ErrorHelp& help = error_of(request.operands.front(), name);
        if (request.json) {
            print_line(error_json(help));
        } else {
            print_error(help);
        }
        return 0;
    }
    for (const ErrorHelp& help : error_helps()) {
        if (request.json) {
            print_line(error_json(help));
        } else if (!help.when_english.empty()) {
            const std::string number = std::to_string(help.number);
            print_line(std::string(3 - number.size(), ' ') + number + "  " + text_of(help).shown());
        }
    }
    return 0;
}

}  // namespace morandel::cli
