#pragma once

#include <QtGlobal>

#include <algorithm>

/// Which identifier a search for slaves asks next: 0 to 0x3E in order, a silent one six times. 0x3F is reserved (LIN
/// 2.x) and never asked.
class LINSlaveScan
{
public:
    static constexpr int Ids = 0x3F;
    static constexpr int Attempts = 6;

    void start() { *this = LINSlaveScan(); }
    /// To ask now; not once the scan is finished.
    quint8 id() const { return static_cast<quint8>(m_id); }
    /// id() has been asked; isAnswered: with success.
    void step(bool isAnswered)
    {
        ++m_attempts;
        if ((isAnswered || m_attempts == Attempts) && !isFinished()) {
            ++m_id;
            m_attempts = 0;
        }
    }
    bool isFinished() const { return m_id == Ids; }
    /// Identifiers that are done, 0 to 62; the last one makes no step any more.
    int progress() const { return std::min(m_id, Ids - 1); }

private:
    int m_id = 0;
    int m_attempts = 0;
};
