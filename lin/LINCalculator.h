#pragma once

#include <QString>

#include <optional>

/// What belongs to a frame besides its identifier and data.
struct LINCalculation
{
    quint8 pid;
    quint8 checksum;
};

/// id 0 to 0x3F; data are hexadecimal digits with any white space between them, of which the first 2 x length count.
/// Nothing when there are fewer.
std::optional<LINCalculation> calculateLIN(quint8 id, int length, const QString &data, bool enhanced);
