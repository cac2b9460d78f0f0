'use strict';

// The page on a phone, against the real upload service on another machine's address.

const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const {after, afterEach, before, beforeEach, test} = require('node:test');

const {BadPeer} = require('./support/badpeer');
const {Computer} = require('./support/computer');
const {Phone} = require('./support/phone');
const {digest, photo} = require('./support/photos');

const greeting = 'Wählen Sie Fotos von Ihrem Mobiltelefon';
const progressText = 'Fotos werden übertragen';
const successText = 'Die Fotos wurden erfolgreich übertragen';
const noConnectLines = ['Verbindung konnte nicht hergestellt werden.', 'Bitte scannen Sie erneut den QR-Code.'];
const buttonText = 'Fotos auswählen';
const title = 'Norvo – Fotos übertragen';
const noTextsLines = ['Der Computer antwortet nicht.', 'Bitte scannen Sie den QR-Code erneut.'];

const output = path.join(process.env.VX_BINARY_DIR || path.resolve(__dirname, '../../build/dev'),
    'tests-output/browser');
const megabyte = 1000 * 1000;

let phone;
let otherPhone;
let computer;
let folder;

before(async () => {
    fs.mkdirSync(output, {recursive: true});
    phone = await Phone.switchOn(1);
    otherPhone = await Phone.switchOn(2);
});

after(async () => {
    await phone?.close();
    await otherPhone?.close();
});

beforeEach(async () => {
    folder = fs.mkdtempSync(path.join(os.tmpdir(), 'photos-'));
    computer = await Computer.start(path.join(folder, 'target'));
    await phone.newProfile();
    await otherPhone.newProfile();
});

afterEach(async () => {
    phone.restoreLink();
    phone.mendPath();
    await computer.stop();
    fs.rmSync(folder, {recursive: true, force: true});
    phone.assertNoComplaints();
    otherPhone.assertNoComplaints();
});

function photos(count, size = 300000) {
    return Array.from({length: count}, (_, index) => photo(folder, `IMG_${1001 + index}.JPG`, size));
}

const screenshot = (page, name) => page.screenshot({path: path.join(output, `${name}.png`)});
const statusLines = (page) => page.locator('#status div').allTextContents();
const admitted = (page) => page.waitForSelector('#pick:enabled');
const mood = (page, name) => page.waitForSelector(`#panel[data-mood="${name}"]`);
const states = (page) => page.locator('#list li').evaluateAll(
    (rows) => rows.map((row) => row.getAttribute('data-state')));

// Waits until at least so many rows are in that state.
function rows(page, state, count) {
    return page.waitForFunction(([wanted, least]) =>
        document.querySelectorAll(`li[data-state="${wanted}"]`).length >= least, [state, count]);
}

function assertStored(file, storedName) {
    assert.strictEqual(digest(computer.stored(storedName)), digest(file), storedName);
}

function assertAllStored(files) {
    for (const file of files)
        assertStored(file, path.basename(file).replace(/\.JPG$/, '.qrul.JPG'));
    assert.strictEqual(computer.storedNames.length, files.length);
}

test('the first visit with the token is admitted and shows the texts', async () => {
    const url = computer.url;
    const page = await phone.open(url);
    await admitted(page);

    assert.strictEqual(await page.title(), title);
    assert.strictEqual(await page.textContent('#greeting'), greeting);
    assert.strictEqual(await page.textContent('#pick'), buttonText);
    assert.deepStrictEqual(await statusLines(page), []);
    assert.strictEqual(await page.evaluate(() => window.isSecureContext), false);
    const cookies = await phone.context.cookies(new URL('/upload', url).href);
    assert.deepStrictEqual(cookies.map(({name, value}) => [name, value]),
        [['sid', new URL(url).search.slice(1)]]);
    assert.notStrictEqual(computer.url, url); // the dialog shows a fresh code
    await screenshot(page, 'first-visit');
});

test('nothing is asked of anybody but the service, and nothing in vain', async () => {
    const {origin} = new URL(computer.url);
    const page = await phone.context.newPage();
    const answers = [];
    page.on('response', (response) => answers.push([response.url(), response.status()]));
    await page.goto(computer.url);
    await admitted(page);
    await page.waitForFunction(() => document.getElementById('awake').src);

    assert.ok(answers.length > 10);
    for (const [url, status] of answers) {
        assert.ok(url.startsWith(`${origin}/`) || url.startsWith(`blob:${origin}/`), url);
        assert.strictEqual(status, url.startsWith('blob:') ? 206 : 200, url);
    }
    assert.deepStrictEqual(computer.named('doLog').filter(({text}) => text.startsWith('!!!')), []);
});

