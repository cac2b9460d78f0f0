'use strict';

// A phone: Chromium in a network namespace of its own, with a phone's screen, touch and name.

const assert = require('node:assert');
const {execFileSync} = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const {chromium, devices} = require('playwright-core');

const chromiumProgram = process.env.VX_CHROMIUM || '/usr/bin/chromium';

function requireNamespace() {
    if (process.env.VX_NAMESPACE !== '1' || !fs.existsSync('/run/netns/phone1')) {
        throw new Error('missing: network namespaces with phones. Run this file through ctest, or as '
            + '"script/in-namespace --phones 3 -- node --test FILE".');
    }
    fs.accessSync(chromiumProgram, fs.constants.X_OK);
}

// The browser's commands go through a pipe, so it needs no connection but the phone's own.
function wrapper(folder, number) {
    const file = path.join(folder, `phone${number}`);
    fs.writeFileSync(file, `#!/bin/sh\nexec nsenter --net=/run/netns/phone${number} `
        + `${chromiumProgram} "$@"\n`, {mode: 0o755});
    return file;
}

class Phone {
    // theNumber picks the namespace; close() ends the browser.
    static async switchOn(theNumber = 1) {
        requireNamespace();
        const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'phone-'));
        const browser = await chromium.launch({
            executablePath: wrapper(folder, theNumber),
            // Chromium refuses its sandbox to root, which we are in here; it meets only our server.
            args: ['--no-sandbox'],
            env: {...process.env, HOME: folder},
        });
        return new Phone(theNumber, browser, folder);
    }

    constructor(number, browser, folder) {
        this.number = number;
        this.browser = browser;
        this.folder = folder;
        this.complaints = [];
    }

    async close() {
        await this.browser.close();
        fs.rmSync(this.folder, {recursive: true, force: true});
    }

    // A fresh browser profile; cookies and storage of earlier ones are gone.
    async newProfile(options = {}) {
        if (this.context)
            await this.context.close();
        this.context = await this.browser.newContext({...devices['Pixel 7'], locale: 'de-DE', ...options});
        this.context.setDefaultTimeout(60000);
        this.complaints = [];
        return this.context;
    }

    // Opens an address in a new tab, as the camera does after a scan.
    async open(url) {
        const page = await this.context.newPage();
        page.on('pageerror', (error) => this.complaints.push(String(error)));
        page.on('console', (message) => {
            // A lost link and a refusal are written to the console by the browser itself.
            if (message.type() === 'error' && !/^Failed to load resource/.test(message.text()))
                this.complaints.push(message.text());
        });
        await page.goto(url);
        return page;
    }

    assertNoComplaints() {
        assert.deepStrictEqual(this.complaints, []);
    }

    ip(...args) {
        execFileSync('ip', ['-n', `phone${this.number}`, ...args]);
    }

    // Leaves the wireless network: the browser notices at once.
    cutLink() { this.ip('link', 'set', 'eth0', 'down'); }
    restoreLink() { this.ip('link', 'set', 'eth0', 'up'); }

    // Breaks the way behind the phone: packets vanish, and nobody is told.
    breakPath() { execFileSync('ip', ['link', 'set', `phone${this.number}`, 'nomaster']); }
    mendPath() { execFileSync('ip', ['link', 'set', `phone${this.number}`, 'master', 'lan0']); }

    // Slows the page's sending down to so many bytes per second.
    // A test that does something in mid-batch makes the batch take seconds, for a busy machine.
    static async throttle(page, bytesPerSecond) {
        const session = await page.context().newCDPSession(page);
        await session.send('Network.enable');
        await session.send('Network.emulateNetworkConditions', {offline: false, latency: 10,
            downloadThroughput: -1, uploadThroughput: bytesPerSecond});
    }

    // Taps the button and picks files in the chooser that it opens.
    static async pick(page, files) {
        const [chooser] = await Promise.all([page.waitForEvent('filechooser'), page.tap('#pick')]);
        await chooser.setFiles(files);
    }
}

module.exports = {Phone};
