#include "VXFileContent.h"
#include "VXFolderContent.h"
#include "VXLan.h"
#include "VXPlainHttpClient.h"
#include "VXPrivateBus.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>

#include <array>
#include <csignal>

#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray noise(qsizetype theSize)
{
    QByteArray data(theSize, Qt::Uninitialized);
    for (qsizetype index = 0; index < theSize; ++index)
        data[index] = static_cast<char>(index * 2654435761U >> 24);
    return data;
}

/// What the kernel reports about files that nobody may touch.
class Watch
{
    Q_DISABLE_COPY_MOVE(Watch)

public:
    explicit Watch(const QStringList& thePaths)
        : myDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        for (const QString& path : thePaths) {
            if (::inotify_add_watch(myDescriptor, path.toLocal8Bit().constData(), IN_ALL_EVENTS) <
                0)
                qFatal("cannot watch %s", qPrintable(path));
        }
    }
    ~Watch() { ::close(myDescriptor); }

    /// How many bytes of events there are: 0 when nothing was touched.
    [[nodiscard]] ssize_t events() const
    {
        alignas(inotify_event) std::array<char, 65536> buffer;
        return qMax<ssize_t>(0, ::read(myDescriptor, buffer.data(), buffer.size()));
    }

private:
    int myDescriptor;
};

/// The sample host's upload service in a folder of its own.
class Host
{
    Q_DISABLE_COPY_MOVE(Host)

public:
    Host() = default;
    ~Host()
    {
        process.kill();
        process.waitForFinished(30000);
    }

    QString path(const QString& theName) const { return folder.filePath(theName); }

    /// Empty when the service has published an address.
    QString start(const QStringList& theOptions = {})
    {
        QDir().mkpath(path(u"work"_s));
        process.setWorkingDirectory(path(u"work"_s));
        process.start(u"" VX_BINARY_DIR "/bin/vx-sample"_s,
                      theOptions +
                          QStringList{u"upload-service"_s, u"--target"_s, path(u"target"_s)});
        if (!waitFor([this] { return events(u"urlChanged"_s).size() >= 2 || !reason().isEmpty(); }))
            return u"no address: "_s + QString::fromUtf8(process.readAllStandardError());
        return reason();
    }

    /// Runs the event loop until it is so.
    template <typename Predicate>
    bool waitFor(Predicate theIsSo)
    {
        return QTest::qWaitFor(
            [&] {
                read();
                return theIsSo();
            },
            30000);
    }

    QList<QJsonObject> events(const QString& theName)
    {
        read();
        QList<QJsonObject> found;
        for (const QJsonObject& line : std::as_const(lines)) {
            if (line.value(u"event"_s).toString() == theName)
                found.append(line);
        }
        return found;
    }

    QUrl url()
    {
        const QList<QJsonObject> all = events(u"urlChanged"_s);
        return all.isEmpty() ? QUrl() : QUrl(all.constLast().value(u"url"_s).toString());
    }

    QByteArray token() { return url().query(QUrl::FullyEncoded).toLatin1(); }

    VXPlainHttpClient::Answer ask(const QByteArray& theRequestLine,
                                  const QByteArrayList& theHeaders = {},
                                  const QByteArray& theBody = {})
    {
        VXPlainHttpClient client(QHostAddress(url().host()), static_cast<quint16>(url().port()));
        return client.ask(theRequestLine, theHeaders, theBody);
    }

    QTemporaryDir folder;
    QProcess process;
    QList<QJsonObject> lines;

private:
    QString reason()
    {
        const QList<QJsonObject> all = events(u"urlChanged"_s);
        return !all.isEmpty() && all.constLast().value(u"count"_s).toInt() == 0
                   ? all.constLast().value(u"wifiName"_s).toString()
                   : QString();
    }

    void read()
    {
        process.setReadChannel(QProcess::StandardOutput);
        while (process.canReadLine())
            lines.append(QJsonDocument::fromJson(process.readLine()).object());
    }
};

