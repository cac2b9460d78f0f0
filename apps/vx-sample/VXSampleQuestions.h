#pragma once

#include <QtCore/QObject>

/// Lets the user answer what the library asks during an exchange: the login of a server or proxy,
/// and whether to accept a certificate's problems. An application that has no dialogs of its own
/// for that can copy this class as it is: making one object, in the main thread, is all.
///
/// Workers wait for the answer, so the main thread must not wait for a worker without handling
/// events. The questions end with this object.
class VXSampleQuestions : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleQuestions)

public:
    explicit VXSampleQuestions(QObject* theParent = nullptr);
};
