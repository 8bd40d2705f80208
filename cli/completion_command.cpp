// morandel completion SHELL: what a shell needs to complete the command, from the table.

#include <morandel.h>

#include <string>

#include "cli/messages.h"
#include "cli/output.h"
#include "cli/verbs.h"

namespace morandel::cli {
namespace {

constexpr std::string_view header = "# Made by: morandel completion ";

std::string join(const std::vector<std::string>& words, std::string_view separator) {
    std::string joined;
    for (const std::string& word : words) {
        if (!joined.empty()) joined += separator;
        joined += word;
    }
    return joined;
}

std::vector<std::string> verb_names() {
    std::vector<std::string> names;
    for (const Verb& verb : verbs()) names.emplace_back(verb.name);
    return names;
}

std::vector<std::string> option_names(std::string_view verb) {
    std::vector<std::string> names;
    for (const Option& option : options()) {
        if (!option.is_for(verb)) continue;
        names.emplace_back(option.name);
        if (!option.short_name.empty()) names.emplace_back(option.short_name);
    }
    return names;
}

std::vector<std::string> common_options_with_values() {
    std::vector<std::string> names;
    for (const Option& option : options()) {
        if (option.verbs.empty() && !option.is_flag()) names.emplace_back(option.name);
    }
    return names;
}

std::string function_names() {
    std::vector<std::string> names;
    for (const Function& function : functions()) names.emplace_back(function.name);
    return join(names, " ");
}

// In single quotes, as all three shells read them.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + '\'';
}

std::string bash_script() {
    std::string script(header);
    script +=
        "bash\n_morandel() {\n"
        "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
        "    [[ $previous == = ]] && previous=${COMP_WORDS[COMP_CWORD-2]}\n"
        "    [[ $current == = ]] && current=''\n"
        "    local verb='' operand='' before='' word words\n"
        "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
        "        [[ $word == = ]] && continue\n"
        "        case $before in " +
        join(common_options_with_values(), "|") +
        ") before=''; continue ;; esac\n"
        "        before=$word\n"
        "        if [[ -n $verb ]]; then\n"
        "            [[ $word == -* ]] || operand=$word\n"
        "            continue\n"
        "        fi\n"
        "        case $word in\n            " +
        join(verb_names(), "|") +
        ") verb=$word ;;\n        esac\n    done\n    case $previous in\n";
    for (const Option& option : options()) {
        if (option.is_flag()) continue;
        const std::vector<std::string> choices = choices_of(option.value);
        script += "        " + std::string(option.name);
        if (!option.short_name.empty()) script.append("|").append(option.short_name);
        script += choices.empty() ? ") return ;;\n"
                                  : ") COMPREPLY=($(compgen -W '" + join(choices, " ") +
                                        "' -- \"$current\")); return ;;\n";
    }
    script += "    esac\n    case $verb in\n";
    for (const Verb& verb : verbs()) {
        script += "        " + std::string(verb.name) + ") words='" +
                  join(option_names(verb.name), " ") + "' ;;\n";
    }
    script += "        *) words='" + join(option_names("eval"), " ") +
              "' ;;\n    esac\n"
              "    if [[ $current != -* ]]; then\n        [[ -n $operand ]] && return\n"
              "        case $verb in\n"
              "            '') words='" +
              join(verb_names(), " ") + "' ;;\n            functions) words='" + function_names() +
              "' ;;\n            help) words='" + join(verb_names(), " ") +
              "' ;;\n            completion) words='bash zsh fish' ;;\n            *) return ;;\n"
              "        esac\n    fi\n"
              "    COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n}\n"
              "complete -o default -F _morandel morandel\n";
    return script;
}

// A description must not hold what the shell's own list is written with.
std::string zsh_text(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
        result += c;
    }
    return result;
}

std::string zsh_option(const Option& option) {
    const bool repeats = std::holds_alternative<std::vector<std::string> Request::*>(option.target);
    std::string text =
        (repeats ? "*" : "") + std::string(option.name) + '[' + zsh_text(option.help.english) + ']';
    if (!option.is_flag()) {
        const std::vector<std::string> choices = choices_of(option.value);
        const bool is_file = option.value == "FILE";
        text += ":" + zsh_text(option.value) + ":";
        if (!choices.empty()) text += "(" + join(choices, " ") + ")";
        if (is_file) text += "_files";
    }
    return quoted(text);
}

std::string zsh_operands(std::string_view verb) {
    if (verb == "functions") return ":function:(" + function_names() + ")";
    if (verb == "completion") return ":shell:(bash zsh fish)";
    if (verb == "help") return ":verb:(" + join(verb_names(), " ") + ")";
    return "*:operand:_files";
}

std::string zsh_script() {
    std::string script = "#compdef morandel\n" + std::string(header) +
                         "zsh\n_morandel() {\n    local -a verbs\n    verbs=(\n";
    for (const Verb& verb : verbs()) {
        script += "        " +
                  quoted(std::string(verb.name) + ":" + zsh_text(verb.summary.english)) + '\n';
    }
    script +=
        "    )\n    if (( CURRENT == 2 )) && [[ $words[2] != -* ]]; then\n"
        "        _describe verb verbs\n        return\n    fi\n    case $words[2] in\n";
    for (const Verb& verb : verbs()) {
        script += "        " + std::string(verb.name) + ")\n            _arguments -s";
        for (const Option& option : options()) {
            if (option.is_for(verb.name)) script += " \\\n                " + zsh_option(option);
        }
        script += " \\\n                " + quoted(zsh_operands(verb.name));
        script += "\n            ;;\n";
    }
    return script + "    esac\n}\n_morandel \"$@\"\n";
}

// One operand at most, beside no other verb.
std::string fish_operands(std::string_view verb, const std::string& words) {
    std::vector<std::string> others = verb_names();
    std::erase(others, verb);
    return "complete -c morandel -f -n '__fish_seen_subcommand_from " + std::string(verb) +
           "; and not __fish_seen_subcommand_from " + join(others, " ") +
           (verb == "help" ? "" : " " + words) + "' -a '" + words + "'\n";
}

std::string fish_script() {
    std::string script = std::string(header) + "fish\n";
    for (const Verb& verb : verbs()) {
        script += "complete -c morandel -n '__fish_use_subcommand' -a " + std::string(verb.name) +
                  " -d " + quoted(verb.summary.english) + '\n';
    }
    for (const Option& option : options()) {
        script += "complete -c morandel";
        if (!option.verbs.empty()) {
            script += " -n '__fish_seen_subcommand_from " + std::string(option.verbs) + "'";
        }
        script += " -l " + std::string(option.name.substr(2));
        if (!option.short_name.empty()) script += " -s " + std::string(option.short_name.substr(1));
        if (!option.is_flag()) {
            const std::vector<std::string> choices = choices_of(option.value);
            script += option.value == "FILE" ? " -r" : " -x";
            if (!choices.empty()) script += " -a '" + join(choices, " ") + "'";
        }
        script += " -d " + quoted(option.help.english) + '\n';
    }
    return script + fish_operands("functions", function_names()) +
           fish_operands("help", join(verb_names(), " ")) +
           fish_operands("completion", "bash zsh fish");
}

}  // namespace

int completion_command(const Request& request) {
    const std::string& shell = request.operands.front();
    if (shell == "bash") {
        print_text(bash_script());
    } else if (shell == "zsh") {
        print_text(zsh_script());
    } else if (shell == "fish") {
        print_text(fish_script());
    } else {
        throw UsageError(say("{0} takes {1}, not '{2}'", "completion", "bash|zsh|fish", shell));
    }
    return 0;
}

}  // namespace morandel::cli