/// A command that ran to its end as a phone.
struct Ran
{
    int code = -1;
    QByteArray output;
};

Ran phone(int theNumber, const QStringList& theCommand)
{
    const QStringList command = VXLan::asPhone(theNumber, theCommand);
    QProcess process;
    process.start(command.constFirst(), command.sliced(1));
    process.waitForFinished(60000);
    return {process.exitCode(), process.readAllStandardOutput()};
}

} // namespace

/// Phones in network namespaces of their own send photos with curl to the sample host.
class tst_upload_from_phones : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aPhoneOpensThePageAndSendsPhotos();
    void theTokenOfAnotherPhoneIsRefused();
    void everyAssetOfThePageIsServed();
    void noSpellingOfAPathLeavesTheAssets();
    void noSpellingOfANameLeavesTheTarget();
    void theLinkIsCutAndRestoredWhileAPhotoIsSent();
    void aPhoneThatVanishesLeavesNothing();
    void brokenRequestsHarmNobody();
    void networkManagerNamesTheNetwork();
    void aHungNetworkManagerDoesNotHangTheServer();
    void aSignalStopsItCleanly_data();
    void aSignalStopsItCleanly();
    void theDialogCommandShowsTheDialog();
};

void tst_upload_from_phones::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString());
    QCOMPARE(phone(1, {u"curl"_s, u"--version"_s}).code, 0);
}

void tst_upload_from_phones::aPhoneOpensThePageAndSendsPhotos()
{
    Host host;
    QCOMPARE(host.start(), QString());
    const QString base = host.url().toString(QUrl::RemoveQuery);
    const QString cookies = host.path(u"cookies"_s);
    const QStringList curl{u"curl"_s, u"-sS"_s, u"-b"_s, cookies, u"-c"_s, cookies};
    const QByteArray token = host.token();

    const Ran page = phone(1, curl + QStringList{host.url().toString()});
    QCOMPARE(page.code, 0);
    QVERIFY(page.output.contains("</html>"));
    QVERIFY(VXFileContent::of(cookies).contains("\tsid\t" + token));
    QVERIFY(host.waitFor([&] { return host.token() != token; }));
    QCOMPARE(host.events(u"redeemed"_s).size(), 1);

    QCOMPARE(phone(1, curl + QStringList{u"-o"_s, u"/dev/null"_s, u"-w"_s, u"%{http_code}"_s,
                                         base + u"translations.json"_s})
                 .output,
             "200"_ba);
    const QByteArray photo = noise(5'000'000);
    VXFileContent::write(host.path(u"photo"_s), photo);
    const QStringList names{u"IMG_0042.JPG"_s, u"\u00e4 \U0001f4f7.heic"_s, u"a+b%2.jpg"_s};
    for (const QString& name : names) {
        const QString item = QString::fromLatin1(QUrl::toPercentEncoding(name));
        QCOMPARE(phone(1, curl + QStringList{u"--data-binary"_s, u"@"_s + host.path(u"photo"_s),
                                             base + u"upload?file="_s + item})
                     .output,
                 "OK"_ba);
    }
    for (const QString& stored :
         {u"IMG_0042.qrul.JPG"_s, u"\u00e4 \U0001f4f7.qrul.heic"_s, u"a+b%2.qrul.jpg"_s})
        QVERIFY2(VXFileContent::of(host.path(u"target/"_s + stored)) == photo, qPrintable(stored));
    QVERIFY(host.waitFor([&] { return host.events(u"filesUploaded"_s).size() == 3; }));
    const QJsonObject first = host.events(u"filesUploaded"_s).constFirst();
    QCOMPARE(first.value(u"path"_s).toString(), host.path(u"target/IMG_0042.qrul.JPG"_s));
    QCOMPARE(first.value(u"size"_s).toInt(), 5'000'000);
    QCOMPARE(first.value(u"stored"_s).toBool(), true);
    // The server has seen the phone, not the bridge between them.
    QVERIFY(host.waitFor([&] {
        return host.lines.contains(
            QJsonObject{{u"event"_s, u"doLog"_s}, {u"text"_s, u"  remote host 10.77.0.11"_s}});
    }));
}

