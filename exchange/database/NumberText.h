#pragma once

#include <QtGlobal>

#include <string_view>

/// Numbers as text, behind each other in memory that has room: each takes at most MaxNumberText bytes. All return the
/// end.
constexpr std::size_t MaxNumberText = 40;

/// digits: 0 to 18.
quint64 powerOfTen(int digits);

char *putUnsigned(char *to, quint64 value);
char *putSigned(char *to, qint64 value);
/// value / 10^digits, without zeros at the end of a fraction. digits: 0 to 18.
char *putDecimal(char *to, qint64 value, int digits);
/// value / 10^digits, with all digits of the fraction.
char *putFixed(char *to, qint64 value, int digits);
/// The shortest text that gives the same number when it is read; nan, inf, -inf.
char *putReal(char *to, double value);
char *putReal(char *to, float value);
/// Two hexadecimal digits for each byte.
char *putBytes(char *to, const uchar *bytes, int count);
/// A cell by RFC 4180: in quotation marks where it has a comma, a quotation mark or a line end. Takes at most twice its
/// bytes and two.
char *putCell(char *to, std::string_view utf8);
