#pragma once

#include <QIODevice>
#include <QString>

class QSaveFile;

/// Whether a file can stand under this path: nothing does yet, or an ordinary file, also behind symbolic links. A pipe
/// or a device must neither be opened, which could wait for ever, nor replaced by a file.
bool isFileTarget(const QString &path);

/// Opens a file that replaces what stands under its name when it is committed. In a folder where nothing can be created
/// an existing file is written in place. False when it cannot be opened or is no target for a file.
bool openForSaving(QSaveFile &file, QIODevice::OpenMode mode = QIODevice::WriteOnly);
