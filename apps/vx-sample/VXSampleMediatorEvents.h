#pragma once

#include <QtCore/QObject>

class QWidget;
struct VXSampleContext;

/// What an application does when the mediator asks for something: it opens the network settings,
/// modally, so that the user has finished before the failed action is tried again. Each request is
/// printed as an event. Main thread.
class VXSampleMediatorEvents : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleMediatorEvents)

public:
    /// `theWindow`, the parent of the settings, may be null; it and `theContext` must outlive this
    /// object.
    explicit VXSampleMediatorEvents(VXSampleContext& theContext, QWidget* theWindow = nullptr);

private:
    void editProxyPreferences(QWidget* theWindow);

    VXSampleContext& myContext;
};
