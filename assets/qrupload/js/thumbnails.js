// Small pictures in the list: made one after the other, and only for rows that come into view,
// because a phone cannot hold forty decoded photos.

var VXUpload = window.VXUpload || {};

VXUpload.Thumbnails = function () {
    'use strict';

    var EDGE = 168; // pixels: 56 on a display with three pixels per unit
    var WITHOUT_OBSERVER = 20; // rows that get a picture when the browser cannot tell what is in view

    var jobs = [];
    var isBusy = false;
    var asked = 0;
    var waiting = []; // {image, file} not in view yet

    function finish(image, isShown) {
        if (isShown)
            image.className = 'shown';
        isBusy = false;
        next();
    }

    function show(image, blob) {
        var url = window.URL.createObjectURL(blob);
        image.onload = image.onerror = function (event) {
            window.URL.revokeObjectURL(url);
            image.onload = image.onerror = null;
            if (event.type === 'error')
                image.removeAttribute('src');
            finish(image, event.type === 'load');
        };
        image.src = url;
    }

    function squareOf(bitmap) {
        var canvas = document.createElement('canvas');
        var edge = Math.min(bitmap.width, bitmap.height);
        canvas.width = canvas.height = EDGE;
        canvas.getContext('2d').drawImage(bitmap, (bitmap.width - edge) / 2,
            (bitmap.height - edge) / 2, edge, edge, 0, 0, EDGE, EDGE);
        if (bitmap.close)
            bitmap.close();
        return canvas;
    }

    function shrink(job) {
        function showWhole() { show(job.image, job.file); }
        window.createImageBitmap(job.file, {resizeWidth: EDGE * 2, resizeQuality: 'medium'})
            .then(function (bitmap) {
                squareOf(bitmap).toBlob(function (blob) {
                    show(job.image, blob || job.file);
                }, 'image/png');
            })
            .then(null, showWhole);
    }

    function next() {
        if (isBusy || !jobs.length)
            return;
        isBusy = true;
        var job = jobs.shift();
        if (window.createImageBitmap && document.createElement('canvas').toBlob)
            shrink(job);
        else
            show(job.image, job.file);
    }

    function enqueue(job) {
        jobs.push(job);
        next();
    }

    function seen(image) {
        waiting = waiting.filter(function (job) {
            if (job.image === image)
                enqueue(job);
            return job.image !== image;
        });
    }

    var observer = !window.IntersectionObserver ? null : new IntersectionObserver(
        function (entries) {
            entries.forEach(function (entry) {
                if (!entry.isIntersecting)
                    return;
                observer.unobserve(entry.target);
                seen(entry.target);
            });
        }, {rootMargin: '200px'});

    // Fills the image once its row comes near the view. A file that the browser cannot decode
    // (HEIC on most phones) leaves it empty, and the style sheet's symbol stays.
    this.add = function (image, file) {
        asked += 1;
        if (observer) {
            waiting.push({image: image, file: file});
            observer.observe(image);
        } else if (asked <= WITHOUT_OBSERVER) {
            enqueue({image: image, file: file});
        }
    };
};
