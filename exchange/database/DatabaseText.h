#pragma once

#include <QByteArray>
#include <QString>

/// The text of a database in UTF-8, and what it was in.
struct DatabaseText
{
    QByteArray utf8;
    QString encoding;
};

/// Without a name, UTF-8 where the bytes are that. Otherwise GBK where all of them are that and most of its characters
/// have two bytes from 0xA1 up, as written Chinese has: bytes above 0x7F of Western texts mostly stand alone. Otherwise
/// Windows-1252. encoding: a name that Qt knows; nothing is converted by one that it does not.
DatabaseText databaseText(const QByteArray &bytes, const QString &encoding = QString());
