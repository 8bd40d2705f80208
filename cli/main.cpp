// The morandel command: reads the arguments and hands them to a verb.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands.h"
#include "cli/evaluate.h"
#include "cli/output.h"
#include "cli/system.h"

namespace {

using morandel::cli::Request;

constexpr int failed = 1;
constexpr int wrong_usage = 2;

struct Verb {
    const char* name;
    const char* summary;
    const char* operand;
    const char* further_operands;
    bool needs_operand;
    int most_operands;
    int (*run)(const Request&);
};

constexpr int any_number = 1 << 20;

constexpr Verb verbs[] = {
    {"eval", "evaluate a formula", "FORMULA", "[name=value...]", true, any_number,
     morandel::cli::eval_command},
    {"vars", "list the free variables of a formula", "FORMULA", "", true, 1,
     morandel::cli::vars_command},
    {"check", "list the faults of a formula", "FORMULA", "[name=value...]", true, any_number,
     morandel::cli::check_command},
    {"calc", "compute a file of variables", "FILE", "[name=value...]", true, any_number,
     morandel::cli::calc_command},
    {"each", "add computed columns to a CSV file", "FILE", "[name=value...]", true, any_number,
     morandel::cli::each_command},
    {"functions", "list the functions, or tell all of one", "NAME", "", false, 1,
     morandel::cli::functions_command},
};

const Verb* find_verb(std::string_view name) {
    const auto* verb = std::ranges::find(verbs, name, &Verb::name);
    return verb == std::end(verbs) ? nullptr : verb;
}

// A formula may begin with a sign, so what is no option of ours goes behind "--"; and a formula
// alone stands for eval.
std::vector<std::string> arrange(std::vector<std::string> arguments) {
    static constexpr std::string_view flags[] = {"--json", "--help", "-h", "--version"};
    static constexpr std::string_view options[] = {"--get", "--add", "--encoding", "--on-error"};
    const auto is_one_of = [](const auto& names, std::string_view name) {
        return std::ranges::find(names, name) != std::end(names);
    };
    std::vector<std::string> front;
    std::vector<std::string> operands;
    bool only_operands = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string& argument = arguments[i];
        if (argument == "--" && !only_operands) {
            only_operands = true;
            continue;
        }
        const std::string name = argument.substr(0, argument.find('='));
        const bool is_option = !only_operands && is_one_of(options, name);
        const bool is_flag = !only_operands && is_one_of(flags, argument);
        // An option and its value are joined, since that may begin with a sign.
        if (is_option && name == argument && i + 1 < arguments.size()) {
            argument.append("=").append(arguments[++i]);
        }
        (is_option || is_flag ? front : operands).push_back(std::move(argument));
    }
    std::vector<std::string> arranged;
    if (!operands.empty()) {
        const bool named = find_verb(operands.front()) != nullptr;
        arranged.emplace_back(named ? operands.front() : "eval");
        if (named) operands.erase(operands.begin());
    }
    arranged.insert(arranged.end(), front.begin(), front.end());
    if (!operands.empty()) arranged.emplace_back("--");
    arranged.insert(arranged.end(), operands.begin(), operands.end());
    return arranged;
}

void add_options(CLI::App& sub, std::string_view verb, Request& request) {
    if (verb == "calc") sub.add_option("--get", request.get, "print the value of this name alone");
    if (verb != "each") return;
    sub.add_option("--add", request.add, "'column = formula', as often as wanted")
        ->required()
        ->take_all()
        ->allow_extra_args(false);
    sub.add_option("--encoding", request.encoding, "of the file: utf-8 (the default) or gbk")
        ->check(CLI::IsMember({"utf-8", "gbk"}));
    sub.add_option(
           "--on-error", request.on_error,
           "when a formula fails: stop (the default), skip the row, or leave the column empty")
        ->check(CLI::IsMember({"stop", "skip", "empty"}));
}

int run(std::vector<std::string> arguments) {
    CLI::App app("Evaluates formulas: morandel 'preci(2.675, 2) * a' a=3", "morandel");
    app.footer("Without arguments: a prompt on a terminal, a formula a line from a pipe.");
    app.set_version_flag("--version", MORANDEL_VERSION);
    app.require_subcommand(0, 1);
    Request request;
    app.add_flag("--json", request.json, "print one JSON object a result");
    for (const Verb& verb : verbs) {
        CLI::App* sub = app.add_subcommand(verb.name, verb.summary);
        sub->add_flag("--json", request.json, "print one JSON object a result");
        auto* operands = sub->add_option(verb.operand, request.operands, "");
        operands->option_text(verb.further_operands);
        operands->expected(1, verb.most_operands);
        operands->required(verb.needs_operand);
        add_options(*sub, verb.name, request);
    }

    arguments = arrange(std::move(arguments));
    std::ranges::reverse(arguments);  // as CLI11 takes them
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& problem) {
        return app.exit(problem) == 0 ? 0 : wrong_usage;
    }
    const auto chosen = app.get_subcommands();
    if (chosen.empty()) return morandel::cli::prompt_command(request);
    return find_verb(chosen.front()->get_name())->run(request);
}

}  // namespace

int main(int argc, char** argv) {
    int status = failed;
    try {
        morandel::cli::prepare_streams();
        status = run(morandel::cli::program_arguments(argc, argv));
        if (std::fflush(stdout) != 0) throw std::runtime_error("standard output cannot be written");
    } catch (const morandel::cli::UsageError& problem) {
        morandel::cli::print_problem(problem.what());
        status = wrong_usage;
    } catch (const std::exception& problem) {
        morandel::cli::print_problem(problem.what());
        status = failed;
    }
    return status;
}
