// Starts the engine that engine.js holds, then what the page has.

import { element } from "./dom.js";
import { enlivenPage } from "./page.js";
import { startPlayground } from "./playground.js";
import { say } from "./words.js";

async function main() {
    const engine = await globalThis.startMorandel();
    if (document.getElementById("playground")) startPlayground(engine);
    enlivenPage(engine);
    document.documentElement.dataset.engine = engine.version;
}

main().catch((error) => {
    document.querySelector("main").prepend(
        element("p", { class: "failure", role: "alert" }, say("engineFailed", error.message)),
    );
    throw error;
});
