#include "adapter/virtual/CanBus.h"

#include <algorithm>

namespace va {

namespace {

void fillPayload(PayloadKind payload, std::uint32_t seed, std::uint64_t index, CanFrame &frame)
{
    switch (payload) {
    case PayloadKind::Constant:
        return;
    case PayloadKind::Counting:
        fillCounting(frame.data.data(), frame.dataSize(), index);
        return;
    case PayloadKind::Random:
        fillRandom(frame.data.data(), frame.dataSize(), seed, index);
        return;
    }
}

} // namespace

CanBus::CanBus(const CanBusConfig &config, std::uint64_t startNs)
{
    for (const NodeConfig &node : config.nodes) {
        if (node.cyclic) {
            const CyclicSchedule schedule(node.cyclic->period, startNs, node.cyclic->phaseNs);
            m_nodes.push_back({node.payload, node.seed, node.frame, schedule});
        } else if (node.reply) {
            m_responders.push_back({node.payload, node.seed, node.frame, *node.reply});
        }
    }
}

std::uint64_t CanBus::nextDueNs() const
{
    return std::min(nextNodeNs(), nextReplyNs());
}

CanBus::Event CanBus::takeNext()
{
    if (nextReplyNs() < nextNodeNs()) {
        return takeReply();
    }
    Slot &slot = m_heap.front();
    Node &node = m_nodes[slot.index];
    const std::uint64_t timeNs = slot.dueNs;
    fillPayload(node.payload, node.seed, node.schedule.index(), node.frame);
    node.schedule.step();
    slot.dueNs = node.schedule.dueNs();
    siftDown(0);
    return {&node.frame, timeNs, false};
}

CanBus::Event CanBus::takeReply()
{
    const Reply reply = m_replies.front();
    std::pop_heap(m_replies.begin(), m_replies.end(), std::greater<>());
    m_replies.pop_back();
    Responder &responder = m_responders[reply.responder];
    fillPayload(responder.payload, responder.seed, responder.replies++, responder.frame);
    return {&responder.frame, reply.slot.dueNs, true};
}

bool CanBus::hasReply(const CanFrame &request, const std::function<bool(const CanFrame &)> &condition) const
{
    return std::any_of(m_responders.begin(), m_responders.end(), [&](const Responder &responder) {
        return responder.answers(request) && condition(responder.frame);
    });
}

void CanBus::request(const CanFrame &frame, std::uint64_t timeNs)
{
    for (std::size_t i = 0; i < m_responders.size() && m_replies.size() < MaxPendingReplies; ++i) {
        if (m_responders[i].answers(frame)) {
            m_replies.push_back({{timeNs + m_responders[i].config.delayNs, m_replyNumber++}, i});
            std::push_heap(m_replies.begin(), m_replies.end(), std::greater<>());
        }
    }
}

void CanBus::chooseHeard(const std::function<bool(const CanFrame &)> &isHeard)
{
    m_heap.clear();
    for (std::size_t i = 0; i < m_nodes.size(); ++i) {
        Node &node = m_nodes[i];
        node.isHeard = isHeard(node.frame);
        if (node.isHeard) {
            m_heap.push_back({node.schedule.dueNs(), i});
        }
    }
    std::sort(m_heap.begin(), m_heap.end()); // a sorted array is a heap
}

void CanBus::setAllAside()
{
    chooseHeard([](const CanFrame &) { return false; });
    m_replies.clear();
}

void CanBus::passUnheard(std::uint64_t timeNs, const std::function<void(const CanFrame &, std::uint64_t)> &report)
{
    for (Node &node : m_nodes) {
        const std::uint64_t passed = node.isHeard ? 0 : node.schedule.skipTo(timeNs);
        if (passed > 0) {
            report(node.frame, passed);
        }
    }
}

void CanBus::siftDown(std::size_t at)
{
    const Slot moving = m_heap[at];
    for (std::size_t child = 2 * at + 1; child < m_heap.size(); child = 2 * at + 1) {
        if (child + 1 < m_heap.size() && m_heap[child + 1] < m_heap[child]) {
            ++child;
        }
        if (!(m_heap[child] < moving)) {
            break;
        }
        m_heap[at] = m_heap[child];
        at = child;
    }
    m_heap[at] = moving;
}

} // namespace va
