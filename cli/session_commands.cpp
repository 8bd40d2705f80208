// What can be asked of the prompt with a colon, as a table.

#include <morandel.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "cli/check_output.h"
#include "cli/commands.h"
#include "cli/definition_file.h"
#include "cli/encoding.h"
#include "cli/file_problem.h"
#include "cli/functions.h"
#include "cli/help.h"
#include "cli/lines.h"
#include "cli/session.h"
#include "cli/suggestion.h"
#include "cli/system.h"
#include "cli/verbs.h"

namespace morandel::cli {

struct Session::Command {
    std::string_view name;
    Both operand;
    bool (Session::*run)(std::string_view operand);
    Both help;
};

std::vector<Session::Command> Session::commands() {
    return {
        {"vars",
         {},
         &Session::list_variables,
         {"computes all names and shows their values", "计算所有名称并显示它们的值"}},
        {"calc", {}, &Session::list_variables, {}},
        {"check",
         {"FORMULA", "公式"},
         &Session::check,
         {"lists its faults, knowing the values here", "列出公式的错误，名称取这里的值"}},
        {"functions",
         {"[NAME]", "[名称]"},
         &Session::show_functions,
         {"lists the functions, or shows one", "列出函数，或显示一个函数"}},
        {"errors",
         {"[NUMBER]", "[错误号]"},
         &Session::show_error,
         {"lists the errors, or explains one", "列出错误，或解释一个错误"}},
        {"load", {"FILE", "文件"}, &Session::load, {"reads names from a file", "从文件读入名称"}},
        {"save",
         {"FILE", "文件"},
         &Session::save,
         {"writes all names to a file", "把所有名称写入文件"}},
        {"unset", {"NAME", "名称"}, &Session::unset, {"forgets a name", "删除一个名称"}},
        {"lang",
         {"zh|en", "zh|en"},
         &Session::change_language,
         {"changes the language", "切换语言"}},
        {"help", {}, &Session::show_help, {"shows this", "显示本帮助"}},
        {"quit",
         {},
         &Session::quit,
         {"ends; so do quit, exit and Ctrl-D", "结束；quit、exit 和 Ctrl-D 也可以"}},
        {"exit", {}, &Session::quit, {}},
        {"q", {}, &Session::quit, {}},
    };
}

bool Session::run_command(std::string_view line) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::string_view name = line.substr(0, blank);
    const std::string_view operand = trim(line.substr(blank));
    const std::vector<Command> all = commands();
    const auto command = std::ranges::find(all, name, &Command::name);
    if (command == all.end()) {
        std::vector<std::string> names;
        names.reserve(all.size());
        for (const Command& known : all) names.emplace_back(known.name);
        const std::string close = closest(name, names);
        if (close.empty()) return fail(say("no command ':{0}'; :help lists them", name));
        return fail(say("no command ':{0}'; did you mean :{1}?", name, close));
    }
    const std::string_view expected = command->operand.english;
    const bool needs_operand = !expected.empty() && !expected.starts_with('[');
    if (needs_operand && operand.empty()) {
        return fail(say(":{0} needs {1}", name,
                        Message{std::string(expected), std::string(command->operand.chinese)}));
    }
    if (expected.empty() && !operand.empty()) return fail(say(":{0} stands alone", name));
    return (this->*command->run)(operand);
}

bool Session::check(std::string_view formula) {
    return print_check(std::string(formula), m_definitions.values_for(formula), m_style) == 0;
}

bool Session::list_variables(std::string_view /*unused*/) {
    bool all_well = true;
    for (std::size_t place = 0; place < m_definitions.size(); ++place) {
        const std::string name = to_utf8(m_definitions[place].name);
        if (name == "ans") continue;
        all_well = print_definition(name, m_definitions.value(place), m_style) && all_well;
    }
    return all_well;
}

bool Session::show_functions(std::string_view name) {
    Request request;
    request.json = m_style.json;
    if (!name.empty()) request.operands.emplace_back(name);
    return functions_command(request) == 0;
}