test('a reload is admitted by the cookie', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    await page.goto(new URL('/', computer.url).href); // without the token
    await admitted(page);
    const files = photos(1);
    await Phone.pick(page, files);
    await mood(page, 'done');
    assertAllStored(files);
});

test('a second phone with the used token is not admitted', async () => {
    const url = computer.url;
    await admitted(await phone.open(url));
    const page = await otherPhone.open(url);
    await mood(page, 'lost');

    assert.deepStrictEqual(await statusLines(page), noConnectLines);
    assert.strictEqual(await page.isDisabled('#pick'), true);
    assert.strictEqual(await page.textContent('#greeting'), greeting); // the texts come all the same
    const status = await page.evaluate(() => new Promise((resolve) => {
        const request = new XMLHttpRequest();
        request.onload = () => resolve(request.status);
        request.open('POST', '/upload?file=x.jpg');
        request.send('x');
    }));
    assert.strictEqual(status, 403);
    assert.deepStrictEqual(computer.storedNames, []);
    await screenshot(page, 'used-token');
});

test('a second phone with the fresh token sends beside the first', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    const otherPage = await otherPhone.open(computer.url);
    await admitted(otherPage);
    const files = photos(6);
    await Promise.all([Phone.pick(page, files.slice(0, 3)), Phone.pick(otherPage, files.slice(3))]);
    await Promise.all([mood(page, 'done'), mood(otherPage, 'done')]);
    assertAllStored(files);
});

// [name on the phone, bytes, stored name]
const mixed = [
    ['IMG_0042.JPG', 4 * megabyte, 'IMG_0042.qrul.JPG'],
    ['image.jpg', 200000, 'image.qrul.jpg'],
    ['image.jpg', 210000, 'image (2).qrul.jpg'],
    ['image.jpg', 220000, 'image (3).qrul.jpg'],
    ['Image.JPG', 230000, 'Image (4).qrul.JPG'],
    ['Größe äöü ß.jpg', 300000, 'Größe äöü ß.qrul.jpg'],
    ['A\u0308pfel.jpg', 300000, '\u00c4pfel.qrul.jpg'],
    ['\u00c4pfel.jpg', 310000, '\u00c4pfel (2).qrul.jpg'],
    ['😀 Urlaub 👨‍👩‍👧.png', 500000, '😀 Urlaub 👨‍👩‍👧.qrul.png'],
    ['leer.jpg', 0, 'leer.qrul.jpg'],
    ['groß.jpg', 60 * megabyte, 'groß.qrul.jpg'],
    ['100%25 a+b&c=d?e#f;g.jpg', 100000, '100%25 a+b&c=d?e#f;g.qrul.jpg'],
    ['a.tar.gz', 100000, 'a.tar.qrul.gz'],
    ['.versteckt.jpg', 100000, '_versteckt.qrul.jpg'],
    [':doppelpunkt.jpg', 100000, '_doppelpunkt.qrul.jpg'],
    ['zurück\\strich.jpg', 100000, 'zurück_strich.qrul.jpg'],
    ['zwei\nZeilen.jpg', 100000, 'zwei_Zeilen.qrul.jpg'],
    ['ohne Endung', 100000, 'ohne Endung.qrul.jpg'],
    ['日本語.heic', 3 * megabyte, '日本語.qrul.heic'],
    ['صورة.jpg', 100000, 'صورة.qrul.jpg'],
    ['"quoted" \'name\'.jpg', 100000, '"quoted" \'name\'.qrul.jpg'],
    ['ü'.repeat(120) + '.jpg', 100000, 'ü'.repeat(98) + '.qrul.jpg'],
    ['<b>fett.jpg', 100000, '<b>fett.qrul.jpg'],
];

function mixedPhotos() {
    const rest = Array.from({length: 40 - mixed.length}, (_, index) =>
        [`DSC_${index}.jpg`, (index + 1) * 500000, `DSC_${index}.qrul.jpg`]);
    return [...mixed, ...rest];
}

