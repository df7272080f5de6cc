#include "app/Application.h"

#include "app/Driver.h"
#include "app/EndSignals.h"
#include "app/GUI_CanView.h"
#include "app/HttpServer.h"
#include "app/Process.h"
#include "app/Settings.h"
#include "app/SingleInstance.h"
#include "device/CANCommunication.h"
#include "resources/Resources.h"
#include "widgets/CMessageBox.h"
#include "widgets/ModalMasks.h"
#include "widgets/ProcessStart.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QLibraryInfo>
#include <QProcess>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace {
/// For closing the adapter, after the files have been finished.
constexpr std::chrono::milliseconds CloseLimit{1700};
constexpr int BlockedExitCode = 1;
constexpr int FontPointSize = 9;

/// Ends the process when it is not destroyed in time: for the end of the program, where an adapter's library that never
/// returns must not leave a process behind that nobody sees.
class ExitDeadline
{
public:
    /// At the deadline lastAct runs on another thread, and the process ends with exitCode, without anything further.
    ExitDeadline(std::chrono::milliseconds limit, int exitCode, std::function<void()> lastAct)
        : m_thread([kept = m_kept.get_future(), limit, exitCode, act = std::move(lastAct)] {
            if (kept.wait_for(limit) == std::future_status::timeout) {
                qWarning("The adapter's library does not answer; the program ends without closing it.");
                act();
                endProcessNow(exitCode);
            }
        })
    {
    }
    /// The deadline is kept.
    ~ExitDeadline()
    {
        m_kept.set_value();
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(ExitDeadline)

private:
    std::promise<void> m_kept;
    std::thread m_thread; ///< the last member: it uses the other
};

/// Lets another instance start, and starts it when that is what the event loop ended for.
void leave(SingleInstance &instance, int exitCode)
{
    instance.release();
    if (exitCode == RestartExitCode) {
        QProcess::startDetached(QApplication::applicationFilePath(), {});
    }
}

int runWindow(SingleInstance &instance)
{
    auto window = std::make_unique<GUI_CanView>(std::make_unique<CANCommunication>(firmwareQuery(updateServer())));
    // Also at the end of a Windows session, after which the process is heard of no more.
    QObject::connect(qApp, &QApplication::aboutToQuit, window.get(), &GUI_CanView::finishFiles);
    const EndSignals endSignals;
    window->show();
    const int exitCode = QApplication::exec();
    QApplication::closeAllWindows();
    const ExitDeadline deadline(CloseLimit, exitCode, [&instance, exitCode] { leave(instance, exitCode); });
    window.reset();
    return exitCode;
}

/// Whoever started the program learns why nothing comes.
int tellProblem(const QString &problem)
{
    CMessageBox(CMessageBox::Critical, SingleInstance::tr("Tips"), problem, CMessageBox::Ok).exec();
    return BlockedExitCode;
}
} // namespace

const std::vector<Language> &languages()
{
    static const std::vector<Language> all{
        {"CN", QT_TRANSLATE_NOOP("GUI_CanView", "Chinese"), "qtbase_zh_CN"},
        {"EN", QT_TRANSLATE_NOOP("GUI_CanView", "English"), nullptr},
    };
    return all;
}

std::size_t languageIndex(int language)
{
    constexpr std::size_t English = 1;
    const auto index = static_cast<std::size_t>(language);
    return index < languages().size() ? index : English; // a negative one is large here
}

void setApplicationAttributes()
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setAttribute(Qt::AA_DisableWindowContextHelpButton);
    // 125 % and 150 % as they are set, instead of 100 % and 200 %, with which the window is larger than many screens.
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void applyApplicationLook(QApplication &application)
{
    initResources();
    // Where the font is not installed; the frame table and the update dialog ask for it by name as well.
    for (const QString &name : {QStringLiteral("Microsoft Yahei"), QStringLiteral("\u5fae\u8f6f\u96c5\u9ed1")}) {
        QFont::insertSubstitution(name, QStringLiteral("Noto Sans CJK SC"));
    }
    QApplication::setStyle(QStringLiteral("Fusion")); // under the style sheet: sizes and pictures alike on all systems
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Logo/Logo16x16.ico")));
    application.setStyleSheet(QStringLiteral("file:///:/Skins/White/White.css"));
    // After the style and the style sheet, which give menus and item views the system's fonts back.
    QApplication::setFont(QFont(QStringLiteral("Microsoft Yahei"), FontPointSize));
    new ModalMasks(&application);
}

bool installLanguage(Translators &translators, int language)
{
    initResources();
    const Language &chosen = languages().at(languageIndex(language));
    if (chosen.toolkit != nullptr && translators.toolkit.load(QLatin1String(chosen.toolkit),
                                                              QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&translators.toolkit);
    }
    return translators.program.load(QStringLiteral(":/Language/%1.qm").arg(QLatin1String(chosen.code))) &&
           QApplication::installTranslator(&translators.program);
}

int runApplication(int &argc, char **argv)
{
    prepareProcess();
    SingleInstance instance;
    if (instance.state() == SingleInstance::State::Running) {
        return 0;
    }
    if (!instance.isHeld()) {
        qCritical("%s", qPrintable(instance.problem())); // before there is a display, or none
    }
    setApplicationAttributes();
    QApplication application(argc, argv);
    applyApplicationLook(application);
    if (instance.isHeld()) {
        installDriver();
    }
    Translators translators;
    installLanguage(translators, getLanguage());
    if (!instance.isHeld()) {
        return tellProblem(instance.problem());
    }
    const int exitCode = runWindow(instance);
    leave(instance, exitCode);
    return exitCode;
}
