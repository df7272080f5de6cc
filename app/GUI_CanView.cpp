#include "app/GUI_CanView.h"

#include "app/AdapterProblem.h"
#include "app/Application.h"
#include "app/GUI_DeviceInfo.h"
#include "app/GUI_SoftwareInfo.h"
#include "app/Release.h"
#include "app/Settings.h"
#include "app/SoftwareUpdate.h"
#include "app/UpgradeProcess.h"
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
#include <QTabBar>
#include <QTimer>
#include <QToolButton>

#include <chrono>
#include <functional>
#include <utility>

namespace {
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

GUI_CanDeviceParam::Mode modeOf(const WidgetDeviceBase &tab)
{
    const bool isLIN = qobject_cast<const GUI_LINDevice *>(&tab) != nullptr;
    return isLIN ? GUI_CanDeviceParam::Mode::LIN : GUI_CanDeviceParam::Mode::CAN;
}
} // namespace

GUI_CanView::GUI_CanView(std::unique_ptr<CANCommunication> communication, QWidget *parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::GUI_CanView>())
    , m_messages(*this)
    , m_communication(std::move(communication))
{
    m_ui->setupUi(this);
    buildToolBar();
    prepareTabs();
    connect(m_languages, &QActionGroup::triggered, this, &GUI_CanView::slot_languageTriggered);
    m_notice = new CNotice(this);
    m_deviceParam = new GUI_CanDeviceParam(*m_communication, this);
    connect(m_deviceParam, &QDialog::accepted, this, &GUI_CanView::slot_openChosenChannels);
    connect(m_communication.get(), &CANCommunication::sig_showFrimwareUpgrade, this,
            &GUI_CanView::slot_showFrimwareUpgrade);
    connect(m_communication.get(), &CANCommunication::sig_deviceLost, this,
            [this](quint8 device) { slot_showMessageBox(deviceLostProblem(device), MessageWarning); });
    setWindowTitle(QStringLiteral("X9CAN V") + QStringLiteral(X9_VERSION));
    connect(m_ui->tabWidget, &QTabWidget::tabCloseRequested, this, &GUI_CanView::slot_closeTabRequest);
    m_upgrade = new UpgradeProcess(this);
    connect(qApp, &QCoreApplication::aboutToQuit, m_upgrade, &UpgradeProcess::release); // the program ends anyway
    m_update = new SoftwareUpdate(this);
    connectUpdate();
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

QMenu *GUI_CanView::addMenu(const char *name, const QString &text, const QString &toolTip)
{
    auto *button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setProperty("nav", QStringLiteral("tBtnStyle_5"));
    button->setText(text);
    button->setToolTip(toolTip);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMenu(new QMenu(button));
    m_ui->ToolBar->addWidget(button);
    return button->menu();
}

void GUI_CanView::buildToolBar()
{
    QMenu *connectMenu = addMenu("btn_connect", tr("Connect") + QStringLiteral("(&D)"), tr("Connect to the device"));
    connectMenu->addAction(tr("Open device"), this, &GUI_CanView::slot_openCanDevice);
    connectMenu->addAction(tr("Close device"), this, &GUI_CanView::slot_closeCanDevice);
    QMenu *about = addMenu("btn_about", tr("About") + QStringLiteral("(&A)"), tr("About"));
    about->addAction(tr("Software information"), this, &GUI_CanView::slot_showSoftwareInfo);
    about->addAction(tr("Device information"), this, &GUI_CanView::slot_showDeviceInfo);
    QMenu *languageMenu = addMenu("btn_language", tr("Language") + QStringLiteral("(&L)"), tr("Language"));
    m_languages = new QActionGroup(languageMenu);
    for (const Language &language : languages()) {
        QAction *action = m_languages->addAction(tr(language.name));
        action->setObjectName(QLatin1String(language.code));
        action->setCheckable(true);
    }
    languageMenu->addActions(m_languages->actions());
    checkStoredLanguage();
}

/// The tab bar takes the focus after the tool bar and before the pages. While there is no tab, it cannot be seen and
/// takes none, and in the place of the pages stands where to begin.
void GUI_CanView::prepareTabs()
{
    QTabBar *tabBar = m_ui->tabWidget->tabBar();
    setTabOrder(findChild<QToolButton *>(QStringLiteral("btn_language")), tabBar);
    m_ui->tabWidget->setFocusProxy(nullptr); // it would give its bar the focus a second time, after the pages
    m_ui->tabWidget->setFocusPolicy(Qt::NoFocus);
    m_ui->lbl_begin->setText(tr(R"(To begin: "%1" > "%2")").arg(tr("Connect"), tr("Open device")));
    const auto showCurrent = [this, tabBar](int currentIndex) {
        tabBar->setFocusPolicy(currentIndex < 0 ? Qt::NoFocus : Qt::TabFocus);
        m_ui->lbl_begin->setVisible(currentIndex < 0);
    };
    connect(m_ui->tabWidget, &QTabWidget::currentChanged, this, showCurrent);
    showCurrent(m_ui->tabWidget->currentIndex());
}

void GUI_CanView::checkStoredLanguage() const
{
    m_languages->actions().at(static_cast<int>(languageIndex(getLanguage())))->setChecked(true);
}

/// Whether the channel could be opened; else the user is told why not.
template<typename Tab>
bool GUI_CanView::openTab(const ChannelParam &param, const QString &protocol)
{
    auto opened = std::make_unique<Tab>(param, *m_communication, this);
    if (opened->openResult() != CAN_OK) {
        const ChannelProblem reason = m_communication->channelProblem(param.device, param.channel);
        slot_showMessageBox(channelOpenProblem(opened->openResult(), param, reason), MessageCritical);
        return false;
    }
    Tab *tab = opened.release();
    connect(tab, &WidgetDeviceBase::sig_showMessageBox, this, &GUI_CanView::slot_showMessageBox);
    connect(tab, &WidgetDeviceBase::sig_showNotice, this, &GUI_CanView::slot_showNotice);
    const QString title = QStringLiteral("%1 %2: %3 %4: %5")
                              .arg(protocol, tr("Device"))
                              .arg(param.device)
                              .arg(tr("Channel"))
                              .arg(param.channel);
    tab->setObjectName(title); // its dialogs are titled with it
    m_ui->tabWidget->setCurrentIndex(m_ui->tabWidget->addTab(tab, title));
    m_deviceParam->append(modeOf(*tab), param.device, param.channel);
    return true;
}

/// The program asks what to open when it has looked for a newer release of itself and found none.
void GUI_CanView::connectUpdate()
{
    connect(m_update, &SoftwareUpdate::sig_startChecked, this, [this](bool isNewer) {
        if (isNewer) {
            QTimer::singleShot(OfferDelayMs, this, [this] { slot_updateRuquest(true); });
        } else {
            QTimer::singleShot(OpenDelayMs, this, &GUI_CanView::slot_openCanDevice);
        }
    });
    connect(m_update, &SoftwareUpdate::sig_closeProgram, this, &QWidget::close);
    m_update->checkAtStart();
}

/// The device of the tab on top; without a tab, the first that is there. Nobody else may use an adapter that is being
/// upgraded.
void GUI_CanView::showDevice(GUI_DeviceInfo &dialog)
{
    if (m_upgrade->isRunning()) {
        return;
    }
    const auto *tab = qobject_cast<WidgetDeviceBase *>(m_ui->tabWidget->currentWidget());
    const quint8 device =
        tab != nullptr ? tab->channelParam().device : m_communication->presentDevices().value(0).device;
    QString serial;
    QString model;
    QString firmware;
    m_communication->readDeviceInfo(device, serial, model, firmware); // leaves the texts empty when there is no device
    dialog.setDevice(serial, model, firmware);
}

/// Calls end, after a question when an upgrade program runs.
void GUI_CanView::endProgram(const std::function<void()> &end)
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

void GUI_CanView::finishFiles()
{
    // Frames that a worker has handed over and that were not yet delivered.
    QCoreApplication::sendPostedEvents(m_communication.get(), QEvent::MetaCall);
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
    m_deviceParam->open();
    const QString problem = adapterLibraryProblem(m_communication->api());
    if (!problem.isEmpty()) {
        slot_showMessageBox(problem, MessageCritical);
    }
}

void GUI_CanView::slot_openChosenChannels()
{
    const CanDeviceParam &chosen = m_deviceParam->deviceParam();
    bool isAnyOpen = false;
    for (const ChannelParam &param : channelParams(chosen)) {
        if (chosen.isLIN != 0) {
            isAnyOpen |= openTab<GUI_LINDevice>(param, QStringLiteral("LIN"));
        } else {
            const QString protocol = param.isCANFD ? QStringLiteral("CANFD") : QStringLiteral("CAN");
            isAnyOpen |= openTab<GUI_CanDevice>(param, protocol);
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
    while (m_ui->tabWidget->count() > 0) {
        slot_closeTabRequest(0);
    }
    slot_showNotice(tr("Device turned off"), CNotice::Done, CNotice::WindowMs);
}

void GUI_CanView::slot_closeTabRequest(int index)
{
    auto *tab = qobject_cast<WidgetDeviceBase *>(m_ui->tabWidget->widget(index));
    if (tab == nullptr) {
        return;
    }
    m_deviceParam->remove(modeOf(*tab), tab->channelParam().device, tab->channelParam().channel);
    m_ui->tabWidget->removeTab(index);
    tab->deleteLater();
}

void GUI_CanView::slot_showMessageBox(const QString &text, int type)
{
    m_messages.show(text, iconOf(type));
}

void GUI_CanView::slot_languageTriggered(QAction *action)
{
    if (!setLanguage(m_languages->actions().indexOf(action))) {
        checkStoredLanguage();
        slot_showMessageBox(tr("The language could not be stored. Check that \"Init.ini\" beside the program, or your "
                               "configuration folder, can be written."),
                            MessageCritical);
        return;
    }
    m_messages.ask(tr("The current language has changed and takes effect after the restart.") + QStringLiteral("<br>") +
                       tr("Do you wish to restart it now?"),
                   [this] { endProgram([] { QCoreApplication::exit(RestartExitCode); }); });
}

void GUI_CanView::slot_showFrimwareUpgrade()
{
    m_messages.ask(tr("New firmware version detected,") + QStringLiteral("<br>") +
                       tr("Do you want to go update it now?"),
                   [this] { slot_showDeviceInfo(); });
}

void GUI_CanView::slot_showSoftwareInfo()
{
    auto *dialog = new GUI_SoftwareInfo(supportAddress(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &GUI_SoftwareInfo::sig_update, this, [this] { slot_updateRuquest(false); });
    connect(m_update, &SoftwareUpdate::sig_searching, dialog, &GUI_SoftwareInfo::setChecking);
    connect(dialog, &QDialog::finished, m_update, &SoftwareUpdate::cancelRequest);
    dialog->open();
}

void GUI_CanView::slot_updateRuquest(bool first)
{
    m_update->request(first);
}

void GUI_CanView::slot_update(const QString &urlStr)
{
    m_update->update(urlStr);
}

void GUI_CanView::slot_showDeviceInfo()
{
    if (QWidget *open = m_deviceInfo; open != nullptr && open->isVisible()) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto *dialog = new GUI_DeviceInfo(*m_upgrade, {}, this);
    m_deviceInfo = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const auto showAdapter = [this, dialog] {
        showDevice(*dialog);
    };
    connect(dialog, &GUI_DeviceInfo::sig_updataBtnClicked, this, showAdapter);
    connect(dialog, &GUI_DeviceInfo::sig_updateFinish, this, showAdapter);
    connect(m_upgrade, &UpgradeProcess::sig_runningChanged, dialog, showAdapter);
    // The upgrade program needs the adapter for itself.
    connect(dialog, &GUI_DeviceInfo::sig_updateRequest, this, &GUI_CanView::slot_closeCanDevice);
    showAdapter();
    dialog->open();
}

void GUI_CanView::closeEvent(QCloseEvent *event)
{
    event->setAccepted(!m_upgrade->isRunning());
    if (!event->isAccepted()) {
        endProgram([this] { close(); });
    }
}

void GUI_CanView::slot_showNotice(const QString &text, int type, int delayms)
{
    m_notice->setMesseage(text, type, delayms);
}