test('forty photos of all kinds arrive byte by byte', async () => {
    const wanted = mixedPhotos();
    const files = wanted.map(([name, size]) => photo(folder, name, size));
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.pick(page, files);
    await rows(page, 'done', 12);
    await screenshot(page, 'forty-busy');
    await mood(page, 'done');

    assert.strictEqual(files.length, 40);
    assert.deepStrictEqual(computer.storedNames, wanted.map(([, , stored]) => stored).sort());
    wanted.forEach(([, , stored], index) => assertStored(files[index], stored));
    assert.strictEqual(computer.named('filesUploaded').length, 40);
    assert.deepStrictEqual(await statusLines(page), [`${successText} (40)`]);
    assert.ok((await states(page)).every((state) => state === 'done'));
    assert.strictEqual(await page.isEnabled('#pick'), true);
    await screenshot(page, 'forty-done');
});

test('progress is shown per photo and in all, and full only when stored', async () => {
    const files = photos(3, 2 * megabyte);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte);
    await Phone.pick(page, files);
    await page.waitForFunction(() => {
        const bar = document.querySelector('li[data-state="sending"] progress');
        return bar && bar.value >= 20;
    });
    const total = await page.evaluate(() => ({value: document.getElementById('total').value,
        max: document.getElementById('total').max}));

    assert.ok(total.value > 0 && total.value < total.max, JSON.stringify(total));
    assert.deepStrictEqual(await statusLines(page), [progressText]);
    assert.match(await page.textContent('#figures'), /^\d \/ 3\d,\d \/ 6,0 MB$/);
    // Whatever a bar shows on its way, 100 comes with the answer alone.
    const early = await page.evaluate(() => new Promise((resolve) => {
        let highest = 0;
        (function look() {
            document.querySelectorAll('li[data-state="sending"] progress')
                .forEach((bar) => { highest = Math.max(highest, bar.value); });
            if (document.querySelector('#panel[data-mood="done"]'))
                resolve(highest);
            else
                requestAnimationFrame(look);
        }());
    }));
    assert.ok(early >= 50 && early <= 99, String(early));
    assertAllStored(files);
});

// The most uploads that were on their way at the same time, by the browser's own clock.
function mostAtOnce(page) {
    return page.evaluate(() => {
        const uploads = performance.getEntriesByType('resource').filter(({name}) => /\/upload\?/.test(name));
        return Math.max(...uploads.map(({startTime: moment}) => uploads.filter((other) =>
            other.startTime <= moment && other.responseEnd > moment).length));
    });
}

for (const [kind, sizes, most] of [
    ['small photos travel in pairs', [0.3, 0.3, 0.3, 0.3, 0.3, 0.3], 2],
    ['large photos travel alone', [9, 9, 9], 1],
    ['a small photo does not travel beside a large one', [9, 0.3, 9, 0.3], 1],
]) {
    test(kind, async () => {
        const files = sizes.map((size, index) => photo(folder, `${index}.JPG`, size * megabyte));
        const page = await phone.open(computer.url);
        await admitted(page);
        await Phone.pick(page, files);
        await mood(page, 'done');
        assert.strictEqual(await mostAtOnce(page), most);
        assertAllStored(files);
    });
}

test('the texts are asked for before and after a batch', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    const requests = [];
    page.on('request', (request) => {
        const {pathname} = new URL(request.url());
        if (/json|upload/.test(pathname))
            requests.push(`${request.method()} ${pathname}`);
    });
    await Phone.pick(page, photos(3));
    await mood(page, 'done');
    while (requests.length < 5)
        await page.waitForEvent('request');
    assert.deepStrictEqual(requests, ['GET /translations.json', 'POST /upload', 'POST /upload',
        'POST /upload', 'GET /translations.json']);
});

test('more photos follow without a new scan, and nothing is replaced', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    const first = photo(folder, 'image.jpg', 100000);
    const second = photo(folder, 'image.jpg', 200000);
    const third = photo(folder, 'image.jpg', 300000);
    await Phone.pick(page, [first]);
    await mood(page, 'done');
    // Emptied, or the browser would not tell of the same photo again.
    assert.strictEqual(await page.evaluate(() => document.getElementById('file').files.length), 0);
    await Phone.pick(page, [second]);
    await rows(page, 'done', 2);
    await mood(page, 'done');
    assert.deepStrictEqual(await statusLines(page), [`${successText} (1)`]);
    await page.reload();
    await admitted(page);
    await Phone.pick(page, [third]);
    await mood(page, 'done');

    assert.deepStrictEqual(computer.storedNames,
        ['image (2).qrul.jpg', 'image (3).qrul.jpg', 'image.qrul.jpg']);
    assertStored(first, 'image.qrul.jpg');
    assertStored(second, 'image (2).qrul.jpg');
    assertStored(third, 'image (3).qrul.jpg');
});

