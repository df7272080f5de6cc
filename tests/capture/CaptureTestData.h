#pragma once

#include "capture/FrameCells.h"
#include "capture/FrameStore.h"

#include <QDir>
#include <QFile>

/// Frames, labels and files shared by the tests of capture/.
namespace CaptureTestData {

inline FrameLabels englishLabels()
{
    FrameLabels labels;
    labels.titles = {QStringLiteral("No."),       QStringLiteral("System Time"), QStringLiteral("Time Stamp"),
                     QStringLiteral("Direction"), QStringLiteral("ID"),          QStringLiteral("Protocol"),
                     QStringLiteral("Format"),    QStringLiteral("Type"),        QStringLiteral("Length"),
                     QStringLiteral("Data")};
    labels.words = {QStringLiteral("None"),         QStringLiteral("Revice"), QStringLiteral("Send successfully"),
                    QStringLiteral("Send failure"), QStringLiteral("CAN"),    QStringLiteral("CANFD"),
                    QStringLiteral("CANFD Speed"),  QStringLiteral("Data"),   QStringLiteral("Remote"),
                    QStringLiteral("Standard"),     QStringLiteral("Extend")};
    return labels;
}

inline FrameLabels chineseLabels()
{
    FrameLabels labels;
    labels.titles.fill(QStringLiteral("\u5e8f\u53f7"));
    labels.words = {QStringLiteral("\u65e0"),
                    QStringLiteral("\u63a5\u6536"),
                    QStringLiteral("\u53d1\u9001\u6210\u529f"),
                    QStringLiteral("\u53d1\u9001\u5931\u8d25"),
                    QStringLiteral("CAN"),
                    QStringLiteral("CANFD"),
                    QStringLiteral("CANFD\u52a0\u901f"),
                    QStringLiteral("\u6570\u636e\u5e27"),
                    QStringLiteral("\u8fdc\u7a0b\u5e27"),
                    QStringLiteral("\u6807\u51c6\u5e27"),
                    QStringLiteral("\u6269\u5c55\u5e27")};
    return labels;
}

/// A received standard data frame.
inline FrameRecord frame(quint32 id, const QByteArray &data = QByteArray())
{
    FrameRecord record;
    record.systemTime = QStringLiteral("10:20:30.400");
    record.direction = FrameRecord::Received;
    record.id = id & 0x1FFFFFFFU;
    record.data = data;
    return record;
}

inline FrameRecord sentFrame(quint32 id, quint8 direction = FrameRecord::SendSuccess)
{
    FrameRecord record = frame(id);
    record.direction = direction;
    return record;
}

/// The bytes 0, 1, 2 ...
inline QByteArray countingBytes(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i);
    }
    return bytes;
}

inline QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<cannot be opened>");
}

inline QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace CaptureTestData
