'use strict';

// Photos as files on the phone: a picture that browsers can decode, followed by noise up to the
// wanted size. Decoders stop at the picture's end.

const crypto = require('node:crypto');
const fs = require('node:fs');
const path = require('node:path');
const zlib = require('node:zlib');

const width = 96;
const height = 72;

function chunk(kind, data) {
    const body = Buffer.concat([Buffer.from(kind, 'latin1'), data]);
    const result = Buffer.alloc(body.length + 8);
    result.writeUInt32BE(data.length, 0);
    body.copy(result, 4);
    result.writeUInt32BE(crc32(body), body.length + 4);
    return result;
}

// PNG's own check sum (zlib.crc32 came with Node 20.15).
function crc32(bytes) {
    let crc = 0xffffffff;
    for (const byte of bytes) {
        crc ^= byte;
        for (let bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? (crc >>> 1) ^ 0xedb88320 : crc >>> 1;
    }
    return (crc ^ 0xffffffff) >>> 0;
}

// Sky, sun and hills in colours of the seed.
function pixel(x, y, seed) {
    const hill = height * (0.62 + 0.14 * Math.sin(x / 13 + seed));
    const sun = Math.hypot(x - 20 - (seed * 17) % 56, y - 18) < 8;
    if (y > hill)
        return [40 + (seed * 29) % 60, 120 + (seed * 13) % 70, 60];
    return sun ? [250, 214, 90] : [90 + (seed * 37) % 120, 150 + y, 235 - (seed * 11) % 60];
}

function picture(seed) {
    const rows = Buffer.alloc((width * 3 + 1) * height);
    for (let y = 0; y < height; ++y) {
        for (let x = 0; x < width; ++x)
            rows.set(pixel(x, y, seed), y * (width * 3 + 1) + 1 + x * 3);
    }
    const header = Buffer.alloc(13);
    header.writeUInt32BE(width, 0);
    header.writeUInt32BE(height, 4);
    header.set([8, 2], 8); // bits per sample, true colour
    return Buffer.concat([Buffer.from('\x89PNG\r\n\x1a\n', 'latin1'), chunk('IHDR', header),
        chunk('IDAT', zlib.deflateSync(rows)), chunk('IEND', Buffer.alloc(0))]);
}

let made = 0;

// Makes a file of that name and size (bytes; at least the picture's unless it is 0) in a folder
// of its own below theFolder, so that names may repeat. Returns its path.
function photo(theFolder, theName, theSize) {
    made += 1;
    const folder = path.join(theFolder, String(made));
    fs.mkdirSync(folder, {recursive: true});
    const file = path.join(folder, theName);
    const start = theSize ? picture(made) : Buffer.alloc(0);
    const noise = crypto.randomBytes(Math.max(0, theSize - start.length));
    fs.writeFileSync(file, Buffer.concat([start, noise]));
    return file;
}

function digest(file) {
    return crypto.createHash('sha256').update(fs.readFileSync(file)).digest('hex');
}

module.exports = {digest, photo};
