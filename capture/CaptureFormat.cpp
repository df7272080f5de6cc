#include "capture/CaptureFormat.h"

#include "capture/CaptureReader.h"
#include "capture/CaptureWriter.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

const std::vector<CaptureFormat> &captureFormats()
{
    static const std::vector<CaptureFormat> formats = {
        {CANFile::CAN, ".can", QT_TRANSLATE_NOOP("CaptureFormat", "CAN File(*.can)"), nullptr,
         QT_TRANSLATE_NOOP("CaptureFormat", "CAN(*.can)"), nullptr, nullptr, false, readCan, writeCan},
        {CANFile::CANFD, ".canfd", QT_TRANSLATE_NOOP("CaptureFormat", "CANFD File(*.canfd)"), nullptr,
         QT_TRANSLATE_NOOP("CaptureFormat", "CANFD(*.canfd)"), nullptr, nullptr, false, readCanFd, writeCanFd},
        {CANFile::CSV, ".csv", QT_TRANSLATE_NOOP("CaptureFormat", "Csv File(*.csv)"),
         QT_TRANSLATE_NOOP("CaptureFormat", "CSV File(*.csv)"), QT_TRANSLATE_NOOP("CaptureFormat", "Csv(*.csv)"), ",",
         ",", false, readText, writeText},
        {CANFile::Text, ".txt", QT_TRANSLATE_NOOP("CaptureFormat", "Text File(*.txt)"),
         QT_TRANSLATE_NOOP("CaptureFormat", "Text File(*.txt)"), QT_TRANSLATE_NOOP("CaptureFormat", "Text(*.txt)"),
         "     ", "   ", true, readText, writeText},
    };
    return formats;
}

const CaptureFormat &captureFormat(CANFile::FileType type)
{
    return captureFormats().at(type);
}

const CaptureFormat *captureFormat(const QString &path)
{
    const auto &formats = captureFormats();
    const auto found = std::find_if(formats.begin(), formats.end(), [&path](const CaptureFormat &format) {
        return path.endsWith(QLatin1String(format.ending), Qt::CaseInsensitive);
    });
    return found != formats.end() ? &*found : nullptr;
}

QString captureFilter(const char *filter)
{
    return QCoreApplication::translate("CaptureFormat", filter);
}

QString captureSaveFilters()
{
    QStringList filters;
    for (const CaptureFormat &format : captureFormats()) {
        filters.append(captureFilter(format.saveFilter));
    }
    return filters.join(QLatin1String(";;"));
}

/// From the last one to the first.
QString captureRealTimeFilters()
{
    QStringList filters;
    for (const CaptureFormat &format : captureFormats()) {
        if (format.realTimeFilter != nullptr) {
            filters.prepend(captureFilter(format.realTimeFilter));
        }
    }
    return filters.join(QLatin1String(";;"));
}
