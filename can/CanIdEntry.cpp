#include "can/CanIdEntry.h"

#include "can/CanFrameInput.h"

CanIdEntry checkedIdEntry(const QString &first, const QString &last, bool extended, const QVector<CanIdRange> &listed)
{
    const std::optional<quint32> firstId = frameIdFromText(first, extended);
    const std::optional<quint32> lastId = last.isEmpty() ? firstId : frameIdFromText(last, extended);
    if (!firstId) {
        return {{}, CanIdEntryProblem::First};
    }
    if (!lastId) {
        return {{}, CanIdEntryProblem::Last};
    }
    if (*firstId > *lastId) {
        return {{}, CanIdEntryProblem::Order};
    }
    const CanIdRange range{*firstId, *lastId, extended};
    if (listed.contains(range)) {
        return {range, CanIdEntryProblem::Listed};
    }
    if (listed.size() >= CanIdEntriesMax) {
        return {range, CanIdEntryProblem::Full};
    }
    return {range, CanIdEntryProblem::None};
}
