// What happens to each photo: waiting, sending, retrying, then done, failed or stopped.

var VXUpload = window.VXUpload || {};

VXUpload.Queue = function (server, names, listener) {
    'use strict';

    var SMALL = 8 * 1024 * 1024; // bytes; two photos below this size may travel together
    var COPY_LIMIT = 50 * 1024 * 1024; // bytes; the last attempt sends a slice of a smaller photo
    var PAUSES = [1000, 3000]; // milliseconds before the first and the second automatic attempt
    var GAP = 4000; // milliseconds without an answer that the customer need not hear of
    var QUIET = 5000; // milliseconds without progress after which we ask whether anybody is there
    var LONG_QUIET = 20000; // milliseconds after which a half-sent photo starts anew
    var RECHECK = 5000; // milliseconds between two questions to a server that does not admit us

    var photos = [];
    var batch = 0;
    var connection = 'unknown'; // then "admitted", "refused" or "lost"
    var isAsking = false;
    var askedAt = 0; // milliseconds since the epoch, like the next
    var lostSince = 0; // 0 while questions are answered
    var recheck = null;
    var isIdle = true;

    function now() {
        return new Date().getTime();
    }

    function has(photo, states) {
        return states.indexOf(photo.state) >= 0;
    }

    function inState() {
        var states = [].slice.call(arguments);
        return photos.filter(function (photo) { return has(photo, states); });
    }

    function setState(photo, state) {
        photo.state = state;
        if (state !== 'sending')
            photo.sent = state === 'done' ? photo.file.size : 0;
        listener.photoChanged(photo);
        listener.queueChanged();
    }

    // ---- the server's consent

    function schedule(pause) {
        window.clearTimeout(recheck);
        recheck = window.setTimeout(ask, pause);
    }

    function isQuiet(photo, pause) {
        return now() - photo.heardAt >= pause;
    }

    // A transfer whose other end is gone would hang for a minute, or until the phone's own
    // network gives up.
    function breakOff(isHopeless) {
        inState('sending').filter(isHopeless).forEach(function (photo) {
            photo.isBrokenOff = true;
            photo.breakOff();
        });
    }

    // Photos that failed because nobody answered go on by themselves; others wait for a tap.
    function giveUpForNow() {
        breakOff(function (photo) { return isQuiet(photo, QUIET); });
        inState('retrying').forEach(function (photo) {
            photo.wasCutOff = true;
            setState(photo, 'failed');
        });
    }

    function resumeCutOff() {
        inState('failed').forEach(function (photo) {
            if (photo.wasCutOff)
                enqueue(photo);
        });
    }

    function whenAdmitted() {
        lostSince = 0;
        connection = 'admitted';
        breakOff(function (photo) {
            return isQuiet(photo, LONG_QUIET) && photo.sent < photo.file.size;
        });
        resumeCutOff();
        pump();
    }

    function whenRefused() {
        lostSince = 0;
        connection = 'refused';
        breakOff(function (photo) { return isQuiet(photo, QUIET); });
        schedule(RECHECK);
    }

    // A short gap is not worth a word, nor is an answer that only a busy line delays.
    function isGap() {
        var isMoving = inState('sending').some(function (photo) { return !isQuiet(photo, QUIET); });
        return connection === 'admitted' && (isMoving || now() - lostSince < GAP);
    }

    function whenLost() {
        lostSince = lostSince || askedAt;
        if (isGap()) {
            schedule(PAUSES[0]);
        } else {
            connection = 'lost';
            giveUpForNow();
            schedule(RECHECK);
        }
    }

    function ask() {
        if (isAsking)
            return;
        isAsking = true;
        askedAt = now();
        window.clearTimeout(recheck);
        server.ask(function (outcome, texts) {
            isAsking = false;
            if (texts)
                listener.textsArrived(texts);
            ({admitted: whenAdmitted, refused: whenRefused, lost: whenLost})[outcome]();
            listener.queueChanged();
        });
    }

    function watch() {
        var sending = inState('sending');
        if (sending.length && sending.every(function (photo) { return isQuiet(photo, QUIET); }))
            ask();
    }

    // ---- sending

    function maySend() {
        return connection === 'admitted' && !isAsking && !lostSince;
    }

    function isDue(photo) {
        return photo.state === 'waiting' || (photo.state === 'retrying' && photo.isDue);
    }

    // One at a time: the computer holds each photo in memory twice. Small ones go in pairs,
    // which hides the pause between two of them.
    function nextPhoto() {
        var sending = inState('sending');
        var photo = photos.filter(isDue)[0];
        if (!photo || !sending.length)
            return photo;
        var isPair = sending.length === 1 && sending[0].file.size < SMALL && photo.file.size < SMALL;
        return isPair ? photo : null;
    }

    function pump() {
        var photo = maySend() ? nextPhoto() : null;
        while (photo) {
            send(photo);
            photo = nextPhoto();
        }
        noticeEnd();
    }

    // The question after a batch makes the computer forget its copy of the last photo, which it
    // keeps with the connection until the next request.
    function noticeEnd() {
        if (isIdle || inState('waiting', 'sending', 'retrying').length)
            return;
        isIdle = true;
        ask();
    }

    // Some Android pickers hand out files that change under the browser; a slice has no date.
    function bodyOf(photo) {
        var isLastAttempt = photo.attempts === PAUSES.length;
        return isLastAttempt && photo.file.size < COPY_LIMIT && photo.file.slice
            ? photo.file.slice(0, photo.file.size) : photo.file;
    }

    function send(photo) {
        photo.heardAt = now();
        photo.isBrokenOff = false;
        setState(photo, 'sending');
        photo.breakOff = server.send(bodyOf(photo), photo.name, function (bytes) {
            photo.heardAt = now();
            photo.sent = Math.min(bytes, photo.file.size);
            listener.photoChanged(photo);
            listener.queueChanged();
        }, function (outcome) {
            ({stored: stored, refused: refused, failed: failed})[outcome](photo);
        });
    }

    function stored(photo) {
        setState(photo, 'done');
        pump();
    }

    // Nothing is lost: the photo stays in the list until the customer scans the code again.
    function refused(photo) {
        connection = 'refused';
        setState(photo, 'waiting');
        schedule(RECHECK);
    }

    // The same name again is safe: the computer replaces a file as a whole or not at all.
    function failed(photo) {
        var pause = PAUSES[photo.attempts];
        if (photo.isBrokenOff) { // not the photo's fault
            photo.isDue = true;
            setState(photo, connection === 'refused' ? 'waiting' : 'retrying');
            return;
        }
        photo.attempts += 1;
        if (pause) {
            photo.isDue = false;
            setState(photo, 'retrying');
            // No look at the clock: it may be set, and timers come a little early at times.
            window.setTimeout(function () {
                photo.isDue = true;
                pump();
            }, pause);
        } else {
            setState(photo, 'failed');
        }
        ask();
    }

    // ---- what the customer does

    function enqueue(photo) {
        photo.attempts = 0;
        photo.wasCutOff = false;
        photo.batch = batch;
        setState(photo, 'waiting');
    }

    // The figures start anew once nothing is left to do.
    function beginBatch() {
        if (photos.every(function (photo) { return photo.state === 'done'; }))
            batch += 1;
    }

    // A refused photo is noticed only after all its bytes went over, so a batch begins with the
    // question whether we are still admitted.
    function go() {
        var wasIdle = isIdle;
        isIdle = false;
        if (wasIdle || connection !== 'admitted')
            ask();
        else
            pump();
    }

    // Appends files; also while others are on their way.
    this.add = function (files) {
        beginBatch();
        names.claim(files).forEach(function (name, index) {
            var photo = {file: files[index], name: name, sent: 0};
            photos.push(photo);
            listener.photoAdded(photo);
            enqueue(photo);
        });
        go();
    };

    // Sends one photo, or all that failed or were stopped, once more.
    this.retry = function (photo) {
        (photo ? [photo] : inState('failed', 'stopped')).forEach(enqueue);
        go();
    };

    // What is on its way arrives; the rest stays here.
    this.stop = function () {
        inState('waiting', 'retrying').forEach(function (photo) { setState(photo, 'stopped'); });
        noticeEnd();
    };

    // Asks the server at once: at the start, and when there is reason to hope.
    this.check = ask;

    function sum(list, value) {
        return list.reduce(function (total, photo) { return total + value(photo); }, 0);
    }

    function isOfBatch(photo) {
        return photo.batch === batch;
    }

    // Counts and bytes of the current batch, and what is left of all of them.
    this.summary = function () {
        var current = photos.filter(isOfBatch);
        return {
            connection: connection,
            count: current.length,
            done: current.filter(function (photo) { return photo.state === 'done'; }).length,
            bytes: sum(current, function (photo) { return photo.file.size; }),
            sent: sum(current, function (photo) { return photo.sent; }),
            pending: inState('waiting', 'sending', 'retrying').length,
            failed: inState('failed').length,
            stopped: inState('stopped').length
        };
    };

    window.setInterval(watch, 1000);
};
