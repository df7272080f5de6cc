#include "tests/socketcan/StandInKernel.h"

#include <linux/can/netlink.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

using socketcan::Answer;
using socketcan::Bytes;

namespace {

template<class Value>
Value valueAt(const Bytes &bytes, std::size_t at = 0)
{
    Value value{};
    if (at + sizeof value <= bytes.size()) {
        std::memcpy(&value, bytes.data() + at, sizeof value);
    }
    return value;
}

/// Type to content.
std::map<int, Bytes> attributesOf(const Bytes &bytes, std::size_t at = 0)
{
    std::map<int, Bytes> attributes;
    while (at + 4 <= bytes.size()) {
        const auto size = valueAt<std::uint16_t>(bytes, at);
        const auto type = valueAt<std::uint16_t>(bytes, at + 2);
        if (size < 4 || at + size > bytes.size()) {
            break;
        }
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        attributes[type] = Bytes(begin + 4, begin + size);
        at += (size + 3U) & ~3U;
    }
    return attributes;
}

template<class Value>
Bytes bytesOf(const Value &value)
{
    Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

Bytes bytesOf(const std::string &text)
{
    Bytes bytes(text.begin(), text.end());
    bytes.push_back(0);
    return bytes;
}

void addAttribute(Bytes &to, int type, const Bytes &content)
{
    for (const unsigned number : {static_cast<unsigned>(content.size() + 4), static_cast<unsigned>(type)}) {
        to.push_back(static_cast<std::uint8_t>(number & 0xFFU));
        to.push_back(static_cast<std::uint8_t>(number >> 8U));
    }
    to.insert(to.end(), content.begin(), content.end());
    to.resize((to.size() + 3) / 4 * 4);
}

can_bittiming timingOf(std::uint32_t bitrate)
{
    can_bittiming timing{};
    timing.bitrate = bitrate;
    return timing;
}

} // namespace

StandInLink &StandInKernel::link(const std::string &name)
{
    return *std::find_if(m_links.begin(), m_links.end(), [&name](const StandInLink &l) { return l.name == name; });
}

void StandInKernel::plugIn(StandInLink link)
{
    m_indices[link.name] = ++m_lastIndex;
    m_links.push_back(std::move(link));
}

void StandInKernel::pullOut(const std::string &name)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_links.erase(
        std::remove_if(m_links.begin(), m_links.end(), [&name](const StandInLink &link) { return link.name == name; }),
        m_links.end());
}

Bytes StandInKernel::describe(const StandInLink &link, int index)
{
    Bytes data;
    if (link.kind == "can") {
        if (link.bitrate != 0) {
            addAttribute(data, IFLA_CAN_BITTIMING, bytesOf(timingOf(link.bitrate)));
        }
        addAttribute(data, IFLA_CAN_CTRLMODE, bytesOf(can_ctrlmode{0, link.modes}));
        addAttribute(data, IFLA_CAN_RESTART_MS, bytesOf(link.restartMs));
        if (link.dataBitrate != 0) {
            addAttribute(data, IFLA_CAN_DATA_BITTIMING, bytesOf(timingOf(link.dataBitrate)));
        }
        if ((link.supportedModes & CAN_CTRLMODE_FD) != 0) {
            addAttribute(data, IFLA_CAN_DATA_BITTIMING_CONST, Bytes(48));
        }
    }
    Bytes info;
    addAttribute(info, IFLA_INFO_KIND, bytesOf(link.kind));
    addAttribute(info, IFLA_INFO_DATA, data);
    ifinfomsg head{};
    head.ifi_type = link.kind == "ether" ? ARPHRD_ETHER : ARPHRD_CAN;
    head.ifi_index = index;
    head.ifi_flags = link.isUp ? unsigned{IFF_UP} : 0U;
    Bytes body = bytesOf(head);
    addAttribute(body, IFLA_IFNAME, bytesOf(link.name));
    addAttribute(body, IFLA_MTU, bytesOf(link.mtu));
    addAttribute(body, IFLA_LINKINFO, info);
    nlmsghdr header{};
    header.nlmsg_len = static_cast<std::uint32_t>(sizeof header + body.size());
    header.nlmsg_type = RTM_NEWLINK;
    Bytes message = bytesOf(header);
    message.insert(message.end(), body.begin(), body.end());
    return message;
}

