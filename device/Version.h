#pragma once

#include <QString>

/// Compares two dotted versions by the parts that both have, so 1.2 and 1.2.5 are equal. 1: a is newer, -1: b is newer,
/// 0: neither, also for texts that are the same but for upper and lower case, -2: a part is no decimal number, as in
/// "V1.2".
int compareVersion(const QString &a, const QString &b);
