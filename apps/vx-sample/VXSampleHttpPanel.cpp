#include "VXSampleHttpPanel.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleOutcomeView.h"
#include "VXSampleSimulator.h"
#include "VXSampleWorkers.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXUploadFile.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int defaultTimeout = 120; // seconds
constexpr int mostThreads = 32;

struct Example
{
    const char* title; ///< German; the context of its translation is VXSampleHttpPanel
    QLatin1StringView method;
    QLatin1StringView address;
    QLatin1StringView payload;
};

constexpr std::array examples{
    Example{QT_TRANSLATE_NOOP("VXSampleHttpPanel", "Was der Dienst empfängt"), "GET"_L1, "/echo"_L1,
            ""_L1},
    Example{QT_TRANSLATE_NOOP("VXSampleHttpPanel", "JSON senden"), "POST"_L1, "/echo"_L1,
            "{\"photo\": 1}"_L1},
    Example{QT_TRANSLATE_NOOP("VXSampleHttpPanel", "Langsamer Download mit Fortschritt"), "GET"_L1,
            "/bytes/20000000?seed=7&rate=4000000"_L1, ""_L1},
    Example{QT_TRANSLATE_NOOP("VXSampleHttpPanel", "Keine Antwort"), "GET"_L1, "/never"_L1, ""_L1},
    Example{QT_TRANSLATE_NOOP("VXSampleHttpPanel", "Seite fehlt"), "GET"_L1,
            "/status/404?body=gone&type=text/plain"_L1, ""_L1},
    Example{QT_TRANSLATE_NOOP("VXSampleHttpPanel", "Passwort verlangt (demo, demo)"), "GET"_L1,
            "/auth/basic/demo/demo"_L1, ""_L1},
    Example{QT_TRANSLATE_NOOP("VXSampleHttpPanel", "Antwort bricht ab"), "GET"_L1,
            "/truncate/1000"_L1, ""_L1},
};

QString readable(const QByteArray& theBody)
{
    const QJsonDocument json = QJsonDocument::fromJson(theBody);
    if (!json.isNull())
        return QString::fromUtf8(json.toJson());
    const bool isBinary = theBody.contains('\0');
    return isBinary
               ? QString::fromLatin1(theBody.first(qMin<qsizetype>(theBody.size(), 512)).toHex(' '))
               : QString::fromUtf8(theBody);
}

} // namespace

VXSampleHttpPanel::VXSampleHttpPanel(VXSampleContext& theContext, QWidget* theParent)
    : VXSamplePanel(tr("HTTP"),
                    tr("Ein Austausch mit einem Server: eine Adresse mit / am Anfang meint den "
                       "eingebauten Dienst. Das Fenster bleibt dabei bedienbar."),
                    theParent)
    , myContext(theContext)
{
    auto* form = new QFormLayout;
    fillForm(form);
    content()->addLayout(form);
    content()->addWidget(createButtons());
    myOutcome = new VXSampleOutcomeView(tr("Noch nichts gesendet."), this);
    content()->addWidget(myOutcome, 1);
    addExamples();
    setRunning(nullptr);
}

VXSampleHttpPanel::~VXSampleHttpPanel() = default;

