#include "app/SignedDownload.h"

#include "tests/app/TestSigner.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {
constexpr qint64 Plenty = Q_INT64_C(1000) * 1000 * 1000;
constexpr int ShortMs = 300; ///< of a server that keeps silent
const QByteArray Content = QByteArray("firmware").repeated(50000);
const QByteArray Comment("X9CAN firmware X9CANFirmWare 2.06");
const OfferedPackage Offered{QStringLiteral("X9CANFirmWare"), QStringLiteral("2.06")};
} // namespace

class tst_SignedDownload : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutAKeyNothingElseIsAskedFor();
    static void downloads_data();
    void downloads();
    void signatureComesFirst();
    static void signatureAddresses_data();
    void signatureAddresses();
    static void refuses_data();
    void refuses();
    static void badSignaturesKeepThePackageAway_data();
    void badSignaturesKeepThePackageAway();
    void refusalLeavesWhatWasThere();
    void legacySignaturesAreForSmallFiles();
    void failsAsEveryDownload();
    static void cancels_data();
    void cancels();
    void startEndsTheOneBefore();
    void deletedInItsSignal();

private:
    void open(const QByteArray &key, int stallLimitMs = 60000);
    void place(const char *name, const QByteArray &bytes) const;
    void start(const QString &path, const OfferedPackage &offered = Offered, qint64 maximumSize = Plenty)
    {
        m_download->start(QUrl(m_server->url() + path), target(), maximumSize, offered);
    }
    QString target() const { return m_folder->filePath(QStringLiteral("stored/file")); }
    QByteArray stored() const;
    QStringList requested() const;

    const TestSigner m_signer;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UpdateServer> m_server;
    std::unique_ptr<SignedDownload> m_download;
    std::unique_ptr<QSignalSpy> m_finished;
    std::unique_ptr<QSignalSpy> m_refused;
};

void tst_SignedDownload::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("downloads")));
    place("a.bin", Content);
    place("a.bin.minisig", m_signer.sign(Content, Comment));
    m_server = std::make_unique<UpdateServer>(
        QStringList{QStringLiteral("--downloads"), m_folder->filePath(QStringLiteral("downloads"))});
    open(m_signer.publicKey());
}

void tst_SignedDownload::cleanup()
{
    m_download.reset();
    m_server.reset();
    m_folder.reset();
}

void tst_SignedDownload::open(const QByteArray &key, int stallLimitMs)
{
    m_download = std::make_unique<SignedDownload>(m_server->url(), key);
    m_download->setStallLimit(stallLimitMs);
    m_finished = std::make_unique<QSignalSpy>(m_download.get(), &SignedDownload::sig_finished);
    m_refused = std::make_unique<QSignalSpy>(m_download.get(), &SignedDownload::sig_refused);
}

