#include "app/GUI_CanView.h"

#include "app/AdapterProblem.h"
#include "can/GUI_CanDevice.h"
#include "can/GUI_CanDeviceParam.h"
#include "device/CANCommunication.h"
#include "lin/GUI_LINDevice.h"
#include "ui_GUI_CanView.h"
#include "widgets/CMessageBox.h"
#include "widgets/CNotice.h"

#include <QList>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <QToolButton>
#include <QVector>

#include <utility>

namespace {
using ChannelMode = GUI_CanDeviceParam::Mode;

constexpr int NoticeMs = 1500;
constexpr int MessageSuccess = 1;
constexpr int MessageQuestion = 2;
constexpr int MessageWarning = 3;
constexpr int MessageCritical = 4;
constexpr int MaxOpenMessages = 5;
constexpr int OpenDelayMs = 200;
constexpr const char *MessageText = "messageText"; ///< a message's text without what was added later

CMessageBox::Icon iconOf(int type)
{
    switch (type) {
    case MessageSuccess:
        return CMessageBox::Success;
    case MessageQuestion:
        return CMessageBox::Question;
    case MessageWarning:
        return CMessageBox::Warning;
    case MessageCritical:
        return CMessageBox::Critical;
    default:
        return CMessageBox::Information;
    }
}
} // namespace

class GUI_CanViewPrivate
{
public:
    GUI_CanViewPrivate(GUI_CanView *window, std::unique_ptr<CANCommunication> manager)
        : q(window)
        , communication(std::move(manager))
    {
    }

    void buildToolBar();
    template<typename Tab>
    bool openTab(const ChannelParam &param, const QString &protocol);
    void addTab(WidgetDeviceBase *tab, const QString &protocol);
    static ChannelMode modeOf(const WidgetDeviceBase &tab);
    QList<CMessageBox *> openMessages() const;
    void openMessage(const QString &text, CMessageBox::Icon icon);

    GUI_CanView *q;
    std::unique_ptr<CANCommunication> communication;
    Ui::GUI_CanView ui;
    CNotice *notice = nullptr;
    GUI_CanDeviceParam *deviceParam = nullptr; ///< a child of the window; keeps what was chosen last
    int unshownMessages = 0;                   ///< since the newest open message was opened
};

void GUI_CanViewPrivate::buildToolBar()
{
    auto *connectButton = new QToolButton(q);
    connectButton->setObjectName(QStringLiteral("btn_connect"));
    connectButton->setProperty("nav", QStringLiteral("tBtnStyle_5"));
    connectButton->setText(GUI_CanView::tr("Connect") + QStringLiteral("(&D)"));
    connectButton->setToolTip(GUI_CanView::tr("Connect to the device"));
    connectButton->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(connectButton);
    menu->addAction(GUI_CanView::tr("Open device"), q, &GUI_CanView::slot_openCanDevice);
    menu->addAction(GUI_CanView::tr("Close device"), q, &GUI_CanView::slot_closeCanDevice);
    connectButton->setMenu(menu);
    ui.ToolBar->addWidget(connectButton);
}

template<typename Tab>
bool GUI_CanViewPrivate::openTab(const ChannelParam &param, const QString &protocol)
{
    auto tab = std::make_unique<Tab>(param, *communication, q);
    if (tab->openResult() != CAN_OK) {
        q->slot_showMessageBox(channelOpenProblem(tab->openResult(), param), MessageCritical);
        return false;
    }
    addTab(tab.release(), protocol);
    return true;
}

void GUI_CanViewPrivate::addTab(WidgetDeviceBase *tab, const QString &protocol)
{
    QObject::connect(tab, &WidgetDeviceBase::sig_showMessageBox, q, &GUI_CanView::slot_showMessageBox);
    QObject::connect(tab, &WidgetDeviceBase::sig_showNotice, q, &GUI_CanView::slot_showNotice);
    const ChannelParam &param = tab->channelParam();
    const QString title = QStringLiteral("%1 %2: %3 %4: %5")
                              .arg(protocol, GUI_CanView::tr("Device"))
                              .arg(param.device)
                              .arg(GUI_CanView::tr("Channel"))
                              .arg(param.channel);
    tab->setObjectName(title); // its dialogs are titled with it
    ui.tabWidget->setCurrentIndex(ui.tabWidget->addTab(tab, title));
    deviceParam->append(modeOf(*tab), param.device, param.channel);
}

ChannelMode GUI_CanViewPrivate::modeOf(const WidgetDeviceBase &tab)
{
    return qobject_cast<const GUI_LINDevice *>(&tab) == nullptr ? ChannelMode::CAN : ChannelMode::LIN;
}