test('photos picked during a transfer join it', async () => {
    const files = photos(8);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte / 4);
    await Phone.pick(page, files.slice(0, 4));
    await rows(page, 'done', 1);
    await Phone.pick(page, files.slice(4));
    await mood(page, 'done');
    assert.deepStrictEqual(await statusLines(page), [`${successText} (8)`]);
    assertAllStored(files);
});

test('a link cut in mid-batch is told, and the batch goes on when it is back', async () => {
    const files = photos(12);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte / 2);
    await Phone.pick(page, files);
    await rows(page, 'done', 3);
    const failedPictures = [];
    page.on('requestfailed', (request) => {
        if (/\/img\//.test(request.url()))
            failedPictures.push(request.url());
    });
    phone.cutLink();
    await mood(page, 'lost');

    assert.deepStrictEqual(await statusLines(page), noConnectLines);
    assert.strictEqual((await states(page)).length, 12);
    await rows(page, 'failed', 1);
    assert.strictEqual(await page.locator('li[data-state="failed"] .retry').first().isVisible(), true);
    assert.deepStrictEqual(failedPictures, []); // they came with the page
    await screenshot(page, 'link-cut');
    phone.restoreLink();
    await mood(page, 'done');
    assert.deepStrictEqual(await statusLines(page), [`${successText} (12)`]);
    assertAllStored(files);
});

test('a short silence of the network goes unnoticed', async () => {
    const files = photos(6, megabyte);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte);
    await Phone.pick(page, files);
    await rows(page, 'done', 2);
    const moods = page.evaluate(() => new Promise((resolve) => {
        const seen = new Set();
        (function look() {
            const name = document.getElementById('panel').getAttribute('data-mood');
            seen.add(name);
            if (name === 'done')
                resolve([...seen]);
            else
                requestAnimationFrame(look);
        }());
    }));
    phone.breakPath();
    // Two seconds of the browser's own clock.
    await page.evaluate(() => new Promise((resolve) => setTimeout(resolve, 2000)));
    phone.mendPath();
    assert.deepStrictEqual(await moods, ['busy', 'done']);
    assertAllStored(files);
});

test('a server that comes back on another port leaves the list and the text', async () => {
    const files = photos(10);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte / 2);
    await Phone.pick(page, files);
    await rows(page, 'done', 3);
    const oldPort = new URL(computer.url).port;
    await computer.stop();
    computer = await Computer.start(path.join(folder, 'target'));
    assert.notStrictEqual(new URL(computer.url).port, oldPort);
    await mood(page, 'lost');

    assert.deepStrictEqual(await statusLines(page), noConnectLines);
    assert.strictEqual((await states(page)).length, 10);
    assert.strictEqual(await page.isDisabled('#pick'), true);
    const done = (await states(page)).filter((state) => state === 'done').length;
    assert.ok(done >= 3 && done < 10, String(done));
    await screenshot(page, 'other-port');
});

test('a refusal in mid-batch keeps the list, and a new scan goes on with it', async () => {
    const files = photos(10);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte / 2);
    await Phone.pick(page, files);
    await rows(page, 'done', 3);
    await phone.context.clearCookies();
    await mood(page, 'lost');

    assert.deepStrictEqual(await statusLines(page), noConnectLines);
    assert.strictEqual((await states(page)).length, 10);
    await computer.until(({text}) => text === '!!! 403: Forbidden');
    await screenshot(page, 'refused');
    await admitted(await phone.open(computer.url)); // the new scan opens a tab of its own
    await mood(page, 'done');
    assertAllStored(files);
});

test('a phone that gets another address in mid-batch is refused until it scans again', async () => {
    const files = photos(10);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte / 2);
    await Phone.pick(page, files);
    await rows(page, 'done', 3);
    phone.ip('address', 'del', '10.77.0.11/24', 'dev', 'eth0');
    phone.ip('address', 'add', '10.77.0.51/24', 'dev', 'eth0');
    try {
        await mood(page, 'lost');
        assert.deepStrictEqual(await statusLines(page), noConnectLines);
        await admitted(await phone.open(computer.url));
        await mood(page, 'done');
        assertAllStored(files);
    } finally {
        phone.ip('address', 'flush', 'dev', 'eth0');
        phone.ip('address', 'add', '10.77.0.11/24', 'dev', 'eth0');
    }
});

