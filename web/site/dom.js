// Elements from texts. Nothing is ever read as markup.

function fill(node, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
        if (value === false || value === undefined || value === null) continue;
        node.setAttribute(name, value === true ? "" : value);
    }
    appendAll(node, children.flat());
    return node;
}

// One by one: a call takes only so many arguments.
function appendAll(node, children) {
    for (const child of children) {
        if (child !== null && child !== undefined) node.append(child);
    }
}

// In the place of what is there.
export function showIn(node, children) {
    const all = document.createDocumentFragment();
    appendAll(all, children);
    node.replaceChildren(all);
}

// A child may be a list of them.
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
