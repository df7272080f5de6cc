#include "lin/LINCaptureReader.h"

#include "lin/LINCapture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <array>

class LINCaptureReaderPrivate
{
public:
    QFile file;
    LINCaptureParser parser;
    qint64 unread = 0; ///< bytes, of those that the file had at the beginning
    QTimer timer;      ///< runs while a file is read
};

LINCaptureReader::LINCaptureReader(QObject *parent)
    : QObject(parent)
    , m_p(std::make_unique<LINCaptureReaderPrivate>())
{
    connect(&m_p->timer, &QTimer::timeout, this, &LINCaptureReader::readSlice);
}

LINCaptureReader::~LINCaptureReader() = default;

bool LINCaptureReader::start(const QString &path)
{
    cancel();
    m_p->file.setFileName(path);
    // Opening anything else, a pipe for instance, may block.
    if (!QFileInfo(path).isFile() || !m_p->file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return false;
    }
    m_p->parser = LINCaptureParser();
    m_p->unread = m_p->file.size();
    m_p->timer.start(0);
    readSlice();
    return true;
}

void LINCaptureReader::cancel()
{
    m_p->timer.stop();
    m_p->file.close();
}

bool LINCaptureReader::isReading() const
{
    return m_p->timer.isActive();
}

void LINCaptureReader::readSlice()
{
    QElapsedTimer clock;
    clock.start();
    static constexpr int PieceSize = 1 << 16;
    std::array<char, PieceSize> piece;
    qint64 size = 0;
    do {
        size = m_p->file.read(piece.data(), std::min<qint64>(PieceSize, m_p->unread));
        if (size > 0) {
            m_p->unread -= size;
            m_p->parser.feed(piece.data(), static_cast<int>(size));
        }
    } while (size > 0 && !m_p->parser.isFailed() && !clock.hasExpired(SliceMs));
    if (size > 0 && !m_p->parser.isFailed()) {
        return;
    }
    cancel();
    const auto frames = m_p->parser.finish();
    const bool isCapture = size == 0 && frames.has_value();
    emit sig_finished(isCapture ? *frames : QVector<CTableViewLIN::DataObject>(), isCapture);
}
