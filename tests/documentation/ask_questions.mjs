// SPDX-License-Identifier: MIT
// node ask_questions.mjs SITE INDEX: asks the search of the site the questions of docs/index.md, as they stand there and
// as short as people type them. The section to which the index leads must be among the first three that are found.

import {readFileSync} from "node:fs";
import {createRequire} from "node:module";
import {resolve} from "node:path";
import {runInNewContext} from "node:vm";

const [site, indexPage] = process.argv.slice(2);
const {prepare, search} = createRequire(import.meta.url)(resolve(site, "search.js"));
const index = runInNewContext(readFileSync(resolve(site, "search-index.js"), "utf8") + "; searchIndex");
const prepared = prepare(index);

const shortly = {
    "link.md#reading-messages-from-a-socket": ["reading messages from a socket", "QTcpSocket messages"],
    "whole-documents.md#unknown-elements-and-what-else-is-accepted-silently": ["unknown elements"],
    "errors.md#which-line-was-wrong": ["which line was wrong", "line of error"],
    "threads.md#sharing-one-record-between-threads": ["sharing between threads", "share record thread"],
    "extending.md#adding-a-member": ["adding a member"],
    "extending.md#where-the-tag-comes-from": ["where does a tag come from"],
    "qt-versions.md#which-versions-work": ["Qt versions"],
    "whole-documents.md#compact-xml-and-a-writer-of-your-own": ["compact XML", "own writer"],
    "logging.md#getting-rid-of-the-logger": ["getting rid of the logger", "remove logger"],
    "records.md#null-and-empty-strings": ["null against empty", "null string"],
    "xml-form.md#precision-of-decimal-numbers": ["precision", "how many decimals"],
};

const questions = readFileSync(indexPage, "utf8").split("\n## Questions\n")[1]
    .split("\n").map(line => line.match(/^- \[(.+)\]\((.+)\)$/)).filter(Boolean)
    .map(([, question, target]) => [question, target]);
const asked = [...questions, ...Object.entries(shortly).flatMap(([target, words]) => words.map(word => [word, target]))];

let wrong = 0;
const complain = text => { console.error(text); ++wrong; };
if (questions.length < 10)
    complain(`${indexPage} has ${questions.length} questions, expected are ten.`);
for (const [question, target] of asked) {
    const found = search(prepared, question).slice(0, 3).map(({page, anchor}) => `${page}#${anchor}`);
    if (!found.includes("docs/" + target.replace(".md", ".html")))
        complain(`"${question}" does not find ${target} but\n  ${found.join("\n  ")}`);
}
if (search(prepared, "zzzz").length > 0)
    complain("The search finds what is nowhere.");
if (wrong === 0)
    console.log(`All ${asked.length} questions are answered.`);
process.exit(wrong ? 1 : 0);
