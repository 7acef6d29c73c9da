// SPDX-License-Identifier: MIT
// The search of the site, over the sections of all pages and the names of the reference. It needs no server.
"use strict";

const passedOver = new Set(("a an and are as at be by can come comes do does for from get got has have how i in is it its many much my of on "
    + "one or own so than that the there this to use was what when where which who why will with you your").split(" "));

// The words of a text, without endings, so that "sockets" finds "socket" and "sharing" finds "shared".
function wordsOf(text) {
    return (text.toLowerCase().match(/[\p{L}\p{N}_]+/gu) || [])
        .filter(word => !passedOver.has(word))
        .map(word => word.length > 4 ? word.replace(/(ing|ed|es|s|e)$/, "") : word.replace(/s$/, ""));
}

function countsOf(text) {
    const counts = new Map();
    for (const word of wordsOf(text))
        counts.set(word, (counts.get(word) || 0) + 1);
    return counts;
}

function prepare(index) {
    const sections = index.map(section => ({
        section, title: countsOf(section.title), heading: countsOf(section.heading), text: countsOf(section.text)
    }));
    const spread = new Map();
    for (const {title, heading, text} of sections)
        for (const word of new Set([...title.keys(), ...heading.keys(), ...text.keys()]))
            spread.set(word, (spread.get(word) || 0) + 1);
    return {sections, spread};
}

// The sections that contain words of the query, best first. A rare word counts more than a frequent one, and a word of
// a heading more than one of the text.
function search(prepared, query) {
    const words = [...new Set(wordsOf(query))];
    const found = [];
    for (const {section, title, heading, text} of prepared.sections) {
        let score = 0;
        let matched = 0;
        for (const word of words) {
            const weight = Math.log(1 + prepared.sections.length / (prepared.spread.get(word) || 1));
            const value = (heading.has(word) ? 4 : 0) + (title.has(word) ? 2 : 0) + Math.log1p(text.get(word) || 0);
            score += weight * value;
            matched += value > 0 ? 1 : 0;
        }
        if (matched > 0)
            found.push({section, score: score * (matched / words.length) ** 2});
    }
    return found.sort((a, b) => b.score - a.score).map(entry => entry.section);
}

// Some text around the first word that was found.
function excerpt(text, query) {
    const wanted = new Set(wordsOf(query));
    const match = [...text.matchAll(/[\p{L}\p{N}_]+/gu)].find(found => wanted.has(wordsOf(found[0])[0]));
    const begin = match ? Math.max(0, match.index - 60) : 0;
    return (begin > 0 ? "… " : "") + text.slice(begin, begin + 180) + (begin + 180 < text.length ? " …" : "");
}

function begin() {
    const field = document.getElementById("search");
    const list = document.getElementById("found");
    const prepared = prepare(searchIndex);
    const show = () => {
        list.replaceChildren(...search(prepared, field.value).slice(0, 12).map(section => {
            const item = document.createElement("li");
            const link = document.createElement("a");
            link.href = field.dataset.base + "/" + section.page + (section.anchor ? "#" + section.anchor : "");
            link.textContent = section.heading;
            const about = document.createElement("small");
            about.textContent = section.title + (section.text ? ": " + excerpt(section.text, field.value) : "");
            item.append(link, " ", about);
            return item;
        }));
    };
    field.addEventListener("input", show);
    document.addEventListener("keydown", event => {
        if (event.key === "Escape") {
            field.value = "";
            show();
        } else if (event.key === "/" && document.activeElement !== field) {
            event.preventDefault();
            field.focus();
        }
    });
    show();
}

if (typeof document !== "undefined")
    begin();
else
    module.exports = {prepare, search};
