#include "app/DownloadFileName.h"

#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace {
bool isRefused(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\') || character == QLatin1Char(':') ||
           character.category() == QChar::Other_Control;
}

/// Windows takes these for devices in every folder, with any ending, and ignores blanks before the ending.
bool isDevice(const QString &name)
{
    static const QRegularExpression device(
        QStringLiteral(R"(^(con|prn|aux|nul|conin\$|conout\$|(com|lpt)[0-9\x{B9}\x{B2}\x{B3}]) *(\.|$))"),
        QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}
} // namespace

QString downloadFileName(const QUrl &url)
{
    const QString path = url.path(QUrl::FullyEncoded);
    const QByteArray bytes =
        QByteArray::fromPercentEncoding(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1).toLatin1());
    QString name = QString::fromUtf8(bytes);
    if (name.isEmpty() || name.toUtf8() != bytes || name.endsWith(QLatin1Char('.')) || name.back().isSpace()) {
        return {};
    }
    if (std::any_of(name.cbegin(), name.cend(), isRefused) || isDevice(name)) {
        return {};
    }
    return name;
}
