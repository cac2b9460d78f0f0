'use strict';

// The names that the page gives to photos.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const vm = require('node:vm');

const script = fs.readFileSync(path.resolve(__dirname, '../../assets/qrupload/js/names.js'), 'utf8');

class Storage {
    constructor() { this.items = new Map(); }
    getItem(key) { return this.items.has(key) ? this.items.get(key) : null; }
    setItem(key, value) { this.items.set(key, String(value)); }
}

// A page's worth of names; what it remembers lies in theStorage.
function visit(theStorage = new Storage(), theDate = Date) {
    const context = vm.createContext({window: {}, Date: theDate});
    vm.runInContext(script, context);
    const names = new context.VXUpload.Names(theStorage);
    return (...files) => [...names.claim(files.map((file) =>
        typeof file === 'string' ? {name: file, type: 'image/jpeg'} : file))];
}

const cases = [
    ['a plain name stays', 'IMG_0042.JPG', 'IMG_0042.JPG'],
    ['umlauts and blanks stay', 'Größe über alles.jpg', 'Größe über alles.jpg'],
    ['emoji stay', '😀 👨‍👩‍👧.png', '😀 👨‍👩‍👧.png'],
    ['characters of queries stay', '100%25 a+b&c=d?e#f.jpg', '100%25 a+b&c=d?e#f.jpg'],
    ['decomposed umlauts are composed', 'A\u0308pfel.jpg', '\u00c4pfel.jpg'],
    ['a lone surrogate is replaced', 'a\ud83db\ude00c.jpg', 'a_b_c.jpg'],
    ['control characters are replaced', 'a\u0000b\nc\u007fd\u0085e.jpg', 'a_b_c_d_e.jpg'],
    ['marks that turn the reading direction are replaced', 'foto\u202egpj.exe.jpg', 'foto_gpj.exe.jpg'],
    ['slashes are replaced', '../../etc/passwd.jpg', '___.._etc_passwd.jpg'],
    ['backslashes are replaced', '..\\x\\y.jpg', '___x_y.jpg'],
    ['leading dots are replaced', '.hidden.jpg', '_hidden.jpg'],
    ['a leading colon is replaced', ':foto.jpg', '_foto.jpg'],
    ['blanks at the ends go', '  foto.jpg \t', 'foto.jpg'],
    ['only dots', '...', '___.jpg'],
    ['a dot at the end is no extension', 'foto.', 'foto.jpg'],
    ['an empty name', '', 'Foto.jpg'],
    ['only the last extension counts', 'a.tar.gz', 'a.tar.gz'],
    ['text behind a dot is no extension', 'Am 3. Tag', 'Am 3. Tag.jpg'],
    ['what is no name at all', {type: 'image/jpeg'}, 'Foto.jpg'],
    ['extension from the type: png', {name: 'foto', type: 'image/png'}, 'foto.png'],
    ['extension from the type: heic', {name: 'foto', type: 'image/heic'}, 'foto.heic'],
    ['extension from the type: svg', {name: 'foto', type: 'image/svg+xml'}, 'foto.svg'],
    ['extension from no type', {name: 'foto', type: ''}, 'foto.jpg'],
    ['a type with a path in it', {name: 'foto', type: 'image/../x'}, 'foto.jpg'],
];

for (const [title, given, expected] of cases)
    test(title, () => assert.deepStrictEqual(visit()(given), [expected]));

test('a name is shortened to 200 bytes and keeps its extension', () => {
    const [name] = visit()('ü'.repeat(127) + '.jpeg');
    assert.strictEqual(name, 'ü'.repeat(97) + '.jpeg');
    assert.ok(Buffer.byteLength(name) <= 200);
});

test('shortening splits no pair of surrogates', () => {
    const [name] = visit()('a' + '😀'.repeat(60) + '.jpg');
    assert.strictEqual(name, 'a' + '😀'.repeat(48) + '.jpg');
});

test('a number still fits into 200 bytes', () => {
    const long = 'x'.repeat(250) + '.jpg';
    const [, second] = visit()(long, long);
    assert.strictEqual(second, 'x'.repeat(192) + ' (2).jpg');
    assert.strictEqual(second.length, 200);
});

test('equal names are numbered, the first stays plain', () => {
    assert.deepStrictEqual(visit()('image.jpg', 'image.jpg', 'image.jpg'),
        ['image.jpg', 'image (2).jpg', 'image (3).jpg']);
});

test('names that differ in case only are equal', () => {
    assert.deepStrictEqual(visit()('image.jpg', 'IMAGE.JPG', 'Image.jpg'),
        ['image.jpg', 'IMAGE (2).JPG', 'Image (3).jpg']);
});

test('names that become equal are numbered', () => {
    assert.deepStrictEqual(visit()('a/b.jpg', 'a\\b.jpg', 'a_b.jpg'),
        ['a_b.jpg', 'a_b (2).jpg', 'a_b (3).jpg']);
});

test('a photo that bears a number already is not replaced', () => {
    assert.deepStrictEqual(visit()('a (2).jpg', 'a.jpg', 'a.jpg'),
        ['a (2).jpg', 'a.jpg', 'a (3).jpg']);
});

test('names of objects are names like others', () => {
    assert.deepStrictEqual(visit()('__proto__.jpg', 'constructor.jpg', '__proto__.jpg'),
        ['__proto__.jpg', 'constructor.jpg', '__proto__ (2).jpg']);
});

test('a reload and a second tab remember the names', () => {
    const storage = new Storage();
    const first = visit(storage);
    const second = visit(storage);
    first('image.jpg');
    assert.deepStrictEqual(second('image.jpg'), ['image (2).jpg']);
    assert.deepStrictEqual(first('image.jpg'), ['image (3).jpg']);
});

test('after two days the names are forgotten', () => {
    const storage = new Storage();
    visit(storage)('image.jpg');
    class Later extends Date {
        getTime() { return super.getTime() + 49 * 60 * 60 * 1000; }
    }
    assert.deepStrictEqual(visit(storage, Later)('image.jpg'), ['image.jpg']);
});

test('without storage the names of this visit still differ', () => {
    const refusing = {getItem() { throw new Error('no'); }, setItem() { throw new Error('no'); }};
    for (const storage of [null, refusing])
        assert.deepStrictEqual(visit(storage)('a.jpg', 'a.jpg'), ['a.jpg', 'a (2).jpg']);
});

test('spoilt storage is ignored', () => {
    const storage = new Storage();
    storage.setItem('vx-used-names', '{"time":');
    assert.deepStrictEqual(visit(storage)('a.jpg'), ['a.jpg']);
});
