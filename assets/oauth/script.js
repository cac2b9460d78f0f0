// Shows the program's own text. ES5 and ASCII, like the browsers and the server want it. Whatever
// fails, the text of the page itself stays.
(function () {
    'use strict';

    var paragraph = document.getElementById('maintext');

    // The text as text, and only the part between the outermost <strong> and </strong> strong.
    function show(text) {
        var parts = /^([\s\S]*?)<strong>([\s\S]*)<\/strong>([\s\S]*)$/.exec(text);
        var strong = document.createElement('strong');
        paragraph.textContent = parts ? parts[1] : text;
        if (!parts)
            return;
        strong.textContent = parts[2];
        paragraph.appendChild(strong);
        paragraph.appendChild(document.createTextNode(parts[3]));
    }

    function load() {
        var request = new XMLHttpRequest();
        request.onload = function () {
            var text;
            if (request.status !== 200)
                return;
            try {
                text = JSON.parse(request.responseText).maintext;
            } catch (error) {
                return;
            }
            if (typeof text === 'string' && text)
                show(text);
        };
        request.open('GET', '/translations.json');
        request.send();
    }

    // The address holds the code of the login: out of the reader's sight and history.
    if (window.history && history.replaceState)
        history.replaceState(null, '', '/');
    load();
}());