test('a photo that vanishes from the phone fails alone and can be tried again', async () => {
    const files = photos(5);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte);
    const lost = files[3];
    const content = fs.readFileSync(lost);
    await Phone.pick(page, files);
    const {mtime, atime} = fs.statSync(lost);
    fs.rmSync(lost);
    await mood(page, 'failed');

    assert.deepStrictEqual(await states(page), ['done', 'done', 'done', 'failed', 'done']);
    assert.deepStrictEqual(await statusLines(page), ['✓\u00a04\u2003⚠\ufe0e\u00a01']);
    await screenshot(page, 'one-failed');
    fs.writeFileSync(lost, content);
    fs.utimesSync(lost, atime, mtime);
    await page.tap('li[data-state="failed"] .retry');
    await mood(page, 'done');
    assertAllStored(files);
});

test('stop lets the photo on its way arrive and keeps the rest for later', async () => {
    const files = photos(12);
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte);
    await Phone.pick(page, files);
    await rows(page, 'done', 1);
    await page.tap('#stop');
    await mood(page, 'stopped');
    const list = await states(page);
    const done = list.filter((state) => state === 'done').length;

    assert.strictEqual(done + list.filter((state) => state === 'stopped').length, 12);
    assert.strictEqual(computer.storedNames.length, done);
    await screenshot(page, 'stopped');
    await page.tap('#again');
    await mood(page, 'done');
    assertAllStored(files);
});

test('leaving in mid-batch is questioned, afterwards it is not', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte);
    await Phone.pick(page, photos(3));
    await mood(page, 'busy');
    const question = page.waitForEvent('dialog');
    const closing = page.close({runBeforeUnload: true});
    const dialog = await question;
    assert.strictEqual(dialog.type(), 'beforeunload');
    await dialog.dismiss();
    await closing;
    await mood(page, 'done');
    assert.strictEqual(await page.evaluate(() => window.onbeforeunload), null);
});

test('the display is kept awake while photos are sent', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    await page.waitForFunction(() => document.getElementById('awake').src);
    assert.strictEqual(await page.evaluate(() => 'wakeLock' in navigator), false);
    await Phone.throttle(page, megabyte);
    await Phone.pick(page, photos(5));
    await page.waitForFunction(() => {
        const video = document.getElementById('awake');
        return !video.paused && video.muted && video.currentTime > 0;
    });
    await mood(page, 'done');
    await page.waitForFunction(() => document.getElementById('awake').paused);
});

test('a display that was kept awake may sleep afterwards', async () => {
    // A browser with the real lock. Each that is not given back keeps the display on.
    await phone.context.addInitScript(() => {
        window.held = 0;
        const request = () => {
            window.held += 1;
            const lock = {released: false};
            lock.release = () => {
                window.held -= lock.released ? 0 : 1;
                lock.released = true;
                return Promise.resolve();
            };
            return Promise.resolve(lock);
        };
        Object.defineProperty(navigator, 'wakeLock', {value: {request}});
    });
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte / 2);
    await Phone.pick(page, photos(5));
    await rows(page, 'done', 1);
    assert.strictEqual(await page.evaluate(() => window.held), 1);
    await mood(page, 'done');
    await page.waitForFunction(() => window.held === 0);
});

// ---- how it looks and sounds

// WCAG 2.1, 1.4.3: the ratio of two colours' relative luminance.
function contrast(first, second) {
    const luminance = (colour) => colour.match(/\d+(\.\d+)?/g).slice(0, 3).map(Number)
        .map((value) => value / 255)
        .map((value) => (value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4))
        .reduce((sum, value, index) => sum + value * [0.2126, 0.7152, 0.0722][index], 0);
    const [dark, light] = [luminance(first), luminance(second)].sort((a, b) => a - b);
    return (light + 0.05) / (dark + 0.05);
}

