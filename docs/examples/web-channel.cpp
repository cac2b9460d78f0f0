#include <VXCore/VXInitializer.h>
#include <VXNetworking/VXAbstractCommunication.h>
#include <VXNetworking/VXWebView.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#include <memory>

/// The native half. Slots, Q_INVOKABLE functions, signals and properties are what the page sees.
class Screen : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void save(const QString& theText)
    {
        Q_EMIT saved(QStringLiteral("%1 characters").arg(theText.size()));
    }

Q_SIGNALS:
    void saved(const QString& theMessage);
};

int main(int theCount, char** theArguments)
{
    const QApplication application(theCount, theArguments);
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal);
    {
        QWidget window;
        auto* const layout = new QVBoxLayout(&window); // the window's
        const std::unique_ptr<VXWebView> view(VXWebView::createWebView(&window, true));
        layout->addWidget(view->nativeWidget());

        Screen screen; // outlives the channel
        const std::unique_ptr<VXAbstractCommunication> channel(
            view->createCommunication(QStringLiteral("example")));
        channel->registerObject(QStringLiteral("screen"), &screen);

        QUrl url = QUrl::fromLocalFile(application.arguments().value(1));
        url.setQuery(channel->addServerParameter({})); // address and token
        view->setUrl(url);
        window.show();
        QApplication::exec();
    }
    VXInitializer::instance()->runTeardown();
    return 0;
}

#include "web-channel.moc"
