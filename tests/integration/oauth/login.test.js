'use strict';

// The login in a real browser: the provider's pages, the redirect to port 1031, the page that ends
// it. Runs in a network namespace of its own (script/in-namespace), since the port is fixed.

const assert = require('node:assert');
const {execFileSync, spawn} = require('node:child_process');
const crypto = require('node:crypto');
const fs = require('node:fs');
const net = require('node:net');
const os = require('node:os');
const path = require('node:path');
const readline = require('node:readline');
const {after, before, test} = require('node:test');
const {chromium} = require('playwright-core');

const binaries = process.env.VX_BINARY_DIR || path.resolve(__dirname, '../../../build/dev');
const assets = path.resolve(__dirname, '../../../assets/oauth');
const pictures = path.join(binaries, 'tests-output', 'oauth_login');
const password = 'geheim+50% ä';

const builtInText = 'Sie können diese Seite jetzt schließen und zum Programm zurückkehren.';
const textFor = (name) => `Sie können diese Seite jetzt schließen und zu ${name} zurückkehren.`;

let browser;
let folder;
let provider; // address of the strict server

// The programs see neither the settings nor the proxies of who runs the test.
function privateHome() {
    const env = {...process.env, HOME: folder, XDG_RUNTIME_DIR: folder};
    for (const name of Object.keys(env)) {
        if (/^XDG_(CONFIG|CACHE|DATA|STATE)_HOME$|_proxy$|^VX_DEPLOYMENT_CONFIG$/i.test(name))
            delete env[name];
    }
    return env;
}

// A program whose standard output is lines of JSON.
class Program {
    constructor(program, args) {
        this.lines = [];
        this.output = '';
        this.waiting = [];
        this.process = spawn(program, args, {stdio: ['pipe', 'pipe', 'pipe'], env: privateHome()});
        this.process.stderr.on('data', (data) => { this.output += data; });
        readline.createInterface({input: this.process.stdout}).on('line', (line) => {
            this.output += `${line}\n`;
            try {
                this.lines.push(JSON.parse(line));
            } catch {
                return;
            }
            this.settle();
        });
        this.ended = new Promise((resolve) => this.process.on('close', (code) => {
            this.isOver = true;
            this.settle();
            resolve(code);
        }));
    }

    // The first line, past or to come, that the predicate accepts.
    line(predicate) {
        return new Promise((resolve, reject) => {
            this.waiting.push({predicate, resolve, reject});
            this.settle();
        });
    }

    event(name) {
        return this.line((line) => line.event === name);
    }

    settle() {
        this.waiting = this.waiting.filter(({predicate, resolve, reject}) => {
            const found = this.lines.find(predicate);
            if (found)
                resolve(found);
            else if (this.isOver)
                reject(new Error(`the program ended:\n${this.output}`));
            return !found && !this.isOver;
        });
    }
}

const servers = [];

async function freePort() {
    const server = net.createServer().listen(0, '127.0.0.1');
    await new Promise((resolve) => server.on('listening', resolve));
    const {port} = server.address();
    await new Promise((resolve) => server.close(resolve));
    return port;
}

async function startProvider() {
    const port = await freePort();
    const server = spawn(process.execPath, [path.join(__dirname, 'strict-server.mjs'), String(port)],
        {stdio: ['ignore', 'ignore', 'inherit'], env: {...process.env, VX_PASSWORD: password}});
    servers.push(server);
    const address = `http://127.0.0.1:${port}`;
    for (;;) {
        assert.strictEqual(server.exitCode, null, 'the provider ended');
        const answer = await fetch(`${address}/.well-known/openid-configuration`).catch(() => null);
        if (answer?.ok)
            return address;
    }
}

// A replacement for the browser that hands the address over, and a promise for it.
function opener(name) {
    const pipe = path.join(folder, `${name}.pipe`);
    const program = path.join(folder, name);
    execFileSync('mkfifo', [pipe]);
    fs.writeFileSync(program, `#!/bin/sh\nprintf '%s' "$1" > '${pipe}'\n`, {mode: 0o755});
    return {program, url: fs.promises.readFile(pipe, 'utf8')};
}

async function newPage(options = {}) {
    const context = await browser.newContext({locale: 'de-DE', viewport: {width: 900, height: 600},
        ...options});
    const page = await context.newPage();
    page.codes = [];
    page.complaints = [];
    page.requested = [];
    page.on('request', (request) => {
        page.requested.push(request.url());
        const code = new URL(request.url()).searchParams.get('code');
        if (code)
            page.codes.push(code);
    });
    page.on('console', (message) => page.complaints.push(message.text()));
    return page;
}

async function shoot(page, name) {
    fs.mkdirSync(pictures, {recursive: true});
    await page.screenshot({path: path.join(pictures, `${name}.png`)});
}