// The colour of each visible text with the one behind it.
function colours(page) {
    return page.evaluate(() => ['#greeting', '#pick-text', '#status', '#count', '#bytes', '.name', '.size']
        .map((selector) => {
            const node = document.querySelector(selector);
            let behind = node;
            const filled = (element) => getComputedStyle(element).backgroundColor !== 'rgba(0, 0, 0, 0)';
            while (behind !== document.documentElement && !filled(behind))
                behind = behind.parentElement;
            return [selector, getComputedStyle(node).color, getComputedStyle(behind).backgroundColor];
        }));
}

for (const colorScheme of ['light', 'dark']) {
    test(`texts can be read in the ${colorScheme} scheme`, async () => {
        await phone.newProfile({colorScheme});
        const page = await phone.open(computer.url);
        await admitted(page);
        await Phone.throttle(page, 2 * megabyte);
        await Phone.pick(page, photos(6));
        await rows(page, 'done', 2);
        await screenshot(page, `scheme-${colorScheme}`);
        const list = await colours(page);
        const background = await page.evaluate(() => getComputedStyle(document.documentElement).backgroundColor);

        assert.strictEqual(contrast(background, 'rgb(255, 255, 255)') > 10, colorScheme === 'dark');
        for (const [selector, text, behind] of list)
            assert.ok(contrast(text, behind) >= 4.5, `${selector}: ${text} on ${behind}`);
        await mood(page, 'done');
        await screenshot(page, `scheme-${colorScheme}-done`);
    });
}

// What sticks out of the screen or out of its box.
function overflowing(page) {
    return page.evaluate(() => {
        const width = document.documentElement.clientWidth;
        const found = document.documentElement.scrollWidth > width ? ['page'] : [];
        document.querySelectorAll('h1, button, #status, #figures, progress, .name, .line').forEach((node) => {
            const box = node.getBoundingClientRect();
            if (box.width && (box.left < 0 || box.right > width + 0.5 || node.scrollWidth > node.clientWidth + 1))
                found.push(node.id || node.className || node.tagName);
        });
        return found;
    });
}

test('text of twice the size fits a small phone', async () => {
    await phone.newProfile({viewport: {width: 320, height: 640}});
    const page = await phone.open(computer.url);
    const session = await page.context().newCDPSession(page);
    await session.send('Page.setFontSizes', {fontSizes: {standard: 32, fixed: 26}});
    await admitted(page);
    assert.strictEqual(await page.evaluate(() => getComputedStyle(document.documentElement).fontSize), '34px');
    assert.deepStrictEqual(await overflowing(page), []);
    await screenshot(page, 'large-text-start');
    await Phone.throttle(page, megabyte / 4);
    await Phone.pick(page, [...photos(4), photo(folder, 'Donaudampfschifffahrtsgesellschaft.JPG', 300000)]);
    await rows(page, 'done', 1);
    assert.deepStrictEqual(await overflowing(page), []);
    await screenshot(page, 'large-text-busy');
    await phone.context.clearCookies();
    await mood(page, 'lost');
    assert.deepStrictEqual(await overflowing(page), []);
    await page.evaluate(() => document.getElementById('panel').scrollIntoView());
    await screenshot(page, 'large-text-lost');
    await page.locator('li').last().scrollIntoViewIfNeeded();
    await screenshot(page, 'large-text-list');
});

test('touch targets are at least 44 pixels', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte);
    await Phone.pick(page, photos(12));
    await rows(page, 'done', 1);
    await page.tap('#stop');
    await mood(page, 'stopped');
    const sizes = await page.locator('button:visible').evaluateAll((buttons) => buttons.map((button) => {
        const box = button.getBoundingClientRect();
        return Math.min(box.width, box.height);
    }));
    assert.ok(sizes.length >= 3, String(sizes));
    assert.ok(sizes.every((size) => size >= 44), String(sizes));
    assert.ok((await page.locator('#pick').boundingBox()).height >= 52);
});

