#include "VXJavaScriptExecutor.h"

#include "VXWebView.h"

#include <VXCore/VXPlatformIndependent.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>

#include <algorithm>
#include <utility>

namespace {

constexpr int pollMilliseconds = 50;

/// Keeps what an engine may still write to. It is never freed: nobody tells when the last answer
/// has come, and one lost hash is better than a write to freed memory.
void abandon(QHash<QString, QVariant>* theResults)
{
    static auto* const abandoned = new QList<QHash<QString, QVariant>*>; // lives on purpose
    abandoned->append(theResults);
}

} // namespace

VXJavaScriptExecutor::VXJavaScriptExecutor(VXWebView* theView)
    : myView(theView)
    , myResults(new QHash<QString, QVariant>) // ours, see the destructor
{
}

VXJavaScriptExecutor::~VXJavaScriptExecutor()
{
    if (mayAnAnswerBeOut())
        abandon(myResults);
    else
        delete myResults;
}

void VXJavaScriptExecutor::addScriptSource(const QString& theScript)
{
    myScripts.append(theScript);
}

void VXJavaScriptExecutor::execute()
{
    const QList<QString> scripts = myScripts; // a view may answer, and be added to, at once
    for (const QString& script : scripts)
        start(script);
    waitForResults();
}

void VXJavaScriptExecutor::start(const QString& theScript)
{
    myHasSpareAnswers = myHasSpareAnswers || myStartedScripts.contains(theScript);
    myStartedScripts.insert(theScript);
    myView->runJavaScript(theScript, myResults);
}

void VXJavaScriptExecutor::waitForResults()
{
    while (!myScripts.isEmpty()) {
        // In a slot that is called by an event, the engine's next one may be posted already; glib's
        // dispatcher overlooks it unless it is woken.
        QAbstractEventDispatcher::instance()->wakeUp();
        QCoreApplication::processEvents();
        VXPlatformIndependent::instance()->sleep(pollMilliseconds);
        myScripts.removeIf(
            [this](const QString& theScript) { return myResults->contains(theScript); });
    }
}

void VXJavaScriptExecutor::resultCallback(const QString& theScript, QVariant theValue)
{
    myHasSpareAnswers = myHasSpareAnswers || myStartedScripts.contains(theScript);
    (*myResults)[theScript] = std::move(theValue);
}

QVariant VXJavaScriptExecutor::result(const QString& theScript) const
{
    return myResults->value(theScript);
}

/// Of equal scripts the first answer ended the wait for all, and one given by hand the wait for the
/// engine's: others may still come.
bool VXJavaScriptExecutor::mayAnAnswerBeOut() const
{
    return myHasSpareAnswers || std::ranges::any_of(myScripts, [this](const QString& theScript) {
               return myStartedScripts.contains(theScript);
           });
}
