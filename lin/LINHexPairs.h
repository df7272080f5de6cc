#pragma once

#include <QByteArray>
#include <QString>

/// The first 2 x length characters other than white space, as bytes; a pair that is not hexadecimal is dropped.
QByteArray bytesOfHexPairs(const QString &text, int length);
/// Whether there are 2 x length characters other than white space, whatever they are.
bool hasHexPairs(const QString &text, int length);
