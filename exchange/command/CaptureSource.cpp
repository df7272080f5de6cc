#include "exchange/command/CaptureSource.h"

#include "exchange/command/Terminal.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <cstdio>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(CaptureSource)
};

constexpr std::size_t HeadSize = 1U << 16U;
constexpr unsigned long WaitMs = 50;

} // namespace

CaptureSource::CaptureSource(const QString &path, const Options &options)
    : m_path(path)
    , m_options(options)
{
}

std::unique_ptr<CaptureSource> CaptureSource::open(const QString &path, const Options &options, QString &error)
{
    std::unique_ptr<CaptureSource> source(new CaptureSource(path, options));
    if (!source->openFile(error) || !source->findFormat(error)) {
        return nullptr;
    }
    const bool isFile = path != QLatin1String("-");
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime date = options.date.isValid() ? options.date : isFile ? QFileInfo(path).lastModified() : now;
    source->m_in.setGrowing(options.isFollowed);
    source->m_reader = source->m_format->reader(source->m_in, {date}, source->m_findings);
    source->m_idle.start();
    return source;
}

bool CaptureSource::openFile(QString &error)
{
    if (m_path == QLatin1String("-")) {
        Terminal::makeBinary(Terminal::Input);
        if (m_file.open(stdin, QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            return true;
        }
    } else {
        m_file.setFileName(m_path);
        if (QFileInfo(m_path).isDir()) {
            error = Texts::tr("%1 is a folder.").arg(m_path);
            return false;
        }
        if (m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            return true;
        }
    }
    error = Texts::tr("%1 cannot be read: %2").arg(m_path, m_file.errorString());
    return false;
}

/// By what is in it; a damaged beginning may leave the name only.
bool CaptureSource::findFormat(QString &error)
{
    m_in.need(HeadSize);
    if (m_in.isBroken()) {
        error = Texts::tr("%1 cannot be read: %2").arg(m_path, m_file.errorString());
        return false;
    }
    m_format = m_options.format != nullptr ? m_options.format : recognisedFormat(m_in.window().substr(0, HeadSize));
    if (m_format == nullptr) {
        m_format = exchangeFormatOfPath(m_path);
    }
    if (m_format == nullptr) {
        error = Texts::tr("%1 is no capture of a known kind. Name the kind with --from.").arg(m_path);
        return false;
    }
    return true;
}

int CaptureSource::read(BusFrame *frames, int room)
{
    const int count = m_reader->read(frames, room);
    if (count > 0 && m_in.isGrowing()) {
        m_idle.restart();
    }
    return count;
}

bool CaptureSource::waitForMore()
{
    const bool isShorter = !m_file.isSequential() && m_file.size() < m_in.offset();
    if (isShorter) {
        m_findings.add(Finding::Offset, m_file.size(), Texts::tr("the file has become shorter while it was read"));
    }
    const double idleSeconds = static_cast<double>(m_idle.elapsed()) / 1000;
    const bool isIdle = m_options.idleSeconds > 0 && idleSeconds >= m_options.idleSeconds;
    if (isShorter || isIdle || Terminal::isInterrupted()) {
        m_in.setGrowing(false);
        return false;
    }
    QThread::msleep(WaitMs);
    return true;
}
