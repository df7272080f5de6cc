#pragma once

#include <QtEndian>

/// Numbers of files in either order of bytes.
class ByteOrder
{
public:
    explicit ByteOrder(bool isBig = false)
        : m_isBig(isBig)
    {
    }

    template<typename Number>
    Number number(const char *bytes) const
    {
        return m_isBig ? qFromBigEndian<Number>(bytes) : qFromLittleEndian<Number>(bytes);
    }

private:
    bool m_isBig;
};
