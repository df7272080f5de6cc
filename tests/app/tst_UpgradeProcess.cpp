#include "app/UpgradeProcess.h"
#include "tests/app/StandInProgram.h"
#include "tests/support/TestProgram.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

/// A warning while this exists ends the test program.
class NoWarnings
{
public:
    NoWarnings()
        : m_previous(qInstallMessageHandler(end))
    {
    }
    ~NoWarnings() { qInstallMessageHandler(m_previous); }
    NoWarnings(const NoWarnings &) = delete;
    NoWarnings &operator=(const NoWarnings &) = delete;

private:
    static void end(QtMsgType, const QMessageLogContext &, const QString &text)
    {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::abort();
    }

    QtMessageHandler m_previous;
};

} // namespace

class tst_UpgradeProcess : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_application.reset(); }
    void exitCodeIsReported();
    void argumentsArriveAsTheyAre();
    void outputNeverHoldsTheProgramUp();
    void crashIsAFailure();
    void missingProgramIsAFailureWithoutAStart();
    void oneProgramAtATime();
    static void tellsWhetherItRuns_data();
    void tellsWhetherItRuns();
    void runsAgain();
    void destroyingLeavesTheProgramRunning();
    void destroyingBeforeTheStartIsReported();
    void releasingLeavesTheProgramRunning();
    void releasedProcessIsFreedAtItsEnd();
    void releasedMissingProgramIsFreed();
    void applicationEndLeavesTheProgramRunning();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    static QList<QProcess *> released()
    {
        return QCoreApplication::instance()->findChildren<QProcess *>(QString(), Qt::FindDirectChildrenOnly);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QCoreApplication> m_application;
};

void tst_UpgradeProcess::init()
{
    static int argc = 1;
    static char name[] = "tst_UpgradeProcess";
    static char *argv[] = {name, nullptr};
    m_application = std::make_unique<QCoreApplication>(argc, argv);
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_UpgradeProcess::exitCodeIsReported()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "exit 6");
    UpgradeProcess process;
    QSignalSpy started(&process, &UpgradeProcess::sig_started);
    QSignalSpy finished(&process, &UpgradeProcess::sig_finished);
    QSignalSpy failed(&process, &UpgradeProcess::sig_failed);
    QVERIFY(!process.isRunning());
    process.start(program.path(), {});
    QVERIFY(process.isRunning());
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().toInt(), 6);
    QCOMPARE(started.count(), 1);
    QCOMPARE(failed.count(), 0);
    QVERIFY(!process.isRunning());
}

void tst_UpgradeProcess::argumentsArriveAsTheyAre()
{
    const StandInProgram program(path(QStringLiteral("folder with spaces/Upgrade CAN.exe")));
    UpgradeProcess process;
    QSignalSpy finished(&process, &UpgradeProcess::sig_finished);
    process.start(program.path(), {QStringLiteral("C:/Program Files/a \"b\".bin"), QStringLiteral("%1")});
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(program.starts(), QStringList(QStringLiteral("C:/Program Files/a \"b\".bin\t%1")));
}

/// Far more than a pipe holds.
void tst_UpgradeProcess::outputNeverHoldsTheProgramUp()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait print 1000000");
    auto process = std::make_unique<UpgradeProcess>();
    QSignalSpy started(process.get(), &UpgradeProcess::sig_started);
    process->start(program.path(), {});
    QTRY_COMPARE(started.count(), 1);
    process.reset();
    program.letGo();
    QTRY_COMPARE(program.ends(), QStringList(QStringLiteral("0")));
}

void tst_UpgradeProcess::crashIsAFailure()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "crash");
    UpgradeProcess process;
    QSignalSpy started(&process, &UpgradeProcess::sig_started);
    QSignalSpy finished(&process, &UpgradeProcess::sig_finished);
    QSignalSpy failed(&process, &UpgradeProcess::sig_failed);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Upgrade program .*UpgradeCAN.exe: .+")));
    process.start(program.path(), {});
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY(!failed.first().first().toString().isEmpty());
    QCOMPARE(started.count(), 1);
    QCOMPARE(finished.count(), 0);
    QVERIFY(!process.isRunning());
}

void tst_UpgradeProcess::missingProgramIsAFailureWithoutAStart()
{
    UpgradeProcess process;
    QSignalSpy started(&process, &UpgradeProcess::sig_started);
    QSignalSpy failed(&process, &UpgradeProcess::sig_failed);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Upgrade program .*missing.exe: .+")));
    process.start(path(QStringLiteral("missing.exe")), {});
    QTRY_COMPARE(failed.count(), 1);
    QCOMPARE(started.count(), 0);
    QVERIFY(!process.isRunning());
}

void tst_UpgradeProcess::oneProgramAtATime()
{
    const StandInProgram first(path(QStringLiteral("first.exe")), "wait");
    const StandInProgram second(path(QStringLiteral("second.exe")));
    UpgradeProcess process;
    QSignalSpy finished(&process, &UpgradeProcess::sig_finished);
    process.start(first.path(), {});
    process.start(second.path(), {});
    QTRY_COMPARE(first.starts().size(), 1);
    first.letGo();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(second.starts(), QStringList());
}

