#include "cli/help.h"

#include <algorithm>
#include <vector>

#include "cli/manual.h"
#include "cli/messages.h"
#include "cli/output.h"
#include "cli/picture.h"

namespace morandel::cli {
namespace {

std::string option_usage(const Option& option) {
    std::string usage = option.short_name.empty() ? "" : std::string(option.short_name) + ", ";
    usage += option.name;
    if (!option.value.empty()) usage.append(" ").append(option.shown_value().shown());
    return usage;
}

std::string options_of(std::string_view verb, bool common) {
    Rows rows;
    for (const Option& option : options()) {
        if (option.verbs.empty() == common && option.is_for(verb)) {
            rows.emplace_back(option_usage(option), option.help.shown());
        }
    }
    return rows.empty() ? ""
                        : '\n' + (common ? say("common options:") : say("options:")).shown() +
                              '\n' + two_columns(rows);
}

std::string usage_of(const Verb& verb) {
    return std::string(verb.name) + ' ' + std::string(verb.operands.shown());
}

}  // namespace

// Two columns; what is on the left is never longer than a line, the right goes on below itself.
std::string two_columns(const Rows& rows) {
    constexpr std::size_t widest = 32;
    constexpr std::size_t line = 80;
    std::size_t width = 0;
    for (const auto& [left, right] : rows) {
        if (cells_of(left) <= widest) width = std::max(width, cells_of(left));
    }
    std::string text;
    for (const auto& [left, right] : rows) {
        std::string current = "  " + padded(left, width + 2);
        if (cells_of(left) > width) current = "  " + left + '\n' + padded("", width + 4);
        std::size_t used = width + 4;
        for (std::size_t at = 0; at < right.size();) {
            const std::size_t blank = std::min(right.find(' ', at), right.size());
            const std::string word = right.substr(at, blank - at);
            if (used + cells_of(word) > line && used > width + 4) {
                current.erase(current.find_last_not_of(' ') + 1);
                current += '\n' + padded("", width + 4);
                used = width + 4;
            }
            current += word + ' ';
            used += cells_of(word) + 1;
            at = blank + 1;
        }
        current.erase(current.find_last_not_of(' ') + 1);
        text += current + '\n';
    }
    return text;
}

std::string padded(std::string_view text, std::size_t cells) {
    const std::size_t taken = cells_of(text);
    return std::string(text) + std::string(taken < cells ? cells - taken : 0, ' ');
}

std::string help_text() {
    Rows rows;
    for (const Verb& verb : verbs()) rows.emplace_back(usage_of(verb), verb.summary.shown());
    return say("Calculates formulas:  morandel 'preci(2.675, 2) * a' a=3").shown() + "\n\n" +
           say("usage: morandel [VERB] [options] ...").shown() + "\n\n" + say("verbs:").shown() +
           '\n' + two_columns(rows) + options_of("", true) + '\n' +
           say("Without arguments: a prompt on a terminal, a formula a line from a pipe.").shown() +
           '\n' +
           say("Exit status: 0; 1 where a formula is refused or fails; 2 for wrong usage.")
               .shown() +
           '\n';
}

std::string help_text(const Verb& verb) {
    std::string text =
        "morandel " + usage_of(verb) + "\n    " + std::string(verb.summary.shown()) + '\n';
    if (!verb.details.english.empty())
        text += '\n' + two_columns({{"", std::string(verb.details.shown())}});
    text += options_of(verb.name, false) + options_of(verb.name, true);
    if (!verb.example.empty())
        text += '\n' + say("for example:").shown() + "\n    " + std::string(verb.example) + '\n';
    return text;
}

int help_command(const Request& request) {
    if (request.operands.empty()) {
        print_text(request.man ? manual_page() : help_text());
        return 0;
    }
    const Verb* verb = find_verb(request.operands.front());
    if (verb == nullptr)
        throw UsageError(say("no verb '{0}'; morandel help lists them", request.operands.front()));
    if (request.man) {
        throw UsageError(say("the manual page is one for all verbs; leave out '{0}'", verb->name));
    }
    print_text(help_text(*verb));
    return 0;
}

}  // namespace morandel::cli
