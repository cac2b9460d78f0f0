// What belongs to this page alone: the values that ordersummary.js expects, and what the native
// side shows by script: showSummary() and showOrdered().

const pageQuery = new URLSearchParams(window.location.search);
var baseUrl = pageQuery.get('webChannelBaseUrl');
var token = pageQuery.get('webChannelToken');

function addRow(body, cells, isHeading) {
    const row = body.insertRow();
    cells.forEach(function (text, index) {
        const cell = document.createElement(isHeading && index === 0 ? 'th' : 'td');
        cell.textContent = text;
        if (isHeading && index === 0) {
            cell.scope = 'row';
        }
        if (index > 0) {
            cell.className = 'number';
        }
        row.append(cell);
    });
}

function showCouponMessage(text, isError) {
    const message = document.getElementById('couponMessage');
    message.textContent = text;
    message.classList.toggle('error', isError);
    document.getElementById('couponCodeEdit').setAttribute('aria-invalid', String(isError));
}

// summary: {articles: [[name, count, price]...], sums: [[name, amount]...], total, couponMessage,
// couponIsWrong}; every price is a text.
function showSummary(summary) {
    const articles = document.getElementById('articles');
    const sums = document.getElementById('sums');
    articles.replaceChildren();
    sums.replaceChildren();
    summary.articles.forEach((cells) => addRow(articles, cells, true));
    summary.sums.forEach((cells) => addRow(sums, [cells[0], '', cells[1]], true));
    document.getElementById('total').textContent = summary.total;
    document.getElementById('connection').textContent = '';
    document.getElementById('orderButton').disabled = false;
    showCouponMessage(summary.couponMessage, summary.couponIsWrong);
}

function showOrdered(text) {
    document.getElementById('orderMessage').textContent = text;
    document.querySelectorAll('button, input').forEach((element) => { element.disabled = true; });
}

// The application's dark skin forces the colour scheme by a style that it adds after the load.
function followColourScheme() {
    const root = document.documentElement;
    root.classList.toggle('dark', getComputedStyle(root).colorScheme.startsWith('dark'));
}

new MutationObserver(followColourScheme).observe(document.head, { childList: true });

window.addEventListener('DOMContentLoaded', function () {
    document.getElementById('linkCoupon').addEventListener('click', function () {
        setCouponEditVisible(true);
        document.getElementById('couponCodeEdit').focus();
    });
    document.getElementById('orderButton').addEventListener('click', function () {
        window.wizardScreen.placeOrder(getNewsletterVisibility() && getNewsletterState());
    });
});
