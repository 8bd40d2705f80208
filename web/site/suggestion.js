// What a name that is no function may have been meant for.

import { say } from "./words.js";

// How many letters are to be put in, taken out, changed or swapped with the next.
function distance(a, b) {
    const rows = [];
    for (let i = 0; i <= a.length; ++i) {
        rows.push([]);
        for (let j = 0; j <= b.length; ++j) {
            if (i === 0 || j === 0) {
                rows[i].push(i + j);
                continue;
            }
            const changed = a[i - 1] === b[j - 1] ? 0 : 1;
            let least = Math.min(rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + changed);
            const isSwap = i > 1 && j > 1 && a[i - 1] === b[j - 2] && a[i - 2] === b[j - 1];
            if (isSwap) least = Math.min(least, rows[i - 2][j - 2] + 1);
            rows[i].push(least);
        }
    }
    return rows[a.length][b.length];
}

// Of a formula that is refused at a "(" behind such a name; else null.
export function noFunction(engine, text, position) {
    if (!position || text[position.character] !== "(") return null;
    const [name] = /[A-Za-z_\u0080-\uffff][A-Za-z0-9_\u0080-\uffff]*$/.exec(text.slice(0, position.character)) ?? [];
    if (!name) return null;
    const functions = engine.functions().map((f) => f.name);
    const lower = name.toLowerCase();
    if (functions.includes(lower)) return null;
    const close = functions
        .map((other) => [distance(lower, other), other])
        .filter(([apart]) => apart <= (lower.length > 4 ? 2 : 1))
        .sort(([a], [b]) => a - b)[0];
    const message = close ? say("didYouMean", name, close[1]) : say("noFunction", name);
    return { message, position: { character: position.character - name.length, characters: name.length } };
}
