#include "adapter/socketcan/LinkMessages.h"

#include <linux/can.h>
#include <linux/can/netlink.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/rtnetlink.h>

#include <cstring>

namespace socketcan {

namespace {

constexpr std::size_t aligned(std::size_t size)
{
    return (size + 3) & ~std::size_t{3};
}

template<class Value>
void put(Bytes &bytes, std::size_t at, const Value &value)
{
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

template<class Value>
void append(Bytes &bytes, const Value &value)
{
    const std::size_t at = bytes.size();
    bytes.resize(aligned(at + sizeof value));
    put(bytes, at, value);
}

/// A message to be sent, attribute by attribute.
class Request
{
public:
    Request(std::uint16_t type, std::uint16_t flags, const ifinfomsg &link)
    {
        nlmsghdr header{};
        header.nlmsg_type = type;
        header.nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
        append(m_bytes, header);
        append(m_bytes, link);
    }

    template<class Value>
    void add(std::uint16_t type, const Value &value)
    {
        const std::size_t at = begin(type);
        append(m_bytes, value);
        end(at, sizeof value);
    }
    void add(std::uint16_t type, const std::string &text)
    {
        const std::size_t at = begin(type);
        m_bytes.insert(m_bytes.end(), text.begin(), text.end());
        m_bytes.push_back(0);
        end(at, text.size() + 1);
        m_bytes.resize(aligned(m_bytes.size()));
    }
    /// An attribute made of those that are added until closeNest().
    std::size_t openNest(std::uint16_t type) { return begin(type); }
    void closeNest(std::size_t at) { end(at, m_bytes.size() - at - sizeof(rtattr)); }

    Bytes bytes()
    {
        put(m_bytes, offsetof(nlmsghdr, nlmsg_len), static_cast<std::uint32_t>(m_bytes.size()));
        return std::move(m_bytes);
    }

private:
    std::size_t begin(std::uint16_t type)
    {
        const std::size_t at = m_bytes.size();
        rtattr attribute{};
        attribute.rta_type = type;
        append(m_bytes, attribute);
        return at;
    }
    void end(std::size_t at, std::size_t size)
    {
        put(m_bytes, at + offsetof(rtattr, rta_len), static_cast<std::uint16_t>(sizeof(rtattr) + size));
    }

    Bytes m_bytes;
};

ifinfomsg linkOf(int index)
{
    ifinfomsg link{};
    link.ifi_family = AF_UNSPEC;
    link.ifi_index = index;
    return link;
}

/// Bytes of someone else's making: every reading is checked against the size.
struct View
{
    const std::uint8_t *bytes = nullptr;
    std::size_t size = 0;

    template<class Value>
    std::optional<Value> read(std::size_t at = 0) const
    {
        Value value{};
        if (at > size || size - at < sizeof value) {
            return std::nullopt;
        }
        std::memcpy(&value, bytes + at, sizeof value);
        return value;
    }
    std::string text() const
    {
        const auto *characters = reinterpret_cast<const char *>(bytes);
        return {characters, strnlen(characters, size)};
    }
    View from(std::size_t at) const { return at > size ? View{} : View{bytes + at, size - at}; }
};

/// Hands each attribute to visit(type, content); stops at the first that does not fit.
template<class Visit>
void forEachAttribute(View view, const Visit &visit)
{
    while (const auto head = view.read<rtattr>()) {
        if (head->rta_len < sizeof(rtattr) || head->rta_len > view.size) {
            return;
        }
        visit(head->rta_type & NLA_TYPE_MASK, View{view.bytes + sizeof(rtattr), head->rta_len - sizeof(rtattr)});
        view = view.from(aligned(head->rta_len));
    }
}

void readController(const View &view, Link &link)
{
    forEachAttribute(view, [&link](int type, const View &content) {
        switch (type) {
        case IFLA_CAN_BITTIMING:
            link.bitrate = content.read<can_bittiming>().value_or(can_bittiming{}).bitrate;
            break;
        case IFLA_CAN_DATA_BITTIMING:
            link.dataBitrate = content.read<can_bittiming>().value_or(can_bittiming{}).bitrate;
            break;
        case IFLA_CAN_CTRLMODE:
            link.modes = content.read<can_ctrlmode>().value_or(can_ctrlmode{}).flags;
            break;
        case IFLA_CAN_RESTART_MS:
            link.restartMs = content.read<std::uint32_t>().value_or(0);
            break;
        case IFLA_CAN_DATA_BITTIMING_CONST:
        case IFLA_CAN_DATA_BITRATE_CONST:
            link.canFd = true;
            break;
        default: // of no interest here
            break;
        }
    });
    link.canFd = link.canFd || (link.modes & CAN_CTRLMODE_FD) != 0;
}

void readInfo(const View &view, Link &link)
{
    forEachAttribute(view, [&link](int type, const View &content) {
        if (type == IFLA_INFO_KIND) {
            link.kind = content.text();
        }
    });
    link.hasBitTiming = link.kind == "can";
    link.canFd = link.kind == "vcan" || link.kind == "vxcan";
    forEachAttribute(view, [&link](int type, const View &content) {
        if (type == IFLA_INFO_DATA && link.hasBitTiming) {
            readController(content, link);
        }
    });
}

} // namespace

Bytes linksRequest()
{
    return Request(RTM_GETLINK, NLM_F_DUMP, linkOf(0)).bytes();
}

Bytes upRequest(int index, bool isUp)
{
    ifinfomsg link = linkOf(index);
    link.ifi_flags = isUp ? unsigned{IFF_UP} : 0U;
    link.ifi_change = IFF_UP;
    return Request(RTM_NEWLINK, NLM_F_ACK, link).bytes();
}

Bytes settingsRequest(const Link &link, const LinkSettings &settings)
{
    Request request(RTM_NEWLINK, NLM_F_ACK, linkOf(link.index));
    const std::size_t info = request.openNest(IFLA_LINKINFO);
    request.add(IFLA_INFO_KIND, link.kind);
    const std::size_t data = request.openNest(IFLA_INFO_DATA);
    can_bittiming timing{};
    timing.bitrate = settings.bitrate;
    timing.sample_point = settings.samplePoint;
    request.add(IFLA_CAN_BITTIMING, timing);
    if (settings.isFd()) {
        can_bittiming dataTiming{};
        dataTiming.bitrate = settings.dataBitrate;
        request.add(IFLA_CAN_DATA_BITTIMING, dataTiming);
    }
    // What the controller has not got must not be named, or it refuses.
    can_ctrlmode mode{};
    mode.flags = (settings.listenOnly ? CAN_CTRLMODE_LISTENONLY : 0U) | (settings.isFd() ? CAN_CTRLMODE_FD : 0U);
    mode.mask = mode.flags | (link.modes & (CAN_CTRLMODE_LISTENONLY | CAN_CTRLMODE_FD));
    request.add(IFLA_CAN_CTRLMODE, mode);
    request.add(IFLA_CAN_RESTART_MS, RestartMs);
    request.closeNest(data);
    request.closeNest(info);
    return request.bytes();
}

Bytes mtuRequest(int index, std::uint32_t mtu)
{
    Request request(RTM_NEWLINK, NLM_F_ACK, linkOf(index));
    request.add(IFLA_MTU, mtu);
    return request.bytes();
}

Bytes restartRequest(const Link &link)
{
    Request request(RTM_NEWLINK, NLM_F_ACK, linkOf(link.index));
    const std::size_t info = request.openNest(IFLA_LINKINFO);
    request.add(IFLA_INFO_KIND, link.kind);
    const std::size_t data = request.openNest(IFLA_INFO_DATA);
    request.add(IFLA_CAN_RESTART, std::uint32_t{1});
    request.closeNest(data);
    request.closeNest(info);
    return request.bytes();
}

void setSequence(Bytes &request, std::uint32_t sequence)
{
    put(request, offsetof(nlmsghdr, nlmsg_seq), sequence);
}

std::optional<Link> parseLink(const Bytes &message)
{
    const View view{message.data(), message.size()};
    const auto header = view.read<nlmsghdr>();
    const auto info = view.read<ifinfomsg>(sizeof(nlmsghdr));
    if (!header || !info || header->nlmsg_type != RTM_NEWLINK || info->ifi_type != ARPHRD_CAN) {
        return std::nullopt;
    }
    Link link;
    link.index = info->ifi_index;
    link.isUp = (info->ifi_flags & IFF_UP) != 0;
    forEachAttribute(view.from(aligned(sizeof(nlmsghdr) + sizeof(ifinfomsg))), [&link](int type, const View &content) {
        if (type == IFLA_IFNAME) {
            link.name = content.text();
        } else if (type == IFLA_MTU) {
            link.hasFdMtu = content.read<std::uint32_t>().value_or(0) >= CANFD_MTU;
        } else if (type == IFLA_LINKINFO) {
            readInfo(content, link);
        }
    });
    link.canFd = link.canFd || link.hasFdMtu;
    return link.name.empty() ? std::nullopt : std::optional<Link>(std::move(link));
}

void addDatagram(Answer &answer, const std::uint8_t *bytes, std::size_t size, std::uint32_t sequence)
{
    View view{bytes, size};
    while (const auto header = view.read<nlmsghdr>()) {
        if (header->nlmsg_len < sizeof(nlmsghdr) || header->nlmsg_len > view.size) {
            return;
        }
        const std::uint8_t *message = view.bytes;
        if (header->nlmsg_seq != sequence) {
            // another request's
        } else if (header->nlmsg_type == NLMSG_DONE) {
            answer.isComplete = true;
        } else if (header->nlmsg_type == NLMSG_ERROR) {
            answer.isComplete = true;
            answer.error = -view.read<nlmsgerr>(sizeof(nlmsghdr)).value_or(nlmsgerr{}).error;
        } else {
            answer.messages.emplace_back(message, message + header->nlmsg_len);
        }
        view = view.from(aligned(header->nlmsg_len));
    }
}

} // namespace socketcan
