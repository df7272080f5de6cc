#include "viewer/CaptureKinds.h"

#include "exchange/ExchangeFormat.h"

#include <QCoreApplication>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(CaptureKinds)
};

QStringList patterns(const ExchangeFormat &format)
{
    QStringList endings = QString::fromLatin1(format.endings).split(QLatin1Char(' '));
    for (QString &ending : endings) {
        ending.prepend(QLatin1Char('*'));
    }
    return endings;
}

} // namespace

QString CaptureKinds::filter(const ExchangeFormat &format)
{
    return QStringLiteral("%1 (%2)").arg(QCoreApplication::translate("ExchangeFormat", format.title),
                                         patterns(format).join(QLatin1Char(' ')));
}

QStringList CaptureKinds::openFilters()
{
    QStringList all;
    QStringList filters;
    for (const ExchangeFormat &format : exchangeFormats()) {
        all += patterns(format);
        filters.append(filter(format));
    }
    filters.prepend(Texts::tr("Captures (%1)").arg(all.join(QLatin1Char(' '))));
    filters.append(Texts::tr("All files (*)"));
    return filters;
}

QVector<const ExchangeFormat *> CaptureKinds::written()
{
    QVector<const ExchangeFormat *> kinds;
    for (const ExchangeFormat &format : exchangeFormats()) {
        if (format.writer != nullptr) {
            kinds.append(&format);
        }
    }
    return kinds;
}
