#pragma once

#include <QByteArray>
#include <QString>

class QFile;

/// The line end of text files on this system.
QByteArray platformLineEnd();

/// True when the open file is still the one that stands under path: not deleted, moved away or replaced.
bool isFileAt(const QFile &file, const QString &path);
