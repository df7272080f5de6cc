#pragma once

#include "can/CanAcceptanceFilter.h"
#include "can/CanDeviceParam.h"

#include <QDialog>
#include <QVariantList>
#include <QVector>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <tuple>

class CANCommunication;
class QCheckBox;
class QComboBox;
class QLabel;
struct DevicePresence;

namespace Ui {
class GUI_CanDeviceParam;
}

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
    const CanDeviceParam &deviceParam() const { return m_param; }

public slots:
    /// A tab holds the channel (device id, channel index ch) open: it is not offered any more.
    void append(GUI_CanDeviceParam::Mode mode, uint8_t id, uint8_t ch);
    /// The tab has closed the channel: it is offered again.
    void remove(GUI_CanDeviceParam::Mode mode, uint8_t id, uint8_t ch);
    void accept() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    /// The controls that are on both pages.
    struct Page
    {
        QComboBox *device;
        QComboBox *channel;
        QCheckBox *openAll;
        QLabel *noDevice;
    };

    void fillCombos();
    void setValidators();
    void connectSignals();
    Page page(Mode mode) const;
    void showPage(Mode mode);
    QVector<quint8> freeChannels(Mode mode, const DevicePresence &device) const;
    void fillDevices(Mode mode);
    void fillChannels(Mode mode);
    void refillLists();
    void lookForDevices();
    void startAtFirstField();
    QVector<quint8> chosenChannels() const;
    std::optional<quint8> scanDevice() const;
    void showTiming();
    void openFilterTool();
    void openScan();
    void chooseRate(int index, int dataRate);
    CanDeviceParam readEntries() const;
    void completeEntries();
    QVector<QWidget *> entryWidgets() const;
    QVariantList entries() const;
    void setEntries(const QVariantList &values);

    std::unique_ptr<Ui::GUI_CanDeviceParam> m_ui;
    CANCommunication &m_communication;
    QVector<DevicePresence> m_present;                  ///< when the dialog was shown last
    std::set<std::tuple<Mode, quint8, quint8>> m_taken; ///< kind, device, channel
    QVector<CanIdRange> m_filterIds;                    ///< list of the filter tool
    Mode m_shownMode = Mode::CAN;                       ///< whose page is shown
    CanDeviceParam m_param;                             ///< what was last accepted, also:
    QVariantList m_acceptedEntries;                     ///< as in the controls
    Mode m_acceptedMode = Mode::CAN;
};
