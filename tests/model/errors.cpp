#include "tests/model/errors.h"

#include <map>

namespace model {
namespace {

// Characters with their two bytes in code page 936.
constexpr char characters[] =
    "。A1A3 一D2BB 下CFC2 不B2BB 个B8F6 中D6D0 串B4AE 为CEAA 义D2E5 乘B3CB "
    "书CAE9 予D3E8 二B6FE 于D3DA 位CEBB 余D3E0 作D7F7 值D6B5 公B9AB 写D0B4 "
    "出B3F6 函BAAF 分B7D6 切C7D0 到B5BD 前C7B0 匹C6A5 原D4AD 参B2CE 反B7B4 "
    "发B7A2 取C8A1 变B1E4 号BAC5 合BACF 名C3FB 后BAF3 否B7F1 在D4DA 型D0CD "
    "够B9BB 大B4F3 太CCAB 始CABC 字D7D6 存B4E6 定B6A8 实CAB5 对B6D4 小D0A1 "
    "少C9D9 尾CEB2 常B3A3 应D3A6 度B6C8 式CABD 弦CFD2 形D0CE 忘CDFC 或BBF2 "
    "所CBF9 括C0A8 指D6B8 换BBBB 接BDD3 操B2D9 数CAFD 整D5FB 时CAB1 是CAC7 "
    "最D7EE 有D3D0 末C4A9 标B1EA 核BACB 根B8F9 模C4A3 正D5FD 母C4B8 求C7F3 "
    "没C3BB 法B7A8 浮B8A1 点B5E3 然C8BB 现CFD6 生C9FA 界BDE7 的B5C4 目C4BF "
    "直D6B1 相CFE0 确C8B7 空BFD5 符B7FB 第B5DA 等B5C8 算CBE3 类C0E0 精BEAB "
    "绝BEF8 缺C8B1 而B6F8 能C4DC 自D7D4 表B1ED 要D2AA 解BDE2 计BCC6 记BCC7 "
    "该B8C3 误CEF3 请C7EB 负B8BA 赋B8B3 超B3AC 越D4BD 转D7AA 达B4EF 过B9FD "
    "运D4CB 配C5E4 量C1BF 错B4ED 长B3A4 阶BDD7 限CFDE 零C1E3 非B7C7 ！A3A1 "
    "，A3AC ";

const std::map<int, const char*> messages = {
    {0, "表达式不对！"},
    {1, "括号不匹配！"},
    {2, "表达式不存在！"},
    {3, "存在太小的分母(为零)！"},
    {4, "正切的计算非法！"},
    {5, "根号下为负！"},
    {20, "反余弦或反正弦参数的绝对值大于1"},
    {21, "对数参数不应小于或等于0"},
    {30, "'+'或'-'后缺少表达式"},
    {31, "'*'或'/'后缺少表达式"},
    {32, "'^'后缺少表达式"},
    {33, "缺少')'"},
    {34, "缺少操作符"},
    {35, "')'前缺少'('"},
    {36, "出现非法符号"},
    {37, "表达式为空"},
    {38, "变量名长度不能超过50"},
    {39, "精度运算变量应该为浮点数"},
    {40, "阶乘运算数字应为整数"},
    {41, "','后缺少表达式"},
    {42, "浮点运算值超越界限"},
    {43, "精度运算第二个变量应该为自然数"},
    {44, "字符串过长，应小于1000，或忘记在末尾的号"},
    {45, "变量名后不能直接为("},
    {46, "常量后不能直接为("},
    {47, "不存在指定的数值"},
    {48, "指定的数值超出字符串的长度"},
    {49, "指定的数值应该为正数"},
    {50, "指定的数值超过精度运算小数位的最大长度"},
    {51, "数值超过精度运算小数位的最大长度(15位)"},
    {52, "字符串参数的个数少于函数定义所要求的个数"},
    {53, "指定的数值不符合函数定义中的要求"},
    {54, "数值超过精度运算位的最大长度(15位)"},
    {55, "数值超过目标字符长度"},
    {56, "变量类型应该为字符类型 ,请核实"},
    {57, "变量类型应该为整形类型,请核实"},
    {58, "变量类型应该为浮点类型,请核实"},
    {59, "变量没赋予相应的数值或字符,请核实"},
    {60, "请核实变量赋予相应的数值或字符是否正确"},
    {61, "余切的计算非法！"},
    {62, "表达公式字符常量书写有误!"},
    {63, "'like'后缺少表达式"},
    {64, "'equal'后缺少表达式"},
    {65, "'and'后缺少表达式"},
    {66, "'or'后缺少表达式"},
    {67, "'>='后缺少表达式"},
    {68, "'<='后缺少表达式"},
    {69, "'<>'后缺少表达式"},
    {70, "'<'后缺少表达式"},
    {71, "'>'后缺少表达式"},
    {72, "'='后缺少表达式"},
    {73, "精度取值超界"},
    {74, "阶乘运算不能为负数"},
    {75, "浮点到字符的转换函数,第二个参数类型应为正整数"},
    {76, "模运算,第二个参数类型不能为零"},
    {77, "常量为空"},
    {78, "Strsub 函数，第二个参数数值不能够为不等于负一,而小于零的数值"},
    {79, "StrsubN 函数，分解原始字符串时发生错误。"},
};

}  // namespace

std::string gbk(const std::string& utf8) {
    static const std::string table = characters;
    std::string text;
    for (std::size_t i = 0; i < utf8.size();) {
        if (static_cast<unsigned char>(utf8[i]) < 0x80) {
            text += utf8[i++];
            continue;
        }
        const std::size_t bytes = table.find(utf8.substr(i, 3)) + 3;
        for (std::size_t half = 0; half < 4; half += 2) {
            text += static_cast<char>(std::stoi(table.substr(bytes + half, 2), nullptr, 16));
        }
        i += 3;
    }
    return text;
}

std::optional<std::string> message_of(int number) {
    static const std::map<int, std::string> table = [] {
        std::map<int, std::string> converted;
        for (const auto& [row, message] : messages) converted[row] = gbk(message);
        return converted;
    }();
    const auto row = table.find(number);
    if (row == table.end()) return std::nullopt;
    return row->second;
}

}  // namespace model
