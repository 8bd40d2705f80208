// Elements from texts. Nothing is ever read as markup.

function fill(node, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
        if (value === false || value === undefined || value === null) continue;
        node.setAttribute(name, value === true ? "" : value);
    }
    node.append(...children.filter((child) => child !== null && child !== undefined));
    return node;
}

export function element(tag, attributes = {}, ...children) {
    return fill(document.createElement(tag), attributes, children);
}

export function drawing(tag, attributes = {}, ...children) {
    return fill(document.createElementNS("http://www.w3.org/2000/svg", tag), attributes, children);
}

export function byId(id) {
    return document.getElementById(id);
}

let count = 0;

export function newId() {
    return `id${++count}`;
}

// Calls once nothing has been asked for a while.
export function debounced(work, milliseconds = 120) {
    let timer = 0;
    return () => {
        clearTimeout(timer);
        timer = setTimeout(work, milliseconds);
    };
}
