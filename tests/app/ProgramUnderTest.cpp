// The whole program, worked by a script as by a user: the names of the steps stand in X9_STEPS, separated by commas,
// and what happened is appended to the file X9_LOG, a line each. A program that finds itself restarted ends at once.

#include "app/Application.h"
#include "app/GUI_CanView.h"
#include "can/GUI_CanDevice.h"
#include "can/GUI_CanDeviceParam.h"
#include "can/GUI_CanScanBaudrate.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "capture/GUI_CanSendFile.h"
#include "lin/GUI_LINDevice.h"
#include "lin/GUI_LINModeMonitor.h"
#include "tests/support/SaveDialogDriver.h"
#include "widgets/CMessageBox.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QLineEdit>
#include <QMap>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QToolButton>
#include <QtTest>

#include <csignal>
#include <functional>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace {
void log(const QString &line)
{
    QFile file(qEnvironmentVariable("X9_LOG"));
    if (file.open(QIODevice::Append | QIODevice::Text)) {
        file.write(line.toUtf8() + '\n');
    }
}

QString logged()
{
    QFile file(qEnvironmentVariable("X9_LOG"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void waitUntil(const char *what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, 30000)) {
        log(QStringLiteral("failed: ") + QLatin1String(what));
        std::_Exit(3);
    }
}

GUI_CanView *window()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *view = qobject_cast<GUI_CanView *>(widget)) {
            return view;
        }
    }
    return nullptr;
}

template<typename Widget>
Widget *in(const QWidget *parent, const char *name)
{
    return parent->findChild<Widget *>(QLatin1String(name));
}

void click(const QWidget *parent, const char *name)
{
    QTest::mouseClick(in<QAbstractButton>(parent, name), Qt::LeftButton);
}

QWidget *tab(int index)
{
    auto *tabs = in<QTabWidget>(window(), "tabWidget");
    tabs->setCurrentIndex(index);
    return tabs->currentWidget();
}

QWidget *linTab()
{
    return window()->findChild<GUI_LINDevice *>();
}

/// The parameters dialog, opened if it is not.
GUI_CanDeviceParam *paramDialog()
{
    auto *dialog = window()->findChild<GUI_CanDeviceParam *>();
    if (!dialog->isVisible()) {
        window()->slot_openCanDevice();
    }
    return dialog;
}

void openCAN()
{
    auto *dialog = window()->findChild<GUI_CanDeviceParam *>();
    waitUntil("the program asks", [dialog] { return dialog->isVisible(); });
    in<QAbstractButton>(dialog, "chbx_openAllChannel")->setChecked(true);
    click(dialog, "btn_ok");
    waitUntil("frames arrive", [] { return tab(0)->findChild<CTableViewCAN *>()->rowCount() > 100; });
}

void receive()
{
    const auto *tabs = in<QTabWidget>(window(), "tabWidget");
    for (int index = 0; index < tabs->count(); ++index) {
        const auto *table = tabs->widget(index)->findChild<CTableViewCAN *>();
        waitUntil("frames arrive on each channel", [table] { return table->rowCount() > 100; });
    }
    log(QStringLiteral("receiving on %1 channels").arg(tabs->count()));
}

void openLIN()
{
    auto *dialog = paramDialog();
    click(dialog, "btn_setup");
    in<QAbstractButton>(dialog, "chbx_openAllChannelLIN")->setChecked(true);
    click(dialog, "btn_ok");
    waitUntil("LIN opens", [] { return linTab() != nullptr; });
    click(linTab(), "btn_modeMonitor");
    click(linTab()->findChild<GUI_LINModeMonitor *>(), "btn_start");
}

void sendForEver()
{
    in<QLineEdit>(tab(0), "lbx_frameOfSend")->setText(QStringLiteral("1000000"));
    in<QLineEdit>(tab(0), "lbx_sendingCycle")->setText(QStringLiteral("1"));
    click(tab(0), "btn_sendData");
    log(QStringLiteral("sending ") + QString::number(!in<QAbstractButton>(tab(0), "btn_sendData")->isEnabled()));
}

void sendList()
{
    click(tab(1), "btn_advancedOperation");
    auto *list = tab(1)->findChild<GUI_CanAdvancedOpearation *>();
    click(list, "btnAdd");
    click(list, "btnAllSelect");
    in<QSpinBox>(list, "cbxRepeat")->setValue(1000);
    in<QSpinBox>(list, "lbxInterval")->setValue(10);
    click(list, "btnListSend");
    log(QStringLiteral("listing ") + QString::number(in<QAbstractButton>(list, "m_btnStop")->isEnabled()));
}

void saveInRealTime()
{
    SaveDialogDriver answer(qEnvironmentVariable("X9_REAL_TIME"));
    click(tab(0), "btn_realTimeSaving");
    log(QStringLiteral("saving ") + QString::number(tab(0)->findChild<CTableViewCAN *>()->isRealTimeSaving()));
}

