'use strict';

// Addresses outside the program open in the user's own browser or mail program: the program is
// asked by a request of its scheme. Its answer is always "not found", so there is nothing to wait
// for. The program changes nothing in this page by itself.
for (const link of document.querySelectorAll('a[data-outside]')) {
    link.addEventListener('click', event => {
        event.preventDefault();
        new Image().src = 'tov://localhost/openUrl?url=' + encodeURIComponent(link.href);
        document.getElementById('status').textContent = `„${link.textContent}“ wird geöffnet.`;
    });
}