bool Session::show_error(std::string_view number) {
    Request request;
    request.json = m_style.json;
    if (!number.empty()) request.operands.emplace_back(number);
    return show_errors(request, ":errors") == 0;
}

bool Session::load(std::string_view file) {
    const std::filesystem::path path = to_path(file);
    if (std::filesystem::is_directory(path)) return fail(cannot_read(file, EISDIR));
    // A pipe may never end, and no key ends the waiting.
    if (std::filesystem::exists(path) && !std::filesystem::is_regular_file(path)) {
        return fail(say("{0}: {1}", cannot_read(file, 0), say("it is no regular file")));
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) return fail(cannot_read(file));
    const std::string name(file);
    return read_definitions(in, m_definitions, Faults({name, name}, m_style.json), false,
                            SameName::replaces);
}

bool Session::save(std::string_view file) {
    std::string text;
    for (std::size_t place = 0; place < m_definitions.size(); ++place) {
        const Definition& definition = m_definitions[place];
        if (definition.name == "ans") continue;
        const std::string line = definition_line(definition);
        if (line.empty()) {
            return fail(say("{0} cannot be saved: its text has a quote or a line end",
                            to_utf8(definition.name)));
        }
        text += line + '\n';
    }
    std::ofstream out(to_path(file), std::ios::binary);
    out << text;
    out.close();
    if (!out) return fail(cannot_write(file));
    for (std::size_t place = 0; place < m_definitions.size() && !m_style.quiet; ++place) {
        if (!m_definitions.uses(place, "ans")) continue;
        const std::string name = to_utf8(m_definitions[place].name);
        print_note(Paint::warning,
                   "morandel:", say("warning: {0}", say("{0} uses ans, which is not saved", name)),
                   {});
    }
    return true;
}

bool Session::unset(std::string_view name) {
    if (m_definitions.unset(to_gbk(name))) return true;
    return fail(say("{0} has no value", name));
}

bool Session::change_language(std::string_view name) {
    const auto language = find_language(name);
    if (!language) return fail(say("{0} takes {1}, not '{2}'", ":lang", "zh|en", name));
    speak(*language);
    return true;
}

bool Session::show_help(std::string_view /*unused*/) {
    std::vector<std::pair<std::string, std::string>> rows = {
        {say("FORMULA").shown(), say("evaluates it:  preci(2.675, 2)").shown()},
        {say("name = value").shown(),
         say("a number, a \"text\" or the value of a formula, for what follows; to compare, write "
             "the name in parentheses: (a) = 3")
             .shown()},
        {say("name := formula").shown(), say("computed anew whenever it is needed").shown()},
        {"ans", say("the value shown last").shown()},
    };
    for (const Command& command : commands()) {
        if (command.help.english.empty()) continue;
        std::string usage = ":" + std::string(command.name);
        if (!command.operand.english.empty()) usage.append(" ").append(command.operand.shown());
        rows.emplace_back(std::move(usage), command.help.shown());
    }
    print_text(two_columns(rows));
    return true;
}

bool Session::quit(std::string_view /*unused*/) {
    m_ended = true;
    return true;
}

std::vector<std::string> Session::complete(std::string_view before, std::string_view word) const {
    std::vector<std::string> words;
    const auto offer = [&](std::string_view candidate) {
        if (candidate.starts_with(word)) words.emplace_back(candidate);
    };
    if (word.starts_with(':') && trim(before).empty()) {
        for (const Command& command : commands()) offer(":" + std::string(command.name));
        return words;
    }
    if (before.starts_with(":lang")) {
        for (const std::string_view language : {"en", "zh"}) offer(language);
        return words;
    }
    const bool wants_name = before.starts_with(":unset");
    for (std::size_t place = 0; place < m_definitions.size(); ++place) {
        offer(to_utf8(m_definitions[place].name));
    }
    if (wants_name) return words;
    for (const Function& function : functions()) offer(function.name);
    if (before.starts_with(":functions")) return words;
    for (const std::string_view constant : {"pi", "exp", "like", "equal", "and", "or"}) {
        offer(constant);
    }
    return words;
}

}  // namespace morandel::cli
