#pragma once

#include "device/BaudrateScan.h"
#include "device/CANAPI.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

/// Takes a BaudrateScan over the adapter, a tick every 10 ms: initialises the channels for each step and looks whether
/// frames arrive. Lives on the GUI thread; one scan at a time.
class ScanDriver : public QObject
{
    Q_OBJECT

public:
    /// Which channels somebody uses: asked at every tick, and left alone from then on.
    using ChannelsInUse = std::function<BaudrateScan::ChannelFlags()>;

    /// api must outlive this object.
    ScanDriver(const CANAPI &api, QObject *parent);

    /// The device has to stay open until the scan is over or stopped.
    void start(quint8 dev, ChannelsInUse channelsInUse);
    /// Without a signal.
    void stop();

signals:
    /// One step, as in BaudrateScanReport.
    void sig_report(quint8 can1, quint8 can2, quint8 index, quint8 dataRate);
    /// Every channel was found or is in use, or all steps are through.
    void sig_over();

private:
    void tick();
    void tryChannel(BaudrateScan &steps, quint8 ch) const;

    const CANAPI &m_api;
    QTimer *m_timer;
    quint8 m_device = 0;
    ChannelsInUse m_channelsInUse;
    std::shared_ptr<BaudrateScan> m_steps; ///< of the scan that runs
};
