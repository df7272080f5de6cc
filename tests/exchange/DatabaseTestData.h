#pragma once

#include "exchange/BusFrame.h"
#include "exchange/database/DatabaseFile.h"

#include <QFile>

#include <algorithm>

/// A golden database.
inline QByteArray goldenDatabase(const QString &name)
{
    QFile file(QStringLiteral(X9_TEST_DATA "/exchange/database/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// line:column text, for each finding.
inline QStringList findingsOf(const Database &database)
{
    QStringList found;
    for (const DatabaseFinding &finding : database.findings) {
        found.append(QStringLiteral("%1:%2 %3").arg(finding.place.line).arg(finding.place.column).arg(finding.text));
    }
    return found;
}

inline BusFrame frameWith(quint32 identifier, const QByteArray &hex, quint16 flags = 0)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    BusFrame frame;
    frame.identifier = identifier;
    frame.flags = flags;
    frame.length = static_cast<quint8>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), frame.data.begin());
    return frame;
}
