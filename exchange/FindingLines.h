#pragma once

#include "exchange/Findings.h"

#include <QStringList>

/// A line for each finding, with its place: "line 12: ..."; at the end how many more of the same there are. In the
/// user's language. count: of all findings, as Findings::count().
QStringList findingLines(const QVector<Finding> &kept, qint64 count);