void tst_upload_from_phones::theTokenOfAnotherPhoneIsRefused()
{
    Host host;
    QCOMPARE(host.start(), QString());
    const QUrl scanned = host.url();
    const QString base = scanned.toString(QUrl::RemoveQuery);
    const QString token = scanned.query();
    const QStringList status{u"curl"_s,      u"-s"_s, u"-o"_s,
                             u"/dev/null"_s, u"-w"_s, u"%{http_code}"_s};

    QCOMPARE(phone(1, status + QStringList{scanned.toString()}).output, "200"_ba);
    const Ran late = phone(2, {u"curl"_s, u"-si"_s, scanned.toString()});
    QVERIFY(late.output.contains("\r\nSet-Cookie: sid=\r\n"));
    QCOMPARE(phone(2, status + QStringList{u"-d"_s, u"x"_s, base + u"upload?"_s + token}).output,
             "403"_ba);
    QCOMPARE(phone(2, status + QStringList{u"-H"_s, u"Cookie: sid="_s + token, u"-d"_s, u"x"_s,
                                           base + u"upload?file=a.jpg"_s})
                 .output,
             "403"_ba);
    QVERIFY(!QFileInfo::exists(host.path(u"target"_s)));

    // With a code of its own the second phone comes in, and the first one stays.
    QVERIFY(host.waitFor([&] { return host.url() != scanned; }));
    QCOMPARE(phone(2, status + QStringList{host.url().toString()}).output, "200"_ba);
    QCOMPARE(phone(1, status + QStringList{u"-d"_s, u"x"_s, base + u"upload?"_s + token}).output,
             "200"_ba);
}

void tst_upload_from_phones::everyAssetOfThePageIsServed()
{
    Host host;
    QCOMPARE(host.start(), QString());
    const QDir assets(u"" VX_SOURCE_DIR "/assets/qrupload"_s);
    int count = 0;
    QDirIterator file(assets.path(), QDir::Files, QDirIterator::Subdirectories);
    while (file.hasNext()) {
        const QString name = assets.relativeFilePath(file.next());
        const auto answer = host.ask("GET /" + name.toUtf8());
        QVERIFY2(answer.status == 200, qPrintable(name));
        QVERIFY2(answer.body == VXFileContent::of(file.filePath()), qPrintable(name));
        ++count;
    }
    QVERIFY(count > 5);
}

namespace {

/// Ways to write "one folder up", a separator, and what lies there.
QByteArrayList spellings(const QByteArrayList& theFiles)
{
    const QByteArrayList ups{"..",    "%2e%2e",       ".%2E", "%2e.", "%252e%252e",
                             "..%00", "%c0%ae%c0%ae", "....", "..;"};
    const QByteArrayList separators{"/", "%2f", "%2F", "//", "/./", "%5c", "\\", "%252f"};
    QByteArrayList all;
    for (const QByteArray& up : ups) {
        for (const QByteArray& separator : separators) {
            for (int depth = 1; depth <= 3; ++depth) {
                const QByteArray way = (up + separator).repeated(depth);
                for (const QByteArray& file : theFiles)
                    all.append(way + file);
            }
        }
    }
    return all;
}

/// Ways to write an absolute path.
QByteArrayList absoluteSpellings(const QString& theFile)
{
    const QByteArray path = theFile.toUtf8();
    QByteArray encoded = path;
    encoded.replace("/", "%2F");
    return {path,          encoded,           "/" + path,          "%2F" + path,
            "./" + path,   "file://" + path,  "file:" + path,      ":" + path,
            "qrc:" + path, "secret:x" + path, encoded + "%00.png", path + "%00",
            path + "/",    path + "/.",       "~" + path,          "\\" + path,
            "css/" + path, "css/%2F" + path,  "%20" + path,        path + "%20",
            "::" + path,   ":/" + path,       "secret:secret.txt", "%00" + path};
}

} // namespace

