#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QVariant>

class VXWebView;

/// Runs a batch of scripts in a page and waits for all their results.
///
/// Results are kept under the exact text of their script until the executor goes, so equal scripts
/// share one. While execute() waits, the events of the thread run: be prepared for re-entry. Use it
/// in the thread of the view, that is the GUI thread.
class VXNETWORKING_EXPORT VXJavaScriptExecutor
{
    Q_DISABLE_COPY_MOVE(VXJavaScriptExecutor)

public:
    /// theView is not owned and must live while execute() runs.
    explicit VXJavaScriptExecutor(VXWebView* theView);

    /// The view may live on: an answer that comes later does no harm.
    virtual ~VXJavaScriptExecutor();

    /// Adds theScript to the next batch; equal ones are run as often as they are added.
    void addScriptSource(const QString& theScript);

    /// Runs the batch in the order of adding, and waits until each script has a result. A text
    /// that has one from an earlier batch counts as answered. There is no time limit: without an
    /// answer, as after the death of the page's process, this does not return.
    void execute();

    /// The waiting of execute(). Looks for results every 50 milliseconds.
    void waitForResults();

    /// Stores theValue as the result of theScript instead of an earlier one. That ends the wait for
    /// it, too, for instance in a page that is dead; the engine's own answer may still come.
    void resultCallback(const QString& theScript, QVariant theValue);

    /// Invalid for a script without a result, or one that was never run.
    [[nodiscard]] QVariant result(const QString& theScript) const;

private:
    void start(const QString& theScript);
    [[nodiscard]] bool mayAnAnswerBeOut() const;

    VXWebView* myView;
    QHash<QString, QVariant>* myResults; // owned; the view writes into it
    QList<QString> myScripts;            // not yet answered
    QSet<QString> myStartedScripts;
    bool myHasSpareAnswers = false; // more may come than was waited for
};
