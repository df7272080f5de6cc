#include "app/HttpClient.h"

#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <utility>

namespace {
constexpr qint64 HeldUpMs = 2000; ///< less than a flood would hold a window up for

/// The longest time for which the event loop of this thread has stood still.
class LongestPause
{
public:
    LongestPause()
    {
        m_clock.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(1);
    }

    qint64 milliseconds()
    {
        look();
        return m_longest;
    }

private:
    void look() { m_longest = std::max(m_longest, m_clock.restart()); }

    QElapsedTimer m_clock;
    QTimer m_timer;
    qint64 m_longest = 0;
};

/// A disk that takes what comes when the gate is opened.
class Disk : public HttpContent
{
public:
    explicit Disk(std::shared_future<void> gate = openGate())
        : m_gate(std::move(gate))
    {
    }

    bool write(const QByteArray & /*bytes*/) override
    {
        m_hasBegun = true;
        m_gate.wait();
        return true;
    }

    bool hasBegun() const { return m_hasBegun; }

private:
    static std::shared_future<void> openGate()
    {
        std::promise<void> gate;
        gate.set_value();
        return gate.get_future().share();
    }

    const std::shared_future<void> m_gate;
    std::atomic<bool> m_hasBegun{false};
};

/// What became of the requests of a client.
struct Outcomes
{
    explicit Outcomes(HttpClient &client)
    {
        QObject::connect(&client, &HttpClient::sig_finished, &context, [this](const HttpOutcome &outcome) {
            ++count;
            last = outcome.error;
        });
    }

    QObject context;
    int count = 0;
    HttpError last = HttpError::None;
};

HttpRequest request(const QString &server, int limitMs = 60000)
{
    return {QUrl(server + QStringLiteral("/api/software-product-versions/latest-byswcode?swSnCode=A")), server, 1000,
            limitMs};
}
} // namespace

/// What a server can do to the toolkit. Each function is a process of its own, as a flood goes on for a while in
/// threads that were given up.
class tst_HttpClient : public QObject
{
    Q_OBJECT

private slots:
    static void floods_data();
    static void floods();
    static void manyFieldsHoldNothingUp();
    static void tooManyGivenUp();
    static void diskStandsStill();

private:
    static QStringList arguments() { return {QStringLiteral("--record"), QStringLiteral("A={}")}; }
};

void tst_HttpClient::floods_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<bool>("isLimited");
    QTest::newRow("header") << QByteArray("endless-header") << true;
    QTest::newRow("headers") << QByteArray("endless-fields") << false;
    QTest::newRow("interim answers") << QByteArray("endless-status") << false;
}

/// Headers without end: the request is over when its limit is reached, when it is cancelled, and with the client, and
/// nothing is held up.
void tst_HttpClient::floods()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(bool, isLimited);
    UpdateServer flood(arguments());
    LongestPause pause;
    auto client = std::make_unique<HttpClient>();
    const Outcomes outcomes(*client);
    client->start(request(flood.url(behaviour.constData()), isLimited ? 300 : 60000), std::make_shared<Disk>());
    QTRY_COMPARE(flood.requests().count(), 1);
    if (isLimited) {
        QTRY_COMPARE(outcomes.count, 1);
        QCOMPARE(outcomes.last, HttpError::Stalled);
    }
    letTicksPass(50); // it flows
    client->cancel();
    QVERIFY(!client->isRunning());
    client.reset();
    QVERIFY2(pause.milliseconds() < HeldUpMs, qPrintable(QString::number(pause.milliseconds())));
    QCOMPARE(outcomes.count, isLimited ? 1 : 0);
}

/// The toolkit takes seconds to sort them.
void tst_HttpClient::manyFieldsHoldNothingUp()
{
    const UpdateServer server(arguments());
    LongestPause pause;
    HttpClient client;
    const Outcomes outcomes(client);
    client.start(request(server.url("many-fields")), std::make_shared<Disk>());
    QTRY_COMPARE_WITH_TIMEOUT(outcomes.count, 1, 60000);
    QCOMPARE(outcomes.last, HttpError::TooLarge);
    QVERIFY2(pause.milliseconds() < HeldUpMs, qPrintable(QString::number(pause.milliseconds())));
}

/// When the servers have gone, everything is as before.
void tst_HttpClient::tooManyGivenUp()
{
    UpdateServer server(arguments());
    std::promise<void> gate;
    const std::shared_future<void> opening = gate.get_future().share();
    const auto disk = std::make_shared<Disk>(opening);
    HttpClient client;
    const Outcomes outcomes(client);
    client.start(request(server.url()), disk);
    QTRY_VERIFY(disk->hasBegun());
    for (int count = 1; count < HttpClient::MaxGivenUp; ++count) {
        client.start(request(server.url()), std::make_shared<Disk>(opening)); // and gives up the one before
    }
    client.start(request(server.url()));
    QVERIFY(client.isRunning());
    QCOMPARE(outcomes.count, 0);
    QTRY_COMPARE(outcomes.count, 1);
    QCOMPARE(outcomes.last, HttpError::Stalled);
    QCOMPARE(server.requests().count(), 1);
    gate.set_value();
    const auto isAnswered = [&] {
        if (!client.isRunning() && outcomes.last != HttpError::None) {
            client.start(request(server.url()));
        }
        return outcomes.last == HttpError::None;
    };
    QTRY_VERIFY(isAnswered());
}

/// Neither the thread that has started it waits for it, nor a query.
void tst_HttpClient::diskStandsStill()
{
    UpdateServer server(arguments());
    std::promise<void> gate;
    const auto disk = std::make_shared<Disk>(gate.get_future().share());
    LongestPause pause;
    HttpClient download;
    const Outcomes downloaded(download);
    download.start(request(server.url()), disk);
    QTRY_VERIFY(disk->hasBegun());
    HttpClient query;
    const Outcomes answers(query);
    query.start(request(server.url()));
    QTRY_COMPARE(answers.count, 1);
    QCOMPARE(answers.last, HttpError::None);
    download.cancel();
    QVERIFY2(pause.milliseconds() < HeldUpMs, qPrintable(QString::number(pause.milliseconds())));
    gate.set_value();
    download.start(request(server.url()), std::make_shared<Disk>());
    QTRY_COMPARE(downloaded.count, 1);
    QCOMPARE(downloaded.last, HttpError::None);
}

X9_CORE_TEST(tst_HttpClient)
#include "tst_HttpClient.moc"
