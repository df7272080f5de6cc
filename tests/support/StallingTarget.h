#pragma once

#include "capture/RealTimeWriter.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

/// Where a thread is held up until somebody lets it through, ten seconds at most. Any thread may call.
class Gate
{
public:
    void close() { setOpen(false); }
    void open() { setOpen(true); }
    void pass()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_isHolding = !m_isOpen;
        m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_isOpen; });
        m_isHolding = false;
    }
    bool isHolding() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_isHolding;
    }

private:
    void setOpen(bool open)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isOpen = open;
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_changed;
    bool m_isOpen = true;
    bool m_isHolding = false;
};

/// A target on a drive that does not answer while the gate is closed.
class StallingTarget : public RealTimeTarget
{
public:
    StallingTarget(std::unique_ptr<RealTimeTarget> target, std::shared_ptr<Gate> gate)
        : m_target(std::move(target))
        , m_gate(std::move(gate))
    {
    }

    bool append(const std::vector<FrameRecord> &rows, quint64 firstNumber) override
    {
        m_gate->pass();
        return m_target->append(rows, firstNumber);
    }
    bool sync() override
    {
        m_gate->pass();
        return m_target->sync();
    }

private:
    std::unique_ptr<RealTimeTarget> m_target;
    std::shared_ptr<Gate> m_gate;
};
