#include "lin/LINSlaveScan.h"

#include <algorithm>

void LINSlaveScan::step(bool isAnswered)
{
    ++m_attempts;
    if ((isAnswered || m_attempts == Attempts) && !isFinished()) {
        ++m_id;
        m_attempts = 0;
    }
}

int LINSlaveScan::progress() const
{
    return std::min(m_id, Ids - 1);
}
