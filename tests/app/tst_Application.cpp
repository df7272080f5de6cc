#include "tests/app/RunningProgram.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QtTest>

#include <functional>
#include <memory>

/// What a test does to the folder for temporary files and to the lock in it.
struct Preparation
{
    std::function<void(const QString &temporary, const QString &lock)> run;
};
Q_DECLARE_METATYPE(Preparation)

namespace {
std::unique_ptr<QLockFile> held; ///< by this process, for a row of a test

/// How long the process may live after its window was closed. A sanitizer has work of its own to do at the end.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int EndMs = 10000;
#else
constexpr int EndMs = 2000;
#endif

const QByteArray TwoDevices = R"({
  "buses": [{"name": "busy", "bitrate": "500k", "nodes": [{"id": "0x100", "length": 8, "period_us": 1000}]}],
  "lin_buses": [{"name": "doors", "slaves": [{"id": 5, "data": [1, 2]}]}],
  "devices": [{"model": "X9FC-1", "can": [{"bus": "busy"}, {"bus": "busy"}], "lin": [{"bus": "doors"}]},
              {"model": "X9FC-1", "can": [{"bus": "busy"}, {"bus": "busy"}]}]
})";

QByteArray deviceWithSlowCalls(const QByteArray &delays)
{
    return QByteArray(R"({
      "buses": [{"name": "busy", "bitrate": "500k", "nodes": [{"id": "0x100", "length": 8, "period_us": 1000}]}],
      "devices": [{"model": "X9FC-1", "can": [{"bus": "busy"}, {"bus": "busy"}],
                   "faults": {"call_delay_ms": )") +
           delays + "}}]}";
}
} // namespace

/// Starts the program as real processes.
class tst_Application : public QObject
{
    Q_OBJECT

private slots:
    static void startsOnce();
    static void startsAfterAKill();
    static void restarts();
    static void restartsInTheOtherLanguage();
    static void startsWithADamagedSettingsFile();
    static void endsInTime_data();
    static void endsInTime();
    static void endsWhileTheServerHangs_data();
    static void endsWhileTheServerHangs();
    static void finishesTheFileBeforeItEnds();
    static void endsWhenTheSystemWants_data();
    static void endsWhenTheSystemWants();
    static void tellsWhyItCannotStart_data();
    static void tellsWhyItCannotStart();
    static void startsWithAStrangersNumberInTheLock();
    static void loadsItsOwnOnly();
    static void startsAfterALibraryThatHung();
    static void startsWithoutALibrary();
};

void tst_Application::startsOnce()
{
    const ProgramFolder folder(TwoDevices);
    RunningProgram first(folder, QString());
    QVERIFY(first.waitForLine(QStringLiteral("shown")));
    RunningProgram second(folder, QString());
    QVERIFY(second.waitForEnd());
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(folder.log().count(QLatin1String("application")), 1);
    QCOMPARE(folder.log().count(QLatin1String("shown")), 1);
    QVERIFY(first.isRunning());
}

/// What the killed one left behind does not lock the user out.
void tst_Application::startsAfterAKill()
{
    const ProgramFolder folder(TwoDevices);
    for (int start = 1; start <= 3; ++start) {
        RunningProgram program(folder, QStringLiteral("openCAN"));
        QVERIFY(program.waitForLine(QStringLiteral("shown"), start));
        program.kill();
    }
    RunningProgram last(folder, QStringLiteral("close"));
    QVERIFY(last.waitForEnd());
    QCOMPARE(last.errors(), QString());
    QCOMPARE(folder.log().count(QLatin1String("shown")), 4);
}

void tst_Application::restarts()
{
    const ProgramFolder folder(TwoDevices);
    RunningProgram first(folder, QStringLiteral("openCAN,restart"), {QStringLiteral("argument")});
    QVERIFY(first.waitForEnd());
    QCOMPARE(first.exitCode(), 100);
    QVERIFY(first.waitForLine(QStringLiteral("closing")));
    QCOMPARE(folder.log().count(QLatin1String("application")), 2);
    QVERIFY(folder.log().contains(QLatin1String("(&L), 1 arguments")));
    QVERIFY(folder.log().contains(QLatin1String("(&L), 0 arguments")));
    QVERIFY(folder.isFree());
}

void tst_Application::restartsInTheOtherLanguage()
{
    const ProgramFolder folder(TwoDevices);
    RunningProgram first(folder, QStringLiteral("restart"));
    QVERIFY(first.waitForEnd());
    QVERIFY(first.waitForLine(QStringLiteral("closing")));
    QVERIFY(folder.isFree());
    QVERIFY(folder.log().indexOf(QStringLiteral("语言(&L)")) >= 0);
    QVERIFY(folder.log().indexOf(QLatin1String("Language(&L)")) > folder.log().indexOf(QStringLiteral("语言(&L)")));
    QVERIFY(folder.read(QStringLiteral("program/Init.ini")).contains("language=1"));
}

void tst_Application::startsWithADamagedSettingsFile()
{
    const ProgramFolder folder(TwoDevices);
    folder.write(QStringLiteral("program/Init.ini"), QByteArray("\0\xFF[[[language\0=1\n=\n[", 21));
    RunningProgram program(folder, QStringLiteral("close"));
    QVERIFY(program.waitForEnd());
    QVERIFY(folder.log().contains(QStringLiteral("语言(&L)")));
}

void tst_Application::endsInTime_data()
{
    QTest::addColumn<QByteArray>("adapter");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<bool>("isCutOff");
    QTest::newRow("idle") << TwoDevices << QString() << false;
    QTest::newRow("receiving") << TwoDevices << QStringLiteral("openCAN,openLIN") << false;
    QTest::newRow("saving and playing") << TwoDevices << QStringLiteral("openCAN,openLIN,save,list,play") << false;
    QTest::newRow("sending") << TwoDevices << QStringLiteral("openCAN,send,list") << false;
    QTest::newRow("scanning") << TwoDevices << QStringLiteral("openCAN,scan") << false;
    const auto slow = [](const char *name, const QByteArray &delays, bool isCutOff) {
        QTest::newRow(name) << deviceWithSlowCalls(delays) << QStringLiteral("openCAN") << isCutOff;
    };
    slow("slow receiving", R"({"VCI_Receive": 1000})", false);
    slow("slow closing", R"({"VCI_CloseDevice": 1000})", false);
    slow("slow in many calls", R"({"VCI_ResetCAN": 1000, "VCI_CloseDevice": 1000})", true);
    slow("hanging", R"({"VCI_ResetCAN": 60000})", true);
}

void tst_Application::endsInTime()
{
    QFETCH(QByteArray, adapter);
    QFETCH(QString, steps);
    QFETCH(bool, isCutOff);
    const ProgramFolder folder(adapter);
    RunningProgram program(folder, steps + QStringLiteral(",close"));
    QVERIFY2(program.waitForLine(QStringLiteral("closing")), qPrintable(folder.log()));
    QVERIFY2(program.waitForEnd(EndMs), qPrintable(folder.log()));
    QCOMPARE(program.exitCode(), 0);
    QVERIFY2(!folder.log().contains(QLatin1String("failed")), qPrintable(folder.log()));
    QVERIFY2(!folder.log().contains(QLatin1String("ing 0")), qPrintable(folder.log())); // every activity was under way
    QVERIFY(folder.isFree());
    const QString cutOff =
        QStringLiteral("The adapter's library does not answer; the program ends without closing it.");
    QCOMPARE(program.errors(), isCutOff ? cutOff : QString());
}

void tst_Application::endsWhileTheServerHangs_data()
{
    QTest::addColumn<QString>("steps");
    QTest::newRow("looking for a newer program") << QStringLiteral("wait,close");
    QTest::newRow("looking for newer firmware") << QStringLiteral("openCAN,wait,close");
}

void tst_Application::endsWhileTheServerHangs()
{
    QFETCH(QString, steps);
    UpdateServer server;
    const ProgramFolder folder(TwoDevices);
    folder.write(QStringLiteral("program/Init.ini"),
                 "[General]\nupdateServer=" + server.url("no-answer").toUtf8() + '\n');
    RunningProgram program(folder, steps);
    QTRY_VERIFY(!server.requests().isEmpty());
    folder.write(QStringLiteral("go"), QByteArray());
    QVERIFY2(program.waitForLine(QStringLiteral("closing")), qPrintable(folder.log()));
    QVERIFY(program.waitForEnd(EndMs));
    QCOMPARE(program.errors(), QString());
}

/// Nothing that was listed is missing, and the last line is whole.
void tst_Application::finishesTheFileBeforeItEnds()
{
    const ProgramFolder folder(deviceWithSlowCalls(R"({"VCI_ResetCAN": 60000})"));
    RunningProgram program(folder, QStringLiteral("openCAN,save,close"));
    QVERIFY(program.waitForEnd());
    const QString closing = folder.log().section(QStringLiteral("closing with "), 1).section(QLatin1Char(' '), 0, 0);
    const QByteArray file = folder.read(QStringLiteral("real-time.csv"));
    QVERIFY2(closing.toInt() > 100, qPrintable(folder.log()));
    QVERIFY2(file.count('\n') >= closing.toInt() + 1, qPrintable(closing));
    QVERIFY(file.endsWith('\n'));
}

void tst_Application::endsWhenTheSystemWants_data()
{
    QTest::addColumn<QString>("step");
#ifdef Q_OS_WIN
    QTest::newRow("end of the session") << QStringLiteral("endSession");
#else
    QTest::newRow("SIGTERM") << QStringLiteral("terminate");
    QTest::newRow("SIGINT") << QStringLiteral("interrupt");
    QTest::newRow("SIGHUP") << QStringLiteral("hangUp");
#endif
}

/// As if its window had been closed.
void tst_Application::endsWhenTheSystemWants()
{
    QFETCH(QString, step);
    const ProgramFolder folder(TwoDevices);
    RunningProgram program(folder, QStringLiteral("openCAN,save,") + step);
    QVERIFY(program.waitForEnd());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(program.errors(), QString());
    const QString closing = folder.log().section(QStringLiteral("closing with "), 1).section(QLatin1Char(' '), 0, 0);
    const QByteArray file = folder.read(QStringLiteral("real-time.csv"));
    QVERIFY2(closing.toInt() > 100, qPrintable(folder.log()));
    QVERIFY2(file.count('\n') > closing.toInt(), qPrintable(closing));
    QVERIFY(file.endsWith('\n'));
#ifndef Q_OS_WIN
    QVERIFY(folder.isFree());
#endif
}

void tst_Application::tellsWhyItCannotStart_data()
{
    QTest::addColumn<Preparation>("preparation");
    QTest::addColumn<QString>("text");
    const QString cannotWrite =
        QStringLiteral("锁文件 %1 无法写入。\n请检查临时文件夹是否存在，以及您是否有写入权限。");
    const QString inTheWay =
        QStringLiteral("锁文件 %1 阻碍了程序启动，且没有正在运行的 X9CAN 占用它。\n请删除它，然后重新启动程序。");
    QTest::newRow("no folder for temporary files")
        << Preparation{[](const QString &temporary, const QString & /*lock*/) {
               QVERIFY(QDir().rmdir(temporary));
           }}
        << cannotWrite;
#ifdef Q_OS_LINUX
    QTest::newRow("nobody may write to it") << Preparation{[](const QString &temporary, const QString & /*lock*/) {
        QVERIFY(QDir().rmdir(temporary));
        QVERIFY(QFile::link(QStringLiteral("/sys"), temporary));
    }} << cannotWrite;
#endif
    QTest::newRow("an empty lock file") << Preparation{[](const QString & /*temporary*/, const QString &lock) {
        QVERIFY(QFile(lock).open(QIODevice::WriteOnly));
    }} << inTheWay;
    QTest::newRow("a lock that cannot be read") << Preparation{[](const QString & /*temporary*/, const QString &lock) {
        QVERIFY(QDir().mkdir(lock));
    }} << inTheWay;
    QTest::newRow("another program's lock") << Preparation{[](const QString & /*temporary*/, const QString &lock) {
        held = std::make_unique<QLockFile>(lock);
        QVERIFY(held->lock());
    }} << inTheWay;
}

void tst_Application::tellsWhyItCannotStart()
{
    QFETCH(const Preparation, preparation);
    QFETCH(QString, text);
    const ProgramFolder folder(TwoDevices);
    QString lock = folder.lockFile();
    preparation.run(folder.path(QStringLiteral("temporary")), lock);
    const QFileInfo temporary(folder.path(QStringLiteral("temporary")));
    if (temporary.isSymLink()) {
        lock.replace(temporary.filePath(), temporary.symLinkTarget());
    }
    RunningProgram program(folder, QStringLiteral("close"));
    QVERIFY(program.waitForEnd());
    held.reset();
    QCOMPARE(program.exitCode(), 1);
    const QString problem = QStringLiteral("problem, 提示, ") + text.arg(QDir::toNativeSeparators(lock));
    QVERIFY2(folder.log().contains(problem), qPrintable(folder.log() + problem));
    const QString errors = program.errors();
    QVERIFY2(errors.contains(QLatin1String("The lock file ")), qPrintable(errors));
}

/// The lock of a program that was killed, whose number another process has got since.
void tst_Application::startsWithAStrangersNumberInTheLock()
{
    const ProgramFolder folder(TwoDevices);
    const QString program = QFileInfo(QStringLiteral(X9_PROGRAM_UNDER_TEST)).completeBaseName();
    folder.write(QStringLiteral("temporary/") + QFileInfo(folder.lockFile()).fileName(),
                 QByteArray::number(QCoreApplication::applicationPid()) + '\n' + program.toUtf8() + '\n' +
                     QSysInfo::machineHostName().toUtf8() + '\n');
    RunningProgram started(folder, QStringLiteral("close"));
    QVERIFY(started.waitForEnd());
    QVERIFY2(folder.log().contains(QLatin1String("shown")), qPrintable(folder.log()));
}

/// Not what the environment or the working directory hold ready.
void tst_Application::loadsItsOwnOnly()
{
    const ProgramFolder folder(TwoDevices);
    const QString plugins = folder.path(QStringLiteral("home"));
    QVERIFY(QFile::copy(QStringLiteral(X9_VIRTUAL_ADAPTER), folder.path(QStringLiteral("other.dll"))));
    const auto forget = qScopeGuard([] { qunsetenv("QT_PLUGIN_PATH"); });
    qputenv("QT_PLUGIN_PATH", QFile::encodeName(plugins));
    RunningProgram program(folder, QStringLiteral("sources,close"));
    QVERIFY(program.waitForEnd());
    QVERIFY2(folder.log().contains(QLatin1String("plugins ")), qPrintable(folder.log()));
    QVERIFY2(!folder.log().contains(plugins), qPrintable(folder.log()));
    QVERIFY2(!folder.log().contains(QLatin1String("library 1")), qPrintable(folder.log()));
}

void tst_Application::startsAfterALibraryThatHung()
{
    const ProgramFolder folder(deviceWithSlowCalls(R"({"VCI_ResetCAN": 60000})"));
    RunningProgram first(folder, QStringLiteral("openCAN,restart"));
    QVERIFY(first.waitForEnd());
    QCOMPARE(first.exitCode(), 100);
    QVERIFY(first.waitForLine(QStringLiteral("closing")));
    QVERIFY(folder.isFree());
}

void tst_Application::startsWithoutALibrary()
{
    const ProgramFolder folder(TwoDevices, ProgramFolder::Library::Missing);
    RunningProgram program(folder, QStringLiteral("close"));
    QVERIFY(program.waitForEnd());
    QCOMPARE(program.exitCode(), 0);
}

X9_CORE_TEST(tst_Application)
#include "tst_Application.moc"
