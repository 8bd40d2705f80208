// Every sentence of the command, in both languages. {0}, {1} ... stand for what is filled in.

#pragma once

#include <string_view>

namespace morandel::cli {

struct Phrase {
    std::string_view english;
    std::string_view chinese;
};

// clang-format off
inline constexpr Phrase phrases[] = {
    // Putting together.
    {"{0}: {1}", "{0}：{1}"},
    {"{0}: {1}: {2}", "{0}：{1}：{2}"},
    {"{0}:{1}: {2}", "{0}:{1}：{2}"},
    {"{0} (error {1})", "{0} (错误 {1})"},
    {"{0} row {1}, {2}: {3}", "{0} 第 {1} 行，{2}：{3}"},
    {"{0}.", "{0}。"},
    {"standard input", "标准输入"},

    // Formulas that are refused.
    {"the formula is empty", "公式为空"},
    {"the formula holds a zero byte", "公式中有零字节"},
    {"the formula is longer than 512 bytes of code page 936", "公式超过 512 字节（代码页 936）"},
    {"nothing in a formula begins with '{0}'", "公式中不能有“{0}”"},
    {"nothing in a formula begins with {0}", "公式中不能有{0}"},
    {"a tab", "制表符"},
    {"a line end", "换行"},
    {"the control character 0x{0}", "控制字符 0x{0}"},
    {"a text has no closing quote", "字符串缺少右引号"},
    {"this '(' is not closed", "这个“(”没有闭合"},
    {"')' has no '(' before it", "“)”前没有“(”"},
    {"nothing stands in '()'", "“()”中没有内容"},
    {"nothing stands after '{0}'", "“{0}”后面没有值"},
    {"a value is due here, not '{0}'", "这里应该是值，不是“{0}”"},
    {"{0} needs parentheses around it here", "这里的 {0} 要写在括号中"},
    {"{0} is read as the function or operator of that name, even in quotes", "{0} 即使写在引号中也被读作同名的函数或操作符"},
    {"a comma or an operator is missing before '{0}'", "“{0}”前缺少逗号或操作符"},
    {"an operator is missing before '{0}'", "“{0}”前缺少操作符"},
    {"'{0}' cannot follow here; put what belongs together in parentheses", "这里不能接“{0}”；请把同属一体的内容写在括号中"},
    {"'{0}' cannot stand here", "这里不能是“{0}”"},
    {"'%' is no operator; a remainder is mod(x, y)", "“%”不是操作符；余数是 mod(x, y)"},
    {"a number has no exponent in a formula; write 1.5*10^6 for 1.5e6", "公式中的数值不带指数；1.5e6 请写 1.5*10^6"},
    {"a name has at most 250 bytes", "名称最长 250 字节"},

    // Names.
    {"{0} has no value", "{0} 没有值"},
    {"{0} has no value; did you mean {1}?", "{0} 没有值；是不是 {1}？"},
    {"{0} has no value; blanks are needed around '{1}'", "{0} 没有值；“{1}”两边要有空格"},
    {"{0} has no value; '%' is no operator, a remainder is mod(x, y)", "{0} 没有值；“%”不是操作符，余数是 mod(x, y)"},
    {"{0} is not a function", "{0} 不是函数"},
    {"{0} is not a function; did you mean {1}?", "{0} 不是函数；是不是 {1}？"},
    {"{0} has a meaning already", "{0} 已有含义"},
    {"{0} is defined already", "{0} 已经定义过"},
    {"{0} is given twice", "{0} 给了两次"},
    {"{0} depends on itself: {1}", "{0} 依赖于自身：{1}"},
    {"{0} has no value; the tab in it is part of the name", "{0} 没有值；其中的制表符是名称的一部分"},
    {"a name cannot have '{0}'", "名称中不能有“{0}”"},
    {"{0} has no value; a name cannot have '{1}'", "{0} 没有值；名称中不能有“{1}”"},
    {"no name to define: '{0}'", "不能定义这样的名称：“{0}”"},
    {"no name '{0}' to get", "没有名称“{0}”"},
    {"no name '{0}' to override", "没有可取代的名称“{0}”"},
    {"no formula uses {0}", "没有公式用到 {0}"},
    {"no formula uses {0}; did you mean {1}?", "没有公式用到 {0}；是不是 {1}？"},
    {"{0} cannot be both a text and a number", "{0} 不能既是字符串又是数值"},
    {"at most {0} values", "最多 {0} 个值"},
    {"the formula uses {0} names; at most {1} can have values", "公式用了 {0} 个名称；最多 {1} 个可以有值"},

    // Faults that the checker finds.
    {"{0}: operand {1} must be a number", "{0}：第 {1} 个操作数必须是数值"},
    {"{0}: operand {1} must be a text", "{0}：第 {1} 个操作数必须是字符串"},
    {"{0}: too few arguments", "{0}：参数太少"},
    {"{0}: too many arguments", "{0}：参数太多"},

    {"{0}: operand {1} must be a number; texts are compared with equal", "{0}：第 {1} 个操作数必须是数值；字符串用 equal 比较"},
    {"{0}: operand {1} must be a number; texts are joined with strcat", "{0}：第 {1} 个操作数必须是数值；字符串用 strcat 连接"},

    // What happens in silence otherwise.
    {"warning: {0}", "警告：{0}"},
    {"{0}:{1}", "{0}:{1}"},
    {"with --strict a warning is a failure", "使用 --strict 时警告即失败"},
    {"'{0}' is ignored", "“{0}”被忽略"},
    {"{0} and all that follows it is ignored", "{0}及其后面的内容被忽略"},
    {"'{0}' is ignored; write 'and'", "“{0}”被忽略；请写 and"},
    {"'{0}' is ignored; write 'or'", "“{0}”被忽略；请写 or"},
    {"'{0}' is ignored; a number has one point, with a digit before it", "“{0}”被忽略；数值只有一个小数点，前面要有数字"},
    {"'{0}' is ignored; commas stand in calls only", "“{0}”被忽略；逗号只用于函数的参数之间"},
    {"'!=' is a factorial and a comparison; unequal is '<>'", "“!=”是阶乘加比较；不等于写作“<>”"},
    {"{0} is read as the digits of the constant, even in quotes", "{0} 即使写在引号中也被读作该常数的数字"},
    {"'{0}' binds before '{1}' here; put what belongs together in parentheses", "这里“{0}”先于“{1}”结合；请把同属一体的内容写在括号中"},
    {"a strcat as a further text breaks the one around it; put it first", "strcat 作为后面的参数会使外层的 strcat 失效；请把它作为第一个参数"},
    {"{0} takes what the call around it needs; give {0} all its arguments", "{0} 会取走外层函数需要的值；请给全 {0} 的参数"},
    {"{0} cannot succeed here, for want of a second number; write {1}", "{0} 在这里缺少第二个数值，不会成功；请写 {1}"},
    {"{0} cannot succeed here: another call takes its arguments", "{0} 在这里不会成功：它的参数被别的函数取走"},

    // Texts and their encodings.
    {"{0}, after '{1}'", "{0}（在“{1}”之后）"},
    {"the result cannot be shown: {0}", "结果无法显示：{0}"},

    // Input and output.
    {"there is no such file or folder", "没有这个文件或文件夹"},
    {"no permission", "没有权限"},
    {"it is a folder", "这是文件夹"},
    {"the disk is full", "磁盘已满"},
    {"cannot read {0}", "无法读取 {0}"},
    {"a file is needed, or input from a pipe", "需要一个文件，或来自管道的输入"},
    {"cannot be read", "无法读取"},
    {"standard output cannot be written", "无法写入标准输出"},
    {"the line is not UTF-8; GBK files need --encoding gbk", "该行不是 UTF-8；GBK 文件要用 --encoding gbk"},
    {"it is UTF-16; save it as UTF-8", "这是 UTF-16；请存为 UTF-8"},
    {"the line is too long", "行太长"},
    {"a line does not end within 64 MiB", "一行在 64 MiB 内没有结束"},
    {"more than 64 MiB of definitions", "定义超过 64 MiB"},
    {"so many lines are faulty that the rest is not read", "错误的行太多，其余不再读取"},
    {"expected name = value or name := formula", "应为 名称 = 值 或 名称 := 公式"},
    {"expected a number or a \"text\" after =; a formula comes after :=", "= 之后应为数值或\"字符串\"；公式写在 := 之后"},

    // Tables.
    {"{0} has no header row", "{0} 没有标题行"},
    {"{0} has no column '{1}'", "{0} 没有“{1}”列"},
    {"{0}: '{1}' is not a number", "{0}：“{1}”不是数值"},
    {"{0}: the field is empty", "{0}：字段为空"},
    {"{0}: the formula uses more than 50 names", "{0}：公式用了 50 个以上的名称"},
    {"expected --add 'column = formula', got '{0}'", "应为 --add '列 = 公式'，不是“{0}”"},
    {"the row has more fields than the header", "该行的字段比标题行多"},
    {"the header row", "标题行"},
    {"there is no column '{0}'", "没有“{0}”列"},
    {"there is no column '{0}'; did you mean {1}?", "没有“{0}”列；是不是 {1}？"},
    {"there is no column '{0}'; blanks are needed around '{1}'", "没有“{0}”列；“{1}”两边要有空格"},
    {"there is no column '{0}'; write _ for '{1}', which a name cannot have", "没有“{0}”列；名称中不能有“{1}”，请写 _"},
    {"{0}: the header row is not UTF-8; is it --encoding gbk?", "{0}：标题行不是 UTF-8；是否要用 --encoding gbk？"},
    {"{0} begins with the mark of UTF-8; is it --encoding utf-8?", "{0} 以 UTF-8 的标记开头；是否要用 --encoding utf-8？"},
    {"{0}: the text is not UTF-8; is it --encoding gbk?", "{0}：文本不是 UTF-8；是否要用 --encoding gbk？"},
    {"a text is not UTF-8; is it --encoding gbk?", "有文本不是 UTF-8；是否要用 --encoding gbk？"},
    {"{0} row {1}: {2}", "{0} 第 {1} 行：{2}"},
    {"row {0}", "第 {0} 行"},
    {"{0} rows", "{0} 行"},
    {"{0} has more than 100000 fields; is the delimiter right?", "{0}的字段超过 100000 个；分隔符对吗？"},
    {"{0} is longer than 16 MiB; is a quote not closed?", "{0}超过 16 MiB；是否有引号没有闭合？"},
    {"{0}: a quote is not closed", "{0}：引号没有闭合"},
    {"two columns are called '{0}', which one object of JSON cannot hold", "有两列都叫“{0}”，一个 JSON 对象容不下"},
    {"'{0}' may be column {1} ('{2}') or column {3} ('{4}')", "“{0}”可能是第 {1} 列（“{2}”），也可能是第 {3} 列（“{4}”）"},
    {"{0} has no rows", "{0} 没有数据行"},
    {"{0} has no column '{1}'; did you mean {2}?", "{0} 没有“{1}”列；是不是 {2}？"},
    {"{0}: {1} more such messages", "{0}：还有 {1} 条同样的消息"},
    {"a condition is a number, not a text", "条件应为数值，不是字符串"},
    {"each needs --add, --where or --select; see morandel help each", "each 需要 --add、--where 或 --select；见 morandel help each"},
    {"--delimiter takes one character or tab, not '{0}'", "--delimiter 的值是一个字符或 tab，不是“{0}”"},
    {"--decimals takes 0 to 15, not '{0}'", "--decimals 的值是 0 到 15，不是“{0}”"},
    {"{0} takes UTF-8", "{0} 的值应为 UTF-8"},
    {"cannot write {0}", "无法写入 {0}"},
    {"the file cannot be read to its end", "未能把文件读到末尾"},

    // Arguments.
    {"eval needs a formula; see morandel help eval", "eval 需要公式；见 morandel help eval"},
    {"expected name=value, got '{0}'", "应为 名称=值，不是“{0}”"},
    {"no option {0}; did you mean {1}?", "没有选项 {0}；是不是 {1}？"},
    {"no option {0}; morandel help lists them", "没有选项 {0}；morandel help 会列出全部"},
    {"no verb '{0}'; did you mean {1}?", "没有子命令“{0}”；是不是 {1}？"},
    {"no verb '{0}'; morandel help lists them", "没有子命令“{0}”；morandel help 会列出全部"},
    {"the manual page is one for all verbs; leave out '{0}'", "手册页由所有子命令共用；请去掉“{0}”"},
    {"{0} needs {1}; see morandel help {0}", "{0} 需要{1}；见 morandel help {0}"},
    {"{0} has no use for '{1}'; see morandel help {0}", "{0} 用不上“{1}”；见 morandel help {0}"},
    {"{0} does not take {1}; see morandel help {0}", "{0} 没有选项 {1}；见 morandel help {0}"},
    {"{0} takes no value", "{0} 不带值"},
    {"{0} needs a value: {0} {1}", "{0} 需要值：{0} {1}"},
    {"{0} takes {1}, not '{2}'", "{0} 的值是 {1}，不是“{2}”"},
    {"{0} takes {1}, not '{2}'; did you mean {3}?", "{0} 的值是 {1}，不是“{2}”；是不是 {3}？"},

    // The prompt.
    {"no command ':{0}'; :help lists them", "没有命令“:{0}”；:help 会列出全部"},

    {"no command ':{0}'; did you mean :{1}?", "没有命令“:{0}”；是不是 :{1}？"},
    {":{0} needs {1}", ":{0} 需要{1}"},
    {":{0} stands alone", ":{0} 后面不能有别的内容"},
    {"{0} cannot be saved: its text has a quote or a line end", "{0} 无法保存：它的字符串中有引号或换行"},
    {"Morandel {0}: type a formula; :help helps, :quit ends", "Morandel {0}：输入公式；:help 显示帮助，:quit 结束"},
    {"FORMULA", "公式"},
    {"evaluates it:  preci(2.675, 2)", "计算它：  preci(2.675, 2)"},
    {"name = value", "名称 = 值"},
    {"a number, a \"text\" or the value of a formula, for what follows; to compare, write the name in parentheses: (a) = 3", "数值、\"字符串\"或公式的值，供以后使用；要比较，把名称写在括号中：(a) = 3"},
    {"name := formula", "名称 := 公式"},
    {"computed anew whenever it is needed", "每次用到时重新计算"},
    {"the value shown last", "最近显示的值"},

    // The manual page.
    {"NAME", "名称"},
    {"calculates formulas, files of variables and tables", "计算公式、变量文件和表格"},
    {"SYNOPSIS", "概要"},
    {"[eval] FORMULA [name=value...]", "[eval] 公式 [名称=值...]"},
    {"VERB [options] ...", "子命令 [选项] ..."},
    {"DESCRIPTION", "描述"},
    {"Formulas have numbers, texts in double quotes, names, the operators + - * / ^ and !, the relations = <> < > <= >= with blanks around them, the words and, or, like and equal, and functions. Angles are in degrees, 0! is 0, positions in texts count bytes, and a Chinese character has two.", "公式中可以有数值、双引号中的字符串、名称、操作符 + - * / ^ 和 !、两边有空格的比较符 = <> < > <= >=、词操作符 and、or、like、equal 以及函数。角度以度为单位，0! 等于 0，字符串中的位置以字节计，一个汉字占两个字节。"},
    {"VERBS", "子命令"},
    {"OPTIONS", "选项"},
    {"FUNCTIONS", "函数"},
    {"ENVIRONMENT", "环境变量"},
    {"the first that is set tells the language", "由其中第一个已设置的决定语言"},
    {"no colours", "不用颜色"},
    {"the file of the prompt's history; else morandel/history in XDG_STATE_HOME or ~/.local/state", "提示符的历史文件；否则是 XDG_STATE_HOME 或 ~/.local/state 中的 morandel/history"},
    {"EXIT STATUS", "退出状态"},
    {"0; 1 where a formula is refused or fails; 2 for wrong usage.", "0；公式被拒绝或出错时为 1；用法错误时为 2。"},

    // Help.
    {"Calculates formulas:  morandel 'preci(2.675, 2) * a' a=3", "计算公式：  morandel 'preci(2.675, 2) * a' a=3"},
    {"usage: morandel [VERB] [options] ...", "用法：morandel [子命令] [选项] ..."},
    {"verbs:", "子命令："},
    {"options:", "选项："},
    {"common options:", "通用选项："},
    {"for example:", "例如："},
    {"Without arguments: a prompt on a terminal, a formula a line from a pipe.", "不带参数时，在终端上进入提示符；输入来自管道时，每行一个公式。"},
    {"Exit status: 0; 1 where a formula is refused or fails; 2 for wrong usage.", "退出状态：0；公式被拒绝或出错时为 1；用法错误时为 2。"},
    {"error {0}: {1}", "错误 {0}：{1}"},
    {"No formula raises it.", "没有公式会产生它。"},
    {"the way out:", "解决办法："},
    {"there is no error '{0}'; morandel errors lists them", "没有错误“{0}”；morandel errors 会列出全部"},
};
// clang-format on

}  // namespace morandel::cli
