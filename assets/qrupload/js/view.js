// Everything that touches the document. Texts come from the server; the rest are symbols.

var VXUpload = window.VXUpload || {};

VXUpload.View = function (thumbnails) {
    'use strict';

    // The only text of our own: for when the texts themselves cannot be loaded.
    var NO_TEXTS = 'Der Computer antwortet nicht.<br>Bitte scannen Sie den QR-Code erneut.';
    // What a screen reader hears of a state; the eye sees the style sheet's picture.
    var SYMBOLS = {waiting: '\u2026', sending: '\u2191', retrying: '\u21BB', done: '\u2713',
        failed: '\u26A0\uFE0E', stopped: '\u25A0'};

    var texts = null;
    var view = this;

    function byId(id) { return document.getElementById(id); }

    function element(name, className, parent) {
        var result = document.createElement(name);
        if (className)
            result.className = className;
        if (parent)
            parent.appendChild(result);
        return result;
    }

    function setText(node, text) {
        if (node.textContent !== text)
            node.textContent = text;
    }

    // ---- numbers

    function decimal(number) {
        return number.toFixed(number < 99.95 ? 1 : 0).replace('.', ',');
    }

    function megabytes(bytes) {
        return decimal(bytes / 1e6) + ' MB';
    }

    function size(bytes) {
        return bytes < 1e6 ? Math.ceil(bytes / 1e3) + ' kB' : megabytes(bytes);
    }

    // ---- one photo

    function retryButton(photo, row) {
        var button = element('button', 'symbol retry', row);
        button.type = 'button';
        button.setAttribute('aria-label', SYMBOLS.retrying + ' ' + photo.name);
        button.onclick = function () {
            photo.row.focus(); // the button is about to go
            view.onretry(photo);
        };
    }

    // Appends the photo's row to the list. The photo keeps it as "row".
    this.addPhoto = function (photo) {
        var row = element('li', '', byId('list'));
        row.tabIndex = -1;
        var frame = element('span', 'frame', row);
        var image = element('img', '', frame);
        image.alt = '';
        var middle = element('div', 'middle', row);
        var name = element('bdi', 'name', middle);
        name.textContent = photo.name;
        var line = element('span', 'line', middle);
        element('span', 'size', line).textContent = size(photo.file.size);
        element('span', 'percent', line).setAttribute('aria-hidden', 'true');
        var progress = element('progress', '', middle);
        progress.max = 100;
        progress.setAttribute('aria-label', photo.name);
        element('span', 'state spoken', row);
        element('span', 'mark', row).setAttribute('aria-hidden', 'true');
        retryButton(photo, row);
        photo.row = row;
        thumbnails.add(image, photo.file);
    };

    // All bytes gone is not yet stored, so 100 waits for the server's word.
    function percent(photo) {
        if (photo.state === 'done')
            return 100;
        return photo.file.size ? Math.min(99, Math.floor(100 * photo.sent / photo.file.size)) : 0;
    }

    this.showPhoto = function (photo) {
        var row = photo.row;
        var value = percent(photo);
        if (row.getAttribute('data-state') !== photo.state) {
            row.setAttribute('data-state', photo.state);
            setText(row.querySelector('.state'), SYMBOLS[photo.state]);
        }
        row.querySelector('progress').value = value;
        setText(row.querySelector('.percent'), photo.state === 'sending' ? value + ' %' : '');
    };

    // ---- the panel above the list

    // A text of the server may break its line with <br>; it is never taken as HTML.
    function lines(text) {
        return text.split(/<br\s*\/?>/i).map(function (line) {
            return line.replace(/^\s+|\s+$/g, '');
        });
    }

    function counted(text, count) {
        return text + ' (' + count + ')';
    }

    // A screen reader hears every tenth photo, not each.
    function spokenProgress(summary) {
        var tenth = summary.done - summary.done % 10;
        return tenth ? ' ' + tenth + ' / ' + summary.count : '';
    }

    function leftovers(summary) {
        return [[SYMBOLS.done, summary.done], [SYMBOLS.failed, summary.failed],
            [SYMBOLS.stopped, summary.stopped]]
            .filter(function (pair) { return pair[1]; })
            .map(function (pair) { return pair.join('\u00A0'); })
            .join('\u2003');
    }

    function mood(summary) {
        if (summary.connection === 'refused' || summary.connection === 'lost')
            return 'lost';
        if (summary.pending)
            return 'busy';
        if (!summary.count)
            return 'quiet';
        if (summary.failed)
            return 'failed';
        return summary.stopped ? 'stopped' : 'done';
    }

    function statusLines(name, summary) {
        switch (name) {
        case 'lost':
            return lines(texts ? texts.textNoConnect : NO_TEXTS);
        case 'busy':
            return lines(texts.textProgress);
        case 'done':
            return [counted(lines(texts.textSuccess).join(' '), summary.count)];
        case 'failed':
        case 'stopped':
            return [leftovers(summary)];
        default:
            return [];
        }
    }

    // Written only when it changes: each writing is spoken.
    function say(list, spoken) {
        var status = byId('status');
        var key = list.join('\n') + spoken;
        if (status.getAttribute('data-key') === key)
            return;
        status.setAttribute('data-key', key);
        status.textContent = '';
        list.forEach(function (line) { element('div', '', status).textContent = line; });
        element('span', 'spoken', status).textContent = spoken;
    }

    function showFigures(summary) {
        var total = byId('total');
        setText(byId('count'), summary.done + ' / ' + summary.count);
        setText(byId('bytes'), decimal(summary.sent / 1e6) + ' / ' + megabytes(summary.bytes));
        // Each photo counts as a little more than its bytes: empty ones move the bar as well.
        total.max = Math.max(1, summary.bytes + summary.count);
        total.value = summary.sent + summary.done;
    }

    function isUsable(button) {
        return !button.disabled && !button.hidden;
    }

    // A button that goes, or can't be pressed any more, must not take the focus with it.
    function keepFocus(focused) {
        if (['pick', 'stop', 'again'].indexOf(focused.id) >= 0 && !isUsable(focused))
            byId(isUsable(byId('pick')) ? 'pick' : 'again').focus();
    }

    this.showSummary = function (summary) {
        var name = mood(summary);
        var focused = document.activeElement || document.body;
        byId('panel').setAttribute('data-mood', name);
        byId('panel').setAttribute('data-has-photos', summary.count > 0);
        byId('pick').disabled = summary.connection !== 'admitted';
        say(statusLines(name, summary), name === 'busy' ? spokenProgress(summary) : '');
        showFigures(summary);
        byId('stop').hidden = name !== 'busy';
        byId('again').hidden = ['lost', 'failed', 'stopped'].indexOf(name) < 0;
        keepFocus(focused);
    };

    // ---- texts and taps

    this.setTexts = function (newTexts) {
        texts = newTexts;
        document.title = texts.title;
        setText(byId('greeting'), texts.textGreeting);
        setText(byId('pick-text'), texts.textButton);
        byId('pick').hidden = false;
        byId('total').setAttribute('aria-label', texts.textProgress);
        byId('stop').setAttribute('aria-label', SYMBOLS.stopped + ' ' + texts.textProgress);
        byId('again').setAttribute('aria-label', SYMBOLS.retrying + ' ' + texts.textProgress);
    };

    // The page's script sets these.
    this.onpick = this.onfiles = this.oncancel = this.onretry = this.onstop = function () {};

    byId('pick').onclick = function () {
        view.onpick();
        byId('file').click();
    };
    byId('file').onchange = function () {
        var files = [].slice.call(this.files);
        this.value = ''; // or the same photo could not be picked again
        view.onfiles(files);
    };
    byId('file').addEventListener('cancel', function () { view.oncancel(); });
    byId('stop').onclick = function () { view.onstop(); };
    byId('again').onclick = function () { view.onretry(null); };
};
