#include "capture/PayloadBlocks.h"

void PayloadBlocks::addBlock()
{
    m_blocks.emplace_back(new uchar[BlockSize]);
    m_used = 0;
}

void PayloadBlocks::truncateBehind(std::size_t place, quint32 size)
{
    m_blocks.resize(place / BlockSize + 1);
    m_used = static_cast<quint32>(place % BlockSize) + size;
}
