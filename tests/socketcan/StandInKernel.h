#pragma once

#include "adapter/socketcan/LinkTransport.h"
#include "adapter/socketcan/System.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

/// An interface as the stand-in keeps it.
struct StandInLink
{
    std::string name;
    std::string kind = "can";
    bool isUp = false;
    std::uint32_t mtu = 16;
    std::uint32_t bitrate = 0;
    std::uint32_t dataBitrate = 0;
    std::uint32_t modes = 0;
    std::uint32_t restartMs = 0;
    std::uint32_t supportedModes = 0; ///< of a controller: CAN_CTRLMODE_*
    int restarts = 0;
    std::uint32_t samplePoint = 0; ///< as asked for last
};

/// Takes route netlink requests as bytes and answers as the kernel does, as far as CAN interfaces go: what is up cannot
/// be changed, a controller is not brought up without a bit rate, modes that it has not got are refused, and whoever
/// may not is told so. Reads and writes the messages with code of its own.
class StandInKernel final : public socketcan::LinkTransport
{
public:
    socketcan::Answer exchange(socketcan::Bytes request) override;

    StandInLink &link(const std::string &name);
    int indexOf(const std::string &name) const { return m_indices.at(name); }
    void plugIn(StandInLink link);
    void pullOut(const std::string &name);

    bool mayChange = true;
    int changes = 0; ///< requests that would change something, refused ones too

private:
    int change(const socketcan::Bytes &request);
    static int setController(StandInLink &link, const std::map<int, socketcan::Bytes> &attributes);
    static socketcan::Bytes describe(const StandInLink &link, int index);

    std::mutex m_mutex;
    int m_lastIndex = 2;
    std::vector<StandInLink> m_links;
    std::map<std::string, int> m_indices;
};

/// Its interfaces carry frames over socket pairs: what the adapter sends comes out at far(), what is put in there
/// arrives.
class StandInSystem final : public socketcan::System
{
public:
    socketcan::LinkTransport &links() override { return kernel; }
    std::variant<std::unique_ptr<socketcan::CanPort>, int> openPort(const socketcan::Link &link,
                                                                    const socketcan::PortSettings &settings) override;
    std::string driverOf(const socketcan::Link &link) override { return link.kind == "can" ? "gs_usb" : link.kind; }
    std::string release() override { return "6.1.0-56-amd64"; }
    void complain(const std::string &line) override { complaints.push_back(line); }

    /// The other end of the interface's port that was opened last; null when none is open.
    socketcan::CanPort *far(const std::string &name);
    /// The interface is pulled out: its port ends.
    void pullOut(const std::string &name);

    StandInKernel kernel;
    std::vector<std::string> complaints;
    int openError = 0; ///< an errno that opening a port answers
    socketcan::PortSettings lastSettings;

private:
    std::map<std::string, std::unique_ptr<socketcan::CanPort>> m_far;
};
