#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>
#include <QtCore/QUrl>

#include <memory>

int main(int theCount, char** theArguments)
{
    const QCoreApplication application(theCount, theArguments);
    const QUrl url(application.arguments().value(1));

    VXNetworkingError error;
    const std::unique_ptr<QThread> worker(QThread::create([&url, &error] {
        VXHttpOperation operation =
            VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
        operation.exec();
        error = operation.errorStatus();
        VXNetworkAccessManager::releaseThreadInstance(); // this thread ends now
    }));
    // Not worker->wait(): a question of the worker needs this thread's event loop.
    QObject::connect(worker.get(), &QThread::finished, &application, &QCoreApplication::quit);
    worker->start();
    QCoreApplication::exec();
    worker->wait();
    return error.errorOccurred() ? 1 : 0;
}
