#pragma once

#include "adapter/CanFrame.h"
#include "adapter/virtual/AdapterConfig.h"
#include "adapter/virtual/CyclicSchedule.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace va {

/// The simulated nodes of one bus: hands out their frames in the order of time (at the same time: in the order of the
/// configuration, replies last). Nodes that nobody can hear are set aside and cost nothing.
class CanBus
{
public:
    static constexpr std::uint64_t Never = UINT64_MAX;
    /// Replies under way at the same time; further requests get none.
    static constexpr std::size_t MaxPendingReplies = 100000;

    struct Event
    {
        const CanFrame *frame; ///< valid until the next call
        std::uint64_t timeNs;
        bool isReply;
    };

    /// The nodes start at startNs.
    CanBus(const CanBusConfig &config, std::uint64_t startNs);

    /// When takeNext() has its next frame, Never when no node is heard.
    std::uint64_t nextDueNs() const;
    Event takeNext();
    bool hasResponders() const { return !m_responders.empty(); }
    /// Whether a reply to this frame would satisfy the condition.
    bool hasReply(const CanFrame &request, const std::function<bool(const CanFrame &)> &condition) const;
    /// Makes every node that waits for this request reply after its delay.
    void request(const CanFrame &frame, std::uint64_t timeNs);

    /// Asks for every node whether a frame like this one would reach a buffer with room; sets the others aside.
    void chooseHeard(const std::function<bool(const CanFrame &)> &isHeard);
    /// Sets every node aside and drops the replies under way.
    void setAllAside();
    /// Lets the nodes set aside pass everything due up to timeNs, reporting each with the number of its frames.
    void passUnheard(std::uint64_t timeNs, const std::function<void(const CanFrame &, std::uint64_t)> &report);

private:
    struct Node
    {
        PayloadKind payload;
        std::uint32_t seed;
        CanFrame frame;
        CyclicSchedule schedule;
        bool isHeard = false;
    };
    struct Responder
    {
        PayloadKind payload;
        std::uint32_t seed;
        CanFrame frame;
        ReplyConfig config;
        std::uint64_t replies = 0;

        bool answers(const CanFrame &request) const
        {
            return config.requestId == request.id && config.requestExtended == request.extended;
        }
    };
    struct Slot
    {
        std::uint64_t dueNs;
        std::size_t index; ///< of the node; of a reply: its running number

        bool operator<(const Slot &other) const
        {
            return dueNs != other.dueNs ? dueNs < other.dueNs : index < other.index;
        }
    };
    struct Reply
    {
        Slot slot;
        std::size_t responder;

        bool operator>(const Reply &other) const { return other.slot < slot; }
    };

    std::uint64_t nextReplyNs() const { return m_replies.empty() ? Never : m_replies.front().slot.dueNs; }
    std::uint64_t nextNodeNs() const { return m_heap.empty() ? Never : m_heap.front().dueNs; }
    Event takeReply();
    void siftDown(std::size_t at);

    std::vector<Node> m_nodes;
    std::vector<Responder> m_responders;
    std::vector<Slot> m_heap;     ///< nodes that are heard, the earliest first
    std::vector<Reply> m_replies; ///< heap of replies under way, the earliest first
    std::size_t m_replyNumber = 0;
};

} // namespace va
