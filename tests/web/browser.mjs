// Chromium without a window, driven through chromedriver over plain HTTP.

import { spawn } from "node:child_process";
import { once } from "node:events";
import { writeFileSync } from "node:fs";

import { scratchFolder } from "./scratch.mjs";

const elementKey = "element-6066-11e4-a52e-4f735466cecf";

export const keys = { enter: "\uE007", tab: "\uE004", end: "\uE010", home: "\uE011", control: "\uE009" };

async function startDriver() {
    const env = { ...process.env, TMPDIR: scratchFolder() };
    const driver = spawn("chromedriver", ["--port=0"], { env, stdio: ["ignore", "pipe", "ignore"] });
    let output = "";
    for await (const piece of driver.stdout) {
        output += piece;
        const port = /started successfully on port (\d+)/.exec(output);
        if (port) return { driver, address: `http://127.0.0.1:${port[1]}` };
    }
    throw new Error(`chromedriver did not start: ${output}`);
}

export class Browser {
    static async start() {
        const browser = new Browser();
        Object.assign(browser, await startDriver());
        // What it writes is not read, so the pipe must not fill.
        browser.driver.stdout.resume();
        const { sessionId } = await browser.#send("POST", "/session", {
            capabilities: {
                alwaysMatch: {
                    browserName: "chrome",
                    "goog:chromeOptions": {
                        args: ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                            "--force-device-scale-factor=1", "--hide-scrollbars", "--lang=en-US"],
                    },
                    "goog:loggingPrefs": { browser: "ALL" },
                },
            },
        });
        browser.session = `/session/${sessionId}`;
        return browser;
    }

    async #send(method, path, body) {
        const response = await fetch(this.address + path, {
            method,
            body: method === "POST" ? JSON.stringify(body ?? {}) : undefined,
        });
        const { value } = await response.json();
        if (value && value.error) throw new Error(`${path}: ${value.error}: ${value.message}`);
        return value;
    }

    #post(path, body) {
        return this.#send("POST", this.session + path, body);
    }

    async close() {
        await this.#send("DELETE", this.session);
        const ended = once(this.driver, "exit");
        this.driver.kill();
        await ended;
    }

    // Waits until the page has computed.
    async open(address) {
        await this.#post("/url", { url: "about:blank" });
        await this.#post("/url", { url: address });
        await this.until("return document.documentElement.dataset.engine");
    }

    run(script, ...args) {
        return this.#post("/execute/sync", { script, args });
    }

    async until(script, ...args) {
        for (let tries = 0; tries < 200; ++tries) {
            const value = await this.run(script, ...args);
            if (value) return value;
            await new Promise((resolve) => setTimeout(resolve, 25));
        }
        throw new Error(`waited in vain: ${script}`);
    }

    // Empties a field and types into it, as a person does.
    async type(selector, text) {
        const found = await this.#post("/element", { using: "css selector", value: selector });
        const path = `/element/${found[elementKey]}`;
        await this.#post(`${path}/clear`);
        await this.#post(`${path}/value`, { text });
    }

    async press(...texts) {
        const actions = texts.flatMap((value) => [
            { type: "keyDown", value },
            { type: "keyUp", value },
        ]);
        await this.#post("/actions", { actions: [{ type: "key", id: "keys", actions }] });
    }

    async click(selector) {
        const found = await this.#post("/element", { using: "css selector", value: selector });
        await this.#post(`/element/${found[elementKey]}/click`);
    }

    command(cmd, params) {
        return this.#post("/goog/cdp/execute", { cmd, params });
    }

    size(width, height, isPhone = false) {
        return this.command("Emulation.setDeviceMetricsOverride", {
            width,
            height,
            deviceScaleFactor: 1,
            mobile: isPhone,
        });
    }

    dark(isDark) {
        return this.command("Emulation.setEmulatedMedia", {
            features: [{ name: "prefers-color-scheme", value: isDark ? "dark" : "light" }],
        });
    }

    async picture(file, height) {
        const { data } = await this.command("Page.captureScreenshot", {
            format: "png",
            captureBeyondViewport: height !== undefined,
            ...(height === undefined
                ? {}
                : { clip: { x: 0, y: 0, width: await this.run("return innerWidth"), height, scale: 1 } }),
        });
        writeFileSync(file, Buffer.from(data, "base64"));
    }

    // What the page and its policy complained about since the last time.
    async complaints() {
        const log = await this.#post("/se/log", { type: "browser" });
        return log.filter(({ level }) => level === "SEVERE").map(({ message }) => message);
    }
}
