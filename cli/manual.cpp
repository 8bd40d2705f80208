#include "cli/manual.h"

#include <morandel.h>

#include <string_view>

#include "cli/function_help.h"
#include "cli/messages.h"
#include "cli/verbs.h"

namespace morandel::cli {
namespace {

// Text of a page: a backslash is written doubly, a minus as one, a point at a line's start behind
// nothing.
std::string roff(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '-') {
            escaped += "\\-";
        } else if (c == '\n') {
            escaped += "\n.br\n";
        } else {
            escaped += c;
        }
    }
    if (escaped.starts_with('.') || escaped.starts_with('\'')) escaped.insert(0, "\\&");
    return escaped;
}

std::string heading(const Message& text) { return ".SH " + text.shown() + '\n'; }

std::string item(std::string_view name, std::string_view text) {
    return ".TP\n\\fB" + roff(name) + "\\fR\n" + roff(text) + '\n';
}

std::string item(const Option& option) {
    std::string name;
    if (!option.short_name.empty()) name.append(option.short_name).append(", ");
    name.append(option.name);
    if (!option.value.empty()) name.append(" ").append(option.shown_value().shown());
    return item(name, option.help.shown());
}

std::string verb_part(const Verb& verb) {
    std::string part = ".SS " + std::string(verb.name) + "\n.B morandel " + std::string(verb.name) +
                       "\\fR " + roff(verb.operands.shown()) + "\n.PP\n" +
                       roff(say("{0}.", Message{std::string(verb.summary.english),
                                                std::string(verb.summary.chinese)})
                                .shown()) +
                       '\n';
    if (!verb.details.english.empty()) part += roff(verb.details.shown()) + '\n';
    for (const Option& option : options()) {
        if (option.verbs.empty() || !option.is_for(verb.name)) continue;
        part += item(option);
    }
    return part + ".PP\n.EX\n" + roff(verb.example) + "\n.EE\n";
}

}  // namespace

std::string manual_page() {
    std::string page = ".\\\" Made by: morandel help --man\n.TH MORANDEL 1 \"\" \"Morandel " +
                       std::string(MORANDEL_VERSION) + "\"\n.ad l\n.nh\n";
    page += heading(say("NAME")) + "morandel \\- " +
            roff(say("calculates formulas, files of variables and tables").shown()) + '\n';
    page += heading(say("SYNOPSIS")) + ".B morandel\n" +
            roff(say("[eval] FORMULA [name=value...]").shown()) + "\n.br\n.B morandel\n" +
            roff(say("VERB [options] ...").shown()) + "\n.br\n.B morandel\n";
    page +=
        heading(say("DESCRIPTION")) +
        roff(say("Without arguments: a prompt on a terminal, a formula a line from a pipe.")
                 .shown()) +
        '\n' +
        roff(say("Formulas have numbers, texts in double quotes, names, the operators + - * / ^ "
                 "and !, the relations = <> < > <= >= with blanks around them, the words and, "
                 "or, like and equal, and functions. Angles are in degrees, 0! is 0, positions "
                 "in texts count bytes, and a Chinese character has two.")
                 .shown()) +
        '\n';
    page += heading(say("VERBS"));
    for (const Verb& verb : verbs()) page += verb_part(verb);
    page += heading(say("OPTIONS"));
    for (const Option& option : options()) {
        if (!option.verbs.empty()) continue;
        page += item(option);
    }
    page += heading(say("FUNCTIONS"));
    for (const Function& function : functions()) {
        page += item(call_text(function), summary_text(function));
    }
    page += heading(say("ENVIRONMENT"));
    page += item("MORANDEL_LANG, LC_ALL, LC_MESSAGES, LANG",
                 say("the first that is set tells the language").shown());
    page += item("NO_COLOR", say("no colours").shown());
    page += item("MORANDEL_HISTORY",
                 say("the file of the prompt's history; else morandel/history in XDG_STATE_HOME "
                     "or ~/.local/state")
                     .shown());
    page += heading(say("EXIT STATUS")) +
            roff(say("0; 1 where a formula is refused or fails; 2 for wrong usage.").shown()) +
            '\n';
    return page;
}

}  // namespace morandel::cli