/// The newest last.
QList<CMessageBox *> GUI_CanViewPrivate::openMessages() const
{
    QList<CMessageBox *> open;
    for (CMessageBox *box : q->findChildren<CMessageBox *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (box->isVisible() && box->property(MessageText).isValid()) {
            open.append(box);
        }
    }
    return open;
}

/// Messages may come in masses, from frames sent every millisecond for instance. What the user has to click away stays
/// bounded, and nothing is dropped silently.
void GUI_CanViewPrivate::openMessage(const QString &text, CMessageBox::Icon icon)
{
    const QList<CMessageBox *> messages = openMessages();
    for (const CMessageBox *message : messages) {
        if (message->icon() == icon && message->property(MessageText) == text) {
            return;
        }
    }
    if (messages.size() >= MaxOpenMessages) {
        ++unshownMessages;
        CMessageBox *newest = messages.last();
        newest->setText(newest->property(MessageText).toString() + QStringLiteral("\n\n") +
                        GUI_CanView::tr("Further messages not shown: %1").arg(unshownMessages));
        return;
    }
    const auto buttons = icon == CMessageBox::Question ? CMessageBox::Yes | CMessageBox::No
                                                       : CMessageBox::StandardButtons(CMessageBox::Ok);
    auto *box = new CMessageBox(icon, GUI_CanView::tr("Tips"), text, buttons, q);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setProperty(MessageText, text);
    unshownMessages = 0;
    box->open();
}

GUI_CanView::GUI_CanView(std::unique_ptr<CANCommunication> communication, QWidget *parent)
    : QMainWindow(parent)
    , m_p(std::make_unique<GUI_CanViewPrivate>(this, std::move(communication)))
{
    m_p->ui.setupUi(this);
    m_p->buildToolBar();
    m_p->notice = new CNotice(this);
    m_p->deviceParam = new GUI_CanDeviceParam(*m_p->communication, this);
    connect(m_p->deviceParam, &QDialog::accepted, this, &GUI_CanView::slot_openChosenChannels);
    setWindowTitle(QStringLiteral("X9CAN V") + QStringLiteral(X9_VERSION));
    connect(m_p->ui.tabWidget, &QTabWidget::tabCloseRequested, this, &GUI_CanView::slot_closeTabRequest);
    QTimer::singleShot(OpenDelayMs, this, &GUI_CanView::slot_openCanDevice);
}

GUI_CanView::~GUI_CanView()
{
    // Also the tabs that were closed and wait to be deleted: each one still holds its channel.
    const QList<WidgetDeviceBase *> found = findChildren<WidgetDeviceBase *>();
    const QVector<QPointer<WidgetDeviceBase>> tabs(found.begin(), found.end());
    for (const QPointer<WidgetDeviceBase> &tab : tabs) {
        delete tab; // and with a LIN tab its pages, which were found as well
    }
}

void GUI_CanView::slot_openCanDevice()
{
    m_p->deviceParam->open();
    const QString problem = adapterLibraryProblem(m_p->communication->api());
    if (!problem.isEmpty()) {
        slot_showMessageBox(problem, MessageCritical);
    }
}

void GUI_CanView::slot_openChosenChannels()
{
    const CanDeviceParam &chosen = m_p->deviceParam->deviceParam();
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
        slot_showNotice(tr("Devices is open"), CNotice::Done, NoticeMs);
    } else {
        slot_showNotice(tr("No devices!!!"), CNotice::Failure, NoticeMs);
    }
}

void GUI_CanView::slot_closeCanDevice()
{
    while (m_p->ui.tabWidget->count() > 0) {
        slot_closeTabRequest(0);
    }
    slot_showNotice(tr("Device turned off"), CNotice::Done, NoticeMs);
}

void GUI_CanView::slot_closeTabRequest(int index)
{
    auto *tab = qobject_cast<WidgetDeviceBase *>(m_p->ui.tabWidget->widget(index));
    if (tab == nullptr) {
        return;
    }
    m_p->deviceParam->remove(m_p->modeOf(*tab), tab->channelParam().device, tab->channelParam().channel);
    m_p->ui.tabWidget->removeTab(index);
    tab->deleteLater();
}

void GUI_CanView::slot_showMessageBox(const QString &text, int type)
{
    m_p->openMessage(text, iconOf(type));
}

void GUI_CanView::slot_showNotice(const QString &text, int type, int delayms)
{
    m_p->notice->setMesseage(text, type, delayms);
}
