#include "app/HttpServer.h"

#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>
#include <QtTest>

#include <thread>

#ifdef Q_OS_LINUX
#include "tests/app/PeakMemory.h"
#endif

namespace {
const QByteArray Record = R"({"name": "Analyser", "summary": "<b>New</b> – 新", "versionNo": "1.1.2",
                               "url": "http://127.0.0.1:{port}/downloads/a.zip"})";
const QString Code = QStringLiteral("Korvane_CAN");
const QString RequestLine =
    QStringLiteral("GET %1/api/software-product-versions/latest-byswcode?langCode=CN&swSnCode=Korvane_CAN HTTP/1.1");

struct Answer
{
    bool ok = false;
    Release release;
};

/// The answers of a server, each as it came.
class Answers
{
public:
    explicit Answers(HttpServer &server)
    {
        QObject::connect(&server, &HttpServer::sig_finished, &m_context, [this](bool ok, const Release &release) {
            m_answers.append({ok, release});
        });
    }

    int count() const { return m_answers.count(); }
    Answer last() const { return m_answers.isEmpty() ? Answer() : m_answers.last(); }

private:
    QObject m_context;
    QVector<Answer> m_answers;
};

bool isEmpty(const Release &release)
{
    return release.name.isEmpty() && release.summary.isEmpty() && release.versionNo.isEmpty() && release.url.isEmpty();
}

#ifdef Q_OS_LINUX
/// While it lives, the toolkit trusts the certificate of the tests' server.
class TrustedCertificate
{
public:
    TrustedCertificate()
        : m_old(QSslConfiguration::defaultConfiguration())
    {
        QSslConfiguration trusting = m_old;
        trusting.setCaCertificates(QSslCertificate::fromPath(File));
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    ~TrustedCertificate() { QSslConfiguration::setDefaultConfiguration(m_old); }
    Q_DISABLE_COPY_MOVE(TrustedCertificate)

    static QStringList serverArguments() { return {QStringLiteral("--tls"), File}; }

private:
    static inline const QString File = QStringLiteral(X9_TEST_DATA "/tls/server.pem");
    QSslConfiguration m_old;
};
#endif

QStringList arguments()
{
    return {QStringLiteral("--record"), Code + QLatin1Char('=') + QString::fromUtf8(Record)};
}
} // namespace

class tst_HttpServer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    static void newerThanProgram_data();
    static void newerThanProgram();
    static void productCode() { QCOMPARE(programProductCode(), Code); }
    void asks();
    static void baseUrls_data();
    void baseUrls();
    static void useless_data();
    static void useless();
    void encodesTheCode();
    void unknownCode();
    static void failures_data();
    void failures();
    static void incompleteAnswers_data();
    void incompleteAnswers();
    void followsARedirect();
    static void staysOffOtherSchemes_data();
    void staysOffOtherSchemes();
    static void plainHttpServices();
#ifdef Q_OS_LINUX
    static void asksSecurely();
    static void staysSecure_data();
    static void staysSecure();
    void unpacksNothing();
#endif
    static void refusedConnection();
    static void silentServers_data();
    void silentServers();
    static void limit_data();
    void limit();
    static void oneByteAfterTheOther();
    void startEndsTheOneBefore();
    void deletedInItsSignal();
    void deletedWhileItRuns();
    void waitsOnAnyThread();
    static void waitingFails_data();
    void waitingFails();
    static void waitingIsCancelled_data();
    void waitingIsCancelled();
    void waitsOnManyThreadsAtOnce();
    void tellsTheFirmwareVersion();

private:
    UpdateServer m_server{arguments()};
};

void tst_HttpServer::initTestCase()
{
    QVERIFY(!m_server.url().isEmpty());
}

