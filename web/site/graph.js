// Who needs whom: what is needed stands to the left of what needs it.

import { drawing } from "./dom.js";
import { say } from "./words.js";

const rowHeight = 58;
const passHeight = 22;
const boxHeight = 40;
const gap = 56;
const margin = 8;
const mostNames = 80;

// Chinese characters are twice as wide as Latin ones.
function widthOf(text) {
    return [...text].reduce((width, c) => width + (c.codePointAt(0) > 0x2e7f ? 14 : 7.6), 0);
}

function shorten(text, most = 22) {
    const characters = [...text];
    return characters.length > most ? `${characters.slice(0, most - 1).join("")}…` : text;
}

// How many others stand before each, at most; names of a cycle stand where the cycle was met.
function depths(nodes) {
    const depth = new Map();
    const waiting = new Set();
    for (const first of nodes.values()) {
        if (depth.has(first)) continue;
        const path = [first];
        while (path.length > 0) {
            const node = path[path.length - 1];
            waiting.add(node);
            const next = node.needs.find((need) => !depth.has(need) && !waiting.has(need));
            if (next) {
                path.push(next);
                continue;
            }
            const known = node.needs.filter((need) => depth.has(need)).map((need) => depth.get(need));
            depth.set(node, known.length > 0 ? Math.max(...known) + 1 : 0);
            path.pop();
        }
    }
    return depth;
}

// A line that passes others by has a place of its own among them.
function addWaypoints(nodes, depth, layers) {
    const arrows = [];
    for (const to of nodes) {
        for (const from of to.needs) {
            const points = [from];
            for (let layer = depth.get(from) + 1; layer < depth.get(to); ++layer) {
                const point = { width: 0, needs: [points[points.length - 1]], isWaypoint: true };
                layers[layer].push(point);
                points.push(point);
            }
            arrows.push([...points, to]);
        }
    }
    return arrows;
}

// Where those that it needs stand, on average, so that few lines cross.
function middle(node) {
    return node.needs.reduce((sum, { y }) => sum + y, 0) / (node.needs.length || 1);
}

function heightOf(layer) {
    return layer.reduce((sum, node) => sum + (node.isWaypoint ? passHeight : rowHeight), 0);
}

function place(nodes) {
    const depth = depths(nodes);
    const layers = [];
    for (const node of nodes.values()) (layers[depth.get(node)] ??= []).push(node);
    const arrows = addWaypoints([...nodes.values()], depth, layers);
    const tallest = Math.max(...layers.map(heightOf));
    let x = margin;
    layers.forEach((layer, index) => {
        // Names of a cycle may need what has no place yet.
        const known = (node) => ({ needs: node.needs.filter(({ y }) => y !== undefined) });
        if (index > 0) layer.sort((a, b) => middle(known(a)) - middle(known(b)));
        const width = Math.max(...layer.map((node) => node.width));
        let y = margin + (tallest - heightOf(layer)) / 2;
        for (const node of layer) {
            const height = node.isWaypoint ? passHeight : rowHeight;
            node.x = node.isWaypoint ? x + width / 2 : x;
            node.y = y + height / 2;
            y += height;
        }
        x += width + gap;
    });
    return { arrows, width: x - gap + margin, height: tallest + 2 * margin };
}

function box(node) {
    const center = node.x + node.width / 2;
    return drawing(
        "g",
        { class: node.class },
        drawing("rect", { x: node.x, y: node.y - boxHeight / 2, width: node.width, height: boxHeight, rx: 9 }),
        drawing("text", { x: center, y: node.y - 3, class: "name" }, shorten(node.name)),
        drawing("text", { x: center, y: node.y + 12, class: "shown" }, shorten(node.shown)),
    );
}

function curve(x1, y1, x2, y2) {
    const bend = Math.max(Math.abs(x2 - x1) / 2, 24);
    return `C${x1 + bend} ${y1} ${x2 - bend} ${y2} ${x2} ${y2}`;
}

function arrow(points) {
    const [from] = points;
    let [x, y] = [from.x + from.width, from.y];
    let path = `M${x} ${y}`;
    for (const point of points.slice(1)) {
        const end = point.isWaypoint ? point.x : point.x - 5;
        path += ` ${curve(x, y, end, point.y)}`;
        [x, y] = [end, point.y];
    }
    return drawing("path", { d: path, "marker-end": "url(#tip)" });
}

// items: { name, shown, class, needs: names }. Gives null where there is nothing to draw.
export function drawGraph(items) {
    if (items.length === 0 || items.length > mostNames) return null;
    const nodes = new Map(
        items.map((item) => [
            item.name,
            {
                ...item,
                width: 24 + Math.max(widthOf(shorten(item.name)), widthOf(shorten(item.shown)) * 0.86, 36),
            },
        ]),
    );
    for (const node of nodes.values()) {
        node.needs = node.needs.map((name) => nodes.get(name)).filter(Boolean);
    }
    const { arrows, width, height } = place(nodes);
    const told = items.map(({ name, needs }) =>
        needs.length > 0 ? say("needs", name, needs.join(", ")) : say("needsNothing", name),
    );
    const tip = drawing(
        "marker",
        { id: "tip", viewBox: "0 0 8 8", refX: 5, refY: 4, markerWidth: 7, markerHeight: 7, orient: "auto" },
        drawing("path", { d: "M0 0 L8 4 L0 8 z" }),
    );
    return drawing(
        "svg",
        { viewBox: `0 0 ${width} ${height}`, width, height, role: "img", class: "graph" },
        drawing("title", {}, say("graph")),
        drawing("desc", {}, told.join("; ")),
        drawing("defs", {}, tip),
        drawing("g", { class: "arrows" }, ...arrows.map(arrow)),
        ...[...nodes.values()].map(box),
    );
}