test('a screen reader hears names, states and every tenth photo', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    await page.evaluate(() => {
        window.spoken = [];
        new MutationObserver(() => {
            const text = document.getElementById('status').textContent;
            if (text && text !== window.spoken[window.spoken.length - 1])
                window.spoken.push(text);
        }).observe(document.getElementById('status'), {childList: true, subtree: true, characterData: true});
    });
    await Phone.throttle(page, 2 * megabyte);
    await Phone.pick(page, photos(23, 100000));
    await mood(page, 'done');

    assert.deepStrictEqual(await page.evaluate(() => window.spoken), [progressText,
        `${progressText} 10 / 23`, `${progressText} 20 / 23`, `${successText} (23)`]);
    const tree = await page.locator('main').ariaSnapshot();
    assert.match(tree, new RegExp(`- heading "${greeting}" \\[level=1\\]`));
    assert.match(tree, new RegExp(`- button "${buttonText}"`));
    assert.match(tree, /- status: ?Die Fotos wurden erfolgreich übertragen \(23\)|- status:/);
    assert.match(tree, /- listitem:[\s\S]*IMG_1001\.JPG[\s\S]*✓/);
    assert.doesNotMatch(tree, /- (button|progressbar|img)$/m); // nothing goes without a name
});

test('the keyboard reaches what can be pressed, and the focus is never lost', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    await Phone.throttle(page, megabyte);
    await Phone.pick(page, photos(12));
    await rows(page, 'done', 1);
    const focused = () => page.evaluate(() => document.activeElement.id || document.activeElement.className);
    await page.focus('#pick');
    await page.keyboard.press('Tab');
    assert.strictEqual(await focused(), 'stop');
    await page.keyboard.press('Enter');
    await mood(page, 'stopped');
    await page.waitForFunction(() => document.getElementById('stop').hidden);
    assert.strictEqual(await focused(), 'pick');
    await page.keyboard.press('Tab');
    assert.strictEqual(await focused(), 'again');
    await page.keyboard.press('Tab');
    assert.strictEqual(await focused(), 'symbol retry');
    await page.keyboard.press('Enter');
    assert.strictEqual(await page.evaluate(() => document.activeElement.tagName), 'LI');
});

for (const id of ['pick', 'stop']) {
    test(`the focus moves on when the connection is lost: ${id}`, async () => {
        const page = await phone.open(computer.url);
        await admitted(page);
        await Phone.throttle(page, megabyte);
        await Phone.pick(page, photos(12));
        await rows(page, 'done', 1);
        await page.focus(`#${id}`);
        await phone.context.clearCookies(); // the next photo is refused
        await mood(page, 'lost');
        await page.waitForFunction(() => document.activeElement.id === 'again');
    });
}

test('rows show small pictures, and a symbol where the browser cannot decode', async () => {
    const page = await phone.open(computer.url);
    await admitted(page);
    const broken = path.join(folder, 'kaputt.heic');
    fs.writeFileSync(broken, 'no picture at all');
    await Phone.pick(page, [...photos(40, 50000).slice(0, 1), broken, ...photos(40, 50000)]);
    await mood(page, 'done');
    await page.waitForSelector('li:nth-child(1) img.shown');
    await page.waitForSelector('li:nth-child(3) img.shown');
    assert.strictEqual(await page.locator('li:nth-child(2) img.shown').count(), 0);
    assert.ok(await page.evaluate(() => document.querySelector('img.shown').naturalWidth) <= 168);
    // Rows far below the screen are left alone until they come near.
    assert.strictEqual(await page.locator('li:last-child img.shown').count(), 0);
    await page.locator('li:last-child').scrollIntoViewIfNeeded();
    await page.waitForSelector('li:last-child img.shown');
});

// ---- other browsers, other servers

test('a browser without newer parts sends as well', async () => {
    await phone.context.addInitScript(() => {
        delete window.IntersectionObserver;
        delete window.createImageBitmap;
        delete window.fetch;
        delete String.prototype.normalize;
        Object.defineProperty(window, 'localStorage', {get() { throw new Error('refused'); }});
    });
    const page = await phone.open(computer.url);
    await admitted(page);
    const files = photos(25, 50000);
    await Phone.pick(page, files);
    await mood(page, 'done');
    await page.waitForFunction(() => document.querySelectorAll('img.shown').length === 20);
    assertAllStored(files);
});

test('a browser without scripts shows a line that says so', async () => {
    await phone.newProfile({javaScriptEnabled: false});
    const page = await phone.open(computer.url);
    await page.waitForSelector('noscript p');
    assert.strictEqual(await page.innerText('main'), 'Bitte schalten Sie JavaScript ein, um Fotos zu übertragen.');
    await screenshot(page, 'no-script');
});

async function withPeer(answers, action) {
    const peer = await BadPeer.start(answers);
    try {
        await action(peer);
    } finally {
        await peer.stop();
    }
}

const loginPage = (request, response) => response.writeHead(200, {'Content-Type': 'text/html'}).end('<html>Login</html>');