void tst_upload_from_phones::noSpellingOfAPathLeavesTheAssets()
{
    Host host;
    VXFileContent::write(host.path(u"secret.txt"_s), "CANARY outside");
    VXFileContent::write(host.path(u"other/secret.txt"_s), "CANARY beside");
    VXFileContent::write(host.path(u"assets/qrupload/index.html"_s), "<h1>page</h1>");
    VXFileContent::write(host.path(u"assets/qrupload/css/site.css"_s), "body{}");
    VXFileContent::write(host.path(u"assets/qrupload/.hidden"_s), "CANARY hidden");
    QVERIFY(QFile::link(host.path(u"secret.txt"_s), host.path(u"assets/qrupload/link.txt"_s)));
    QVERIFY(QFile::link(host.path(u"other"_s), host.path(u"assets/qrupload/linked"_s)));
    QCOMPARE(host.start({u"--assets"_s, host.path(u"assets"_s)}), QString());
    QCOMPARE(host.ask("GET /css/site.css").body, "body{}"_ba);

    QByteArrayList paths = spellings({"secret.txt", "other/secret.txt"});
    for (const QByteArray& path : spellings({"secret.txt"}))
        paths.append("css/" + path);
    paths += absoluteSpellings(host.path(u"secret.txt"_s));
    paths += absoluteSpellings(host.path(u"assets/qrupload/.hidden"_s));
    paths += {"link.txt",
              "linked/secret.txt",
              ".hidden",
              "css/../.hidden",
              "css",
              "css/",
              "css//site.css",
              ".",
              "..",
              "%2e",
              "index.html%00",
              "index.html/",
              "INDEX.HTML",
              "index.html%00.png",
              "css%5csite.css",
              ":/qt-project.org",
              "css/./site.css",
              "%00"};
    QVERIFY2(paths.size() > 200, qPrintable(QString::number(paths.size())));

    const QMap<QString, QByteArray> before = VXFolderContent::of(host.folder.path());
    const Watch watch({host.path(u"secret.txt"_s), host.path(u"other/secret.txt"_s),
                       host.path(u"assets/qrupload/.hidden"_s)});
    for (const QByteArray& path : paths) {
        const auto answer = host.ask("GET /" + path);
        QVERIFY2(!answer.body.contains("CANARY"), path.constData());
        // A spelling of our own files may find them; the others find nothing at all.
        const bool isOwn = answer.body == "<h1>page</h1>" || answer.body == "body{}";
        QVERIFY2(answer.status == 404 || (answer.status == 200 && isOwn), path.constData());
    }
    QCOMPARE(watch.events(), 0);
    QCOMPARE(VXFolderContent::of(host.folder.path()), before);
    QCOMPARE(host.ask("GET /").body, "<h1>page</h1>"_ba); // it still serves
    QCOMPARE(VXFileContent::of(host.path(u"secret.txt"_s)), "CANARY outside"_ba);
    QVERIFY(watch.events() > 0); // our own look shows that looks are noticed
}