void tst_HttpServer::newerThanProgram_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("isNewer");
    QTest::newRow("1.1.2") << QStringLiteral("1.1.2") << true;
    QTest::newRow("1.2") << QStringLiteral("1.2") << true;
    QTest::newRow("2") << QStringLiteral("2") << true;
    QTest::newRow("1.1.1") << QStringLiteral("1.1.1") << false;
    QTest::newRow("1.1") << QStringLiteral("1.1") << false;
    QTest::newRow("1.0.9") << QStringLiteral("1.0.9") << false;
    QTest::newRow("1.1.1.5") << QStringLiteral("1.1.1.5") << false;
    QTest::newRow("1.a") << QStringLiteral("1.a") << false;
    QTest::newRow("V1.1.2") << QStringLiteral("V1.1.2") << false;
    QTest::newRow("empty") << QString() << false;
}

void tst_HttpServer::newerThanProgram()
{
    QFETCH(QString, version);
    QCOMPARE(programVersion(), QStringLiteral("1.1.1"));
    QTEST(isNewerThanProgram({{}, {}, version, {}}), "isNewer");
}

void tst_HttpServer::asks()
{
    HttpServer server(m_server.url());
    const Answers answers(server);
    server.start(Code);
    QVERIFY(server.isRunning());
    QCOMPARE(answers.count(), 0);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(!server.isRunning());
    QVERIFY(answers.last().ok);
    const Release release = answers.last().release;
    QCOMPARE(release.name, QStringLiteral("Analyser"));
    QCOMPARE(release.summary, QStringLiteral("<b>New</b> – 新"));
    QCOMPARE(release.versionNo, QStringLiteral("1.1.2"));
    QCOMPARE(release.url, m_server.url() + QStringLiteral("/downloads/a.zip"));
    QTRY_COMPARE(m_server.requests(), QStringList{RequestLine.arg(QString())});

    server.start(Code);
    QTRY_COMPARE(answers.count(), 2);
    QVERIFY(answers.last().ok);
}

void tst_HttpServer::baseUrls_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("path");
    QTest::newRow("slash") << QStringLiteral("/") << QString();
    QTest::newRow("path") << QStringLiteral("/behave/empty") << QStringLiteral("/behave/empty");
    QTest::newRow("path with slashes") << QStringLiteral("/behave/empty//") << QStringLiteral("/behave/empty");
    QTest::newRow("query and fragment") << QStringLiteral("/?a=b#c") << QString();
    QTest::newRow("blanks around") << QStringLiteral("/ \n") << QString();
}

void tst_HttpServer::baseUrls()
{
    QFETCH(QString, suffix);
    QFETCH(QString, path);
    const int before = m_server.requests().count();
    HttpServer server(m_server.url() + suffix);
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(answers.last().ok);
    QTRY_COMPARE(m_server.requests().count(), before + 1);
    QCOMPARE(m_server.requests().last(), RequestLine.arg(path));
}

void tst_HttpServer::useless_data()
{
    QTest::addColumn<QString>("baseUrl");
    for (const char *url : {"", "127.0.0.1", "/api", "file:///etc", "ftp://127.0.0.1", "http://", "http://[",
                            "http:///a", "data:application/json,{}", "qrc:/Skins", "javascript:alert(1)"}) {
        QTest::newRow(*url == '\0' ? "empty" : url) << QString::fromLatin1(url);
    }
}