void tst_SignedDownload::place(const char *name, const QByteArray &bytes) const
{
    QFile file(m_folder->filePath(QStringLiteral("downloads/") + QLatin1String(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray tst_SignedDownload::stored() const
{
    QFile file(target());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
}

/// The addresses only.
QStringList tst_SignedDownload::requested() const
{
    QStringList addresses = m_server->requests();
    for (QString &line : addresses) {
        line = line.section(QLatin1Char(' '), 1, 1);
    }
    return addresses;
}

void tst_SignedDownload::withoutAKeyNothingElseIsAskedFor()
{
    open({});
    start(QStringLiteral("/downloads/a.bin"));
    QTRY_COMPARE(m_finished->count(), 1);
    QCOMPARE(m_finished->first(), (QVariantList{true, QString()}));
    QCOMPARE(stored(), Content);
    QCOMPARE(requested(), QStringList(QStringLiteral("/downloads/a.bin")));
}

void tst_SignedDownload::downloads_data()
{
    QTest::addColumn<bool>("isPrehashed");
    QTest::addColumn<QString>("behaviour");
    QTest::newRow("prehashed") << true << QString();
    QTest::newRow("legacy") << false << QString();
    QTest::newRow("redirected") << true << QStringLiteral("/behave/redirect");
}

void tst_SignedDownload::downloads()
{
    QFETCH(bool, isPrehashed);
    QFETCH(QString, behaviour);
    place("a.bin.minisig",
          m_signer.sign(Content, Comment, isPrehashed ? TestSigner::Format::Prehashed : TestSigner::Format::Legacy));
    start(behaviour + QStringLiteral("/downloads/a.bin"));
    QVERIFY(m_download->isRunning());
    QCOMPARE(m_finished->count(), 0);
    QTRY_COMPARE(m_finished->count(), 1);
    QCOMPARE(m_finished->first(), (QVariantList{true, QString()}));
    QCOMPARE(m_refused->count(), 0);
    QCOMPARE(stored(), Content);
    QVERIFY(!m_download->isRunning());
}

void tst_SignedDownload::signatureComesFirst()
{
    start(QStringLiteral("/downloads/a.bin"));
    QTRY_COMPARE(m_finished->count(), 1);
    QCOMPARE(requested(),
             (QStringList{QStringLiteral("/downloads/a.bin.minisig"), QStringLiteral("/downloads/a.bin")}));
}

void tst_SignedDownload::signatureAddresses_data()
{
    QTest::addColumn<QString>("package");
    QTest::addColumn<QString>("signature");
    QTest::newRow("query") << "/downloads/a.bin?key=1&b=2"
                           << "/downloads/a.bin.minisig?key=1&b=2";
    QTest::newRow("encoded") << "/downloads/a%20%252F%E5%9B%BA.bin"
                             << "/downloads/a%20%252F%E5%9B%BA.bin.minisig";
}

void tst_SignedDownload::signatureAddresses()
{
    QFETCH(QString, package);
    start(package);
    QTRY_COMPARE(m_finished->count() + m_refused->count(), 1);
    QTEST(requested().value(0), "signature");
}

/// What the server does to the signature, or to the package, and how the reason begins.
void tst_SignedDownload::refuses_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *behaviour, const char *reason) {
        QTest::newRow(behaviour) << QString::fromLatin1(behaviour) << QString::fromLatin1(reason);
    };
    const char *const none = "What the server sends as its signature is not one.";
    const char *const unavailable = "Its signature cannot be downloaded: ";
    row("sig-404", unavailable);
    row("sig-500", unavailable);
    row("sig-short", unavailable);
    row("sig-stall", unavailable);
    row("sig-no-answer", unavailable);
    row("sig-redirect-file", unavailable);
    row("sig-nothing", none);
    row("sig-cut", none);
    row("sig-cr-lf", none);
    row("sig-large", none);
    row("sig-rubbish", none);
    row("sig-rubbish-chunked", none);
    row("sig-much-stall", none); // before the end comes
    row("sig-invalid", none);
    row("sig-as-a.bin", none);
    row("sig-spoiled", "Its signature was changed or forged.");
    row("sig-as-other-key.minisig", "It was signed with another key.");
    row("sig-as-other-key-same-id.minisig", "Its signature was changed or forged.");
    row("sig-as-mixed.minisig", "Its signature was changed or forged.");
    row("sig-as-other-product.minisig", "Its signature is for something else: X9CAN firmware X9770CANFirmWare 2.06");
    row("sig-as-older.minisig", "It is version 2.04; what was offered is version 2.06.");
    row("sig-as-release.minisig", "Its signature is for something else: X9CAN release 2.06 windows-64bit");
    row("sig-as-other-file.minisig", "The file on the server is not the one that was signed.");
    row("as-other.bin", none); // the signature's request, too
}

void tst_SignedDownload::refuses()
{
    QFETCH(QString, behaviour);
    QFETCH(QString, reason);
    const QByteArray good = m_signer.sign(Content, Comment);
    place("other.bin", "other");
    place("other-key.minisig", TestSigner(2, 2).sign(Content, Comment));
    place("other-key-same-id.minisig", TestSigner(2, 1).sign(Content, Comment));
    QByteArrayList mixed = m_signer.sign("other", Comment).split('\n');
    mixed[1] = good.split('\n').at(1);
    place("mixed.minisig", mixed.join('\n').replace("2.06", "2.07"));
    place("other-product.minisig", m_signer.sign(Content, "X9CAN firmware X9770CANFirmWare 2.06"));
    place("older.minisig", m_signer.sign(Content, "X9CAN firmware X9CANFirmWare 2.04"));
    place("release.minisig", m_signer.sign(Content, "X9CAN release 2.06 windows-64bit"));
    place("other-file.minisig", m_signer.sign("other", Comment));
    const bool isSilent = behaviour == QLatin1String("sig-stall") || behaviour == QLatin1String("sig-no-answer");
    open(m_signer.publicKey(), isSilent ? ShortMs : 60000);
    start(QStringLiteral("/behave/%1/downloads/a.bin").arg(behaviour));
    QTRY_COMPARE(m_refused->count(), 1);
    const QString told = m_refused->first().first().toString();
    const bool goesOn = reason.endsWith(QLatin1Char(' '));
    QVERIFY2(goesOn ? told.startsWith(reason) && told.size() > reason.size() : told == reason, qPrintable(told));
    QCOMPARE(m_finished->count(), 0);
    QVERIFY(!m_download->isRunning());
    QTRY_VERIFY(!QFileInfo::exists(QFileInfo(target()).absolutePath())); // the folder made for it, too
}

void tst_SignedDownload::badSignaturesKeepThePackageAway_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("comment");
    QTest::newRow("key of the program") << QByteArray("RW") << Comment;
    QTest::newRow("another key") << TestSigner(2, 2).publicKey() << Comment;
    QTest::newRow("for something else") << TestSigner().publicKey() << QByteArray("X9CAN release 2.06 windows-64bit");
}

void tst_SignedDownload::badSignaturesKeepThePackageAway()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, comment);
    place("a.bin.minisig", m_signer.sign(Content, comment));
    open(key);
    start(QStringLiteral("/downloads/a.bin"));
    QTRY_COMPARE(m_refused->count(), 1);
    letTicksPass(20);
    QCOMPARE(requested(), QStringList(QStringLiteral("/downloads/a.bin.minisig")));
}

