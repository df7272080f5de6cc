#include "app/MigrationWidget.h"
#include "app/UpgradeProcess.h"
#include "tests/app/StandInProgram.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"
#include "widgets/CMessageBox.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QtTest>

#include <memory>

class tst_MigrationWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    static void pathsAreRelativeToTheApplication();
    void idleLook();
    void description();
    void imageIsTheOnlyArgument();
    void looksWhileRunning();
    void barStaysAtItsMaximum();
    static void exitCodes_data();
    void exitCodes();
    void crashIsAnUnknownError();
    void missingProgramIsAnUnknownError();
    void twoRunsAreNumbered();
    void onlyOneProgramRuns();
    void clearStartsTheNumberingAnew();
    void clearWhileRunning();
    void destroyingLeavesTheProgramRunning();

private:
    template<typename Widget>
    Widget *find(const char *name) const
    {
        return m_widget->findChild<Widget *>(QLatin1String(name));
    }
    QPushButton *button() const { return find<QPushButton>("btn_migration"); }
    QProgressBar *bar() const { return find<QProgressBar>("progressBar"); }
    QTextEdit *result() const { return find<QTextEdit>("tbx_result"); }
    void clickMigration() const { QTest::mouseClick(button(), Qt::LeftButton); }
    static void expectWarning()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Upgrade program .*UpgradeCAN.exe: .+")));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StandInProgram> m_program;
    std::unique_ptr<UpgradeProcess> m_process;
    std::unique_ptr<MigrationWidget> m_widget;
};

void tst_MigrationWidget::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_program = std::make_unique<StandInProgram>(migrationProgram(m_folder->path()));
    m_process = std::make_unique<UpgradeProcess>();
    m_widget = std::make_unique<MigrationWidget>(*m_process, m_folder->path());
    m_widget->show();
}

void tst_MigrationWidget::cleanup()
{
    m_widget.reset();
    m_process.reset();
    m_program.reset();
    m_folder.reset();
}

void tst_MigrationWidget::pathsAreRelativeToTheApplication()
{
    QCOMPARE(migrationProgram(QStringLiteral("C:/X9CAN")), QStringLiteral("C:/X9CAN/Migration/UpgradeCAN.exe"));
    QCOMPARE(migrationImage(QStringLiteral("C:/X9CAN")),
             QStringLiteral("C:/X9CAN/Migration/UpCode/X9CANFirmWareMigrate.bin"));
}

void tst_MigrationWidget::idleLook()
{
    QVERIFY(!bar()->isVisible());
    QCOMPARE(bar()->height(), 15);
    QCOMPARE(bar()->minimumHeight(), 15);
    QCOMPARE(bar()->maximumHeight(), 15);
    QCOMPARE(bar()->minimum(), 0);
    QCOMPARE(bar()->maximum(), 1000);
    QVERIFY(button()->isEnabled());
    QCOMPARE(button()->text(), QStringLiteral("Migration"));
    QCOMPARE(button()->property("nav").toString(), QStringLiteral("tBtnStyle_1"));
    QCOMPARE(find<QPushButton>("btn_clear")->text(), QStringLiteral("Clear"));
    QCOMPARE(find<QPushButton>("btn_clear")->property("nav").toString(), QStringLiteral("tBtnStyle_1"));
    QCOMPARE(find<QLabel>("lbl_result")->text(), QStringLiteral("Result:"));
    QVERIFY(result()->isReadOnly());
}

void tst_MigrationWidget::description()
{
    QCOMPARE(find<QLabel>("lbl_description")->text(),
             QStringLiteral("Device migration operation description\r\n"
                            "1. Firmware version less than V2.00 \r\n"
                            "2. Do not power off during the upgrade\r\n"
                            "3. If the operation fails, remove and reinsert the device and try again\r\n"));
}

void tst_MigrationWidget::imageIsTheOnlyArgument()
{
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    clickMigration();
    QTRY_COMPARE(stopped.count(), 1);
    QCOMPARE(m_program->starts(), QStringList(migrationImage(m_folder->path())));
}

void tst_MigrationWidget::looksWhileRunning()
{
    m_program->order("wait");
    QSignalSpy started(m_widget.get(), &MigrationWidget::started);
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    bar()->setValue(500); // of an earlier run
    clickMigration();
    QTRY_COMPARE(started.count(), 1);
    QVERIFY(!button()->isEnabled());
    QVERIFY(bar()->isVisible());
    QVERIFY(bar()->value() < 500);
    const int first = bar()->value();
    QTRY_VERIFY(bar()->value() > first);
    clickMigration();
    QCOMPARE(stopped.count(), 0);
    m_program->letGo();
    QTRY_COMPARE(stopped.count(), 1);
    QCOMPARE(m_program->starts().size(), 1);
    QVERIFY(button()->isEnabled());
    QVERIFY(!bar()->isVisible());
    QCOMPARE(started.count(), 1);
}

void tst_MigrationWidget::barStaysAtItsMaximum()
{
    m_program->order("wait");
    QSignalSpy started(m_widget.get(), &MigrationWidget::started);
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    clickMigration();
    QTRY_COMPARE(started.count(), 1);
    bar()->setValue(995);
    QTRY_COMPARE(bar()->value(), 1000);
    letTicksPass(30);
    QCOMPARE(bar()->value(), 1000);
    QCOMPARE(stopped.count(), 0);
    QVERIFY(bar()->isVisible());
    m_program->letGo();
    QTRY_COMPARE(stopped.count(), 1);
}

