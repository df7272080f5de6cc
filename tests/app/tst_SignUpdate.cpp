#include "app/Minisign.h"
#include "app/OfferedPackage.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// tools/sign-update.sh makes what the program takes.
class tst_SignUpdate : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void signsARelease();
    void signsAFirmware();
    static void refuses_data();
    void refuses();
    void failureLeavesTheSignature();

private:
    int run(const QStringList &arguments);
    QString package() const { return m_folder.filePath(QStringLiteral("a b.zip")); }
    QByteArray signature() const;
    static QString key(const char *name) { return QStringLiteral(X9_TEST_DATA "/minisign/") + QLatin1String(name); }
    static QByteArray publicKey();

    QTemporaryDir m_folder;
    QByteArray m_output;
};

void tst_SignUpdate::init()
{
    QFile::remove(package() + QStringLiteral(".minisig"));
    QFile file(package());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("package");
}

int tst_SignUpdate::run(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(X9_SIGN_UPDATE),
                  QStringList{QStringLiteral("--key"), key("test-only.key")} + arguments + QStringList(package()));
    process.waitForFinished();
    m_output = process.readAll();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QByteArray tst_SignUpdate::signature() const
{
    QFile file(package() + QStringLiteral(".minisig"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray tst_SignUpdate::publicKey()
{
    QFile file(key("test-only.pub"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n').value(1) : QByteArray();
}

void tst_SignUpdate::signsARelease()
{
    QVERIFY2(run({QStringLiteral("release"), QStringLiteral("1.2.0"), QStringLiteral("windows-32bit,windows-64bit")}) ==
                 0,
             m_output.constData());
    const auto made = minisignSignature(signature()).value();
    const auto key = minisignKey(publicKey()).value();
    QVERIFY(made.isPrehashed);
    QVERIFY(isCommentSigned(made, key));
    QCOMPARE(made.comment, QByteArray("X9CAN release 1.2.0 windows-32bit windows-64bit"));
    QCOMPARE(packageProblem({{}, QStringLiteral("1.2.0")}, made.comment, QStringLiteral("windows-64bit")), QString());
    SignedContent check(key, made);
    check.add("package");
    QVERIFY(check.isSigned());
}

void tst_SignUpdate::signsAFirmware()
{
    QVERIFY2(run({QStringLiteral("firmware"), QStringLiteral("X9CANFirmWare"), QStringLiteral("2.06")}) == 0,
             m_output.constData());
    const auto made = minisignSignature(signature()).value();
    QVERIFY(isCommentSigned(made, minisignKey(publicKey()).value()));
    QCOMPARE(packageProblem({QStringLiteral("X9CANFirmWare"), QStringLiteral("2.06")}, made.comment), QString());
}

void tst_SignUpdate::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::newRow("nothing") << QStringList() << 2;
    QTest::newRow("another word") << QStringList{QStringLiteral("update"), QStringLiteral("1.2.0"),
                                                 QStringLiteral("windows-64bit")}
                                  << 2;
    QTest::newRow("no version") << QStringList{QStringLiteral("release"), QStringLiteral("V1.2.0"),
                                               QStringLiteral("windows-64bit")}
                                << 1;
    QTest::newRow("no kind") << QStringList{QStringLiteral("release"), QStringLiteral("1.2.0"), QStringLiteral("")}
                             << 1;
    QTest::newRow("unknown kind") << QStringList{QStringLiteral("release"), QStringLiteral("1.2.0"),
                                                 QStringLiteral("windows-64bit,x86")}
                                  << 1;
    QTest::newRow("product with a blank")
        << QStringList{QStringLiteral("firmware"), QStringLiteral("X9CAN FirmWare"), QStringLiteral("2.06")} << 1;
    QTest::newRow("version with a line feed")
        << QStringList{QStringLiteral("firmware"), QStringLiteral("X9CANFirmWare"), QStringLiteral("2.06\n")} << 1;
    QTest::newRow("no firmware's version")
        << QStringList{QStringLiteral("firmware"), QStringLiteral("X9CANFirmWare"), QStringLiteral("")} << 1;
}

void tst_SignUpdate::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QCOMPARE(run(arguments), code);
    QVERIFY(!m_output.isEmpty());
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files), QStringList(QStringLiteral("a b.zip")));
}

void tst_SignUpdate::failureLeavesTheSignature()
{
    const QStringList release{QStringLiteral("release"), QStringLiteral("1.2.0"), QStringLiteral("windows-64bit")};
    QCOMPARE(run(release), 0);
    const QByteArray before = signature();
    QFile file(package());
    QVERIFY(file.open(QIODevice::WriteOnly)); // now empty
    file.close();
    QCOMPARE(run(release), 1);
    QCOMPARE(signature(), before);
}

X9_CORE_TEST(tst_SignUpdate)
#include "tst_SignUpdate.moc"
