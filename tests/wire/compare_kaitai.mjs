// SPDX-License-Identifier: MIT
// compare_kaitai.mjs ROUTERMSG PROJECT FOLDER: reads messages with a reader that Kaitai Struct makes of
// schema/router.ksy, and compares each of them with the JSON that routermsg makes of it. FOLDER has what write_messages
// writes. This program knows how entries add up; all names and types come from the description.
import { execFileSync } from 'node:child_process';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join, resolve } from 'node:path';
import { argv, exit } from 'node:process';

const [routermsg, project, folder] = argv.slice(2).map(name => resolve(name));
const require = createRequire(import.meta.url);
const compiler = require('kaitai-struct-compiler');
const { KaitaiStream } = require('kaitai-struct');
const description = require('js-yaml').load(readFileSync(join(project, 'schema/router.ksy'), 'utf8'));

writeFileSync(join(folder, 'Router.js'), (await compiler.compile('javascript', description, null, false))['Router.js']);
const { Router } = createRequire(join(folder, 'x'))('./Router.js');

// JavaScript knows whole numbers up to 2^53 only.
const inexact = ['port_records.json: Of a port in the binary form only the low 32 bits count'];

let failures = 0;
function fail(text) {
    if (++failures <= 5)
        console.error(text.slice(0, 2000));
}

const nameOf = (list, number) => description.enums[list][number >>> 0]?.['-orig-id'];

// What entries add up to, as docs/binary-form.md says.
const numberPattern = /^\s*[-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?\s*$/i;
function decimalOf(text) {
    const unusual = { nan: 'NaN', inf: 'Infinity', '-inf': '-Infinity' };
    return unusual[text] ?? (numberPattern.test(text ?? '') ? Number(text) : 0);
}

function valueOf(payload, known) {
    switch (payload.constructor.name) {
    case 'Number':
    case 'Truth':
        return payload.value;
    case 'Text':
        return payload.value ?? null;
    case 'Decimal':
        return decimalOf(payload.text.value);
    case 'MessageType':
        return nameOf('message_type_name', payload.value) ?? null;
    case 'MasterState':
        return nameOf('master_state_name', payload.value) ?? null;
    case 'FragmentList':
        return [...(known ?? []), ...payload.items.map(item => recordOf(item.content))];
    default:
        return recordOf(payload, known);
    }
}

// Payloads of a fragment that are not selected are kept beside it: one of them may be selected again.
const unselected = Symbol('unselected');
function recordOf(content, known = {}) {
    const isChoice = content.constructor.name === 'Fragment';
    for (const { tag, payload } of content.entries) {
        if (payload instanceof Uint8Array)
            continue;
        // A list of nothing appends nothing.
        if (payload.count === 0)
            continue;
        const name = nameOf('tag', tag);
        if (!isChoice) {
            known[name] = valueOf(payload, known[name]);
            continue;
        }
        const payloads = known[unselected] ?? {};
        payloads[name] = valueOf(payload, payloads[name]);
        known = { [name]: payloads[name], [unselected]: payloads };
    }
    return known;
}

function rootOf(frame) {
    const { content } = frame;
    if (content.constructor.name !== 'Pieces')
        return { [nameOf('record_id', frame.root)]: recordOf(content) };
    // Reading what the pieces give together is left to programs. A single piece is read by the description itself.
    const inflated = Buffer.concat(content.pieces.map(piece => piece.inflated.bytes));
    const frames = framesIn(inflated);
    if (frames.length !== 1 || frames[0].content.pieces)
        throw new Error('A compressed form does not hold one plain form.');
    const root = rootOf(frames[0]);
    if (content.content && !same(rootOf(content.content), root))
        throw new Error('`content` differs from the bytes of the piece.');
    return root;
}

const streamOf = bytes => new KaitaiStream(bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.length));
const framesIn = bytes => new Router(streamOf(bytes)).frames;

// Frames without id, or in the other byte order.
function otherFramesIn(bytes, className, isLittleEndian) {
    const id = Object.keys(description.enums.record_id)
                   .find(number => description.enums.record_id[number]['-orig-id'] === className) ?? 0;
    const stream = streamOf(bytes);
    const frames = [];
    while (!stream.isEof()) {
        const frame = new Router.Frame(stream, null, null, Number(id), isLittleEndian);
        frames.push(frame);
    }
    return frames;
}

function same(a, b) {
    if (typeof a !== 'object' || typeof b !== 'object' || a === null || b === null)
        return Object.is(a, b);
    const keys = Object.keys(a);
    return Array.isArray(a) === Array.isArray(b) && keys.length === Object.keys(b).length &&
        keys.every(key => Object.hasOwn(b, key) && same(a[key], b[key]));
}

