#pragma once

#include <QByteArray>
#include <QtGlobal>

/// Protected identifier and checksums of LIN frames (LIN 2.x).

/// What a checksum byte matches.
enum LINChecksum {
    LINChecksumClassic = 0,  ///< over the data
    LINChecksumEnhanced = 1, ///< over the protected identifier and the data
    LINChecksumNone = 2,     ///< neither
};

/// The identifier (bits 6 and 7 are ignored) with its parity: bit 6 = ID0^ID1^ID2^ID4, bit 7 = !(ID1^ID3^ID4^ID5).
quint8 calcPID(quint8 id);
/// The inverted sum, its carries added in once. Without data: 0xFF when classic.
quint8 calcChecksum(quint8 id, bool enhanced, const QByteArray &data);
/// A LINChecksum; classic where both match.
int checkChecksum(quint8 id, quint8 checksum, const QByteArray &data);