// What a customer does at the strict provider.
async function logIn(page, url) {
    await page.goto(url);
    await page.fill('input[name=login]', 'max@example.test');
    await page.fill('input[name=password]', 'anything');
    await page.click('button[type=submit]');
    await page.click('button:has-text("Continue")'); // the consent
    await page.waitForURL('http://127.0.0.1:1031/**');
}

function authorizeUrl(challenge) {
    return `${provider}/auth?${new URLSearchParams({response_type: 'code', client_id: 'vx-test',
        redirect_uri: 'http://127.0.0.1:1031/', scope: 'openid', state: 'a b+c',
        code_challenge: challenge, code_challenge_method: 'S256'})}`;
}

function host(url, ...options) {
    return new Program(path.join(binaries, 'tests/login-host'),
        ['--url', url, '--assets', assets, ...options]);
}

const s256 = (verifier) => crypto.createHash('sha256').update(verifier).digest('base64url');

async function exchange(code, verifier) {
    const answer = await fetch(`${provider}/token`, {method: 'POST', body: new URLSearchParams({
        grant_type: 'authorization_code', client_id: 'vx-test', code, code_verifier: verifier,
        redirect_uri: 'http://127.0.0.1:1031/'})});
    return {status: answer.status, ...await answer.json()};
}

before(async () => {
    if (process.env.VX_NAMESPACE !== '1') {
        throw new Error('missing: a network namespace. Run this file through ctest, or as '
            + '"script/in-namespace -- node --test FILE".');
    }
    folder = fs.mkdtempSync(path.join(os.tmpdir(), 'login-'));
    provider = await startProvider();
    browser = await chromium.launch({
        executablePath: process.env.VX_CHROMIUM || '/usr/bin/chromium',
        args: ['--no-sandbox'], // refused to root, which we are in here; it meets only our servers
        env: {...process.env, HOME: folder},
    });
});

after(async () => {
    await browser?.close();
    servers.forEach((server) => server.kill());
    fs.rmSync(folder, {recursive: true, force: true});
});

test('the sample host logs in at a strict provider and prints no secret', async () => {
    const {program, url} = opener('browser');
    const logs = path.join(folder, 'logs');
    const sample = new Program(path.join(binaries, 'bin/vx-sample'), ['--offscreen',
        '--simulator', 'none', '--opener', program, '--log-dir', logs, 'login', 'external',
        '--authorize-url', `${provider}/auth`, '--token-url', `${provider}/token`,
        '--revoke-url', `${provider}/token/revocation`, '--client-id', 'vx-test',
        '--scope', 'openid', '--service', 'Test Provider']);
    const address = await url;
    const asked = new URL(address).searchParams;
    assert.strictEqual(asked.get('code_challenge_method'), 'S256');
    assert.match(asked.get('code_challenge'), /^[\w-]{43}$/);
    assert.match(asked.get('state'), /^[\w-]{22}$/);

    const page = await newPage();
    await logIn(page, address);
    await page.waitForSelector('#maintext strong');
    assert.strictEqual(await page.textContent('#maintext'), textFor('VX Sample'));
    assert.strictEqual(page.url(), 'http://127.0.0.1:1031/', 'the address still shows the code');
    await shoot(page, 'support-page');

    const result = await sample.line((line) => 'accepted' in line);
    assert.strictEqual(await sample.ended, 0);
    assert.deepStrictEqual(
        [result.accepted, result.accessCode, result.http, result.tokens, result.hasRefreshToken],
        [true, 'masked', 200, 'masked', true]);
    assert.strictEqual(page.codes.length, 1);
    const log = fs.existsSync(logs) ? fs.readdirSync(logs)
        .map((name) => fs.readFileSync(path.join(logs, name), 'utf8')).join('') : '';
    for (const text of [sample.output, log]) {
        assert.ok(!text.includes(page.codes[0]), 'the code was printed');
        assert.doesNotMatch(text, /"(access|refresh|id)_token"/);
    }
    assert.deepStrictEqual(page.complaints.filter((text) => text.includes('1031')), []);
});

test('the same at the simulator, after a wrong password', async () => {
    const {program, url} = opener('simulators-browser');
    const sample = new Program(path.join(binaries, 'bin/vx-sample'),
        ['--offscreen', '--opener', program, 'login', 'external']);
    const page = await newPage();
    await page.goto(await url);
    await page.fill('#username', 'demo');
    await page.fill('#password', 'wrong');
    await page.click('#submit');
    await page.waitForSelector('#message:has-text("falsch")');
    await page.fill('#username', 'demo');
    await page.fill('#password', 'demo');
    await page.click('#submit');
    await page.waitForSelector('#maintext strong');
    assert.strictEqual(await page.textContent('#maintext strong'), 'VX Sample');
    const result = await sample.line((line) => 'accepted' in line);
    assert.deepStrictEqual([result.accepted, result.code, result.tokens], [true, 0, 'masked']);
    assert.strictEqual(await sample.ended, 0);
});