function compare(title, frames, lines) {
    if (frames.length !== lines.length)
        fail(`${title}: the description sees ${frames.length} messages, routermsg ${lines.length}.`);
    frames.forEach((frame, i) => {
        const root = rootOf(frame);
        if (lines[i] && !same(root, JSON.parse(lines[i])))
            fail(`${title}, message ${i + 1}: the description sees\n  ${JSON.stringify(root)}\n` +
                `and routermsg\n  ${lines[i]}`);
    });
    return frames.length;
}

// The JSON of all messages in a file.
function linesOf(file, ...options) {
    const json = execFileSync(routermsg,
        ['convert', '-q', '--invalid', '--accept-loss', '--to', 'jsonl', ...options, file, '-'],
        { encoding: 'utf8', maxBuffer: 1 << 28, stdio: ['ignore', 'pipe', 'ignore'] });
    return json.split('\n').filter(line => line);
}

function expectRefusal(title, read) {
    try {
        fail(`${title}: the description takes this for ${JSON.stringify(read().map(rootOf))}`);
    } catch {
        ++refused;
    }
}

const filesIn = name => readdirSync(join(folder, name)).sort().map(file => join(folder, name, file));
let good = 0;

for (const file of ['usual.rec', 'unusual.rec'].map(name => join(folder, name)))
    good += compare(file, framesIn(readFileSync(file)), linesOf(file));
const little = join(folder, 'little.rec');
good += compare(little, otherFramesIn(readFileSync(little), '', true), linesOf(little, '--byte-order', 'little'));
for (const [name, order] of [['bare', 'big'], ['bare-little', 'little']])
    for (const file of filesIn(name)) {
        const className = file.match(/(\w+)\.rec$/)[1];
        const frames = otherFramesIn(readFileSync(file), className, order === 'little');
        good += compare(file, frames, linesOf(file, '--no-id', '--record', className, '--byte-order', order));
    }

// The example documents, in both binary forms.
for (const form of ['binary', 'compressed']) {
    const documents = join(project, 'examples/documents');
    const binary = join(folder, `examples-${form}`);
    const words = ['convert', '-q', '--invalid', '--accept-loss', '--to', form, documents, binary];
    execFileSync(routermsg, words, { stdio: 'ignore' });
    for (const file of filesIn(`examples-${form}`))
        good += compare(file, framesIn(readFileSync(file)), linesOf(file));
}

// The conformance cases: input that is read, and what is written. Their frames have no id.
const conformance = join(project, 'tests/conformance');
const ofClass = new Map();
let refused = 0;
const frameOf = hex => {
    const bytes = Buffer.from(hex.replaceAll(' ', ''), 'hex');
    return bytes.subarray(0, Math.max(4, 4 + bytes.readInt32BE(0)));
};
for (const file of readdirSync(conformance).filter(name => name.endsWith('.json')))
    for (const test of JSON.parse(readFileSync(join(conformance, file), 'utf8'))) {
        const title = `${file}: ${test.name}`;
        if (test.outcome.exception === 'BinaryParsingException') {
            expectRefusal(title, () => otherFramesIn(frameOf(test.input.hex), test.record, false));
            continue;
        }
        const forms = ofClass.get(test.record) ?? new Map();
        ofClass.set(test.record, forms);
        if (test.outcome === 'ok' && test.input.hex && !inexact.includes(title))
            forms.set(`${title} (input)`, frameOf(test.input.hex));
        if (typeof test.hex === 'string' && test.hex)
            forms.set(`${title} (written)`, frameOf(test.hex));
    }
for (const [className, forms] of ofClass) {
    const file = join(folder, `conformance-${className}.rec`);
    writeFileSync(file, Buffer.concat([...forms.values()]));
    const lines = linesOf(file, '--no-id', '--record', className);
    if (lines.length !== forms.size)
        fail(`${file}: routermsg reads ${lines.length} of ${forms.size} messages.`);
    for (const [title, bytes] of forms)
        good += compare(title, otherFramesIn(bytes, className, false), lines.splice(0, 1));
}

// Wrong lengths.
for (const file of filesIn('broken'))
    expectRefusal(file, () => framesIn(readFileSync(file)));

if (failures > 0) {
    console.error(`${failures} differences. If routermsg is right, edit schema/router.ksy.`);
    exit(1);
}
if (good < 1000 || refused < 150) {
    console.error(`Only ${good} good messages and ${refused} broken ones were there to compare.`);
    exit(1);
}
console.log(`schema/router.ksy: ${good} messages are as routermsg shows them, and ${refused} broken ones are refused.`);