/// Fails at once, and yet not from within start().
void tst_HttpServer::useless()
{
    QFETCH(QString, baseUrl);
    HttpServer server(baseUrl);
    const Answers answers(server);
    server.start(Code);
    QVERIFY(server.isRunning());
    QCOMPARE(answers.count(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(answers.count(), 1);
    QVERIFY(!answers.last().ok);
    QVERIFY(!server.isRunning());

    server.start(Code);
    server.abort();
    QCoreApplication::processEvents();
    QCOMPARE(answers.count(), 1);

    std::atomic<bool> isCancelled{false};
    QVERIFY(!server.query(Code, isCancelled));
}

void tst_HttpServer::encodesTheCode()
{
    HttpServer server(m_server.url());
    const Answers answers(server);
    server.start(QStringLiteral("a&b=c d/#%"));
    QTRY_COMPARE(answers.count(), 1);
    QTRY_VERIFY(
        m_server.requests().last().endsWith(QLatin1String("?langCode=CN&swSnCode=a%26b%3Dc%20d%2F%23%25 HTTP/1.1")));
}

void tst_HttpServer::unknownCode()
{
    HttpServer server(m_server.url());
    const Answers answers(server);
    server.start(QStringLiteral("other"));
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(!answers.last().ok);
}

void tst_HttpServer::failures_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    for (const char *name : {"404", "500", "invalid", "list", "nothing", "short", "large", "rubbish", "rubbish-chunked",
                             "redirect-file", "redirect-ftp", "redirect-self", "packed", "many-headers"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

/// Each fails once, with nothing in the release, and the event loop turns meanwhile.
void tst_HttpServer::failures()
{
    QFETCH(QByteArray, behaviour);
    HttpServer server(m_server.url(behaviour.constData()));
    const Answers answers(server);
    const Turns turns;
    server.start(Code);
    // The toolkit reads headers byte by byte, which takes a while where each costs a call of the system.
    QTRY_COMPARE_WITH_TIMEOUT(answers.count(), 1, 30000);
    QVERIFY(!answers.last().ok);
    QVERIFY(isEmpty(answers.last().release));
    QVERIFY(!server.isRunning());
    const int turned = turns.count();
    QTRY_VERIFY(turns.count() > turned + 5);
    QCOMPARE(answers.count(), 1);
}

void tst_HttpServer::incompleteAnswers_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("no keys") << QByteArray("empty");
    QTest::newRow("no texts") << QByteArray("types");
}

void tst_HttpServer::incompleteAnswers()
{
    QFETCH(QByteArray, behaviour);
    HttpServer server(m_server.url(behaviour.constData()));
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(answers.last().ok);
    QVERIFY(isEmpty(answers.last().release));
    QVERIFY(!isNewerThanProgram(answers.last().release));
}

void tst_HttpServer::followsARedirect()
{
    HttpServer server(m_server.url("redirect"));
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(answers.last().ok);
    QCOMPARE(answers.last().release.versionNo, QStringLiteral("1.1.2"));
}

void tst_HttpServer::staysOffOtherSchemes_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<int>("requests");
    QTest::newRow("file") << QByteArray("redirect-file") << 1;
    QTest::newRow("itself") << QByteArray("redirect-self") << 6;
}

/// A redirect without end is followed five times.
void tst_HttpServer::staysOffOtherSchemes()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(int, requests);
    const int before = m_server.requests().count();
    HttpServer server(m_server.url(behaviour.constData()));
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    // The toolkit repeats a request whose connection the server has closed meanwhile.
    QTRY_VERIFY(m_server.requests().count() >= before + requests);
    QVERIFY(m_server.requests().count() <= before + 2 * requests);
}

void tst_HttpServer::plainHttpServices()
{
    for (const char *service : {"http://127.0.0.1", " http://127.0.0.1/a\n", "HTTP://a.example"}) {
        QVERIFY2(isPlainHttp(QLatin1String(service)), service);
    }
    for (const char *service :
         {"", "https://127.0.0.1", "HTTPS://a.example", "ftp://a", "http", "127.0.0.1", "httpx://a"}) {
        QVERIFY2(!isPlainHttp(QLatin1String(service)), service);
    }
}

#ifdef Q_OS_LINUX
/// Nobody but a server with a trusted certificate is believed.
void tst_HttpServer::asksSecurely()
{
    const UpdateServer secure(arguments() + TrustedCertificate::serverArguments());
    HttpServer server(secure.url());
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(!answers.last().ok);
    const TrustedCertificate trusted;
    server.start(Code);
    QTRY_COMPARE(answers.count(), 2);
    QVERIFY(answers.last().ok);
}

void tst_HttpServer::staysSecure_data()
{
    QTest::addColumn<QByteArray>("way"); ///< the schemes of the servers asked, in their order
    QTest::addColumn<bool>("isFollowed");
    QTest::newRow("https, https") << QByteArray("https https") << true;
    QTest::newRow("https, http") << QByteArray("https http") << false;
    QTest::newRow("http, https") << QByteArray("http https") << true;
    QTest::newRow("http, https, http") << QByteArray("http https http") << false;
    QTest::newRow("https, https, http") << QByteArray("https https http") << false;
}

/// A redirect never leads from https to http: the server there is not even asked.
void tst_HttpServer::staysSecure()
{
    QFETCH(QByteArray, way);
    QFETCH(bool, isFollowed);
    const TrustedCertificate trusted;
    std::vector<std::unique_ptr<UpdateServer>> servers;
    QString path;
    for (const QByteArray &scheme : way.split(' ')) {
        servers.push_back(std::make_unique<UpdateServer>(
            arguments() + (scheme == "https" ? TrustedCertificate::serverArguments() : QStringList())));
        if (servers.size() > 1) {
            path += QStringLiteral("/behave/redirect-%1-%2").arg(QLatin1String(scheme), servers.back()->port());
        }
    }
    HttpServer server(servers.front()->url() + path);
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    QCOMPARE(answers.last().ok, isFollowed);
    for (std::size_t hop = 0; hop + 1 < servers.size(); ++hop) {
        QTRY_VERIFY(!servers[hop]->requests().isEmpty());
    }
    QCOMPARE(servers.back()->requests().isEmpty(), !isFollowed);
}

/// A megabyte that would become two hundred.
void tst_HttpServer::unpacksNothing()
{
    HttpServer server(m_server.url("packed-bomb"));
    const Answers answers(server);
    const qint64 before = peakMemory();
    server.start(Code);
    QTRY_COMPARE_WITH_TIMEOUT(answers.count(), 1, 30000);
    QVERIFY(!answers.last().ok);
    QVERIFY2(peakMemory() - before < Q_INT64_C(20) * 1000 * 1000, qPrintable(QString::number(peakMemory() - before)));
}
#endif

void tst_HttpServer::refusedConnection()
{
    UpdateServer gone;
    const QString url = gone.url();
    gone.stop();
    HttpServer server(url);
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(!answers.last().ok);
}

void tst_HttpServer::silentServers_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("no answer") << QByteArray("no-answer");
    QTest::newRow("stops halfway") << QByteArray("stall");
    QTest::newRow("one byte per second") << QByteArray("slow");
}

