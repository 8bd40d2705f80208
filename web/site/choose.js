"use strict";
// The first of the reader's languages that there are pages in.
const wanted = navigator.languages.find((language) => /^(en|zh)\b/.test(language)) ?? "en";
location.replace(`${wanted.slice(0, 2)}/index.html${location.hash}`);
