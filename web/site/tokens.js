// A formula cut into pieces for its colours: [class, text] each, which together are the formula.

const words = new Set(["like", "equal", "and", "or", ">=", "<=", "<>", "<", ">", "="]);
const constants = new Set(["pi", "exp"]);

const piece =
    /( +)|(\d+(?:\.\d*)?)|("[^"]*"?)|([A-Za-z>\\<}{_~[=\u0080-\uffff][^ \r\0+\-*/^()!,]*)|([-+*/^()!,%])|([^])/y;

export function cut(formula, isFunction) {
    const pieces = [];
    piece.lastIndex = 0;
    for (let found = piece.exec(formula); found; found = piece.exec(formula)) {
        const [text, blank, number, quoted, name, symbol, other] = found;
        if (other !== undefined) {
            pieces.push(["ignored", formula.slice(found.index)]);
            break;
        }
        let kind = "name";
        if (blank !== undefined) kind = "";
        else if (number !== undefined) kind = "number";
        else if (quoted !== undefined) kind = "text";
        else if (symbol !== undefined) kind = "symbol";
        else if (words.has(name.toLowerCase())) kind = "word";
        else if (constants.has(name.toLowerCase())) kind = "number";
        else if (isFunction(name.toLowerCase())) kind = "function";
        pieces.push([kind, text]);
    }
    return pieces;
}

// The same with each piece cut where a mark begins or ends: [class, text, isMarked].
export function withMarks(pieces, marks) {
    const marked = [];
    let at = 0;
    for (const [kind, text] of pieces) {
        let rest = text;
        while (rest !== "") {
            const inside = marks.find(([begin, end]) => at >= begin && at < end);
            const next = Math.min(
                ...marks.flat().filter((place) => place > at),
                at + rest.length,
            );
            marked.push([kind, rest.slice(0, next - at), inside ? inside[2] : ""]);
            rest = rest.slice(next - at);
            at = next;
        }
    }
    return marked;
}
