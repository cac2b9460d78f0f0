'use strict';

// Serves the page but answers in ways that the real service never would: a proxy, a guest
// network's login page, or a computer that falls over.

const fs = require('node:fs');
const http = require('node:http');
const path = require('node:path');

const assets = path.resolve(__dirname, '../../../assets/qrupload');
const types = {'.html': 'text/html', '.css': 'text/css', '.js': 'text/javascript', '.svg': 'image/svg+xml'};

class BadPeer {
    // answers: {'/translations.json': function (request, response), '/upload': ...}
    static async start(answers) {
        const peer = new BadPeer(answers);
        await new Promise((resolve) => peer.server.listen(0, '10.77.0.1', resolve));
        return peer;
    }

    constructor(answers) {
        this.answers = answers;
        this.server = http.createServer((request, response) => this.answer(request, response));
    }

    answer(request, response) {
        const {pathname} = new URL(request.url, 'http://localhost');
        if (this.answers[pathname])
            this.answers[pathname](request, response);
        else
            this.answerAsset(pathname === '/' ? '/index.html' : pathname, response);
    }

    answerAsset(name, response) {
        const file = path.join(assets, path.normalize(name));
        if (!fs.existsSync(file))
            return response.writeHead(404).end();
        response.writeHead(200, {'Content-Type': types[path.extname(file)] || 'application/octet-stream'});
        response.end(fs.readFileSync(file));
    }

    get url() {
        return `http://10.77.0.1:${this.server.address().port}/`;
    }

    async stop() {
        this.server.closeAllConnections();
        await new Promise((resolve) => this.server.close(resolve));
    }
}

module.exports = {BadPeer};
