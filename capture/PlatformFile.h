#pragma once

#include <QByteArray>
#include <QString>

class QFile;

/// The line end of text files on this system.
QByteArray platformLineEnd();

/// True when the open file is still the one that stands under path: not deleted, moved away or replaced.
bool isFileAt(const QFile &file, const QString &path);

/// Returns when what was written to the open file has reached its disk, which may take seconds. False when the disk or
/// the drive reports that it could not; where nothing can be waited for there is nothing to report.
bool syncFile(const QFile &file);

/// Lets all threads of ordinary importance, the window's above all, go before the calling one.
void lowerThreadPriority();
