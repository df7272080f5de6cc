#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The bytes a text stands for: numbers of two hexadecimal digits per byte, in upper or lower case, separated by white
/// space or not at all, each with 0x before it or not. A single digit between blanks is a byte of its own. Nothing when
/// anything else is in the text or no byte at all.
std::optional<QByteArray> bytesFromHexText(const QString &text);

/// "01 A2 FF": what bytesFromHexText reads back.
QString hexTextFromBytes(const QByteArray &bytes);

/// 0 to 15, or -1 for a character that is no hexadecimal digit.
int hexDigitValue(QChar character);