void tst_upload_from_phones::noSpellingOfANameLeavesTheTarget()
{
    Host host;
    VXFileContent::write(host.path(u"secret.txt"_s), "CANARY outside");
    VXFileContent::write(host.path(u"other/secret.txt"_s), "CANARY beside");
    VXFileContent::write(host.path(u"target/secret.txt"_s), "CANARY of the user's own");
    QCOMPARE(host.start(), QString());
    const QByteArray token = host.token();
    QCOMPARE(host.ask("GET /?" + token).status, 200);

    QByteArrayList names = spellings({"secret.txt", "other/secret.txt"});
    names += absoluteSpellings(host.path(u"secret.txt"_s));
    names += {"secret.txt%00",
              "secret%00.txt",
              "..",
              ".",
              "%00",
              "",
              "/",
              "//",
              "secret.txt/",
              "CON",
              "nul.txt",
              "a%0Ab.jpg",
              "%ED%A0%80.jpg",
              "%FF%FE.jpg",
              "%E2%80%AEgpj.exe"};
    QVERIFY2(names.size() > 200, qPrintable(QString::number(names.size())));

    const QStringList untouchable{host.path(u"secret.txt"_s), host.path(u"other/secret.txt"_s),
                                  host.path(u"target/secret.txt"_s), host.path(u"work"_s),
                                  host.path(u"other"_s)};
    const Watch watch(untouchable);
    for (const QByteArray& name : names) {
        const auto answer =
            host.ask("POST /upload?file=" + name, {"Cookie: sid=" + token}, "photo");
        QVERIFY2(answer.status == 200 && answer.body == "OK", name.constData());
    }
    QCOMPARE(watch.events(), 0);

    // One event per photo, each of a file right in the target folder.
    QVERIFY(host.waitFor([&] { return host.events(u"filesUploaded"_s).size() == names.size(); }));
    for (const QJsonObject& event : host.events(u"filesUploaded"_s)) {
        const QString path = event.value(u"path"_s).toString();
        QVERIFY2(path.startsWith(host.path(u"target/"_s)), qPrintable(path));
        QVERIFY2(path.count(u'/') == host.path(u"target/x"_s).count(u'/'), qPrintable(path));
        QVERIFY2(path.contains(u".qrul."_s), qPrintable(path));
        QVERIFY2(event.value(u"stored"_s).toBool(), qPrintable(path));
    }
    const QMap<QString, QByteArray> after = VXFolderContent::of(host.folder.path());
    for (auto file = after.begin(); file != after.end(); ++file) {
        const bool isPhoto = QFileInfo(file.key()).fileName().contains(u".qrul."_s);
        QVERIFY2(isPhoto ? file.value() == "photo" : file.value() != "photo",
                 qPrintable(file.key()));
        QVERIFY2(!isPhoto || QFileInfo(file.key()).path() == host.path(u"target"_s),
                 qPrintable(file.key()));
    }
    QCOMPARE(after.value(host.path(u"target/secret.txt"_s)), "CANARY of the user's own"_ba);
    QVERIFY(watch.events() > 0); // our own look shows that looks are noticed
}

void tst_upload_from_phones::theLinkIsCutAndRestoredWhileAPhotoIsSent()
{
    Host host;
    QCOMPARE(host.start(), QString());
    const QString base = host.url().toString(QUrl::RemoveQuery);
    const QString token = host.url().query();
    const QByteArray photo = noise(3'000'000);
    VXFileContent::write(host.path(u"photo"_s), photo);
    QCOMPARE(phone(1, {u"curl"_s, u"-s"_s, u"-o"_s, u"/dev/null"_s, host.url().toString()}).code,
             0);

    const QStringList command = VXLan::asPhone(
        1, {u"curl"_s, u"-sS"_s, u"--limit-rate"_s, u"500K"_s, u"-H"_s, u"Cookie: sid="_s + token,
            u"--data-binary"_s, u"@"_s + host.path(u"photo"_s), base + u"upload?file=a.jpg"_s});
    QProcess curl;
    curl.start(command.constFirst(), command.sliced(1));
    QVERIFY(curl.waitForStarted(30000));
    // A connection stands in the phone's namespace: the photo is on its way.
    QVERIFY(QTest::qWaitFor(
        [] {
            return phone(1, {u"cat"_s, u"/proc/self/net/tcp"_s}).output.contains(" 01004D0A:");
        },
        20000));
    QCOMPARE(VXLan::ip(u"link set phone1 down"_s), QString());
    // Nobody else notices: the second phone comes in meanwhile.
    QCOMPARE(
        phone(2, {u"curl"_s, u"-s"_s, u"-o"_s, u"/dev/null"_s, u"-w"_s, u"%{http_code}"_s, base})
            .output,
        "200"_ba);
    QCOMPARE(curl.state(), QProcess::Running);
    QVERIFY(!QFileInfo::exists(host.path(u"target/a.qrul.jpg"_s)));
    QCOMPARE(VXLan::ip(u"link set phone1 up"_s), QString());
    QVERIFY(QTest::qWaitFor([&] { return curl.state() == QProcess::NotRunning; }, 60000));
    QCOMPARE(curl.readAllStandardOutput(), "OK"_ba);
    QVERIFY(VXFileContent::of(host.path(u"target/a.qrul.jpg"_s)) == photo);
}

