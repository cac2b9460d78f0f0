#include "VXSampleOutcomeView.h"

#include <VXNetworking/VXNetworkingError.h>

#include <QtGui/QFontDatabase>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostCharacters = 20'000; // what a person reads; a long body makes Qt slow

QString shortened(const QString& theText)
{
    if (theText.size() <= mostCharacters)
        return theText;
    return theText.first(mostCharacters) + u"\n…"_s;
}

} // namespace

VXSampleOutcomeView::VXSampleOutcomeView(const QString& theEmptyText, QWidget* theParent)
    : QWidget(theParent)
    , myHeadline(new QLabel(this))
    , myDetails(new QLabel(this))
    , myBody(new QPlainTextEdit(this))
{
    myHeadline->setObjectName(u"outcomeHeadline"_s);
    myHeadline->setWordWrap(true);
    myDetails->setObjectName(u"outcomeDetails"_s);
    myDetails->setTextFormat(Qt::PlainText);
    myDetails->setWordWrap(true);
    myDetails->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    myBody->setObjectName(u"outcomeBody"_s);
    myBody->setAccessibleName(tr("Antwort"));
    myBody->setPlaceholderText(theEmptyText);
    myBody->setReadOnly(true);
    myBody->setTabChangesFocus(true);
    myBody->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(myHeadline);
    layout->addWidget(myDetails);
    layout->addWidget(myBody, 1);
    myHeadline->hide();
    myDetails->hide();
}

VXSampleOutcomeView::~VXSampleOutcomeView() = default;

void VXSampleOutcomeView::showEnd(const VXNetworkingError& theError, const QString& theSuccess,
                                  const QString& theBody)
{
    const bool isError = theError.errorOccurred();
    myHeadline->setTextFormat(isError ? Qt::RichText : Qt::PlainText);
    myHeadline->setText(isError ? theError.errorMessage() : theSuccess);
    myHeadline->setVisible(true);
    myDetails->setText(isError ? theError.errorDetails() : QString());
    myDetails->setVisible(isError);
    myBody->setPlainText(shortened(theBody));
}

void VXSampleOutcomeView::showText(const QString& theHeadline, const QString& theBody)
{
    myHeadline->setTextFormat(Qt::PlainText);
    myHeadline->setText(theHeadline);
    myHeadline->setVisible(true);
    myDetails->setVisible(false);
    myBody->setPlainText(shortened(theBody));
}
