// Puts the page together.

(function () {
    'use strict';

    var PICKING_LIMIT = 120000; // milliseconds that the display stays on for a picker

    function storage() {
        try {
            return window.localStorage;
        } catch (error) {
            return null; // refused by the browser's settings
        }
    }

    var view = new VXUpload.View(new VXUpload.Thumbnails());
    var awake = new VXUpload.Awake(document.getElementById('awake'));
    var queue = new VXUpload.Queue(new VXUpload.Server(), new VXUpload.Names(storage()), {
        photoAdded: view.addPhoto,
        photoChanged: view.showPhoto,
        queueChanged: refresh,
        textsArrived: function (texts) {
            view.setTexts(texts);
            awake.prepare();
        }
    });
    var isBusy = false;

    function askBeforeLeaving(event) {
        event.preventDefault();
        event.returnValue = '';
        return '';
    }

    function setBusy(busy) {
        if (busy === isBusy)
            return;
        isBusy = busy;
        window.onbeforeunload = busy ? askBeforeLeaving : null;
        if (busy)
            awake.hold();
        else
            awake.release();
    }

    var isDrawing = false;

    // Many photos change at once when a batch is added; the panel is drawn once for all.
    function refresh() {
        if (isDrawing)
            return;
        isDrawing = true;
        window.setTimeout(function () {
            isDrawing = false;
            var summary = queue.summary();
            view.showSummary(summary);
            setBusy(summary.pending > 0);
        }, 0);
    }

    function check() {
        if (document.visibilityState !== 'hidden')
            queue.check();
    }

    function sleepUnlessBusy() {
        if (!isBusy)
            awake.release();
    }

    // In the tap itself, since browsers start no video later, and again when the picker, which
    // may have paused it, is done.
    view.onpick = function () {
        awake.hold();
        window.setTimeout(sleepUnlessBusy, PICKING_LIMIT);
    };
    view.onfiles = function (files) {
        awake.hold();
        if (files.length)
            queue.add(files);
        refresh();
    };
    view.oncancel = sleepUnlessBusy;
    view.onretry = queue.retry;
    view.onstop = queue.stop;

    window.addEventListener('online', check);
    window.addEventListener('offline', check);
    window.addEventListener('pageshow', check);
    document.addEventListener('visibilitychange', check);
    queue.check();
}());
