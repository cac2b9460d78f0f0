'use strict';

// What holds for the files of the page that ends a login, as they lie on disk.

const acorn = require('acorn');
const assert = require('node:assert');
const crypto = require('node:crypto');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');

const root = path.resolve(__dirname, '../../assets/oauth');
const text = (file) => fs.readFileSync(path.join(root, file), 'utf8');
const page = text('index.html');
const policy = /http-equiv="Content-Security-Policy" content="([^"]+)"/.exec(page)[1];

test('the page is these three files', () => {
    assert.deepStrictEqual(fs.readdirSync(root).sort(), ['index.html', 'script.js', 'style.css']);
    for (const file of ['script.js', 'style.css'])
        assert.ok(page.includes(`"/${file}"`), file);
});

test('the script is ES5 and ASCII, since the server names no character set', () => {
    acorn.parse(text('script.js'), {ecmaVersion: 5, sourceType: 'script'});
    assert.match(text('script.js'), /^[\x00-\x7f]*$/);
    assert.match(text('style.css'), /^[\x00-\x7f]*$/);
});

test('the page says that it is UTF-8, first of all', () => {
    assert.ok(page.indexOf('<meta charset="utf-8">') < 100);
});

test('nothing is loaded from elsewhere and no text becomes HTML', () => {
    for (const file of fs.readdirSync(root)) {
        assert.doesNotMatch(text(file), /https?:|["'(]\/\//i, file);
        assert.doesNotMatch(text(file), /innerHTML|outerHTML|insertAdjacentHTML|document\.write|eval/);
    }
});

test('the content policy admits the page alone, and its own style by its hash', () => {
    assert.match(policy, /default-src 'none'/);
    assert.doesNotMatch(policy, /unsafe|\*|https?:/);
    assert.doesNotMatch(page, / (style|on[a-z]+)=/);
    const style = /<style>([\s\S]*?)<\/style>/.exec(page)[1];
    const hash = crypto.createHash('sha256').update(style).digest('base64');
    assert.ok(policy.includes(`'sha256-${hash}'`), `the style's hash is ${hash}`);
});

test('the page has one text of its own', () => {
    const body = page.replace(/[\s\S]*<body>/, '');
    assert.strictEqual(body.replace(/<[^>]*>/g, ' ').trim(),
        'Sie können diese Seite jetzt schließen und zum Programm zurückkehren.');
});
