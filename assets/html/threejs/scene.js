'use strict';

const book = document.getElementById('book');
const angle = document.getElementById('angle');

function turn() {
    book.style.setProperty('--angle', `${angle.value}deg`);
    document.getElementById('degrees').textContent = `${angle.value}°`;
}

function showThatNothingIsThere() {
    document.getElementById('stage').hidden = true;
    document.getElementById('turn').hidden = true;
    document.getElementById('missing').hidden = false;
}

angle.addEventListener('input', turn);
document.getElementById('turn').addEventListener('submit', event => event.preventDefault());

const front = document.getElementById('front');
front.addEventListener('error', showThatNothingIsThere);
if (front.complete && front.naturalWidth === 0)
    showThatNothingIsThere(); // it failed before this script ran