test('the page is complete when the dialog is destroyed right after exec()', async () => {
    const verifier = crypto.randomBytes(32).toString('base64url');
    const program = host(authorizeUrl(s256(verifier)));
    const page = await newPage();
    await logIn(page, (await program.event('opened')).url);
    const end = await program.event('ended');
    assert.strictEqual(await program.ended, 0);
    assert.strictEqual(end.accepted, true);
    assert.strictEqual(end.code, page.codes[0]);
    await page.waitForLoadState('load');
    assert.strictEqual(await page.textContent('#maintext'), builtInText);
    assert.strictEqual(await page.evaluate(() => getComputedStyle(document.querySelector('main'))
        .textAlign), 'center');
    await shoot(page, 'support-page-alone');

    // A wrong proof is refused, the right one is good once.
    const refused = await exchange(end.code, crypto.randomBytes(32).toString('base64url'));
    assert.deepStrictEqual([refused.status, refused.error], [400, 'invalid_grant']);
});

test('the code is good once, with its proof', async () => {
    const verifier = crypto.randomBytes(32).toString('base64url');
    const program = host(authorizeUrl(s256(verifier)));
    const page = await newPage();
    await logIn(page, (await program.event('opened')).url);
    const {code} = await program.event('ended');
    const granted = await exchange(code, verifier);
    assert.strictEqual(granted.status, 200);
    assert.ok(granted.access_token && granted.refresh_token);
    assert.strictEqual((await exchange(code, verifier)).error, 'invalid_grant');
});

test("the provider's refusal leaves the dialog open", async () => {
    const program = host(authorizeUrl(s256('a'.repeat(43))), '--stay');
    const page = await newPage();
    await page.goto((await program.event('opened')).url);
    await page.click('text=Cancel');
    await page.waitForURL('http://127.0.0.1:1031/**');
    await page.waitForSelector('#maintext strong');
    assert.ok(page.requested.some((url) => /1031\/\?.*error=access_denied/.test(url)));
    assert.strictEqual(program.lines.length, 1, 'the dialog ended');
    program.process.stdin.end(); // gives up
    assert.strictEqual((await program.event('ended')).accepted, false);
    assert.strictEqual(await program.ended, 0);
});

test('the page is readable without script', async () => {
    const program = host('http://127.0.0.1:1031/', '--stay');
    await program.event('opened');
    const page = await newPage({javaScriptEnabled: false});
    await page.goto('http://127.0.0.1:1031/?code=x');
    assert.strictEqual(await page.textContent('#maintext'), builtInText);
    assert.ok(await page.isVisible('#maintext'));
    await shoot(page, 'without-script');
    program.process.stdin.end();
    await program.ended;
});

test('the page follows the dark mode, also without its style', async () => {
    const program = host('http://127.0.0.1:1031/', '--stay');
    await program.event('opened');
    for (const blocks of [false, true]) {
        const page = await newPage({colorScheme: 'dark'});
        if (blocks)
            await page.route('**/style.css', (route) => route.abort());
        await page.goto('http://127.0.0.1:1031/?code=x');
        await page.waitForSelector('#maintext strong');
        const colours = await page.evaluate(() => {
            const style = getComputedStyle(document.documentElement);
            return [style.color, style.backgroundColor];
        });
        assert.deepStrictEqual(colours, ['rgb(232, 237, 242)', 'rgb(16, 21, 27)']);
        await shoot(page, blocks ? 'dark-without-style' : 'dark');
    }
    program.process.stdin.end();
    await program.ended;
});

test("the application's name is text, whatever it holds", async () => {
    const name = '<img src=x onerror=alert(1)></strong>A&amp;B<strong>';
    const program = host('http://127.0.0.1:1031/', '--stay', '--name', name);
    await program.event('opened');
    const page = await newPage();
    await page.goto('http://127.0.0.1:1031/?code=x');
    await page.waitForSelector('#maintext strong');
    assert.strictEqual(await page.textContent('#maintext strong'), name);
    assert.strictEqual(await page.textContent('#maintext'), textFor(name));
    assert.strictEqual(await page.locator('#maintext *').count(), 1);
    program.process.stdin.end();
    await program.ended;
});

test('the page asks nobody else for anything, and fits a narrow window', async () => {
    const program = host('http://127.0.0.1:1031/', '--stay');
    await program.event('opened');
    const page = await newPage({viewport: {width: 320, height: 480}});
    await page.goto('http://127.0.0.1:1031/?code=x');
    await page.waitForSelector('#maintext strong');
    assert.deepStrictEqual(page.requested.map((url) => new URL(url).pathname).sort(),
        ['/', '/script.js', '/style.css', '/translations.json']);
    assert.ok(page.requested.every((url) => url.startsWith('http://127.0.0.1:1031/')));
    assert.deepStrictEqual(page.complaints, []); // the content policy, for one
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
    await shoot(page, 'narrow');
    program.process.stdin.end();
    await program.ended;
});
