#include "cli/verbs.h"

#include <algorithm>

namespace morandel::cli {
namespace {

constexpr std::size_t any_number = 1 << 20;

constexpr Both formula_and_values = {"FORMULA [name=value...]", "公式 [名称=值...]"};
constexpr Both file_and_values = {"[FILE] [name=value...]", "[文件] [名称=值...]"};

constexpr Verb verb_table[] = {
    {"eval",
     formula_and_values,
     0,
     any_number,
     eval_command,
     {"evaluate a formula; the word eval can be left out", "计算公式；eval 一词可以省略"},
     {"A value that reads as a number is a number, any other a text; name='\"123\"' makes a text "
      "of digits. Write -- before a formula that begins with two dashes and a letter.",
      "能读作数值的值是数值，其余都是字符串；name='\"123\"' "
      "是由数字组成的字符串。以两个减号和字母开头的公式写在 -- 之后。"},
     "morandel 'price * (1 + rate)' price=100 rate=0.06"},
    {"vars",
     {"FORMULA", "公式"},
     1,
     1,
     vars_command,
     {"list the names that a formula needs, with their types", "列出公式需要的名称及其类型"},
     {"", ""},
     "morandel vars 'strsub(s, n, m) + x'"},
    {"check",
     formula_and_values,
     1,
     any_number,
     check_command,
     {"list the faults of a formula without evaluating it", "不计算，只列出公式的错误"},
     {"Names may be given values, so that what does not fit them is found.",
      "可以给名称赋值，以便找出与值的类型不符的地方。"},
     "morandel check 'sqrt(a)' a=x"},
    {"calc",
     file_and_values,
     0,
     any_number,
     calc_command,
     {"compute a file of variables that depend on each other", "计算一个文件中相互依赖的变量"},
     {"A line is name = value or name := formula; # begins a comment. A value on the command line "
      "takes the place of the one in the file. Without FILE, or for -, standard input is read.",
      "每行是 名称 = 值 或 名称 := 公式；# 开始注释。命令行上的值取代文件中的值。没有文件或写 - "
      "时读标准输入。"},
     "morandel calc order.calc --get total price=13"},
    {"each",
     file_and_values,
     0,
     any_number,
     each_command,
     {"add computed columns to a CSV file", "给 CSV 文件添加计算列"},
     {"A column is a text or a number as the formula asks. A column whose title is no name is "
      "reached with _ for each character that no name has: 'unit price' as unit_price. Without "
      "FILE, or for -, standard input is read.",
      "列是字符串还是数值由公式决定。标题不是名称的列，把名称中不能有的字符写成 _："
      "“unit price”写作 unit_price。没有文件或写 - 时读标准输入。"},
     "morandel each order.csv --add 'total = price * qty'"},
    {"functions",
     {"[NAME]", "[名称]"},
     0,
     1,
     functions_command,
     {"list the functions, or show one with an example", "列出函数，或显示一个函数及其例子"},
     {"", ""},
     "morandel functions strsub"},
    {"errors",
     {"[NUMBER]", "[错误号]"},
     0,
     1,
     errors_command,
     {"list the errors, or explain one with an example and the way out",
      "列出错误，或解释一个错误，附例子和解决办法"},
     {"", ""},
     "morandel errors 59"},
    {"help",
     {"[VERB]", "[子命令]"},
     0,
     1,
     help_command,
     {"show this help, or that of a verb", "显示本帮助，或一个子命令的帮助"},
     {"", ""},
     "morandel help each"},
    {"completion",
     {"bash|zsh|fish", "bash|zsh|fish"},
     1,
     1,
     completion_command,
     {"print what a shell needs to complete the command", "输出 shell 补全所需的脚本"},
     {"", ""},
     "source <(morandel completion bash)"},
};

constexpr std::string_view with_values = "eval calc each";

// What values of options are called in the help; any other is so called in both languages.
constexpr Both values[] = {
    {"'COLUMN = FORMULA'", "'列 = 公式'"},
    {"FORMULA", "公式"},
    {"COLUMN,...", "列,..."},
    {"COLUMN", "列"},
    {"FILE", "文件"},
    {"CHARACTER", "字符"},
    {"NAME", "名称"},
};

constexpr Option option_table[] = {
    {"--get",
     "",
     &Request::get,
     "NAME",
     "calc",
     {"print the value of this name alone; as often as wanted", "只输出这个名称的值；可多次使用"}},
    {"--add",
     "",
     &Request::add,
     "'COLUMN = FORMULA'",
     "each",
     {"add a column, or replace the one of that name; as often as wanted",
      "添加一列，或替换同名的列；可多次使用"}},
    {"--where",
     "",
     &Request::where,
     "FORMULA",
     "each",
     {"keep only the rows for which the formula is not 0; of several, none may be 0",
      "只保留公式不为 0 的行；多次使用时，各个公式都不为 0"}},
    {"--select",
     "",
     &Request::select,
     "COLUMN,...",
     "each",
     {"write only these columns, in this order", "只按此顺序输出这些列"}},
    {"--output",
     "-o",
     &Request::output,
     "FILE",
     "each",
     {"write this file; it is whole or not there", "写入这个文件；文件要么完整，要么不存在"}},
    {"--delimiter",
     "",
     &Request::delimiter,
     "CHARACTER",
     "each",
     {"between fields, such as ';' or tab; a tab by itself for files named .tsv or .tab",
      "字段之间的分隔符，如 ';' 或 tab；名为 .tsv、.tab 的文件自动用制表符"}},
    {"--no-header",
     "",
     &Request::no_header,
     "",
     "each",
     {"the first row is data; columns are called c1, c2 ...", "首行是数据；各列名为 c1、c2……"}},
    {"--encoding",
     "",
     &Request::encoding,
     "utf-8|gbk",
     "calc each",
     {"the encoding of the file; utf-8 by default", "文件的编码；默认 utf-8"}},
    {"--on-error",
     "",
     &Request::on_error,
     "stop|skip|empty",
     "each",
     {"where a formula fails: stop, leave the row out, or leave the field empty; stop by default",
      "公式出错时：停止、略去该行或留空字段；默认停止"}},
    {"--empty",
     "",
     &Request::empty,
     "error|zero|empty",
     "each",
     {"an empty field where a number is needed: an error, 0, or an empty result; error by default",
      "需要数值而字段为空时：报错、当作 0 或结果留空；默认报错"}},
    {"--text",
     "",
     &Request::text,
     "COLUMN",
     "each",
     {"this column is a text, whatever the formulas make of it", "不论公式如何，这一列是字符串"}},
    {"--number",
     "",
     &Request::number,
     "COLUMN",
     "each",
     {"this column is a number, whatever the formulas make of it", "不论公式如何，这一列是数值"}},
    {"--file",
     "-f",
     &Request::file,
     "FILE",
     "eval",
     {"evaluate the formula that this file holds", "计算这个文件中的公式"}},
    {"--decimals",
     "",
     &Request::decimals,
     "N",
     with_values,
     {"round numbers to so many decimals, as preci does, and print them all",
      "按 preci 的规则把数值舍入到 N 位小数并全部输出"}},
    {"--plain",
     "",
     &Request::plain,
     "",
     with_values,
     {"never print an exponent", "输出数值时不用指数"}},
    {"--man", "", &Request::man, "", "help", {"print the manual page", "输出手册页"}},
    {"--json",
     "",
     &Request::json,
     "",
     "",
     {"print one JSON object a result", "每个结果输出一个 JSON 对象"}},
    {"--quiet", "-q", &Request::quiet, "", "", {"no warnings", "不输出警告"}},
    {"--strict", "", &Request::strict, "", "", {"a warning is a failure", "把警告当作失败"}},
    {"--lang",
     "",
     &Request::lang,
     "zh|en",
     "",
     {"speak this language; by default Chinese in a Chinese locale, else English",
      "使用这种语言；默认在中文环境中用中文，否则用英文"}},
    {"--color",
     "",
     &Request::color,
     "auto|always|never",
     "",
     {"colours in messages and at the prompt; auto minds NO_COLOR",
      "消息和提示符的颜色；auto 遵循 NO_COLOR"}},
    {"--help", "-h", &Request::help, "", "", {"show help", "显示帮助"}},
    {"--version", "-V", &Request::version, "", "", {"show the version", "显示版本"}},
};

}  // namespace

Both Option::shown_value() const {
    const auto* shown = std::ranges::find(values, value, &Both::english);
    return shown == std::end(values) ? Both{value, value} : *shown;
}

bool Option::is_for(std::string_view verb) const {
    if (verbs.empty()) return true;
    const std::size_t at = verbs.find(verb);
    return at != std::string_view::npos && !verb.empty();
}

std::span<const Verb> verbs() { return verb_table; }

std::span<const Option> options() { return option_table; }

const Verb* find_verb(std::string_view name) {
    const auto* verb = std::ranges::find(verb_table, name, &Verb::name);
    return verb == std::end(verb_table) ? nullptr : verb;
}

const Option* find_option(std::string_view name) {
    const auto* option = std::ranges::find_if(option_table, [name](const Option& row) {
        return row.name == name || (!row.short_name.empty() && row.short_name == name);
    });
    return option == std::end(option_table) ? nullptr : option;
}

std::vector<std::string> choices_of(std::string_view value) {
    std::vector<std::string> choices;
    if (value.find('|') == std::string_view::npos) return choices;
    while (true) {
        const std::size_t bar = value.find('|');
        choices.emplace_back(value.substr(0, bar));
        if (bar == std::string_view::npos) return choices;
        value.remove_prefix(bar + 1);
    }
}

}  // namespace morandel::cli
