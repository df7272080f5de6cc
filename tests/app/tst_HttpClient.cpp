#include "app/HttpClient.h"

#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <memory>

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

/// Counts the bytes that it is given.
class Sink : public HttpContent
{
public:
    bool write(const QByteArray &bytes) override
    {
        size += bytes.size();
        return true;
    }

    qint64 size = 0;
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
    return {QUrl(server + QStringLiteral("/api/software-product-versions/latest-byswcode?swSnCode=A")), true, 1000,
            limitMs, limitMs};
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
    static void tooManyFloodsAreTheLast();

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
    client->start(request(flood.url(behaviour.constData()), isLimited ? 300 : 60000), std::make_shared<Sink>());
    QTRY_COMPARE(flood.requests().count(), 1);
    if (isLimited) {
        QTRY_COMPARE(outcomes.count, 1);
        QCOMPARE(outcomes.last, HttpError::Stalled);
    }
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
    client.start(request(server.url("many-fields")), std::make_shared<Sink>());
    QTRY_COMPARE_WITH_TIMEOUT(outcomes.count, 1, 60000);
    QCOMPARE(outcomes.last, HttpError::TooLarge);
    QVERIFY2(pause.milliseconds() < HeldUpMs, qPrintable(QString::number(pause.milliseconds())));
}

/// Each leaves a thread that reads on; when they have ended, everything is as before.
void tst_HttpClient::tooManyFloodsAreTheLast()
{
    UpdateServer flood(arguments());
    UpdateServer good(arguments());
    for (int count = 1; count <= HttpClient::MaxGivenUp; ++count) {
        HttpClient client;
        client.start(request(flood.url("endless-header")), std::make_shared<Sink>());
        QTRY_COMPARE(flood.requests().count(), count);
    }
    HttpClient client;
    const Outcomes outcomes(client);
    const auto content = std::make_shared<Sink>();
    client.start(request(good.url()), content);
    QVERIFY(client.isRunning());
    QCOMPARE(outcomes.count, 0);
    QTRY_COMPARE(outcomes.count, 1);
    QCOMPARE(outcomes.last, HttpError::Stalled);
    QCOMPARE(good.requests(), QStringList());
    flood.stop();
    const auto isAnswered = [&] {
        if (!client.isRunning()) {
            client.start(request(good.url()), content);
        }
        return content->size > 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAnswered(), 60000);
}

X9_CORE_TEST(tst_HttpClient)
#include "tst_HttpClient.moc"
