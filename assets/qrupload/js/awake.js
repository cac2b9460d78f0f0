// Keeps the display on while photos are sent: a phone that sleeps drops the transfer. The wake
// lock needs a secure context, which a page from the local network has not, so a silent video
// plays instead. Not every phone honours it; then a photo in flight is simply sent again.

var VXUpload = window.VXUpload || {};

VXUpload.Awake = function (video) {
    'use strict';

    var isHeld = false;
    var lock = null;
    var isAsking = false; // for the lock

    function ignore() {}

    function playVideo() {
        video.muted = true; // the attribute alone does not count for every browser
        var playing = video.play();
        if (playing && playing.then)
            playing.then(null, ignore);
    }

    // Each lock keeps the display on by itself, so there is never more than one. The browser takes
    // it back when the page is hidden or the battery low.
    function takeLock() {
        if (isAsking || (lock && !lock.released))
            return;
        isAsking = true;
        navigator.wakeLock.request('screen').then(function (granted) {
            isAsking = false;
            lock = granted;
            if (!isHeld)
                drop();
        }, function () { isAsking = false; });
    }

    function take() {
        if (navigator.wakeLock)
            takeLock();
        else
            playVideo();
    }

    function drop() {
        if (lock)
            lock.release().then(null, ignore);
        lock = null;
        video.pause();
    }

    // Fetches the video ahead, so that it can start in the tap that opens the picker. As a
    // whole: iOS plays no video of a server that sends no byte ranges.
    this.prepare = function () {
        if (navigator.wakeLock || video.src)
            return;
        var request = new XMLHttpRequest();
        request.open('GET', '/media/awake.mp4');
        request.responseType = 'blob';
        request.onload = function () {
            if (request.status === 200)
                video.src = window.URL.createObjectURL(request.response);
        };
        request.send();
    };

    this.hold = function () {
        isHeld = true;
        take();
    };

    this.release = function () {
        isHeld = false;
        drop();
    };

    document.addEventListener('visibilitychange', function () {
        if (isHeld && document.visibilityState === 'visible')
            take();
        else
            drop();
    });
};
