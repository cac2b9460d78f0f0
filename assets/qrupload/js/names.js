// Names for the photos: safe as a file name, short enough, and used only once.

var VXUpload = window.VXUpload || {};

VXUpload.Names = function (storage) {
    'use strict';

    // UTF-8 bytes. The computer adds six of its own, and its file system takes 255.
    var LIMIT = 200;
    var LONGEST_EXTENSION = 16;
    var KEY = 'vx-used-names';
    var KEPT_FOR = 48 * 60 * 60 * 1000; // milliseconds

    var EXTENSIONS = {
        'image/jpeg': 'jpg',
        'image/svg+xml': 'svg',
        'image/tiff': 'tif',
        'image/vnd.microsoft.icon': 'ico',
        'image/x-icon': 'ico'
    };

    function underscores(text) {
        return text.replace(/[\s\S]/g, '_');
    }

    // A half of a surrogate pair on its own has no UTF-8 form: encodeURIComponent would throw.
    function withoutLoneSurrogates(text) {
        return text.replace(/[\uD800-\uDBFF][\uDC00-\uDFFF]|[\uD800-\uDFFF]/g, function (match) {
            return match.length === 2 ? match : '_';
        });
    }

    // Control characters, separators of paths and lines, and marks that turn the reading direction.
    function withoutDangers(text) {
        return text
            .replace(/^\s+|\s+$/g, '')
            .replace(/[\u0000-\u001F\u007F-\u009F\u2028-\u202E\u2066-\u2069\/\\]/g, '_')
            .replace(/^[:.]+/, underscores);
    }

    function composed(text) {
        return text.normalize ? text.normalize('NFC') : text;
    }

    function extensionForType(type) {
        var match = /^image\/([a-z0-9]+)$/.exec(type);
        return EXTENSIONS[type] || (match ? match[1] : 'jpg');
    }

    function split(text, type) {
        var dot = text.lastIndexOf('.');
        var extension = text.slice(dot + 1);
        var isExtension = dot > 0 && extension.length <= LONGEST_EXTENSION && /^\S+$/.test(extension);
        return {
            base: isExtension ? text.slice(0, dot) : text.replace(/\.+$/, ''),
            extension: isExtension ? extension : extensionForType(type)
        };
    }

    function utf8Length(text) {
        return unescape(encodeURIComponent(text)).length;
    }

    function shortened(text, limit) {
        var result = withoutLoneSurrogates(text.slice(0, limit));
        while (utf8Length(result) > limit)
            result = result.slice(0, /[\uDC00-\uDFFF]$/.test(result) ? -2 : -1);
        return result;
    }

    function joined(parts, number) {
        var tail = (number > 1 ? ' (' + number + ')' : '') + '.' + parts.extension;
        return shortened(parts.base, LIMIT - utf8Length(tail)) + tail;
    }

    function safeParts(file) {
        var text = composed(withoutDangers(withoutLoneSurrogates(file.name || '')));
        return split(text || 'Foto', file.type || '');
    }

    // The desktop's file system may not tell capitals from small letters.
    function keyOf(name) {
        return 'name:' + name.toLowerCase();
    }

    function load() {
        try {
            var record = JSON.parse(storage.getItem(KEY));
            return new Date().getTime() - record.time < KEPT_FOR ? record.names : {};
        } catch (error) {
            return {};
        }
    }

    function save(names) {
        try {
            storage.setItem(KEY, JSON.stringify({time: new Date().getTime(), names: names}));
        } catch (error) {
            // A private window refuses storage; the names of this visit are still in memory.
        }
    }

    var used = {};

    function merge(names) {
        for (var key in names)
            used[key] = names[key];
    }

    function claim(file) {
        var parts = safeParts(file);
        var number = 1;
        while (used[keyOf(joined(parts, number))])
            number += 1;
        var name = joined(parts, number);
        used[keyOf(name)] = 1;
        return name;
    }

    // One name for each file, in their order. The first of equal names stays plain, the next get
    // " (2)", " (3)" and so on, also after a reload and in a second tab.
    this.claim = function (files) {
        merge(load());
        var names = files.map(claim);
        save(used);
        return names;
    };
};