for (const [name, answer] of [
    ['somebody else answers', loginPage],
    ['the answer breaks off', (request, response) => {
        response.writeHead(200, {'Content-Length': 100});
        response.write('{"textButton": "Fo', () => response.destroy());
    }],
    ['the connection is closed', (request) => request.socket.destroy()],
]) {
    test(`without the texts the page has one line of its own: ${name}`, async () => {
        await withPeer({'/translations.json': answer}, async (peer) => {
            const page = await phone.open(peer.url);
            await mood(page, 'lost');
            assert.deepStrictEqual(await statusLines(page), noTextsLines);
            assert.strictEqual(await page.isDisabled('#pick'), true);
            await screenshot(page, 'no-texts');
        });
    });
}

const texts = {textGreeting: greeting, textProgress: progressText, textSuccess: successText,
    textNoConnect: noConnectLines.join('<br> '), textButton: buttonText, title};
const answerTexts = (request, response) => response.writeHead(200).end(JSON.stringify(texts));

for (const [name, answer] of [
    ['a success without the word OK', loginPage],
    ['an error of the server', (request, response) => response.writeHead(500).end('OK')],
    ['a connection reset in mid-photo', (request) => request.once('data', () => request.socket.resetAndDestroy())],
]) {
    test(`a photo is tried three times and then left to the customer: ${name}`, async () => {
        let attempts = 0;
        const names = new Set();
        const upload = (request, response) => {
            attempts += 1;
            names.add(request.url);
            if (answer !== loginPage || attempts <= 3)
                answer(request, response);
        };
        await withPeer({'/translations.json': answerTexts, '/upload': upload}, async (peer) => {
            const page = await phone.open(peer.url);
            await admitted(page);
            await Phone.pick(page, photos(1, 2 * megabyte));
            await rows(page, 'retrying', 1);
            await mood(page, 'failed');
            // Chromium itself repeats a request when a connection that it kept open is reset.
            assert.ok(name.includes('reset') ? attempts >= 3 : attempts === 3, String(attempts));
            assert.deepStrictEqual([...names], ['/upload?file=IMG_1001.JPG']);
            assert.deepStrictEqual(await statusLines(page), ['⚠\ufe0e\u00a01']);
        });
    });
}

test('a photo is tried again though the phone sets its clock back', async () => {
    let attempts = 0;
    const upload = (request, response) => {
        attempts += 1;
        request.resume().on('end', () => response.writeHead(attempts === 1 ? 500 : 200).end('OK'));
    };
    await withPeer({'/translations.json': answerTexts, '/upload': upload}, async (peer) => {
        const page = await phone.context.newPage();
        await page.clock.setFixedTime(Date.now()); // never gets to where it was; timers go on
        await page.goto(peer.url);
        await admitted(page);
        await Phone.pick(page, photos(1));
        await mood(page, 'done');
        assert.strictEqual(attempts, 2);
    });
});

test('a computer that takes a photo and never answers is given up after a minute', async () => {
    let attempts = 0;
    const upload = () => { attempts += 1; };
    await withPeer({'/translations.json': answerTexts, '/upload': upload}, async (peer) => {
        const page = await phone.context.newPage();
        await page.clock.install();
        await page.goto(peer.url);
        await admitted(page);
        await Phone.pick(page, photos(1));
        await rows(page, 'sending', 1);
        await page.waitForFunction(() => document.querySelector('li progress').value === 99);
        await page.clock.fastForward(50000);
        assert.deepStrictEqual(await states(page), ['sending']);
        assert.strictEqual(attempts, 1);
        await page.clock.fastForward(11000);
        await rows(page, 'retrying', 1);
        await page.clock.fastForward(1000);
        await rows(page, 'sending', 1);
    });
});

test('texts are shown as they are, never as HTML', async () => {
    const marked = {...texts, textGreeting: '<img src=x onerror=alert(1)>', textButton: '<b>x</b>'};
    const answer = (request, response) => response.writeHead(200).end(JSON.stringify(marked));
    await withPeer({'/translations.json': answer}, async (peer) => {
        const page = await phone.open(peer.url);
        await admitted(page);
        assert.strictEqual(await page.textContent('#greeting'), '<img src=x onerror=alert(1)>');
        assert.strictEqual(await page.textContent('#pick'), '<b>x</b>');
    });
});
