'use strict';

// What holds for the page's files as they lie on disk.

const acorn = require('acorn');
const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');

const root = path.resolve(__dirname, '../../assets/qrupload');

function filesBelow(folder) {
    return fs.readdirSync(folder, {withFileTypes: true}).flatMap((entry) => {
        const name = path.join(folder, entry.name);
        return entry.isDirectory() ? filesBelow(name) : [path.relative(root, name)];
    });
}

const files = filesBelow(root);
const text = (file) => fs.readFileSync(path.join(root, file), 'utf8');
const ofKind = (...endings) => files.filter((file) => endings.includes(path.extname(file)));
const references = (content, pattern) => [...content.matchAll(pattern)].map((match) => match[1]);

// The only address that may appear: the name of the SVG language, which nobody fetches.
const svgNamespace = 'http://www.w3.org/2000/svg';

test('all files together stay below 60 KB', () => {
    const total = files.reduce((sum, file) => sum + fs.statSync(path.join(root, file)).size, 0);
    assert.ok(total > 10000, `only ${total} bytes: is ${root} the page?`);
    assert.ok(total < 60000, `${total} bytes`);
});

test('scripts are ES5', () => {
    const scripts = ofKind('.js');
    assert.ok(scripts.length > 0);
    for (const file of scripts)
        acorn.parse(text(file), {ecmaVersion: 5, sourceType: 'script'});
});

test('scripts are ASCII, since the server names no character set', () => {
    for (const file of ofKind('.js'))
        assert.match(text(file), /^[\x00-\x7f]*$/, file);
});

test('scripts use nothing that needs a secure context or a newer browser unasked', () => {
    const forbidden = /\b(fetch|Promise|Symbol|async|crypto|serviceWorker|caches|clipboard|eval|innerHTML|outerHTML|insertAdjacentHTML|document\.write)\b/;
    for (const file of ofKind('.js'))
        assert.doesNotMatch(text(file).replace(/\/\/.*$/gm, ''), forbidden, file);
});

test('nothing is loaded from elsewhere', () => {
    for (const file of ofKind('.html', '.css', '.js', '.svg')) {
        const content = text(file).split(svgNamespace).join('');
        assert.doesNotMatch(content, /https?:|["'(]\/\//i, file);
    }
});

test('every file that the page names exists, and every file is named', () => {
    const named = new Set(['index.html']);
    references(text('index.html'), /(?:src|href)="\/([^"]+)"/g).forEach((name) => named.add(name));
    for (const file of ofKind('.css')) {
        references(text(file), /url\("?([^")]+)"?\)/g)
            .forEach((name) => named.add(path.join(path.dirname(file), name)));
    }
    for (const file of ofKind('.js'))
        references(text(file), /'\/((?:media|img)\/[^']+)'/g).forEach((name) => named.add(name));
    assert.deepStrictEqual([...named].sort(), [...files].sort());
});

test('a strict content policy stands in the page', () => {
    const policy = /http-equiv="Content-Security-Policy" content="([^"]+)"/.exec(text('index.html'))[1];
    assert.match(policy, /default-src 'none'/);
    assert.doesNotMatch(policy, /unsafe|\*|https?:/);
    assert.doesNotMatch(text('index.html'), / (style|on[a-z]+)=/);
});

test('the page brings no text of its own but the line for browsers without scripts', () => {
    const body = text('index.html').replace(/[\s\S]*<body>/, '').replace(/<!--[\s\S]*?-->/g, '');
    const words = body.replace(/<[^>]*>/g, ' ').trim();
    assert.strictEqual(words, 'Bitte schalten Sie JavaScript ein, um Fotos zu übertragen.');
    assert.doesNotMatch(text('index.html'), /(aria-label|title|alt|placeholder)="[^"]/);
});
