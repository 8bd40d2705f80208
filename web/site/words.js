// What the pages say, in the language of the page.

const isChinese = document.documentElement.lang.startsWith("zh");

const table = {
    formula: ["Formula", "公式"],
    number: ["number", "数值"],
    integer: ["integer", "整数"],
    text: ["text", "字符串"],
    error: ["error {0}", "错误 {0}"],
    warning: ["note", "注意"],
    empty: ["Type a formula.", "请输入公式。"],
    noValue: ["{0} has no value", "{0} 没有值"],
    noFunction: ["{0} is not a function", "{0} 不是函数"],
    didYouMean: ["{0} is not a function; did you mean {1}?", "{0} 不是函数；是不是 {1}？"],
    atCharacter: ["character {0}", "第 {0} 个字符"],
    formulaFor: ["Formula {0}", "公式 {0}"],
    noFaults: ["no faults", "没有错误"],
    engineFailed: ["The engine cannot start in this browser: {0}", "引擎不能在此浏览器中启动：{0}"],
    given: ["given", "给定"],
    expectedDefinition: ["expected name = value or name := formula", "应为 名称 = 值 或 名称 := 公式"],
    noName: ["no name to define: '{0}'", "不能定义的名称：“{0}”"],
    definedAlready: ["{0} is defined already", "{0} 已经定义"],
    expectedValue: [
        'expected a number or a "text" after =; a formula comes after :=',
        "= 之后应为数值或 \"字符串\"；公式写在 := 之后",
    ],
    dependsOnItself: ["{0} depends on itself: {1}", "{0} 依赖于自身：{1}"],
    tooManyNames: [
        "the formula uses {0} names; at most 50 can have values",
        "公式用到 {0} 个名称，至多 50 个可以有值",
    ],
    line: ["line {0}", "第 {0} 行"],
    needs: ["{0} needs {1}", "{0} 需要 {1}"],
    needsNothing: ["{0} needs nothing", "{0} 不需要别的值"],
    graph: ["Who needs whom", "谁需要谁"],
    noGraph: ["Nothing to draw yet.", "还没有可画的内容。"],
    row: ["row", "行"],
    rowsShown: ["{0} of {1} rows are shown.", "显示 {1} 行中的 {0} 行。"],
    rows: ["{0} rows", "{0} 行"],
    notANumber: ["'{0}' is not a number", "“{0}”不是数值"],
    emptyField: ["the field is empty", "字段为空"],
    twoColumns: [
        "'{0}' may be column {1} ('{2}') or column {3} ('{4}')",
        "“{0}”可能是第 {1} 列（“{2}”），也可能是第 {3} 列（“{4}”）",
    ],
    noColumn: ["there is no column for {0}", "没有名为 {0} 的列"],
    openQuote: ["the quote of row {0} is not closed", "第 {0} 行的引号没有关闭"],
    failedRows: ["{0} rows fail", "{0} 行失败"],
    title: ["Title of column {0}", "第 {0} 列的标题"],
    columnFormula: ["Formula of column {0}", "第 {0} 列的公式"],
    remove: ["Remove column {0}", "删除第 {0} 列"],
    plotOf: ["{0} by row: from {1} to {2}", "{0} 按行：从 {1} 到 {2}"],
    nothingToPlot: ["The column has no numbers to plot.", "该列没有可画的数值。"],
    linkCopied: ["The link is copied.", "链接已复制。"],
    linkInBar: ["The link is in the address bar.", "链接在地址栏中。"],
};

export function say(key, ...values) {
    const text = table[key][isChinese ? 1 : 0];
    return text.replace(/\{(\d)\}/g, (_, place) => String(values[place]));
}

// The message of an error or a warning, and its number where it has one.
export function messageOf(notice) {
    const message = isChinese ? notice.chinese : notice.english;
    if (!(notice.number >= 0)) return message;
    return `${message} (${say("error", notice.number)})`;
}
