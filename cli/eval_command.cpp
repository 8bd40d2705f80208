// morandel eval FORMULA [name=value ...], or -f FILE [name=value ...]

#include <filesystem>
#include <fstream>
#include <iterator>

#include "cli/commands.h"
#include "cli/encoding.h"
#include "cli/evaluate.h"
#include "cli/file_problem.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/system.h"
#include "cli/values.h"
#include "cli/warning_output.h"

namespace morandel::cli {
namespace {

// A formula may stand on several lines of a file; their ends are blanks.
std::string read_formula(const std::string& file) {
    if (std::filesystem::is_directory(to_path(file))) throw Problem(cannot_read(file, EISDIR));
    std::ifstream in(to_path(file), std::ios::binary);
    if (!in) throw Problem(cannot_read(file));
    std::string text(longest_line + 1, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    if (text.size() > longest_line) {
        throw Problem(
            say("{0}: {1}", file, say("the formula is longer than 512 bytes of code page 936")));
    }
    if (begins_as_utf16(text)) {
        throw Problem(say("{0}: {1}", file, say("it is UTF-16; save it as UTF-8")));
    }
    if (text.starts_with(byte_order_mark)) text.erase(0, byte_order_mark.size());
    for (char& c : text) {
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    }
    return std::string(trim(text));
}

}  // namespace

int eval_command(const Request& request) {
    const bool from_file = !request.file.empty();
    if (!from_file && request.operands.empty()) {
        throw UsageError(say("eval needs a formula; see morandel help eval"));
    }
    const std::string formula = from_file ? read_formula(request.file) : request.operands.front();
    const Style style(request);
    const std::vector<Variable> variables = read_variables(request.operands, from_file ? 0 : 1);
    Evaluator evaluator;
    evaluator.set_variables(variables);
    const Outcome outcome = evaluator.evaluate(formula);
    const bool is_read = outcome.succeeded || evaluator.load(formula).succeeded;
    if (is_read && !print_warnings(formula, kinds_among(variables), style)) return 1;
    return print_outcome(outcome, style);
}

}  // namespace morandel::cli
