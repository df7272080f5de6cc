#pragma once

#include <QByteArray>

/// The identifier after id. The highest one of the frame type, frameIdMax(), stays.
quint32 incrementedFrameId(quint32 id, bool extended);

/// The payload after data, read as a little-endian counter. It stops when all bytes are 0xFF, it does not wrap.
QByteArray incrementedPayload(QByteArray data);