void VXSampleHttpPanel::fillForm(QFormLayout* theForm)
{
    myExamples = new QComboBox(this);
    myExamples->setObjectName(u"exampleBox"_s);
    myMethod = new QComboBox(this);
    myMethod->setObjectName(u"methodBox"_s);
    myMethod->addItems({u"GET"_s, u"HEAD"_s, u"POST"_s, u"PUT"_s, u"DELETE"_s});
    myMethod->setAccessibleName(tr("Methode"));
    myAddress = new QLineEdit(this);
    myAddress->setObjectName(u"addressEdit"_s);
    myAddress->setClearButtonEnabled(true);
    connect(myAddress, &QLineEdit::returnPressed, this, &VXSampleHttpPanel::send);
    myPayload = new QPlainTextEdit(this);
    myPayload->setObjectName(u"payloadEdit"_s);
    myPayload->setTabChangesFocus(true);
    myPayload->setMaximumHeight(4 * fontMetrics().lineSpacing());
    myTimeout = new QSpinBox(this);
    myTimeout->setRange(1, 3600);
    myTimeout->setValue(defaultTimeout);
    myTimeout->setSuffix(tr(" s"));
    myThreads = new QSpinBox(this);
    myThreads->setObjectName(u"threadBox"_s);
    myThreads->setRange(0, mostThreads);
    myThreads->setSpecialValueText(tr("keine"));

    auto* line = new QHBoxLayout;
    line->addWidget(myMethod);
    line->addWidget(myAddress, 1);
    auto* numbers = new QHBoxLayout;
    numbers->addWidget(myTimeout);
    auto* threadLabel = new QLabel(tr("Arbeits&threads:"), this);
    threadLabel->setBuddy(myThreads);
    numbers->addWidget(threadLabel);
    numbers->addWidget(myThreads);
    numbers->addStretch(1);
    theForm->addRow(tr("&Beispiel:"), myExamples);
    auto* addressLabel = new QLabel(tr("A&dresse:"), this);
    addressLabel->setBuddy(myAddress);
    theForm->addRow(addressLabel, line);
    theForm->addRow(tr("&Inhalt:"), myPayload);
    auto* timeoutLabel = new QLabel(tr("&Zeitgrenze:"), this);
    timeoutLabel->setBuddy(myTimeout);
    theForm->addRow(timeoutLabel, numbers);
}

void VXSampleHttpPanel::addExamples()
{
    for (const Example& example : examples)
        myExamples->addItem(tr(example.title));
    connect(myExamples, &QComboBox::activated, this, &VXSampleHttpPanel::takeExample);
    takeExample(0);
}

void VXSampleHttpPanel::takeExample(int theIndex)
{
    const Example& example = examples.at(static_cast<std::size_t>(theIndex));
    myMethod->setCurrentText(example.method);
    myAddress->setText(example.address);
    myPayload->setPlainText(example.payload);
}

QWidget* VXSampleHttpPanel::createButtons()
{
    auto* row = new QWidget(this);
    mySend = new QPushButton(tr("&Senden"), row);
    mySend->setObjectName(u"sendButton"_s);
    mySend->setDefault(true);
    connect(mySend, &QPushButton::clicked, this, &VXSampleHttpPanel::send);
    myUpload = new QPushButton(tr("Datei &hochladen ..."), row);
    myUpload->setObjectName(u"uploadButton"_s);
    connect(myUpload, &QPushButton::clicked, this, &VXSampleHttpPanel::uploadFile);
    myProgress = new QProgressBar(row);
    myProgress->setObjectName(u"exchangeProgress"_s);
    myProgress->setAccessibleName(tr("Fortschritt"));
    myCancel = new QPushButton(tr("Abbre&chen"), row);
    myCancel->setObjectName(u"cancelButton"_s);
    connect(myCancel, &QPushButton::clicked, this, &VXSampleHttpPanel::cancel);

    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mySend);
    layout->addWidget(myUpload);
    layout->addWidget(myCancel);
    layout->addWidget(myProgress, 1);
    layout->addStretch();
    return row;
}

void VXSampleHttpPanel::send()
{
    // The Return key comes here, too, while an exchange or the threads handle events.
    const QUrl url = mySend->isEnabled() ? address() : QUrl();
    if (url.isEmpty())
        return;
    if (myThreads->value() > 0) {
        sendInThreads(url);
        return;
    }
    const QByteArray payload = myPayload->toPlainText().toUtf8();
    const bool isJson = !QJsonDocument::fromJson(payload).isNull();
    VXHttpOperation operation =
        VXHttpOperation::create(url, payload, isJson ? ContentJson : ContentOctetStream,
                                VXSampleArguments::operation(myMethod->currentText())
                                    .value_or(QNetworkAccessManager::GetOperation));
    exchange(operation);
}