void tst_UpgradeProcess::tellsWhetherItRuns_data()
{
    QTest::addColumn<QByteArray>("orders");
    QTest::newRow("ends") << QByteArray("wait exit 6");
    QTest::newRow("crashes") << QByteArray("wait crash");
    QTest::newRow("missing") << QByteArray();
}

/// From the call on, and before its end is told.
void tst_UpgradeProcess::tellsWhetherItRuns()
{
    QFETCH(QByteArray, orders);
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), orders);
    const QString started = orders.isEmpty() ? path(QStringLiteral("missing.exe")) : program.path();
    if (!orders.startsWith("wait exit")) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Upgrade program .*: .+")));
    }
    UpgradeProcess process;
    QStringList told;
    connect(&process, &UpgradeProcess::sig_runningChanged, this, [&](bool isRunning) {
        told.append(isRunning ? QStringLiteral("runs") : QStringLiteral("free"));
        QCOMPARE(process.isRunning(), isRunning);
    });
    connect(&process, &UpgradeProcess::sig_finished, this, [&told] { told.append(QStringLiteral("end")); });
    connect(&process, &UpgradeProcess::sig_failed, this, [&told] { told.append(QStringLiteral("end")); });
    process.start(started, {});
    QCOMPARE(told.value(0), QStringLiteral("runs"));
    if (process.isRunning()) { // a missing one may be known to be at once
        process.start(started, {});
    }
    program.letGo();
    QTRY_COMPARE(told, QStringList({QStringLiteral("runs"), QStringLiteral("free"), QStringLiteral("end")}));
}

void tst_UpgradeProcess::runsAgain()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "exit 1");
    UpgradeProcess process;
    QSignalSpy finished(&process, &UpgradeProcess::sig_finished);
    process.start(program.path(), {});
    QTRY_COMPARE(finished.count(), 1);
    program.order("exit 2");
    process.start(program.path(), {});
    QTRY_COMPARE(finished.count(), 2);
    QCOMPARE(finished.last().first().toInt(), 2);
}

void tst_UpgradeProcess::destroyingLeavesTheProgramRunning()
{
    const NoWarnings noWarnings;
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait exit 3");
    auto process = std::make_unique<UpgradeProcess>();
    QSignalSpy started(process.get(), &UpgradeProcess::sig_started);
    process->start(program.path(), {});
    QTRY_COMPARE(started.count(), 1);
    process.reset();
    QCOMPARE(released().size(), 1);
    program.letGo();
    QTRY_COMPARE(program.ends(), QStringList(QStringLiteral("3")));
    QTRY_COMPARE(released().size(), 0);
}

void tst_UpgradeProcess::destroyingBeforeTheStartIsReported()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "exit 3");
    {
        UpgradeProcess process;
        process.start(program.path(), {});
    }
    QTRY_COMPARE(program.ends(), QStringList(QStringLiteral("3")));
    QTRY_COMPARE(released().size(), 0);
}

void tst_UpgradeProcess::releasingLeavesTheProgramRunning()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait");
    UpgradeProcess process;
    QSignalSpy started(&process, &UpgradeProcess::sig_started);
    QSignalSpy finished(&process, &UpgradeProcess::sig_finished);
    QSignalSpy changed(&process, &UpgradeProcess::sig_runningChanged);
    process.start(program.path(), {});
    QTRY_COMPARE(started.count(), 1);
    process.release();
    QVERIFY(!process.isRunning());
    QCOMPARE(changed.count(), 1); // of the start
    QCOMPARE(released().size(), 1);
    program.letGo();
    QTRY_COMPARE(released().size(), 0);
    QCOMPARE(program.ends().size(), 1);
    QCOMPARE(finished.count(), 0);
}

void tst_UpgradeProcess::releasedProcessIsFreedAtItsEnd()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait crash");
    UpgradeProcess process;
    QSignalSpy failed(&process, &UpgradeProcess::sig_failed);
    process.start(program.path(), {});
    QTRY_COMPARE(program.starts().size(), 1);
    process.release();
    program.letGo();
    QTRY_COMPARE(released().size(), 0);
    QCOMPARE(failed.count(), 0);
}

void tst_UpgradeProcess::releasedMissingProgramIsFreed()
{
    UpgradeProcess process;
    process.start(path(QStringLiteral("missing.exe")), {});
    process.release();
    QTRY_COMPARE(released().size(), 0);
}

void tst_UpgradeProcess::applicationEndLeavesTheProgramRunning()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait print 100000 exit 3");
    auto process = std::make_unique<UpgradeProcess>();
    process->start(program.path(), {});
    QTRY_COMPARE(program.starts().size(), 1);
    const NoWarnings noWarnings;
    process.reset();
    m_application.reset();
    program.letGo();
    QTRY_COMPARE(program.ends(), QStringList(QStringLiteral("3")));
}

/// Every test has its own application, because one of them looks at what is left after it.
X9_PLAIN_TEST(tst_UpgradeProcess)
#include "tst_UpgradeProcess.moc"
