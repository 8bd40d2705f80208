#include "cli/arguments.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "cli/encoding_name.h"
#include "cli/messages.h"
#include "cli/suggestion.h"
#include "cli/tokens.h"

namespace morandel::cli {
namespace {

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Two signs before a letter begin no formula.
bool looks_like_option(std::string_view argument) {
    return argument.size() > 2 && argument.starts_with("--") && is_letter(argument[2]);
}

[[noreturn]] void refuse_option(std::string_view name) {
    std::vector<std::string> names;
    for (const Option& option : options()) names.emplace_back(option.name);
    const std::string close = closest(name, names);
    if (close.empty()) throw UsageError(say("no option {0}; morandel help lists them", name));
    throw UsageError(say("no option {0}; did you mean {1}?", name, close));
}

// By any spelling where it is an encoding.
std::string read_choice(const Option& option, std::string_view value) {
    if (option.name == "--encoding") {
        if (const auto encoding = find_encoding(value)) return std::string(*encoding);
    }
    const std::vector<std::string> choices = choices_of(option.value);
    if (choices.empty() || std::ranges::find(choices, value) != choices.end()) {
        return std::string(value);
    }
    const std::string close = closest(value, choices);
    if (close.empty()) {
        throw UsageError(say("{0} takes {1}, not '{2}'", option.name, option.value, value));
    }
    throw UsageError(say("{0} takes {1}, not '{2}'; did you mean {3}?", option.name, option.value,
                         value, close));
}

[[noreturn]] void refuse_without_value(const Option& option, const std::string& name) {
    const auto [english, chinese] = option.shown_value();
    throw UsageError(say("{0} needs a value: {0} {1}", name,
                         Message{std::string(english), std::string(chinese)}));
}

// The first operand; empty where there is none.
std::string_view first_operand(std::span<const std::string> arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Option* option = find_option(arguments[i]);
        if (option != nullptr && !option->is_flag()) ++i;
        if (option == nullptr && !arguments[i].starts_with('-')) return arguments[i];
    }
    return {};
}

// -oFILE, beside a verb that takes it: without one it could be a formula.
const Option* attached_option(std::string_view verb, std::string_view argument) {
    if (verb == "eval" || find_verb(verb) == nullptr) return nullptr;
    const Option* option = find_option(argument.substr(0, 2));
    const bool is_attached = option != nullptr && !option->is_flag() && argument.size() > 2 &&
                             argument.starts_with(option->short_name) &&
                             !option->short_name.empty() && option->is_for(verb);
    return is_attached ? option : nullptr;
}

void set(Request& request, const Option& option, std::string_view value) {
    if (const auto* one = std::get_if<std::string Request::*>(&option.target)) {
        request.*(*one) = read_choice(option, value);
    } else if (const auto* many =
                   std::get_if<std::vector<std::string> Request::*>(&option.target)) {
        (request.*(*many)).push_back(read_choice(option, value));
    } else {
        request.*std::get<bool Request::*>(option.target) = true;
    }
}

// A lone name that is no verb, has no value and is spelled like a verb, or is followed by what is
// no value, is taken for a verb that does not exist.
void refuse_unknown_verb(const std::vector<std::string>& operands) {
    const std::string& first = operands.front();
    if (!is_plain_name(first)) return;
    const auto gives_value = [&](const std::string& operand) {
        return operand.starts_with(first + "=");
    };
    if (std::any_of(operands.begin() + 1, operands.end(), gives_value)) return;
    std::vector<std::string> names;
    for (const Verb& verb : verbs()) names.emplace_back(verb.name);
    const std::string close = closest(first, names);
    if (!close.empty()) throw UsageError(say("no verb '{0}'; did you mean {1}?", first, close));
    if (operands.size() > 1 && operands[1].find('=') == std::string::npos) {
        throw UsageError(say("no verb '{0}'; morandel help lists them", first));
    }
}

void choose_verb(Arguments& read) {
    std::vector<std::string>& operands = read.request.operands;
    if (operands.empty()) {
        if (!read.request.file.empty()) read.verb = find_verb("eval");
        return;
    }
    read.verb = find_verb(operands.front());
    if (read.verb != nullptr) {
        operands.erase(operands.begin());
        return;
    }
    if (read.request.file.empty()) refuse_unknown_verb(operands);
    read.verb = find_verb("eval");
}

void check_counts(const Arguments& read) {
    const Verb& verb = *read.verb;
    const std::size_t count = read.request.operands.size();
    if (read.request.help) return;
    if (count < verb.fewest) {
        throw UsageError(
            say("{0} needs {1}; see morandel help {0}", verb.name,
                Message{std::string(verb.operands.english), std::string(verb.operands.chinese)}));
    }
    if (count > verb.most) {
        throw UsageError(say("{0} has no use for '{1}'; see morandel help {0}", verb.name,
                             read.request.operands[verb.most]));
    }
}

}  // namespace

Arguments read_arguments(const std::vector<std::string>& arguments) {
    Arguments read;
    std::vector<const Option*> used;
    bool only_operands = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--" && !only_operands) {
            only_operands = true;
            continue;
        }
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const bool has_value = equals != std::string::npos;
        const Option* option = only_operands ? nullptr : find_option(name);
        if (option != nullptr && has_value && !name.starts_with("--")) option = nullptr;
        if (option == nullptr && !only_operands) {
            const auto& operands = read.request.operands;
            const auto later = std::span(arguments).subspan(i + 1);
            option = attached_option(operands.empty() ? first_operand(later) : operands.front(),
                                     argument);
            if (option != nullptr) {
                used.push_back(option);
                set(read.request, *option, argument.substr(option->short_name.size()));
                continue;
            }
        }
        if (option == nullptr) {
            if (!only_operands && looks_like_option(argument)) refuse_option(name);
            read.request.operands.push_back(argument);
            continue;
        }
        if (option->is_flag() && has_value) throw UsageError(say("{0} takes no value", name));
        if (!option->is_flag() && !has_value && i + 1 == arguments.size()) {
            refuse_without_value(*option, name);
        }
        const std::string value = has_value           ? argument.substr(equals + 1)
                                  : option->is_flag() ? std::string()
                                                      : arguments[++i];
        if (!option->is_flag() && value.empty()) refuse_without_value(*option, name);
        used.push_back(option);
        set(read.request, *option, value);
    }
    choose_verb(read);
    for (const Option* option : used) {
        const std::string_view verb = read.verb == nullptr ? "eval" : read.verb->name;
        if (option->is_for(verb)) continue;
        throw UsageError(say("{0} does not take {1}; see morandel help {0}", verb, option->name));
    }
    if (read.verb != nullptr) check_counts(read);
    return read;
}

}  // namespace morandel::cli
