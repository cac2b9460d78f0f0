// oidc-provider on 127.0.0.1 as a strict OAuth2 server: PKCE is required, a refresh token is good
// for one use, no parameter may come twice. Its own development pages log in and ask for consent.
//
//   node strict-server.mjs PORT
//
// The public client "vx-test" may log in with the user name "max@example.test" and the password of
// VX_PASSWORD, since the provider leaves the check of a password to those who run it; everything
// else is the provider's own.

import Provider, {errors} from 'oidc-provider';

const port = Number(process.argv[2]);
const password = process.env.VX_PASSWORD;
const user = 'max@example.test';

const provider = new Provider(`http://127.0.0.1:${port}`, {
    clients: [{
        client_id: 'vx-test',
        token_endpoint_auth_method: 'none',
        application_type: 'native',
        grant_types: ['authorization_code', 'refresh_token', 'password'],
        response_types: ['code'],
        redirect_uris: ['http://127.0.0.1:1031/'],
    }],
    cookies: {keys: ['test']},
    features: {revocation: {enabled: true}},
    findAccount: (ctx, id) => ({accountId: id, claims: () => ({sub: id})}),
    issueRefreshToken: () => true,
    pkce: {methods: ['S256'], required: () => true},
    rotateRefreshToken: true,
    ttl: {AccessToken: 600, AuthorizationCode: 60, Grant: 3600, IdToken: 600, Interaction: 600,
        RefreshToken: 3600, Session: 3600},
});

async function passwordGrant(ctx, next) {
    const {client, params, provider: {AccessToken, Grant, RefreshToken}} = ctx.oidc;
    if (params.username !== user || params.password !== password)
        throw new errors.InvalidGrant('user name or password is wrong');

    const grant = new Grant({accountId: user, clientId: client.clientId});
    grant.addOIDCScope('openid');
    const properties = {accountId: user, client, grantId: await grant.save(), gty: 'password',
        scope: 'openid', expiresWithSession: false};
    const access = new AccessToken(properties);
    const refresh = new RefreshToken(properties);
    ctx.oidc.entity('AccessToken', access);
    ctx.body = {
        access_token: await access.save(),
        expires_in: access.expiration,
        refresh_token: await refresh.save(),
        token_type: 'Bearer',
    };
    await next();
}

provider.registerGrantType('password', passwordGrant, ['username', 'password', 'scope']);
provider.listen(port, '127.0.0.1');
