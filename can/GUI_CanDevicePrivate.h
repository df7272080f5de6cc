#pragma once

#include "can/CanFrameInput.h"
#include "can/CanTabErrors.h"
#include "can/GUI_CanDevice.h"
#include "device/TickTimer.h"
#include "ui_GUI_CanDevice.h"
#include "widgets/CNotice.h"

#include <QCoreApplication>
#include <QPropertyAnimation>

class CANCommunication;
class GUI_CanAdvancedOpearation;
class GUI_CanSendFile;

/// The form of a CAN tab: its controls, what they are connected with, what they show and what is entered in them.
class GUI_CanDevicePrivate
{
    Q_DECLARE_TR_FUNCTIONS(GUI_CanDevice)

public:
    GUI_CanDevicePrivate(GUI_CanDevice *tab, CANCommunication &manager)
        : q(tab)
        , communication(manager)
    {
    }

    void prepareForm();
    void connectSignals();
    bool isThisChannel(quint8 devInd, quint8 canInd) const;
    bool isExtended() const { return ui.cbx_frameType->currentData().toInt() != 0; }
    /// Offers the payload lengths of the protocol and keeps the place of the chosen one as far as it can.
    void fillLengths(bool isFdProtocol) const;
    /// Takes over the frame and how it changes from one to the next; completes empty fields. False when the identifier
    /// is out of range: its last edit is taken back then.
    bool takeEntry();
    /// At the beginning and end of timed sending.
    void lockForSending(bool isSending) const;
    /// The number in the field, unless there is none above 0; the field shows the limit in force then.
    void applyCacheSize();
    void clearErrors();
    void showRealTimeSaving() const;
    void showNotice(const QString &text, int type) const { emit q->sig_showNotice(text, type, CNotice::WindowMs); }
    void showMessage(const QString &text, int mode) const { emit q->sig_showMessageBox(text, mode); }

    GUI_CanDevice *q;
    CANCommunication &communication;
    Ui::GUI_CanDevice ui;
    CANError openResult = CAN_DeviceNotExists;
    QString cacheText; ///< as the field showed it before the user edited it

    CanFrameInput frame;    ///< sent next
    quint32 framesLeft = 0; ///< of the timed sending, the one sent last counted
    bool isIdIncreasing = false;
    bool isDataIncreasing = false;
    TickTimer sendTimer;
    QPropertyAnimation foldAnimation;

    // Children of the tab, made when they are first asked for.
    GUI_CanSendFile *sendFile = nullptr;
    GUI_CanAdvancedOpearation *sendList = nullptr;

private:
    void prepareFolding();
    void setValidators() const;
    void connectErrors();
    void connectSending();
    void connectFunctions();
    void showCacheLimit() const;
    void showErrors() const;

    CanTabErrors m_errors; ///< but for those of the table
};
