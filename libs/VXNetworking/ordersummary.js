// The order summary: joins the elements of the page to the native object "wizardScreen". The page
// loads qwebchannel.js and webmessage.js before, and defines baseUrl and token.

// Functions that the native side may call by script, too.

function getCouponEditVisiblity() { // spelled so on purpose: hosts call it by this name
    return isShown('couponEntryRow');
}

function getCouponCode() {
    return document.getElementById('couponCodeEdit').value;
}

function setCouponEditVisible(visible) {
    show('couponEntryRow', visible, 'inline');
    show('linkCouponText', !visible, 'inline');
}

function getNewsletterState() {
    return document.getElementById('acceptNewsletter').checked;
}

function getNewsletterVisibility() {
    return isShown('newsletterBox');
}

function isShown(id) {
    return window.getComputedStyle(document.getElementById(id)).display !== 'none';
}

function show(id, visible, display) {
    document.getElementById(id).style.display = visible ? display : 'none';
}

function setCouponCode(code) {
    document.getElementById('couponCodeEdit').value = code;
    show('clearCouponButton', code.trim() !== '', 'inline-block');
}

function setNewsletterVisible(visible) {
    show('newsletterBox', visible, 'block');
}

function setNewsletterChecked(checked) {
    document.getElementById('acceptNewsletter').checked = checked;
}

function applyCoupon() {
    const text = getCouponCode();
    if (text !== '') {
        window.wizardScreen.applyCoupon(text);
    }
}

function clearCoupon() {
    document.getElementById('couponCodeEdit').value = '';
    window.wizardScreen.applyCoupon('');
}

function clickApplyOnEnter(event) {
    if (event.key !== 'Enter' || event.isComposing) {
        return;
    }
    event.preventDefault(); // a form around the field would press its button, too
    if (!event.repeat) {
        document.getElementById('applyCouponButton').click();
    }
}

function wireElements() {
    document.getElementById('applyCouponButton').addEventListener('click', applyCoupon);
    document.getElementById('clearCouponButton').addEventListener('click', clearCoupon);
    document.getElementById('couponCodeEdit').addEventListener('keydown', clickApplyOnEnter);
}

function wireSignals() {
    window.wizardScreen.setCouponEditVisible.connect(setCouponEditVisible);
    window.wizardScreen.setCouponCode.connect(setCouponCode);
    window.wizardScreen.setNewsletterVisible.connect(setNewsletterVisible);
    window.wizardScreen.setNewsletterChecked.connect(setNewsletterChecked);
}

function useChannel(channel) {
    window.wizardScreen = channel.objects.wizardScreen;
    wireElements();
    wireSignals();
    window.wizardScreen.webChannelReady();
}

window.addEventListener('load', function () {
    console.log('Connecting to WebSocket server at ' + baseUrl + '.');
    const socket = createTransport(baseUrl, token);
    socket.onclose = function () {
        console.error('web channel closed');
    };
    socket.onerror = function (error) {
        console.error('web channel error: ' + error);
    };
    socket.onopen = function () {
        new QWebChannel(socket, useChannel);
    };
    openTransport(socket);
});
