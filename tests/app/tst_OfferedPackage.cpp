#include "app/OfferedPackage.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_OfferedPackage : public QObject
{
    Q_OBJECT

private slots:
    static void releases_data();
    static void releases();
    static void firmware_data();
    static void firmware();
    static void namesTheOtherKind_data();
    static void namesTheOtherKind();
    static void kindOfThisProgram();
    static void longCommentsAreCut();
};

namespace {
const char *const None = "";
const char *const Else = "Its signature is for something else: ";
const char *const NotNewer = "It is version ";
} // namespace

void tst_OfferedPackage::releases_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QByteArray>("comment");
    QTest::addColumn<QString>("beginning");
    const auto row = [](const char *name, const char *version, const char *comment, const char *beginning) {
        QTest::newRow(name) << QString::fromLatin1(version) << QByteArray(comment) << QString::fromLatin1(beginning);
    };
    row("good", "1.2.0", "X9CAN release 1.2.0 windows-64bit", None);
    row("for several kinds", "1.2.0", "X9CAN release 1.2.0 windows-32bit windows-64bit", None);
    row("version not told", "", "X9CAN release 1.2.0 windows-64bit", None);
    row("other version", "1.3.0", "X9CAN release 1.2.0 windows-64bit",
        "It is version 1.2.0; what was offered is version 1.3.0.");
    row("same number", "1.2", "X9CAN release 1.2.0 windows-64bit", NotNewer);
    row("installed version", "", "X9CAN release 1.1.1 windows-64bit",
        "It is version 1.1.1, which is not newer than this program, version 1.1.1.");
    row("older", "1.0.9", "X9CAN release 1.0.9 windows-64bit",
        "It is version 1.0.9, which is not newer than this program, version 1.1.1.");
    row("no version", "", "X9CAN release V1.2.0 windows-64bit", NotNewer);
    row("other kind", "1.2.0", "X9CAN release 1.2.0 windows-32bit",
        "It is the package for windows-32bit; this program needs the one for windows-64bit.");
    row("part of the kind", "1.2.0", "X9CAN release 1.2.0 windows-64", "It is the package for ");
    row("no kind", "1.2.0", "X9CAN release 1.2.0", Else);
    row("kind without a version", "", "X9CAN release windows-64bit", Else);
    row("firmware", "1.2.0", "X9CAN firmware X9CANFirmWare 1.2.0", Else);
    row("other product", "1.2.0", "Y9CAN release 1.2.0 windows-64bit", Else);
    row("other letters", "1.2.0", "x9can release 1.2.0 windows-64bit", Else);
    row("two blanks", "1.2.0", "X9CAN release  1.2.0 windows-64bit", Else);
    row("blank at the end", "1.2.0", "X9CAN release 1.2.0 windows-64bit ", Else);
    row("tabulator", "1.2.0", "X9CAN release\t1.2.0 windows-64bit", Else);
    row("minisign's own", "1.2.0", "timestamp:1700000000\tfile:a.zip\thashed", Else);
    row("empty", "1.2.0", "", Else);
}

void tst_OfferedPackage::releases()
{
    QFETCH(QString, version);
    QFETCH(QByteArray, comment);
    QFETCH(QString, beginning);
    const QString problem = packageProblem({{}, version}, comment, QStringLiteral("windows-64bit"));
    QVERIFY2(beginning.isEmpty() ? problem.isEmpty() : problem.startsWith(beginning), qPrintable(problem));
}

void tst_OfferedPackage::firmware_data()
{
    QTest::addColumn<QByteArray>("comment");
    QTest::addColumn<QString>("beginning");
    const auto row = [](const char *name, const char *comment, const char *beginning) {
        QTest::newRow(name) << QByteArray(comment) << QString::fromLatin1(beginning);
    };
    row("good", "X9CAN firmware X9CANFirmWare 1.06", None);
    row("other version", "X9CAN firmware X9CANFirmWare 1.6", "It is version 1.6; what was offered is version 1.06.");
    row("other product", "X9CAN firmware X9770CANFirmWare 1.06",
        "Its signature is for something else: X9CAN firmware X9770CANFirmWare 1.06");
    row("release", "X9CAN release 1.06 windows-64bit", Else);
    row("no version", "X9CAN firmware X9CANFirmWare", Else);
    row("a word more", "X9CAN firmware X9CANFirmWare 1.06 windows-64bit", Else);
}

void tst_OfferedPackage::firmware()
{
    QFETCH(QByteArray, comment);
    QFETCH(QString, beginning);
    const QString problem = packageProblem({QStringLiteral("X9CANFirmWare"), QStringLiteral("1.06")}, comment);
    QVERIFY2(beginning.isEmpty() ? problem.isEmpty() : problem.startsWith(beginning), qPrintable(problem));
}

void tst_OfferedPackage::namesTheOtherKind_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("64 bits") << "windows-64bit";
    QTest::newRow("32 bits") << "windows-32bit";
}

void tst_OfferedPackage::namesTheOtherKind()
{
    QFETCH(QString, kind);
    const QString other =
        kind == QLatin1String("windows-64bit") ? QStringLiteral("windows-32bit") : QStringLiteral("windows-64bit");
    QCOMPARE(packageProblem({}, "X9CAN release 2.0 " + kind.toLatin1(), kind), QString());
    QCOMPARE(packageProblem({}, "X9CAN release 2.0 " + other.toLatin1(), kind),
             QStringLiteral("It is the package for %1; this program needs the one for %2.").arg(other, kind));
}

void tst_OfferedPackage::kindOfThisProgram()
{
#ifdef Q_OS_WIN
    QCOMPARE(programKind(), QStringLiteral("windows-%1bit").arg(8 * QT_POINTER_SIZE));
    QCOMPARE(programKindFor(64), QStringLiteral("windows-64bit"));
    QCOMPARE(programKindFor(32), QStringLiteral("windows-32bit"));
#else
    QCOMPARE(programKind(), QStringLiteral("linux-") + QSysInfo::buildCpuArchitecture());
    QCOMPARE(programKindFor(32), QString());
#endif
}

void tst_OfferedPackage::longCommentsAreCut()
{
    QVERIFY(packageProblem({}, QByteArray(8000, 'x')).size() < 200);
    QVERIFY(packageProblem({{}, QStringLiteral("1.2")}, "X9CAN release " + QByteArray(8000, '1') + " k").size() < 300);
}

X9_PLAIN_TEST(tst_OfferedPackage)
#include "tst_OfferedPackage.moc"
