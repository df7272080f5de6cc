#include "exchange/command/CaptureSource.h"

#include "exchange/command/Terminal.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <utility>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(CaptureSource)
};

constexpr std::size_t HeadSize = 1U << 16U;
constexpr unsigned long WaitMs = 50;

/// Standard input. Unlike a QFile it gives what there is and does not wait for more, and its end is no error on any
/// system.
class StandardInput : public QIODevice
{
public:
    bool isSequential() const override { return true; }
    bool open(OpenMode mode) override
    {
        Terminal::makeBinary(Terminal::Input);
        return QIODevice::open(mode);
    }

protected:
    qint64 readData(char *data, qint64 size) override { return Terminal::readInput(data, size); }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

bool isStandardInput(const QString &path)
{
    return path == QLatin1String("-");
}

std::unique_ptr<QIODevice> deviceOf(const QString &path)
{
    if (isStandardInput(path)) {
        return std::make_unique<StandardInput>();
    }
    return std::make_unique<QFile>(path);
}

} // namespace

CaptureSource::CaptureSource(QString path, Options options)
    : m_path(std::move(path))
    , m_options(std::move(options))
    , m_device(deviceOf(m_path))
{
}

std::unique_ptr<CaptureSource> CaptureSource::open(const QString &path, const Options &options, QString &error)
{
    std::unique_ptr<CaptureSource> source(new CaptureSource(path, options));
    if (!source->openFile(error) || !source->findFormat(error)) {
        return nullptr;
    }
    const QDateTime ofFile = isStandardInput(path) ? QDateTime::currentDateTime() : QFileInfo(path).lastModified();
    const QDateTime date = options.date.isValid() ? options.date : ofFile;
    source->m_in.setGrowing(options.isFollowed);
    source->m_reader = source->m_format->reader(source->m_in, {date}, source->m_findings);
    source->m_idle.start();
    return source;
}

bool CaptureSource::openFile(QString &error)
{
    if (!isStandardInput(m_path) && QFileInfo(m_path).isDir()) {
        error = Texts::tr("%1 is a folder.").arg(m_path);
        return false;
    }
    if (m_device->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return true;
    }
    error = Texts::tr("%1 cannot be read: %2").arg(m_path, m_device->errorString());
    return false;
}

/// By what is in it; a damaged beginning may leave the name only.
bool CaptureSource::findFormat(QString &error)
{
    m_in.need(HeadSize);
    if (m_in.isBroken()) {
        error = Texts::tr("%1 cannot be read: %2").arg(m_path, m_device->errorString());
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
    const bool isShorter = !m_device->isSequential() && m_device->size() < m_in.offset();
    if (isShorter) {
        m_findings.add(Finding::Offset, m_device->size(), Texts::tr("the file has become shorter while it was read"));
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