Answer StandInKernel::exchange(Bytes request)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Answer answer;
    answer.isComplete = true;
    const auto header = valueAt<nlmsghdr>(request);
    if (header.nlmsg_len != request.size() || (header.nlmsg_flags & NLM_F_REQUEST) == 0) {
        answer.error = EINVAL;
    } else if (header.nlmsg_type == RTM_GETLINK) {
        for (const StandInLink &link : m_links) {
            answer.messages.push_back(describe(link, m_indices.at(link.name)));
        }
    } else {
        ++changes;
        answer.error = mayChange ? change(request) : EPERM;
    }
    return answer;
}

int StandInKernel::change(const Bytes &request)
{
    const auto head = valueAt<ifinfomsg>(request, sizeof(nlmsghdr));
    const auto found = std::find_if(m_links.begin(), m_links.end(),
                                    [&](const StandInLink &link) { return m_indices.at(link.name) == head.ifi_index; });
    if (found == m_links.end()) {
        return ENODEV;
    }
    const auto attributes = attributesOf(request, sizeof(nlmsghdr) + sizeof(ifinfomsg));
    const auto info = attributes.find(IFLA_LINKINFO);
    if (info != attributes.end()) {
        auto parts = attributesOf(info->second);
        if (parts[IFLA_INFO_KIND] != bytesOf(found->kind) || found->kind != "can") {
            return EOPNOTSUPP;
        }
        return setController(*found, attributesOf(parts[IFLA_INFO_DATA]));
    }
    const auto mtu = attributes.find(IFLA_MTU);
    if (mtu != attributes.end()) {
        if (found->isUp) {
            return EBUSY;
        }
        found->mtu = valueAt<std::uint32_t>(mtu->second);
    }
    if ((head.ifi_change & IFF_UP) != 0) {
        const bool isUp = (head.ifi_flags & IFF_UP) != 0;
        if (isUp && found->kind == "can" && found->bitrate == 0) {
            return EINVAL;
        }
        found->isUp = isUp;
    }
    return 0;
}

int StandInKernel::setController(StandInLink &link, const std::map<int, Bytes> &attributes)
{
    const auto given = [&attributes](int type) {
        const auto found = attributes.find(type);
        return found == attributes.end() ? Bytes() : found->second;
    };
    if (attributes.count(IFLA_CAN_RESTART) != 0) {
        link.restarts += link.isUp ? 1 : 0;
        return link.isUp && link.restartMs == 0 ? 0 : EINVAL;
    }
    const auto mode = valueAt<can_ctrlmode>(given(IFLA_CAN_CTRLMODE));
    if (link.isUp) {
        return EBUSY;
    }
    if ((mode.mask & ~link.supportedModes) != 0) {
        return EOPNOTSUPP;
    }
    const auto timing = valueAt<can_bittiming>(given(IFLA_CAN_BITTIMING));
    if (timing.bitrate == 0 || timing.bitrate == 5000) { // as many controllers
        return EINVAL;
    }
    link.bitrate = timing.bitrate;
    link.samplePoint = timing.sample_point;
    link.modes = (link.modes & ~mode.mask) | (mode.flags & mode.mask);
    link.dataBitrate = valueAt<can_bittiming>(given(IFLA_CAN_DATA_BITTIMING)).bitrate;
    link.restartMs = valueAt<std::uint32_t>(given(IFLA_CAN_RESTART_MS));
    link.mtu = (link.modes & CAN_CTRLMODE_FD) != 0 ? 72 : 16;
    return 0;
}

std::variant<std::unique_ptr<socketcan::CanPort>, int> StandInSystem::openPort(const socketcan::Link &link,
                                                                               const socketcan::PortSettings &settings)
{
    lastSettings = settings;
    std::array<int, 2> ends{};
    if (openError != 0 || socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return openError != 0 ? openError : errno;
    }
    m_far[link.name] = std::make_unique<socketcan::SocketPort>(socketcan::FileDescriptor(ends[1]));
    return std::make_unique<socketcan::SocketPort>(socketcan::FileDescriptor(ends[0]));
}

socketcan::CanPort *StandInSystem::far(const std::string &name)
{
    const auto found = m_far.find(name);
    return found == m_far.end() ? nullptr : found->second.get();
}

void StandInSystem::pullOut(const std::string &name)
{
    kernel.pullOut(name);
    m_far.erase(name);
}