void play()
{
    const QString path = qEnvironmentVariable("X9_REAL_TIME") + QStringLiteral(".can");
    tab(0)->findChild<CTableViewCAN *>()->save(path);
    click(tab(0), "btn_sendFile");
    auto *dialog = tab(0)->findChild<GUI_CanSendFile *>();
    in<QLineEdit>(dialog, "lbx_fileName")->setText(path);
    in<QSpinBox>(dialog, "sbx_count")->setValue(1000);
    in<QSpinBox>(dialog, "sbx_interval")->setValue(5);
    click(dialog, "btn_send");
    waitUntil("the file is played", [dialog] { return in<QProgressBar>(dialog, "progressBar")->value() > 0; });
    log(QStringLiteral("playing 1"));
}

void scan()
{
    auto *dialog = paramDialog();
    in<QComboBox>(dialog, "cbx_index")->setCurrentIndex(in<QComboBox>(dialog, "cbx_index")->count() - 1);
    click(dialog, "btn_scan");
    auto *scanner = dialog->findChild<GUI_CanScanBaudrate *>();
    click(scanner, "btn_start");
    log(QStringLiteral("scanning ") + QString::number(!in<QAbstractButton>(scanner, "btn_start")->isEnabled()));
}

void restartInEnglish()
{
    log(QStringLiteral("restarting"));
    window()->findChild<QAction *>(QStringLiteral("EN"))->trigger();
    const auto *box = window()->findChild<CMessageBox *>();
    QTest::mouseClick(in<QDialogButtonBox>(box, "buttonBox")->button(QDialogButtonBox::Yes), Qt::LeftButton);
}

void logRows()
{
    // The first tab's, which is the one that is saved.
    const QWidget *first = in<QTabWidget>(window(), "tabWidget")->widget(0);
    const auto *table = first == nullptr ? nullptr : first->findChild<CTableViewCAN *>();
    log(QStringLiteral("closing with %1 rows").arg(table == nullptr ? 0 : table->rowCount()));
}

void close()
{
    logRows();
    window()->close();
}

/// Until the test has laid a file of this name into the working directory.
void waitForTheTest()
{
    waitUntil("the test goes on", [] { return QFile::exists(QStringLiteral("go")); });
}

void terminate()
{
    logRows();
    std::raise(SIGTERM);
}

void interrupt()
{
    logRows();
    std::raise(SIGINT);
}

#ifdef Q_OS_WIN
/// As Windows does: it asks, tells, and ends the process.
void endSession()
{
    logRows();
    const auto handle = reinterpret_cast<HWND>(window()->winId());
    if (SendMessageW(handle, WM_QUERYENDSESSION, 0, 0) != 0) {
        SendMessageW(handle, WM_ENDSESSION, TRUE, 0);
        TerminateProcess(GetCurrentProcess(), 0);
    }
}
#else
void endSession() {}

void hangUp()
{
    logRows();
    std::raise(SIGHUP);
}
#endif

/// Where plugins come from, and whether a DLL in the working directory is found by its name alone.
void tellSources()
{
    log(QStringLiteral("plugins ") + QCoreApplication::libraryPaths().join(QLatin1Char(';')));
#ifdef Q_OS_WIN
    // Wine looks there whatever it was told.
    if (GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) {
        log(QStringLiteral("library %1").arg(LoadLibraryW(L"other.dll") != nullptr));
    }
#endif
}

/// A message instead of the window.
void readProblem()
{
    const auto *box = qobject_cast<CMessageBox *>(QApplication::activeModalWidget());
    log(QStringLiteral("problem, ") + box->windowTitle() + QStringLiteral(", ") + box->text());
    QTest::mouseClick(in<QDialogButtonBox>(box, "buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

void run()
{
    static const QMap<QString, void (*)()> steps{
        {QStringLiteral("openCAN"), openCAN},
        {QStringLiteral("openLIN"), openLIN},
        {QStringLiteral("send"), sendForEver},
        {QStringLiteral("list"), sendList},
        {QStringLiteral("save"), saveInRealTime},
        {QStringLiteral("play"), play},
        {QStringLiteral("scan"), scan},
        {QStringLiteral("receive"), receive},
        {QStringLiteral("restart"), restartInEnglish},
        {QStringLiteral("close"), close},
        {QStringLiteral("terminate"), terminate},
        {QStringLiteral("interrupt"), interrupt},
        {QStringLiteral("endSession"), endSession},
        {QStringLiteral("sources"), tellSources},
        {QStringLiteral("wait"), waitForTheTest},
#ifndef Q_OS_WIN
        {QStringLiteral("hangUp"), hangUp},
#endif
    };
    const bool isRestarted = logged().contains(QLatin1String("restarting"));
    waitUntil("the window is shown", [] {
        return window() != nullptr ? window()->isVisible() : QApplication::activeModalWidget() != nullptr;
    });
    if (window() == nullptr) {
        readProblem();
        return;
    }
    log(QStringLiteral("shown, %1, %2 arguments")
            .arg(in<QToolButton>(window(), "btn_language")->text())
            .arg(QCoreApplication::arguments().size() - 1));
    const QString script = isRestarted ? QStringLiteral("close") : qEnvironmentVariable("X9_STEPS");
    for (const QString &step : script.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        steps.value(step)();
    }
}

void startScript()
{
    log(QStringLiteral("application"));
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QTimer::singleShot(0, QCoreApplication::instance(), run);
}
Q_COREAPP_STARTUP_FUNCTION(startScript)
} // namespace

int main(int argc, char *argv[])
{
    return runApplication(argc, argv);
}
