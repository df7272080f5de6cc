#pragma once

#include "can/CanDeviceParam.h"

#include <QDialog>

#include <cstdint>
#include <memory>

class CANCommunication;
class GUI_CanDeviceParamPrivate;

/// Asks which channels of which device to open, and how. One dialog serves the whole run of the program:
/// - Each time it is shown, it looks once for devices (CANCommunication::presentDevices(), which takes as long as the
///   adapters take to answer) and offers the channels that no tab holds open. When there is none for the page shown,
///   the page says why, and OK gives no channels.
/// - It shows what was last accepted; after Cancel nothing of what was changed meanwhile is left, but for the list of
///   the filter tool, which keeps what was last accepted there.
class GUI_CanDeviceParam : public QDialog
{
    Q_OBJECT

public:
    /// Kind of a channel.
    enum class Mode : std::uint8_t { CAN, LIN };
    Q_ENUM(Mode)

    /// communication must outlive the dialog.
    explicit GUI_CanDeviceParam(CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_CanDeviceParam() override;

    /// What was last accepted; no channels before that.
    const CanDeviceParam &deviceParam() const;

public slots:
    /// A tab holds the channel (device id, channel index ch) open: it is not offered any more.
    void append(GUI_CanDeviceParam::Mode mode, uint8_t id, uint8_t ch);
    /// The tab has closed the channel: it is offered again.
    void remove(GUI_CanDeviceParam::Mode mode, uint8_t id, uint8_t ch);
    void accept() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    std::unique_ptr<GUI_CanDeviceParamPrivate> m_p;
};
