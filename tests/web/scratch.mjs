// Folders for what tests write, which go when the program ends.

import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

const folders = [];

process.on("exit", () => {
    for (const folder of folders) rmSync(folder, { recursive: true, force: true, maxRetries: 10 });
});

export function scratchFolder() {
    folders.push(mkdtempSync(join(tmpdir(), "morandel-")));
    return folders.at(-1);
}