/// The query waits, the event loop turns, and abort() ends it without a signal.
void tst_HttpServer::silentServers()
{
    QFETCH(QByteArray, behaviour);
    const int before = m_server.requests().count();
    HttpServer server(m_server.url(behaviour.constData()));
    const Answers answers(server);
    server.start(Code);
    QTRY_COMPARE(m_server.requests().count(), before + 1);
    const Turns turns;
    QTRY_VERIFY(turns.count() > 50);
    QVERIFY(server.isRunning());
    server.abort();
    QVERIFY(!server.isRunning());
    QTRY_VERIFY(turns.count() > 100);
    QCOMPARE(answers.count(), 0);
}

void tst_HttpServer::limit_data()
{
    silentServers_data();
}

/// The query fails once, and is over; one that is answered in time is not touched by the limit.
void tst_HttpServer::limit()
{
    QFETCH(QByteArray, behaviour);
    HttpServer server(m_server.url(behaviour.constData()));
    const Answers answers(server);
    server.start(Code, 200);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(!answers.last().ok);
    QVERIFY(!server.isRunning());

    HttpServer good(m_server.url());
    const Answers goodAnswers(good);
    good.start(Code, 60000);
    QTRY_COMPARE(goodAnswers.count(), 1);
    QVERIFY(goodAnswers.last().ok);
    QVERIFY(!good.isRunning()); // nothing is left that could end
}

void tst_HttpServer::oneByteAfterTheOther()
{
    UpdateServer slow(
        {QStringLiteral("--record"), QStringLiteral("A={ }"), QStringLiteral("--behaviour"), QStringLiteral("A=slow")});
    HttpServer server(slow.url());
    const Answers answers(server);
    server.start(QStringLiteral("A"));
    QTRY_COMPARE_WITH_TIMEOUT(answers.count(), 1, 30000);
    QVERIFY(answers.last().ok);
}

void tst_HttpServer::startEndsTheOneBefore()
{
    HttpServer server(m_server.url());
    const Answers answers(server);
    server.start(QStringLiteral("other"));
    server.start(Code);
    QTRY_COMPARE(answers.count(), 1);
    QVERIFY(answers.last().ok);
    const Turns turns;
    QTRY_VERIFY(turns.count() > 50);
    QCOMPARE(answers.count(), 1);
}