void tst_upload_from_phones::aPhoneThatVanishesLeavesNothing()
{
    Host host;
    QCOMPARE(host.start(), QString());
    const QByteArray token = host.token();
    QCOMPARE(host.ask("GET /?" + token).status, 200);
    {
        VXPlainHttpClient client(QHostAddress(host.url().host()),
                                 static_cast<quint16>(host.url().port()));
        client.socket().write(
            "POST /upload?file=half.jpg HTTP/1.1\r\nHost: x\r\nCookie: sid=" + token +
            "\r\nContent-Length: 1000000\r\n\r\n" + QByteArray(300000, 'x'));
        QVERIFY(QTest::qWaitFor([&] { return client.socket().bytesToWrite() == 0; }, 20000));
        client.socket().abort(); // a reset in mid-body
    }
    // A later photo is stored; the half one has left no trace and no event.
    QCOMPARE(host.ask("POST /upload?file=whole.jpg", {"Cookie: sid=" + token}, "x").status, 200);
    QVERIFY(host.waitFor([&] { return !host.events(u"filesUploaded"_s).isEmpty(); }));
    QCOMPARE(host.events(u"filesUploaded"_s).size(), 1);
    QCOMPARE(QDir(host.path(u"target"_s)).entryList(QDir::Files | QDir::Hidden),
             QStringList(u"whole.qrul.jpg"_s));
}

void tst_upload_from_phones::brokenRequestsHarmNobody()
{
    Host host;
    QCOMPARE(host.start(), QString());
    const QByteArrayList requests{
        "\r\n\r\n",
        "GET\r\n\r\n",
        "GET / HTTP/9.9\r\n\r\n",
        "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n",
        QByteArray::fromHex("16030100a5010000a10303") + QByteArray(160, 'x'),
        "GET /%zz HTTP/1.1\r\n\r\n",
        "GET " + QByteArray(100000, 'x') + " HTTP/1.1\r\n\r\n",
        "GET /" + QByteArray(1000000, 'x') + " HTTP/1.1\r\nHost: x\r\n\r\n",
        "POST /upload HTTP/1.1\r\nContent-Length: -5\r\n\r\n",
        "POST /upload HTTP/1.1\r\nContent-Length: 99999999999999999999\r\n\r\n",
        "POST /upload HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n",
        "GET / HTTP/1.1\r\nCookie: " + QByteArray(100000, ';') + "\r\n\r\n",
        "GET / HTTP/1.1\r\nCookie: " + QByteArray("sid=\0\xff;", 7).repeated(1000) + "\r\n\r\n",
        "TRACE / HTTP/1.1\r\nHost: x\r\n\r\n",
        QByteArray(5000, '\0'),
    };
    for (const QByteArray& request : requests) {
        VXPlainHttpClient client(QHostAddress(host.url().host()),
                                 static_cast<quint16>(host.url().port()));
        client.socket().write(request);
        QVERIFY(QTest::qWaitFor([&] { return client.socket().bytesToWrite() == 0; }, 20000));
        client.socket().disconnectFromHost();
        QCOMPARE(host.ask("GET /").status, 200);
    }
    QCOMPARE(host.process.state(), QProcess::Running);
    QVERIFY(!QFileInfo::exists(host.path(u"target"_s)));
}