void tst_SignedDownload::refusalLeavesWhatWasThere()
{
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("stored")));
    QFile file(target());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("earlier");
    file.close();
    place("a.bin.minisig", m_signer.sign("other", Comment));
    start(QStringLiteral("/downloads/a.bin"));
    QTRY_COMPARE(m_refused->count(), 1);
    QCOMPARE(stored(), QByteArray("earlier"));
    QTRY_COMPARE(QDir(m_folder->filePath(QStringLiteral("stored"))).entryList(QDir::Files | QDir::Hidden),
                 QStringList(QStringLiteral("file")));
}

/// They need all of the file in memory.
void tst_SignedDownload::legacySignaturesAreForSmallFiles()
{
    place("a.bin.minisig", m_signer.sign(Content, Comment, TestSigner::Format::Legacy));
    start(QStringLiteral("/behave/sig-/downloads/a.bin"));
    QTRY_COMPARE(m_finished->count(), 1);
    QVERIFY(m_finished->first().first().toBool());
    place("rubbish.minisig", m_signer.sign(Content, Comment, TestSigner::Format::Legacy)); // of 200 MB
    start(QStringLiteral("/behave/pack-rubbish/downloads/rubbish"));
    QTRY_COMPARE(m_finished->count(), 2);
    QCOMPARE(m_finished->last(), (QVariantList{false, QStringLiteral("The file on the server is too large.")}));
}

void tst_SignedDownload::failsAsEveryDownload()
{
    start(QStringLiteral("/downloads/a.bin"), Offered, Content.size() - 1);
    QTRY_COMPARE(m_finished->count(), 1);
    QCOMPARE(m_finished->last(), (QVariantList{false, QStringLiteral("The file on the server is too large.")}));
    m_download->start(QUrl(), target(), Plenty, Offered);
    QTRY_COMPARE(m_finished->count(), 2);
    QCOMPARE(m_finished->last(), (QVariantList{false, QStringLiteral("The address of the file cannot be used.")}));
    QCOMPARE(m_refused->count(), 0);
}

void tst_SignedDownload::cancels_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<int>("requests");
    for (const char *name : {"sig-no-answer", "sig-stall", "sig-slow"}) {
        QTest::newRow(name) << QString::fromLatin1(name) << 1;
    }
    QTest::newRow("package stalls") << QStringLiteral("pack-stall") << 2;
}

void tst_SignedDownload::cancels()
{
    QFETCH(QString, behaviour);
    QFETCH(int, requests);
    start(QStringLiteral("/behave/%1/downloads/a.bin").arg(behaviour));
    QTRY_COMPARE(m_server->requests().count(), requests);
    QVERIFY(m_download->isRunning());
    m_download->cancel();
    QVERIFY(!m_download->isRunning());
    letTicksPass(50);
    QCOMPARE(m_finished->count() + m_refused->count(), 0);
    QCOMPARE(m_server->requests().count(), requests);
    QTRY_VERIFY(!QFileInfo::exists(QFileInfo(target()).absolutePath()));
    start(QStringLiteral("/downloads/a.bin"));
    QTRY_COMPARE(m_finished->count(), 1);
    QCOMPARE(stored(), Content);
}

void tst_SignedDownload::startEndsTheOneBefore()
{
    start(QStringLiteral("/behave/sig-no-answer/downloads/a.bin"));
    start(QStringLiteral("/downloads/a.bin"));
    QTRY_COMPARE(m_finished->count(), 1);
    QVERIFY(m_finished->first().first().toBool());
    letTicksPass(20);
    QCOMPARE(m_finished->count() + m_refused->count(), 1);
}

void tst_SignedDownload::deletedInItsSignal()
{
    place("a.bin.minisig", "no signature");
    connect(m_download.get(), &SignedDownload::sig_refused, this, [this] { m_download.release()->deleteLater(); });
    start(QStringLiteral("/downloads/a.bin"));
    QTRY_VERIFY(m_download == nullptr);
    letTicksPass(20);
}

X9_CORE_TEST(tst_SignedDownload)
#include "tst_SignedDownload.moc"
