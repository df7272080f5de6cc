#include "app/GUI_CanView.h"

#include "app/AdapterProblem.h"
#include "app/Application.h"
#include "app/GUI_DeviceInfo.h"
#include "app/GUI_SoftwareInfo.h"
#include "app/Release.h"
#include "app/Settings.h"
#include "app/SoftwareUpdate.h"
#include "app/UpgradeProcess.h"
#include "app/WindowMessages.h"
#include "can/GUI_CanDevice.h"
#include "can/GUI_CanDeviceParam.h"
#include "device/CANCommunication.h"
#include "lin/GUI_LINDevice.h"
#include "ui_GUI_CanView.h"
#include "widgets/CMessageBox.h"
#include "widgets/CNotice.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHash>
#include <QMenu>
#include <QPointer>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>
#include <QVector>

#include <chrono>
#include <functional>
#include <utility>

namespace {
using ChannelMode = GUI_CanDeviceParam::Mode;

constexpr int OpenDelayMs = 200;
constexpr int OfferDelayMs = 500;
/// For the end of the files saved in real time, all of them together.
constexpr std::chrono::seconds FilesLimit{5};

CMessageBox::Icon iconOf(int type)
{
    static const QHash<int, CMessageBox::Icon> icons{{1, CMessageBox::Success},
                                                     {2, CMessageBox::Question},
                                                     {MessageWarning, CMessageBox::Warning},
                                                     {MessageCritical, CMessageBox::Critical}};
    return icons.value(type, CMessageBox::Information);
}
} // namespace

class GUI_CanViewPrivate
{
    Q_DECLARE_TR_FUNCTIONS(GUI_CanView)

public:
    GUI_CanViewPrivate(GUI_CanView *window, std::unique_ptr<CANCommunication> manager)
        : q(window)
        , m_messages(*window)
        , m_communication(std::move(manager))
    {
    }

    QMenu *addMenu(const char *name, const QString &text, const QString &toolTip);
    void buildToolBar();
    void orderTabBar();
    void buildBeginning();
    void buildLanguageMenu(QMenu *menu);
    void checkStoredLanguage() const;
    template<typename Tab>
    bool openTab(const ChannelParam &param, const QString &protocol);
    static ChannelMode modeOf(const WidgetDeviceBase &tab);
    void showDevice(GUI_DeviceInfo &dialog);
    void endProgram(const std::function<void()> &end);
    void connectUpdate();

    GUI_CanView *q;
    WindowMessages m_messages;
    std::unique_ptr<CANCommunication> m_communication;
    Ui::GUI_CanView ui;
    CNotice *m_notice = nullptr;
    QActionGroup *m_languages = nullptr;         ///< in the order of their numbers
    UpgradeProcess *m_upgrade = nullptr;         ///< a child of the window; the only one, for all dialogs
    SoftwareUpdate *m_update = nullptr;          ///< a child of the window
    GUI_CanDeviceParam *m_deviceParam = nullptr; ///< a child of the window; keeps what was chosen last
    QPointer<GUI_DeviceInfo> m_deviceInfo;       ///< there is never a second one
};

QMenu *GUI_CanViewPrivate::addMenu(const char *name, const QString &text, const QString &toolTip)
{
    auto *button = new QToolButton(q);
    button->setObjectName(QLatin1String(name));
    button->setProperty("nav", QStringLiteral("tBtnStyle_5"));
    button->setText(text);
    button->setToolTip(toolTip);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMenu(new QMenu(button));
    ui.ToolBar->addWidget(button);
    return button->menu();
}

void GUI_CanViewPrivate::buildToolBar()
{
    QMenu *connectMenu = addMenu("btn_connect", tr("Connect") + QStringLiteral("(&D)"), tr("Connect to the device"));
    connectMenu->addAction(tr("Open device"), q, &GUI_CanView::slot_openCanDevice);
    connectMenu->addAction(tr("Close device"), q, &GUI_CanView::slot_closeCanDevice);
    QMenu *about = addMenu("btn_about", tr("About") + QStringLiteral("(&A)"), tr("About"));
    about->addAction(tr("Software information"), q, &GUI_CanView::slot_showSoftwareInfo);
    about->addAction(tr("Device information"), q, &GUI_CanView::slot_showDeviceInfo);
    buildLanguageMenu(addMenu("btn_language", tr("Language") + QStringLiteral("(&L)"), tr("Language")));
}