void tst_upload_from_phones::networkManagerNamesTheNetwork()
{
    VXPrivateBus bus;
    QCOMPARE(bus.start(), QString());
    QVERIFY(bus.startFake({u"networkmanager"_s, u"lan0=ethernet"_s, u"lan1=wifi:43616665"_s}));
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    // A fresh host each time: on a busy computer the fake service may miss the time limit.
    QString name;
    for (int attempt = 0; attempt < 10 && name.isEmpty(); ++attempt) {
        Host host;
        QCOMPARE(host.start(), QString());
        const QJsonObject last = host.events(u"urlChanged"_s).constLast();
        QCOMPARE(last.value(u"count"_s).toInt(), 2);
        name = last.value(u"wifiName"_s).toString();
        if (name.isEmpty())
            continue; // then the wired address may come first
        QCOMPARE(last.value(u"index"_s).toInt(), 0);
        QCOMPARE(host.url().host(), u"10.81.0.1"_s);
    }
    QCOMPARE(name, u"Cafe"_s);
    VXLan::removeInterface(u"lan1"_s);
    qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

void tst_upload_from_phones::aHungNetworkManagerDoesNotHangTheServer()
{
    VXPrivateBus bus;
    QCOMPARE(bus.start(), QString());
    QProcess* const fake = bus.startFake({u"networkmanager"_s, u"lan0=wifi:43616665"_s});
    QVERIFY(fake);
    QCOMPARE(::kill(static_cast<pid_t>(fake->processId()), SIGSTOP), 0);
    {
        Host host;
        QCOMPARE(host.start(), QString());
        QCOMPARE(host.events(u"urlChanged"_s).constLast().value(u"wifiName"_s).toString(),
                 QString());
        QCOMPARE(host.ask("GET /").status, 200);
    }
    qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

void tst_upload_from_phones::aSignalStopsItCleanly_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void tst_upload_from_phones::aSignalStopsItCleanly()
{
    QFETCH(int, signal);

    Host host;
    QCOMPARE(host.start(), QString());
    const QByteArray token = host.token();
    QCOMPARE(host.ask("GET /?" + token).status, 200);
    QCOMPARE(host.ask("POST /upload?file=a.jpg", {"Cookie: sid=" + token}, "12345").status, 200);
    QCOMPARE(::kill(static_cast<pid_t>(host.process.processId()), signal), 0);
    QVERIFY(host.waitFor([&] { return host.process.state() == QProcess::NotRunning; }));
    QCOMPARE(host.process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(host.process.exitCode(), 0);
    host.events({}); // reads what is left
    QCOMPARE(host.lines.constLast(), (QJsonObject{{u"files"_s, 1}, {u"bytes"_s, 5}}));
}

void tst_upload_from_phones::theDialogCommandShowsTheDialog()
{
    QTemporaryDir folder;
    QProcess process;
    process.start(u"" VX_BINARY_DIR "/bin/vx-sample"_s,
                  {u"--offscreen"_s, u"--exit-after"_s, u"5"_s, u"upload-dialog"_s, u"--target"_s,
                   folder.path()});
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 0);
    const QByteArray output = process.readAllStandardOutput();
    QVERIFY(output.contains("\"event\":\"urlChanged\""));
    QVERIFY(output.contains("http://10.77.0.1:"));
    QVERIFY(output.endsWith("{\"bytes\":0,\"files\":0}\n"));
}

VX_TEST_MAIN(QCoreApplication, tst_upload_from_phones)
#include "tst_upload_from_phones.moc"
