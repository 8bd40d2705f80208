// A column of numbers: bars where there are few, else a line.

import { drawing } from "./dom.js";
import { formatNumber } from "./numbers.js";
import { say } from "./words.js";

const size = { width: 640, height: 240, left: 64, right: 12, top: 12, bottom: 28 };
const mostBars = 40;

// Round numbers around a range, 1, 2 or 5 times a power of ten apart: the step, and the first and the
// last of them in steps, so that no range is too wide or too narrow.
function scaleOf(low, high) {
    const rough = high / 4 - low / 4 || Math.abs(high) || 1;
    const exponent = Math.floor(Math.log10(rough));
    const factor = [1, 2, 5, 10].find((wide) => Number(`${wide}e${exponent}`) >= rough);
    const step = Number(`${factor}e${exponent}`);
    const first = Math.floor(low / step);
    const last = Math.ceil(high / step);
    const ticks = Array.from({ length: last - first + 1 }, (_, index) =>
        Number(`${(first + index) * factor}e${exponent}`),
    );
    return { step, first, last, ticks: ticks.filter(Number.isFinite) };
}

// points: [row, number]. Gives null where there is nothing to draw.
export function drawPlot(title, points, rows) {
    const finite = points.filter(([, number]) => Number.isFinite(number));
    if (finite.length === 0) return null;
    const numbers = finite.map(([, number]) => number);
    const lowest = numbers.reduce((a, b) => Math.min(a, b));
    const highest = numbers.reduce((a, b) => Math.max(a, b));
    const hasBars = rows <= mostBars;
    const { step, first, last, ticks } = scaleOf(
        hasBars ? Math.min(lowest, 0) : lowest,
        hasBars ? Math.max(highest, 0) : highest,
    );
    const inner = {
        width: size.width - size.left - size.right,
        height: size.height - size.top - size.bottom,
    };
    const slot = inner.width / Math.max(rows, 1);
    const x = (row) => size.left + (row + 0.5) * slot;
    const y = (number) => size.top + ((last - number / step) / (last - first || 1)) * inner.height;
    const grid = ticks.map((tick) =>
        drawing(
            "g",
            { class: tick === 0 ? "tick zero" : "tick" },
            drawing("line", { x1: size.left, x2: size.width - size.right, y1: y(tick), y2: y(tick) }),
            drawing("text", { x: size.left - 8, y: y(tick) + 4, "text-anchor": "end" }, formatNumber(tick)),
        ),
    );
    const everyRow = Math.ceil(rows / 12);
    const labels = Array.from({ length: rows }, (_, row) => row)
        .filter((row) => row % everyRow === 0)
        .map((row) =>
            drawing("text", { x: x(row), y: size.height - 8, "text-anchor": "middle" }, String(row + 1)),
        );
    const wide = Math.min(slot * 0.7, 48);
    const shapes = hasBars
        ? finite.map(([row, number]) =>
              drawing("rect", {
                  x: x(row) - wide / 2,
                  width: wide,
                  y: Math.min(y(number), y(0)),
                  height: Math.max(Math.abs(y(number) - y(0)), 1),
                  rx: 2,
              }),
          )
        : [
              drawing("polyline", {
                  points: finite.map(([row, number]) => `${x(row).toFixed(1)},${y(number).toFixed(1)}`).join(" "),
              }),
          ];
    return drawing(
        "svg",
        { viewBox: `0 0 ${size.width} ${size.height}`, role: "img", class: "plot" },
        drawing("title", {}, say("plotOf", title, formatNumber(lowest), formatNumber(highest))),
        ...grid,
        ...labels,
        drawing("g", { class: hasBars ? "bars" : "line" }, ...shapes),
    );
}
