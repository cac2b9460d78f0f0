#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

class QAuthenticator;
class QUrl;

/// The yardstick of the questions: signals with the same arguments as the access manager's.
class VXBenchAsker : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXBenchAsker)

public:
    VXBenchAsker();
    ~VXBenchAsker() override;

Q_SIGNALS:
    void authenticationRequired(const QUrl& theUrl, QAuthenticator* theAuthenticator);
    void askIgnoreSSLErrors(const QString& theHost, const QList<QString>& theErrorList,
                            bool* theResult);
};
