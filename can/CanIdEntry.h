#pragma once

#include "can/CanAcceptanceFilter.h"

#include <QString>

/// Why a typed range of identifiers cannot go into the list of the filter tool.
enum class CanIdEntryProblem { None, First, Last, Order, Listed, Full };

/// A typed range, and what is wrong with it; the range counts only when nothing is.
struct CanIdEntry
{
    CanIdRange range;
    CanIdEntryProblem problem = CanIdEntryProblem::None;
};

/// Most entries in the list of the filter tool.
constexpr int CanIdEntriesMax = 1000;

/// Checks a range typed in hexadecimal before it goes into a list. Without a text for its end it is one identifier.
/// First and Last: no number, or above the highest identifier of the frame type.
CanIdEntry checkedIdEntry(const QString &first, const QString &last, bool extended, const QVector<CanIdRange> &listed);
