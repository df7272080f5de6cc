#pragma once

#include <QByteArray>
#include <QString>

/// The rules by which a line of typed hexadecimal digits becomes a payload of a fixed size.

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
