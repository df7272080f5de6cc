#pragma once

#include <QtGlobal>

#include <string_view>

class TextLine;

/// The start of a TRC file's times: days since 1899-12-30 of the clock on the wall here, "41435.6239874884".
/// Nanoseconds from 1970-01-01 00:00 UTC, to the microsecond; 0 for any other text.
qint64 timeOfTrcDays(std::string_view text);
/// The same, to the millisecond.
void addTrcDays(TextLine &line, qint64 nanoseconds);

/// The date for people to read, "10.06.2013 14:58:02.880", with any more digits behind; in the same way.
qint64 timeOfTrcDate(std::string_view text);
void addTrcDate(TextLine &line, qint64 nanoseconds);
