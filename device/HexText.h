#pragma once

#include <QByteArray>
#include <QString>

/// Hexadecimal numbers and bytes as they are shown everywhere: in upper case.

/// The number's last digits, as many as are asked for, 1 to 8.
QString hexNumber(quint32 number, int digits);
void appendHexNumber(QString &text, quint32 number, int digits);
/// "01 A2 ", a blank behind each pair.
QString hexPairs(const QByteArray &bytes);
