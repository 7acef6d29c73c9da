// SPDX-License-Identifier: MIT
// query.mjs [--update] PAGE FOLDER: runs the blocks of a page that are marked as sql with DuckDB, in the folder, and
// compares the results with the blocks behind them that are marked as text. --update rewrites these.
import { DuckDBInstance } from '@duckdb/node-api';
import { readFileSync, writeFileSync } from 'node:fs';
import { resolve } from 'node:path';
import { chdir, argv, exit } from 'node:process';

const update = argv[2] === '--update';
const [page, folder] = argv.slice(update ? 3 : 2).map(name => resolve(name));
chdir(folder);
const database = await (await DuckDBInstance.create()).connect();

async function resultOf(sql) {
    const result = await database.runAndReadAll(sql);
    const rows = result.getRows().map(row => row.map(value => (value === null ? 'NULL' : String(value))));
    const cells = [result.columnNames(), ...rows];
    const widths = cells[0].map((_, column) => Math.max(...cells.map(row => row[column].length)));
    return cells.map(row => row.map((cell, column) => cell.padEnd(widths[column])).join('  ').trimEnd() + '\n').join('');
}

const written = readFileSync(page, 'utf8');
let result = '';
let queries = 0;
let actual = '';
for (const block of written.split(/(^```\w+\n[^]*?^```\n)/m)) {
    const [, kind, content] = block.match(/^```(\w+)\n([^]*)```\n$/) ?? [];
    if (kind === 'sql')
        result = await resultOf(content);
    queries += kind === 'text';
    actual += kind === 'text' ? '```text\n' + result + '```\n' : block;
}
if (queries === 0) {
    console.error(`${page} shows no results of queries.`);
    exit(1);
}
if (update) {
    writeFileSync(page, actual);
} else if (actual !== written) {
    console.error(`${page} shows other results than DuckDB gives:\n${actual}`);
    exit(1);
}
console.log(`${queries} queries gave the results on the page.`);
