'use strict';

// The computer's side: the real upload service in a program of its own (upload-host).

const assert = require('node:assert');
const {spawn} = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const readline = require('node:readline');

const assets = path.resolve(__dirname, '../../../assets/qrupload');
const program = process.env.VX_UPLOAD_HOST
    || path.join(process.env.VX_BINARY_DIR || path.resolve(__dirname, '../../../build/dev'),
        'tests/upload-host');

class Computer {
    // Starts the service, which writes below theTarget. Resolves once it has an address.
    static async start(theTarget) {
        const computer = new Computer(theTarget);
        await computer.until((event) => event.event === 'urlChanged' && event.port > 0);
        // The service listens twice when it starts, and the second port is the one it keeps.
        await computer.until((event) => event.event === 'started');
        return computer;
    }

    constructor(theTarget) {
        this.target = theTarget;
        this.events = [];
        this.waiting = [];
        this.process = spawn(program, ['--assets', assets, '--target', theTarget],
            {stdio: ['pipe', 'pipe', 'inherit']});
        this.ended = new Promise((resolve) =>
            this.process.on('close', (code, signal) => resolve({code, signal})));
        this.process.on('error', (error) => { this.failure = error; this.settle(); });
        this.process.on('close', () => {
            this.failure ||= new Error(`${program} ended`);
            this.settle();
        });
        readline.createInterface({input: this.process.stdout}).on('line', (line) => {
            this.events.push(JSON.parse(line));
            this.settle();
        });
    }

    // The first event, past or to come, that the predicate accepts.
    until(predicate) {
        return new Promise((resolve, reject) => {
            this.waiting.push({predicate, resolve, reject});
            this.settle();
        });
    }

    settle() {
        this.waiting = this.waiting.filter(({predicate, resolve, reject}) => {
            const event = this.events.find(predicate);
            if (event)
                resolve(event);
            else if (this.failure)
                reject(this.failure);
            return !event && !this.failure;
        });
    }

    named(name) {
        return this.events.filter((event) => event.event === name);
    }

    // The address that the QR code shows at this moment.
    get url() {
        return this.named('urlChanged').at(-1).url;
    }

    get storedNames() {
        return fs.existsSync(this.target) ? fs.readdirSync(this.target).sort() : [];
    }

    stored(name) {
        return path.join(this.target, name);
    }

    async stop() {
        this.process.stdin.end(); // the program ends with its standard input
        assert.deepStrictEqual(await this.ended, {code: 0, signal: null});
    }
}

module.exports = {Computer};
