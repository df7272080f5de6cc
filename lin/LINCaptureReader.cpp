#include "lin/LINCaptureReader.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <array>

LINCaptureReader::LINCaptureReader(QObject *parent)
    : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &LINCaptureReader::readSlice);
}

bool LINCaptureReader::start(const QString &path)
{
    cancel();
    m_file.setFileName(path);
    // Opening anything else, a pipe for instance, may block.
    if (!QFileInfo(path).isFile() || !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return false;
    }
    m_parser = LINCaptureParser();
    m_unread = m_file.size();
    m_timer.start(0);
    readSlice();
    return true;
}

void LINCaptureReader::cancel()
{
    m_timer.stop();
    m_file.close();
}

void LINCaptureReader::readSlice()
{
    QElapsedTimer clock;
    clock.start();
    static constexpr int PieceSize = 1 << 16;
    std::array<char, PieceSize> piece;
    qint64 size = 0;
    do {
        size = m_file.read(piece.data(), std::min<qint64>(PieceSize, m_unread));
        if (size > 0) {
            m_unread -= size;
            m_parser.feed(piece.data(), static_cast<int>(size));
        }
    } while (size > 0 && !m_parser.isFailed() && !clock.hasExpired(SliceMs));
    if (size > 0 && !m_parser.isFailed()) {
        return;
    }
    cancel();
    const auto frames = m_parser.finish();
    const bool isCapture = size == 0 && frames.has_value();
    emit sig_finished(isCapture ? *frames : QVector<CTableViewLIN::DataObject>(), isCapture);
}
