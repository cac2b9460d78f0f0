'use strict';

// oauth2-mock-server on 127.0.0.1: it grants everything and checks PKCE. Writes one JSON object
// per token or revocation request to standard output, with the form as it decoded it.
//
//   node mock-server.js PORT

const {OAuth2Server} = require('oauth2-mock-server');

async function main() {
    const server = new OAuth2Server();
    await server.issuer.keys.generate('RS256');

    const report = (endpoint) => (response, request) =>
        console.log(JSON.stringify({endpoint, form: request.body, type: request.headers['content-type']}));
    server.service.on('beforeResponse', report('token'));
    server.service.on('beforeRevoke', report('revoke'));
    await server.start(Number(process.argv[2]), '127.0.0.1');
}

main();
