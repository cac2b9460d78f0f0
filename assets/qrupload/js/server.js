// The requests that this page makes. Nothing here knows the queue or the document.

var VXUpload = window.VXUpload || {};

VXUpload.Server = function () {
    'use strict';

    var ANSWER_LIMIT = 10000; // milliseconds for the texts
    var STALL_LIMIT = 60000; // milliseconds without progress and without an answer

    function parsedTexts(body) {
        try {
            var texts = JSON.parse(body);
            return typeof texts.textButton === 'string' ? texts : null;
        } catch (error) {
            return null;
        }
    }

    // Asks whether this phone is admitted. Calls done(outcome, texts) once; the outcome is
    // "admitted", "refused" (the texts come all the same) or "lost" (texts are null then; also
    // when somebody else answers, such as the login page of a guest network).
    this.ask = function (done) {
        var request = new XMLHttpRequest();
        function lost() { done('lost', null); }
        request.open('GET', '/translations.json');
        request.setRequestHeader('Cache-Control', 'no-cache');
        request.timeout = ANSWER_LIMIT;
        request.onerror = request.onabort = request.ontimeout = lost;
        request.onload = function () {
            var texts = parsedTexts(request.responseText);
            if (texts && (request.status === 200 || request.status === 403))
                done(request.status === 200 ? 'admitted' : 'refused', texts);
            else
                lost();
        };
        request.send();
    };

    // Sends one photo. The browser reads it from its file piece by piece. Calls progress(bytes)
    // on the way and then done(outcome) once: "stored", "refused" or "failed". Returns a function
    // that breaks the transfer off, which then has failed.
    this.send = function (body, name, progress, done) {
        var request = new XMLHttpRequest();
        var watchdog = null;

        function finish(outcome) {
            window.clearTimeout(watchdog);
            done(outcome);
        }
        function failed() { finish('failed'); }
        function feed() {
            window.clearTimeout(watchdog);
            watchdog = window.setTimeout(function () { request.abort(); }, STALL_LIMIT);
        }

        request.open('POST', '/upload?file=' + encodeURIComponent(name));
        request.setRequestHeader('Content-Type', 'application/octet-stream');
        request.upload.onprogress = function (event) {
            feed();
            progress(event.loaded);
        };
        request.onerror = request.onabort = failed;
        request.onload = function () {
            var isStored = request.status === 200 && request.responseText === 'OK';
            finish(isStored ? 'stored' : request.status === 403 ? 'refused' : 'failed');
        };
        feed();
        try {
            request.send(body);
        } catch (error) {
            failed();
        }
        return function () { request.abort(); };
    };
};
