// Makes the pictures of the site for the documents. usage: pictures.mjs SITE FOLDER

import { join } from "node:path";
import { pathToFileURL } from "node:url";

import { Browser } from "./browser.mjs";

const [folder, out] = process.argv.slice(2);
const site = pathToFileURL(`${folder}/`).href;

const wide = [1080, 720];
const phone = [390, 780];
const pictures = [
    { name: "playground", page: "en/index.html", size: wide, height: 920 },
    { name: "playground-zh", page: "zh/index.html", size: wide, height: 920 },
    { name: "playground-dark", page: "en/index.html", size: wide, height: 1900, isDark: true },
    { name: "page", page: "en/language.html", size: wide, height: 920 },
    { name: "page-zh", page: "zh/gallery.html", size: wide, height: 920 },
    { name: "phone", page: "en/language.html", size: phone, isPhone: true },
    { name: "phone-zh", page: "zh/index.html", size: phone, isPhone: true },
];

const browser = await Browser.start();
try {
    for (const { name, page, size, height, isPhone = false, isDark = false } of pictures) {
        await browser.size(...size, isPhone);
        await browser.dark(isDark);
        await browser.open(site + page);
        await browser.picture(join(out, `${name}.png`), height);
    }
} finally {
    await browser.close();
}
