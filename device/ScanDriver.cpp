#include "device/ScanDriver.h"

#include "device/AdapterCalls.h"
#include "device/CANBaudrate.h"

#include <utility>

namespace {
constexpr int TickMs = 10;
} // namespace

ScanDriver::ScanDriver(const CANAPI &api, QObject *parent)
    : QObject(parent)
    , m_api(api)
    , m_timer(new QTimer(this))
{
    m_timer->setObjectName(QStringLiteral("scanTimer"));
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer, &QTimer::timeout, this, &ScanDriver::tick);
}

void ScanDriver::start(quint8 dev, ChannelsInUse channelsInUse)
{
    m_device = dev;
    m_channelsInUse = std::move(channelsInUse);
    m_steps = std::make_shared<BaudrateScan>();
    m_timer->start(TickMs);
}

void ScanDriver::stop()
{
    m_timer->stop();
    m_steps.reset();
}

void ScanDriver::tick()
{
    const std::shared_ptr<BaudrateScan> steps = m_steps;
    if (!steps) {
        return;
    }
    steps->setInUse(m_channelsInUse());
    for (quint8 ch = 0; ch < ChannelsPerDevice; ++ch) {
        if (steps->isToBeTried(ch)) {
            tryChannel(*steps, ch);
        }
    }
    if (steps->areAllInUse()) {
        emit sig_over();
        return;
    }
    const BaudrateScan::Outcome outcome = steps->endTick();
    if (const auto &report = outcome.report) {
        emit sig_report(report->can1, report->can2, report->index, report->dataRate);
    }
    // Whoever heard of the report may have stopped the scan, or even started another one.
    if (outcome.isEnd && m_steps == steps) {
        emit sig_over();
    }
}

void ScanDriver::tryChannel(BaudrateScan &steps, quint8 ch) const
{
    if (steps.isFirstTick()) {
        const CANBaudrate &rate = canBaudrates().at(steps.index());
        ChannelParam param;
        param.device = m_device;
        param.channel = ch;
        param.Timing0 = rate.timing0();
        param.Timing1 = rate.timing1();
        param.AccMask = 0xFFFFFFFFU;
        param.dataRateCANFD = steps.dataRate();
        if (!startCAN(m_api, param)) {
            steps.setRefused(ch);
            return;
        }
    }
    const auto waiting = steps.dataRate() == 0 ? m_api.VCI_GetReceiveNum : m_api.KQ_GetReceiveNumCANFD;
    const quint32 count = waiting == nullptr ? 0 : waiting(AdapterDeviceType, m_device, ch);
    if (count != 0 && count != AdapterReceiveError) {
        steps.setFound(ch);
    }
}
