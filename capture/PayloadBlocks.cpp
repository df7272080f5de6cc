#include "capture/PayloadBlocks.h"

void PayloadBlocks::addBlock()
{
    m_blocks.emplace_back(new uchar[BlockSize]);
    m_used = 0;
}

void PayloadBlocks::truncateBehind(quint32 place, quint32 size)
{
    m_blocks.resize(place / BlockSize + 1);
    m_used = place % BlockSize + size;
}