/// After the tool bar, before the pages; not while it is empty and cannot be seen.
void GUI_CanViewPrivate::orderTabBar()
{
    QTabBar *tabBar = ui.tabWidget->tabBar();
    QWidget::setTabOrder(q->findChild<QToolButton *>(QStringLiteral("btn_language")), tabBar);
    ui.tabWidget->setFocusProxy(nullptr); // it would give its bar the focus a second time, after the pages
    ui.tabWidget->setFocusPolicy(Qt::NoFocus);
    const auto setFocusPolicy = [tabBar](int currentIndex) {
        tabBar->setFocusPolicy(currentIndex < 0 ? Qt::NoFocus : Qt::TabFocus);
    };
    QObject::connect(ui.tabWidget, &QTabWidget::currentChanged, tabBar, setFocusPolicy);
    setFocusPolicy(ui.tabWidget->currentIndex());
}

/// In the place of the tabs while there is none: where to begin.
void GUI_CanViewPrivate::buildBeginning()
{
    ui.lbl_begin->setText(tr(R"(To begin: "%1" > "%2")").arg(tr("Connect"), tr("Open device")));
    QObject::connect(ui.tabWidget, &QTabWidget::currentChanged, ui.lbl_begin,
                     [this](int currentIndex) { ui.lbl_begin->setVisible(currentIndex < 0); });
}

void GUI_CanViewPrivate::buildLanguageMenu(QMenu *menu)
{
    m_languages = new QActionGroup(menu);
    for (const Language &language : languages()) {
        QAction *action = m_languages->addAction(tr(language.name));
        action->setObjectName(QLatin1String(language.code));
        action->setCheckable(true);
    }
    menu->addActions(m_languages->actions());
    checkStoredLanguage();
}

void GUI_CanViewPrivate::checkStoredLanguage() const
{
    m_languages->actions().at(static_cast<int>(languageIndex(getLanguage())))->setChecked(true);
}

/// Whether the channel could be opened; else the user is told why not.
template<typename Tab>
bool GUI_CanViewPrivate::openTab(const ChannelParam &param, const QString &protocol)
{
    auto opened = std::make_unique<Tab>(param, *m_communication, q);
    if (opened->openResult() != CAN_OK) {
        const ChannelProblem reason = m_communication->channelProblem(param.device, param.channel);
        q->slot_showMessageBox(channelOpenProblem(opened->openResult(), param, reason), MessageCritical);
        return false;
    }
    Tab *tab = opened.release();
    QObject::connect(tab, &WidgetDeviceBase::sig_showMessageBox, q, &GUI_CanView::slot_showMessageBox);
    QObject::connect(tab, &WidgetDeviceBase::sig_showNotice, q, &GUI_CanView::slot_showNotice);
    const QString title = QStringLiteral("%1 %2: %3 %4: %5")
                              .arg(protocol, tr("Device"))
                              .arg(param.device)
                              .arg(tr("Channel"))
                              .arg(param.channel);
    tab->setObjectName(title); // its dialogs are titled with it
    ui.tabWidget->setCurrentIndex(ui.tabWidget->addTab(tab, title));
    m_deviceParam->append(modeOf(*tab), param.device, param.channel);
    return true;
}

ChannelMode GUI_CanViewPrivate::modeOf(const WidgetDeviceBase &tab)
{
    return qobject_cast<const GUI_LINDevice *>(&tab) == nullptr ? ChannelMode::CAN : ChannelMode::LIN;
}

/// The program asks what to open when it has looked for a newer release of itself and found none.
void GUI_CanViewPrivate::connectUpdate()
{
    QObject::connect(m_update, &SoftwareUpdate::sig_startChecked, q, [this](bool isNewer) {
        if (isNewer) {
            QTimer::singleShot(OfferDelayMs, q, [this] { q->slot_updateRuquest(true); });
        } else {
            QTimer::singleShot(OpenDelayMs, q, &GUI_CanView::slot_openCanDevice);
        }
    });
    QObject::connect(m_update, &SoftwareUpdate::sig_closeProgram, q, &QWidget::close);
    m_update->checkAtStart();
}

