#pragma once

#include "adapter/Adapter.h"
#include "adapter/GatewayList.h"
#include "adapter/socketcan/InterfaceMap.h"
#include "adapter/socketcan/Links.h"
#include "adapter/socketcan/Receiver.h"
#include "adapter/socketcan/RunningChannel.h"
#include "adapter/socketcan/System.h"

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace socketcan {

/// The adapter made of this machine's CAN interfaces. docs/socketcan.md gives the rules.
class SocketCanAdapter final : public va::Adapter
{
public:
    /// Without a map the interfaces are taken in the order of their names. system must outlive the adapter.
    SocketCanAdapter(System &system, std::optional<InterfaceMap> map);
    ~SocketCanAdapter() override;

    u32 openDevice(u32 type, u8 dev) override;
    u32 closeDevice(u32 type, u8 dev) override;
    u32 readInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware) override;
    /// Also for a device that is not open: a channel that did not open tells why.
    u32 readErrInfo(u32 type, u8 dev, u8 ch, VCI_ERR_INFO *info) override;

    u32 initCan(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config) override;
    u32 startCan(u32 type, u8 dev, u8 ch) override;
    u32 resetCan(u32 type, u8 dev, u8 ch) override;
    u32 clearBuffer(u32 type, u8 dev, u8 ch) override;
    u32 receiveNumCan(u32 type, u8 dev, u8 ch) override;
    u32 receiveNumCanFd(u32 type, u8 dev, u8 ch) override;
    u32 transmitCan(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count) override;
    u32 transmitCanFd(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count) override;
    u32 receiveCan(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity) override;
    u32 receiveCanFd(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity) override;
    u32 overflowNum(u32 type, u8 dev, u8 ch) override;

    u32 switchGateway(u32 type, u8 dev, u8 operation, u32 *state) override;
    u32 setGatewayFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count) override;
    u32 gatewayFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count) override;

    u32 openLin(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum) override;

private:
    struct Channel
    {
        std::string interface; ///< empty: there is none
        std::optional<RunningChannel::Settings> settings;
        std::shared_ptr<RunningChannel> running;
        va::GatewayList list;
    };
    struct Device
    {
        std::array<Channel, ChannelsPerDevice> channels;
        bool isGatewayOn = false;
    };

    InterfaceMap currentMap(const std::vector<Link> &links) const;
    Device *find(u32 type, u8 dev);
    Channel *find(u32 type, u8 dev, u8 ch);
    std::shared_ptr<RunningChannel> runningChannel(u32 type, u8 dev, u8 ch);
    std::variant<Links::Ready, Problem> prepare(const std::string &interface, const VCI_INIT_CONFIG &config);
    void stop(Device &device, Channel &channel);
    static void setGateway(Device &device, bool isOn);
    bool isAlive(const Device &device, std::vector<Link> &present) const;
    void note(u8 dev, u8 ch, Problem problem);
    template<class Record>
    u32 receiveNum(u32 type, u8 dev, u8 ch);
    template<class Record>
    u32 transmit(u32 type, u8 dev, u8 ch, const Record *frames, u32 count);
    template<class Record>
    u32 receive(u32 type, u8 dev, u8 ch, Record *frames, u32 capacity);

    System &m_system;
    const std::optional<InterfaceMap> m_map;
    Links m_links;
    std::mutex m_mutex;                              ///< guards everything below
    std::map<u8, Device> m_devices;                  ///< those that are open
    std::map<std::pair<u8, u8>, Problem> m_problems; ///< by device and channel
    Receiver m_receiver;                             ///< last, so that its thread ends first
};

} // namespace socketcan
