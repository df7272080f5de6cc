#include "exchange/FindingLines.h"

#include <QCoreApplication>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(FindingLines)
};

QString placeText(const Finding &finding)
{
    switch (finding.place) {
    case Finding::Line:
        return Texts::tr("line %1: ").arg(finding.number);
    case Finding::Offset:
        return Texts::tr("byte %1: ").arg(finding.number);
    case Finding::Frame:
        return Texts::tr("frame %1: ").arg(finding.number);
    case Finding::Nowhere:
        break;
    }
    return {};
}

} // namespace

QStringList findingLines(const QVector<Finding> &kept, qint64 count)
{
    QStringList lines;
    qint64 told = 0;
    for (const Finding &finding : kept) {
        const QString times = finding.count > 1 ? Texts::tr(" (%1 times)").arg(finding.count) : QString();
        lines.append(placeText(finding) + finding.text + times);
        told += finding.count;
    }
    if (count > told) {
        lines.append(Texts::tr("%1 more of the same").arg(count - told));
    }
    return lines;
}