void VXSampleHttpPanel::exchange(VXHttpOperation& theOperation)
{
    theOperation.setTimeout(myTimeout->value());
    theOperation.setProgressReceiver(this, SLOT(showProgress(qint64, qint64)));
    setRunning(&theOperation);
    QElapsedTimer clock;
    clock.start();
    const QByteArray body = theOperation.exec();
    const qint64 milliseconds = clock.elapsed();
    setRunning(nullptr);

    myOutcome->showEnd(theOperation.errorStatus(),
                       tr("Erfolgreich: Status %1, %2 Bytes in %3 ms.")
                           .arg(QString::number(theOperation.httpResponseCode()),
                                locale().toString(body.size()), locale().toString(milliseconds)),
                       readable(body));
    Q_EMIT exchanged();
}

void VXSampleHttpPanel::sendInThreads(const QUrl& theUrl)
{
    const int count = myThreads->value();
    const int timeout = myTimeout->value();
    QList<VXNetworkingError> errors(count);
    VXNetworkingError* const first = errors.data(); // each thread writes its own element
    mySend->setEnabled(false);
    myUpload->setEnabled(false);
    VXSampleWorkers::run(count, [&theUrl, first, timeout](int theNumber) {
        VXHttpOperation operation =
            VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
        operation.setTimeout(timeout);
        operation.exec();
        first[theNumber] = operation.errorStatus();
    });
    mySend->setEnabled(true);
    myUpload->setEnabled(true);

    const auto failed = std::ranges::find_if(errors, &VXNetworkingError::errorOccurred);
    myOutcome->showEnd(failed == errors.end() ? VXNetworkingError() : *failed,
                       tr("Alle %1 Arbeitsthreads hatten Erfolg.").arg(count), {});
    Q_EMIT exchanged();
}

void VXSampleHttpPanel::uploadFile()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Datei hochladen"));
    const QUrl url = path.isEmpty() ? QUrl() : myContext.simulator.address(u"/multipart"_s);
    if (url.isEmpty())
        return;
    VXHttpOperation operation = VXHttpOperation::create(url, QNetworkAccessManager::PostOperation);
    if (operation.createMultiPart(VXUploadFile(u"photo"_s, path, QString()), {}))
        exchange(operation);
    else
        myOutcome->showText(tr("Die Datei %1 ist nicht lesbar.").arg(path));
}

/// Empty, and the user was told, when there is no address to send to.
QUrl VXSampleHttpPanel::address()
{
    const QString text = myAddress->text().trimmed();
    const QUrl url = myContext.simulator.address(text);
    const bool isUsable = url.isValid() && !url.isRelative() && !url.host().isEmpty();
    if (!isUsable)
        myOutcome->showText(myContext.simulator.errorText().isEmpty()
                                ? tr("\"%1\" ist keine Adresse.").arg(text)
                                : myContext.simulator.errorText());
    return isUsable ? url : QUrl();
}

/// Null: nothing runs any more.
void VXSampleHttpPanel::setRunning(VXHttpOperation* theOperation)
{
    myRunning = theOperation;
    mySend->setEnabled(!theOperation);
    myUpload->setEnabled(!theOperation);
    myCancel->setVisible(theOperation != nullptr);
    myProgress->setVisible(theOperation != nullptr);
    myProgress->setRange(0, 0); // busy, until the length is known
}

void VXSampleHttpPanel::showProgress(qint64 theDone, qint64 theTotal)
{
    constexpr int steps = 1000; // bytes do not fit into the bar's int
    if (theTotal <= 0)
        return;
    myProgress->setRange(0, steps);
    myProgress->setValue(static_cast<int>(theDone * steps / theTotal));
}

void VXSampleHttpPanel::cancel()
{
    if (myRunning)
        Q_EMIT myRunning->abort();
}