void tst_HttpServer::deletedInItsSignal()
{
    auto server = std::make_unique<HttpServer>(m_server.url());
    connect(server.get(), &HttpServer::sig_finished, this, [&server] { server.reset(); });
    server->start(Code);
    QTRY_VERIFY(server == nullptr);
}

void tst_HttpServer::deletedWhileItRuns()
{
    auto server = std::make_unique<HttpServer>(m_server.url("no-answer"));
    const Answers answers(*server);
    const int before = m_server.requests().count();
    server->start(Code);
    QTRY_COMPARE(m_server.requests().count(), before + 1);
    server.reset();
    QCOMPARE(answers.count(), 0);
}

void tst_HttpServer::waitsOnAnyThread()
{
    std::atomic<bool> isDone{false};
    std::optional<Release> release;
    const std::atomic<bool> isCancelled{false};
    const HttpServer server(m_server.url());
    std::thread thread([&] {
        release = server.query(Code, isCancelled);
        isDone = true;
    });
    QTRY_VERIFY_WITH_TIMEOUT(isDone, 30000);
    thread.join();
    QVERIFY(release.has_value());
    QCOMPARE(release->versionNo, QStringLiteral("1.1.2"));
}

void tst_HttpServer::waitingFails_data()
{
    failures_data();
}

void tst_HttpServer::waitingFails()
{
    QFETCH(QByteArray, behaviour);
    std::atomic<bool> isDone{false};
    const std::atomic<bool> isCancelled{false};
    std::optional<Release> release = Release();
    std::thread thread([&] {
        release = HttpServer(m_server.url(behaviour.constData())).query(Code, isCancelled);
        isDone = true;
    });
    QTRY_VERIFY_WITH_TIMEOUT(isDone, 30000);
    thread.join();
    QVERIFY(!release.has_value());
}

void tst_HttpServer::waitingIsCancelled_data()
{
    silentServers_data();
}

/// The query does not return by itself, and does once it is told to.
void tst_HttpServer::waitingIsCancelled()
{
    QFETCH(QByteArray, behaviour);
    const int before = m_server.requests().count();
    std::atomic<bool> isDone{false};
    std::atomic<bool> isCancelled{false};
    const QString url = m_server.url(behaviour.constData());
    std::thread thread([&] {
        HttpServer(url).query(Code, isCancelled);
        isDone = true;
    });
    QTRY_COMPARE(m_server.requests().count(), before + 1);
    const Turns turns;
    QTRY_VERIFY(turns.count() > 50);
    const bool isEarly = isDone;
    isCancelled = true;
    QTRY_VERIFY_WITH_TIMEOUT(isDone, 2000);
    thread.join();
    QVERIFY(!isEarly);
}

void tst_HttpServer::waitsOnManyThreadsAtOnce()
{
    const std::atomic<bool> isCancelled{false};
    std::atomic<int> answered{0};
    const HttpServer server(m_server.url());
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int index = 0; index < 8; ++index) {
        threads.emplace_back([&] {
            for (int round = 0; round < 5; ++round) {
                answered += server.query(Code, isCancelled) ? 1 : 0;
            }
        });
    }
    QTRY_COMPARE_WITH_TIMEOUT(answered.load(), 40, 30000);
    for (std::thread &thread : threads) {
        thread.join();
    }
}

void tst_HttpServer::tellsTheFirmwareVersion()
{
    const std::atomic<bool> isCancelled{false};
    std::atomic<bool> isDone{false};
    QString known;
    QString unknown(QLatin1Char('x'));
    std::thread thread([&] {
        const FirmwareQuery query = firmwareQuery(m_server.url());
        known = query(Code, isCancelled);
        unknown = query(QStringLiteral("other"), isCancelled);
        isDone = true;
    });
    QTRY_VERIFY(isDone);
    thread.join();
    QCOMPARE(known, QStringLiteral("1.1.2"));
    QCOMPARE(unknown, QString());
}

X9_CORE_TEST(tst_HttpServer)
#include "tst_HttpServer.moc"
