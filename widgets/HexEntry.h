#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// How bytes are written as hexadecimal text, how such a text is read, and the rules by which a line of typed digits
/// becomes a payload of a fixed size.

/// The number's last digits in upper case, as many as are asked for, 1 to 8.
QString hexNumber(quint32 number, int digits);
void appendHexNumber(QString &text, quint32 number, int digits);
/// "01 A2 ", a blank behind each pair.
QString hexPairs(const QByteArray &bytes);
/// "01 A2 FF": what bytesFromHexText reads back.
QString hexTextFromBytes(const QByteArray &bytes);

/// The bytes a text stands for: numbers of two hexadecimal digits per byte, in upper or lower case, separated by white
/// space or not at all, each with 0x before it or not. A single digit between blanks is a byte of its own. Nothing when
/// anything else is in the text or no byte at all.
std::optional<QByteArray> bytesFromHexText(const QString &text);

/// The first eight bytes, each as two upper-case digits and a blank. The line never shows more.
QString shownPayload(const QByteArray &payload);

/// The digits in a text of digits and white space, in the case they have there, at most two for each of size bytes.
QString hexDigits(const QString &text, int size);

/// A blank behind every two digits.
QString groupedDigits(const QString &digits);

/// Where the cursor stands behind the first count digits of a grouped text: behind the blank, if there is one, or
/// before it.
int groupedPosition(int count, bool behindBlank);

/// Bytes of the digits from the first one on, the rest of size zero. A single last digit is a byte of its own.
QByteArray payloadFromDigits(const QString &digits, int size);
