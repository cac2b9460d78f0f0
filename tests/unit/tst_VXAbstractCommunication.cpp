#include <VXNetworking/VXAbstractCommunication.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Items = QList<std::pair<QString, QString>>;

class Plain : public VXAbstractCommunication
{
};

class Served : public VXAbstractCommunication
{
public:
    explicit Served(bool* theIsDeleted = nullptr)
        : myIsDeleted(theIsDeleted)
    {
    }

    ~Served() override
    {
        if (myIsDeleted != nullptr)
            *myIsDeleted = true;
    }

    QUrl serverUrl() const override { return QUrl(u"ws://127.0.0.1:4711"_s); }

private:
    bool* myIsDeleted;
};

} // namespace

class tst_VXAbstractCommunication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutServerTheUrlIsAPlaceholder();
    void withoutServerThereIsNoToken();
    void theServerUrlIsAppendedToAnEmptyQuery();
    void theServerUrlIsAppendedToOtherItems();
    void theGivenQueryStaysAsItIs();
    void theQueryCarriesTheSubclassesUrl();
    void registeredObjectsStandInTheChannelUnderTheirName();
    void registeredObjectsStayTheCallers();
    void deletingTheBaseDeletesTheSubclass();
};

void tst_VXAbstractCommunication::withoutServerTheUrlIsAPlaceholder()
{
    QCOMPARE(Plain().serverUrl(), QUrl(u"tov://localhost:0"_s));
    QCOMPARE(Plain().serverUrl().toString(), u"tov://localhost:0"_s);
}

void tst_VXAbstractCommunication::withoutServerThereIsNoToken()
{
    QCOMPARE(Plain().securityToken(), QString());
}

void tst_VXAbstractCommunication::theServerUrlIsAppendedToAnEmptyQuery()
{
    const QUrlQuery query = Plain().addServerParameter(QUrlQuery());
    QCOMPARE(query.queryItems(QUrl::FullyDecoded),
             (Items{{u"webChannelBaseUrl"_s, u"tov://localhost:0"_s}}));
}

void tst_VXAbstractCommunication::theServerUrlIsAppendedToOtherItems()
{
    const QUrlQuery query = Plain().addServerParameter(QUrlQuery(u"a=1&webChannelBaseUrl=x"_s));
    QCOMPARE(query.queryItems(QUrl::FullyDecoded),
             (Items{{u"a"_s, u"1"_s},
                    {u"webChannelBaseUrl"_s, u"x"_s},
                    {u"webChannelBaseUrl"_s, u"tov://localhost:0"_s}}));
}

void tst_VXAbstractCommunication::theGivenQueryStaysAsItIs()
{
    const QUrlQuery query(u"a=1"_s);
    [[maybe_unused]] const QUrlQuery longer = Plain().addServerParameter(query);
    QCOMPARE(query.toString(), u"a=1"_s);
}

void tst_VXAbstractCommunication::theQueryCarriesTheSubclassesUrl()
{
    const QUrlQuery query = Served().addServerParameter(QUrlQuery());
    QCOMPARE(query.queryItemValue(u"webChannelBaseUrl"_s, QUrl::FullyDecoded),
             u"ws://127.0.0.1:4711"_s);
}

void tst_VXAbstractCommunication::registeredObjectsStandInTheChannelUnderTheirName()
{
    QObject screen;
    Plain communication;
    communication.registerObject(u"wizardScreen"_s, &screen);

    QCOMPARE(communication.webChannel().registeredObjects(),
             (QHash<QString, QObject*>{{u"wizardScreen"_s, &screen}}));
}

void tst_VXAbstractCommunication::registeredObjectsStayTheCallers()
{
    auto screen = std::make_unique<QObject>();
    auto communication = std::make_unique<Plain>();
    communication->registerObject(u"wizardScreen"_s, screen.get());
    QVERIFY(screen->parent() == nullptr);

    communication->webChannel().deregisterObject(screen.get());
    screen.reset();
    QVERIFY(communication->webChannel().registeredObjects().isEmpty());
}

void tst_VXAbstractCommunication::deletingTheBaseDeletesTheSubclass()
{
    bool isDeleted = false;
    std::unique_ptr<VXAbstractCommunication> communication = std::make_unique<Served>(&isDeleted);
    communication.reset();
    QVERIFY(isDeleted);
}

VX_TEST_MAIN(QCoreApplication, tst_VXAbstractCommunication)
#include "tst_VXAbstractCommunication.moc"