/// The device of the tab on top; without a tab, the first that is there. Nobody else may use an adapter that is being
/// upgraded.
void GUI_CanViewPrivate::showDevice(GUI_DeviceInfo &dialog)
{
    if (m_upgrade->isRunning()) {
        return;
    }
    quint8 device = 0;
    if (const auto *tab = qobject_cast<WidgetDeviceBase *>(ui.tabWidget->currentWidget())) {
        device = tab->channelParam().device;
    } else {
        const QVector<DevicePresence> devices = m_communication->presentDevices();
        device = devices.isEmpty() ? 0 : devices.first().device;
    }
    QString serial;
    QString model;
    QString firmware;
    m_communication->readDeviceInfo(device, serial, model, firmware); // leaves the texts empty when there is no device
    dialog.setDevice(serial, model, firmware);
}

/// Calls end, after a question when an upgrade program runs.
void GUI_CanViewPrivate::endProgram(const std::function<void()> &end)
{
    if (!m_upgrade->isRunning()) {
        end();
        return;
    }
    const QString text = tr("The upgrade program is still running. It will run on, but how it ends will "
                            "not be shown. Do not unplug the adapter meanwhile.") +
                         QStringLiteral("<br>") + tr("Do you wish to end this program now?");
    m_messages.ask(text, [this, end] {
        m_upgrade->release();
        end();
    });
}

GUI_CanView::GUI_CanView(std::unique_ptr<CANCommunication> communication, QWidget *parent)
    : QMainWindow(parent)
    , m_p(std::make_unique<GUI_CanViewPrivate>(this, std::move(communication)))
{
    m_p->ui.setupUi(this);
    m_p->buildToolBar();
    m_p->orderTabBar();
    m_p->buildBeginning();
    connect(m_p->m_languages, &QActionGroup::triggered, this, &GUI_CanView::slot_languageTriggered);
    m_p->m_notice = new CNotice(this);
    m_p->m_deviceParam = new GUI_CanDeviceParam(*m_p->m_communication, this);
    connect(m_p->m_deviceParam, &QDialog::accepted, this, &GUI_CanView::slot_openChosenChannels);
    connect(m_p->m_communication.get(), &CANCommunication::sig_showFrimwareUpgrade, this,
            &GUI_CanView::slot_showFrimwareUpgrade);
    connect(m_p->m_communication.get(), &CANCommunication::sig_deviceLost, this,
            [this](quint8 device) { slot_showMessageBox(deviceLostProblem(device), MessageWarning); });
    setWindowTitle(QStringLiteral("X9CAN V") + QStringLiteral(X9_VERSION));
    connect(m_p->ui.tabWidget, &QTabWidget::tabCloseRequested, this, &GUI_CanView::slot_closeTabRequest);
    m_p->m_upgrade = new UpgradeProcess(this);
    connect(qApp, &QCoreApplication::aboutToQuit, m_p->m_upgrade, &UpgradeProcess::release); // the program ends anyway
    m_p->m_update = new SoftwareUpdate(this);
    m_p->connectUpdate();
}

GUI_CanView::~GUI_CanView()
{
    // They work with the manager or the upgrade program to their last moment. Also the tabs that were closed and wait
    // to be deleted: each one still holds its channel.
    while (const QDialog *dialog = findChild<QDialog *>(QString(), Qt::FindDirectChildrenOnly)) {
        delete dialog;
    }
    while (const WidgetDeviceBase *tab = findChild<WidgetDeviceBase *>()) { // a LIN tab and its pages
        delete tab;
    }
}

void GUI_CanView::finishFiles()
{
    // Frames that a worker has handed over and that were not yet delivered.
    QCoreApplication::sendPostedEvents(m_p->m_communication.get(), QEvent::MetaCall);
    const QList<GUI_CanDevice *> tabs = findChildren<GUI_CanDevice *>();
    for (GUI_CanDevice *tab : tabs) { // all before the first wait
        tab->endFiles();
    }
    const QDeadlineTimer deadline(FilesLimit);
    for (GUI_CanDevice *tab : tabs) {
        if (!tab->waitForFiles(std::chrono::milliseconds(deadline.remainingTime()))) {
            qWarning("The end of a file saved in real time could not be written.");
        }
    }
}

void GUI_CanView::slot_openCanDevice()
{
    m_p->m_deviceParam->open();
    const QString problem = adapterLibraryProblem(m_p->m_communication->api());
    if (!problem.isEmpty()) {
        slot_showMessageBox(problem, MessageCritical);
    }
}

