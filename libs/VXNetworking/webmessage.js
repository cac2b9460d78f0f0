// How a page reaches the native side: over a WebSocket, or in a sandboxed bridge through its
// native message handler. The result is a transport for QWebChannel.

// The transport that createTransport() made last.
var transport = null;

// True in a bridge that offers a native message handler instead of WebSockets.
function isSandboxed() {
    return navigator.userAgent.endsWith('(JS Bridge) Orvelo Desk');
}

// Posts to the native handler; the native side answers by createMessage().
function MessagingTransport() {
    this.onopen = null;
    this.onmessage = null;
}

MessagingTransport.prototype.send = function (data) {
    window.webkit.messageHandlers.TOV.postMessage(data);
};

MessagingTransport.prototype.createMessage = function (message) {
    if (this.onmessage) {
        this.onmessage(new MessageEvent('message', { data: message }));
    }
};

// The server hears nobody who has not sent the token first.
function createAuthenticatedSocket(url, token) {
    const socket = new WebSocket(url);
    let isTokenSent = false;
    socket.send = function (data) {
        if (!isTokenSent) {
            WebSocket.prototype.send.call(socket, 'VXSecToken:' + token);
            isTokenSent = true;
        }
        WebSocket.prototype.send.call(socket, data);
    };
    return socket;
}

function createTransport(url, token) {
    transport = isSandboxed() ? new MessagingTransport() : createAuthenticatedSocket(url, token);
    return transport;
}

// Call it when onopen and onmessage are set. A socket opens by itself; a bridge is open at once,
// and its native side is told so.
function openTransport(theTransport = transport) {
    if (!isSandboxed()) {
        return;
    }
    theTransport.onopen();
    theTransport.send('___INIT___');
}
