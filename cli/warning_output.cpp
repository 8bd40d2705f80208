#include "cli/warning_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/encoding.h"
#include "cli/picture.h"

namespace morandel::cli {
namespace {

std::string_view kind_name(WarningKind kind) {
    switch (kind) {
        case WarningKind::ignored_text:
            return "ignored text";
        case WarningKind::misread:
            return "misread";
        case WarningKind::wrong_kind:
            return "wrong kind";
        case WarningKind::too_few:
            return "too few arguments";
        case WarningKind::too_many:
            return "too many arguments";
        case WarningKind::cannot_succeed:
            break;
    }
    return "cannot succeed";
}

}  // namespace

KindOfName kinds_among(const std::vector<Variable>& variables) {
    return [&variables](std::string_view name) {
        const auto variable = std::ranges::find(variables, name, &Variable::name);
        return variable == variables.end() ? Kind::open : kind_of(variable->value);
    };
}

bool print_warnings(const std::string& formula, const KindOfName& kind_of_name, const Style& style,
                    const Message& where) {
    if (style.quiet && !style.strict) return true;
    const std::string text = to_gbk(formula);
    const std::vector<Warning> warnings = warnings_of(text, kind_of_name);
    for (const Warning& warning : warnings) {
        const Message located =
            where.empty() ? warning.message : say("{0}: {1}", where, warning.message);
        const std::string shown = picture(text, warning.position, warning.length);
        if (style.strict) {
            print_problem(located, shown);
        } else {
            print_note(Paint::warning, "morandel:", say("warning: {0}", located), shown);
        }
    }
    return warnings.empty() || !style.strict;
}

nlohmann::json warning_json(const Warning& warning, std::string_view gbk_formula) {
    const std::size_t begin = utf8_position(gbk_formula, warning.position);
    const std::size_t end = utf8_position(gbk_formula, warning.position + warning.length);
    return {{"position", begin},
            {"length", end - begin},
            {"kind", kind_name(warning.kind)},
            {"message", warning.message.chinese},
            {"message_en", warning.message.english}};
}

}  // namespace morandel::cli