void GUI_CanView::slot_openChosenChannels()
{
    const CanDeviceParam &chosen = m_p->m_deviceParam->deviceParam();
    bool isAnyOpen = false;
    for (const ChannelParam &param : channelParams(chosen)) {
        if (chosen.isLIN != 0) {
            isAnyOpen |= m_p->openTab<GUI_LINDevice>(param, QStringLiteral("LIN"));
        } else {
            const QString protocol = param.isCANFD ? QStringLiteral("CANFD") : QStringLiteral("CAN");
            isAnyOpen |= m_p->openTab<GUI_CanDevice>(param, protocol);
        }
    }
    if (isAnyOpen) {
        slot_showNotice(tr("Devices is open"), CNotice::Done, CNotice::WindowMs);
    } else {
        slot_showNotice(tr("No devices!!!"), CNotice::Failure, CNotice::WindowMs);
    }
}

void GUI_CanView::slot_closeCanDevice()
{
    while (m_p->ui.tabWidget->count() > 0) {
        slot_closeTabRequest(0);
    }
    slot_showNotice(tr("Device turned off"), CNotice::Done, CNotice::WindowMs);
}

void GUI_CanView::slot_closeTabRequest(int index)
{
    auto *tab = qobject_cast<WidgetDeviceBase *>(m_p->ui.tabWidget->widget(index));
    if (tab == nullptr) {
        return;
    }
    m_p->m_deviceParam->remove(m_p->modeOf(*tab), tab->channelParam().device, tab->channelParam().channel);
    m_p->ui.tabWidget->removeTab(index);
    tab->deleteLater();
}

void GUI_CanView::slot_showMessageBox(const QString &text, int type)
{
    m_p->m_messages.show(text, iconOf(type));
}

void GUI_CanView::slot_languageTriggered(QAction *action)
{
    if (!setLanguage(m_p->m_languages->actions().indexOf(action))) {
        m_p->checkStoredLanguage();
        slot_showMessageBox(tr("The language could not be stored. Check that \"Init.ini\" beside the program, or your "
                               "configuration folder, can be written."),
                            MessageCritical);
        return;
    }
    m_p->m_messages.ask(tr("The current language has changed and takes effect after the restart.") +
                            QStringLiteral("<br>") + tr("Do you wish to restart it now?"),
                        [this] { m_p->endProgram([] { QCoreApplication::exit(RestartExitCode); }); });
}

void GUI_CanView::slot_showFrimwareUpgrade()
{
    m_p->m_messages.ask(tr("New firmware version detected,") + QStringLiteral("<br>") +
                            tr("Do you want to go update it now?"),
                        [this] { slot_showDeviceInfo(); });
}

void GUI_CanView::slot_showSoftwareInfo()
{
    auto *dialog = new GUI_SoftwareInfo(supportAddress(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &GUI_SoftwareInfo::sig_update, this, [this] { slot_updateRuquest(false); });
    connect(m_p->m_update, &SoftwareUpdate::sig_searching, dialog, &GUI_SoftwareInfo::setChecking);
    connect(dialog, &QDialog::finished, m_p->m_update, &SoftwareUpdate::cancelRequest);
    dialog->open();
}

void GUI_CanView::slot_updateRuquest(bool first)
{
    m_p->m_update->request(first);
}

void GUI_CanView::slot_update(const QString &urlStr)
{
    m_p->m_update->update(urlStr);
}

void GUI_CanView::slot_showDeviceInfo()
{
    if (QWidget *open = m_p->m_deviceInfo; open != nullptr && open->isVisible()) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto *dialog = new GUI_DeviceInfo(*m_p->m_upgrade, {}, this);
    m_p->m_deviceInfo = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const auto showDevice = [this, dialog] {
        m_p->showDevice(*dialog);
    };
    connect(dialog, &GUI_DeviceInfo::sig_updataBtnClicked, this, showDevice);
    connect(dialog, &GUI_DeviceInfo::sig_updateFinish, this, showDevice);
    connect(m_p->m_upgrade, &UpgradeProcess::sig_runningChanged, dialog, showDevice);
    // The upgrade program needs the adapter for itself.
    connect(dialog, &GUI_DeviceInfo::sig_updateRequest, this, &GUI_CanView::slot_closeCanDevice);
    showDevice();
    dialog->open();
}

void GUI_CanView::closeEvent(QCloseEvent *event)
{
    event->setAccepted(!m_p->m_upgrade->isRunning());
    if (!event->isAccepted()) {
        m_p->endProgram([this] { close(); });
    }
}

void GUI_CanView::slot_showNotice(const QString &text, int type, int delayms)
{
    m_p->m_notice->setMesseage(text, type, delayms);
}
