#include "VXSampleOrderPanel.h"

#include "VXSampleContext.h"
#include "VXSampleOrder.h"
#include "VXSampleOutcomeView.h"
#include "VXSampleSimulator.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkingResult.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QUrlQuery>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QVBoxLayout>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

VXNetworkingResult exchange(const QUrl& theUrl)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    return VXSampleOrder::exchange(operation);
}

} // namespace

VXSampleOrderPanel::VXSampleOrderPanel(VXSampleContext& theContext, QWidget* theParent)
    : VXSamplePanel(tr("Bestellung"),
                    tr("Eine Bestellung im XML-Protokoll. Der eingebaute Dienst antwortet mit dem "
                       "gewünschten Fehler; 0 bedeutet Erfolg."),
                    theParent)
    , myContext(theContext)
{
    addWishes();
    myOrder = new QPushButton(tr("&Bestellen"), this);
    myOrder->setObjectName(u"orderButton"_s);
    myOrder->setDefault(true);
    connect(myOrder, &QPushButton::clicked, this, &VXSampleOrderPanel::order);
    content()->addWidget(myOrder, 0, Qt::AlignLeft);
    myOutcome = new VXSampleOutcomeView(tr("Noch nichts bestellt."), this);
    content()->addWidget(myOutcome, 1);
}

VXSampleOrderPanel::~VXSampleOrderPanel() = default;

void VXSampleOrderPanel::addWishes()
{
    myCode = new QSpinBox(this);
    myCode->setObjectName(u"errorCodeBox"_s);
    myCode->setRange(0, std::numeric_limits<int>::max());
    myCode->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    myText = new QLineEdit(this);
    connect(myText, &QLineEdit::returnPressed, this, &VXSampleOrderPanel::order);
    myCoupon = new QLineEdit(this);
    myCoupon->setObjectName(u"couponEdit"_s);
    connect(myCoupon, &QLineEdit::returnPressed, this, &VXSampleOrderPanel::order);
    myWait = new QSpinBox(this);
    myWait->setRange(0, 1440);
    myWait->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    myWait->setSuffix(tr(" min"));
    myMediate = new QCheckBox(tr("Den &Kunden mit einem Dialog unterrichten"), this);
    myMediate->setObjectName(u"mediateBox"_s);

    auto* form = new QFormLayout;
    form->addRow(tr("&Fehlercode:"), myCode);
    form->addRow(tr("Fehler&text:"), myText);
    form->addRow(tr("&Gutschein:"), myCoupon);
    form->addRow(tr("&Wartezeit:"), myWait);
    form->addRow(myMediate);
    content()->addLayout(form);
}

QString VXSampleOrderPanel::pathAndQuery() const
{
    QUrlQuery query;
    const auto add = [&query](const QString& theName, const QString& theValue) {
        if (!theValue.isEmpty() && theValue != "0"_L1)
            query.addQueryItem(theName, QString::fromLatin1(QUrl::toPercentEncoding(theValue)));
    };
    add(u"errorcode"_s, QString::number(myCode->value()));
    add(u"text"_s, myText->text());
    add(u"coupon"_s, myCoupon->text());
    add(u"wait"_s, QString::number(myWait->value()));
    return u"/xtci/order?"_s + query.toString(QUrl::FullyEncoded);
}

void VXSampleOrderPanel::order()
{
    if (!myOrder->isEnabled()) // the Return key, while an order is on its way
        return;
    const QUrl url = myContext.simulator.address(pathAndQuery());
    if (!url.isValid()) {
        myOutcome->showText(myContext.simulator.errorText());
        return;
    }
    myOrder->setEnabled(false);
    VXNetworkingResult result = exchange(url);
    show(result);
    // The mediator's dialog may offer another try.
    while (myMediate->isChecked() && result.error().errorOccurred() &&
           VXRequestNetwork::instance()->handleNetworkError(result.error(), window())) {
        result = exchange(url);
        show(result);
    }
    myOrder->setEnabled(true);
    Q_EMIT exchanged();
}

void VXSampleOrderPanel::show(const VXNetworkingResult& theResult)
{
    myOutcome->showEnd(
        theResult.error(),
        tr("Die Bestellung ist angekommen, Zeit des Servers: %1.").arg(theResult.serverTimeStamp()),
        VXSampleOrder::contentText(theResult));
}