void tst_MigrationWidget::exitCodes_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << "Device upgrade succeeded";
    QTest::newRow("1") << 1 << "File cannot be accessed";
    QTest::newRow("2") << 2 << "Hardware version does not match";
    QTest::newRow("3") << 3 << "No old device was found";
    QTest::newRow("4") << 4 << "Enter BootLoader failed";
    QTest::newRow("5") << 5 << "Version read failed";
    QTest::newRow("6") << 6 << "Flash erasing failed";
    QTest::newRow("7") << 7 << "Data send failed";
    QTest::newRow("8") << 8 << "Unknown error";
    QTest::newRow("255") << 255 << "Unknown error";
}

void tst_MigrationWidget::exitCodes()
{
    QFETCH(int, exitCode);
    QFETCH(QString, text);
    m_program->order("exit " + QByteArray::number(exitCode));
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    clickMigration();
    QTRY_COMPARE(stopped.count(), 1);
    QCOMPARE(result()->toPlainText(), QStringLiteral("1. ") + text);
    QTextCursor cursor(result()->document());
    cursor.movePosition(QTextCursor::End);
    QCOMPARE(cursor.charFormat().foreground().color(), exitCode == 0 ? QColor("green") : QColor("red"));
}

void tst_MigrationWidget::crashIsAnUnknownError()
{
    m_program->order("crash");
    QSignalSpy started(m_widget.get(), &MigrationWidget::started);
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    expectWarning();
    clickMigration();
    QTRY_COMPARE(stopped.count(), 1);
    QCOMPARE(started.count(), 1);
    QCOMPARE(result()->toPlainText(), QStringLiteral("1. Unknown error"));
    QVERIFY(result()->toHtml().contains(QStringLiteral("color:#ff0000")));
    QVERIFY(button()->isEnabled());
    QVERIFY(!bar()->isVisible());
}

void tst_MigrationWidget::missingProgramIsAnUnknownError()
{
    QVERIFY(QFile::remove(m_program->path()));
    QSignalSpy started(m_widget.get(), &MigrationWidget::started);
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    for (int run = 1; run <= 2; ++run) {
        expectWarning();
        clickMigration();
        QTRY_VERIFY(result()->toPlainText().endsWith(QStringLiteral("%1. Unknown error").arg(run)));
        QVERIFY(button()->isEnabled());
        QVERIFY(!bar()->isVisible());
    }
    QVERIFY(result()->toHtml().contains(QStringLiteral("color:#ff0000")));
    QCOMPARE(started.count(), 0);
    QCOMPARE(stopped.count(), 0);
}

void tst_MigrationWidget::twoRunsAreNumbered()
{
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    clickMigration();
    QTRY_COMPARE(stopped.count(), 1);
    m_program->order("exit 3");
    clickMigration();
    QTRY_COMPARE(stopped.count(), 2);
    QCOMPARE(result()->toPlainText(), QStringLiteral("1. Device upgrade succeeded\n2. No old device was found"));
}

/// Another one, which somebody else has started, is neither shown nor listed.
void tst_MigrationWidget::onlyOneProgramRuns()
{
    const StandInProgram other(m_folder->filePath(QStringLiteral("UpgradeCAN.exe")), "wait exit 3");
    QSignalSpy started(m_widget.get(), &MigrationWidget::started);
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    QSignalSpy ended(m_process.get(), &UpgradeProcess::sig_finished);
    m_process->start(other.path(), {});
    clickMigration();
    clickMigration();
    QCOMPARE(m_widget->findChildren<CMessageBox *>().size(), 1);
    const auto *message = m_widget->findChild<CMessageBox *>();
    QVERIFY(message->isVisible());
    QCOMPARE(message->windowTitle(), QStringLiteral("Tips"));
    QCOMPARE(message->text(), UpgradeProcess::runningText());
    other.letGo();
    QTRY_COMPARE(ended.count(), 1);
    QVERIFY(button()->isEnabled() && !bar()->isVisible());
    QCOMPARE(started.count() + stopped.count(), 0);
    QCOMPARE(result()->toPlainText(), QString());
    clickMigration();
    QTRY_COMPARE(stopped.count(), 1);
    QCOMPARE(m_program->starts().size(), 1);
    QCOMPARE(result()->toPlainText(), QStringLiteral("1. Device upgrade succeeded"));
}

void tst_MigrationWidget::clearStartsTheNumberingAnew()
{
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    clickMigration();
    QTRY_COMPARE(stopped.count(), 1);
    QTest::mouseClick(find<QPushButton>("btn_clear"), Qt::LeftButton);
    QCOMPARE(result()->toPlainText(), QString());
    clickMigration();
    QTRY_COMPARE(stopped.count(), 2);
    QCOMPARE(result()->toPlainText(), QStringLiteral("1. Device upgrade succeeded"));
}

void tst_MigrationWidget::clearWhileRunning()
{
    QSignalSpy stopped(m_widget.get(), &MigrationWidget::stopped);
    clickMigration();
    QTRY_COMPARE(stopped.count(), 1);
    m_program->order("wait exit 2");
    clickMigration();
    QTRY_VERIFY(!button()->isEnabled());
    QTest::mouseClick(find<QPushButton>("btn_clear"), Qt::LeftButton);
    m_program->letGo();
    QTRY_COMPARE(stopped.count(), 2);
    QCOMPARE(result()->toPlainText(), QStringLiteral("1. Hardware version does not match"));
}

void tst_MigrationWidget::destroyingLeavesTheProgramRunning()
{
    m_program->order("wait exit 5");
    QSignalSpy started(m_widget.get(), &MigrationWidget::started);
    clickMigration();
    QTRY_COMPARE(started.count(), 1);
    m_widget.reset();
    m_program->letGo();
    QTRY_COMPARE(m_program->ends(), QStringList(QStringLiteral("5")));
}

X9_GUI_TEST(tst_MigrationWidget)
#include "tst_MigrationWidget.moc"
