#include "viewer/core/CaptureFile.h"

#include "capture/PlatformFile.h"
#include "exchange/ByteInput.h"
#include "exchange/ExchangeFormat.h"

#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 HeadSize = 1 << 16;

class FileStream : public CaptureStream
{
public:
    explicit FileStream(const QString &path)
        : m_file(path)
    {
    }

    QFile &file() { return m_file; }
    void begin(const ExchangeFormat &format, Findings &findings)
    {
        m_in = std::make_unique<ByteInput>(m_file);
        m_reader = format.reader(*m_in, {QFileInfo(m_file).lastModified()}, findings);
    }

    FrameReader &reader() override { return *m_reader; }
    qint64 position() const override { return m_in->offset(); }
    qint64 size() const override { return m_file.isSequential() ? 0 : m_file.size(); }
    void setGrowing(bool growing) override { m_in->setGrowing(growing); }
    bool isBroken() const override { return m_in->isBroken(); }
    bool isInPlace() const override
    {
        return isFileAt(m_file, m_file.fileName()) && (m_file.isSequential() || m_file.size() >= position());
    }

private:
    QFile m_file;
    std::unique_ptr<ByteInput> m_in;
    std::unique_ptr<FrameReader> m_reader;
};

} // namespace

std::unique_ptr<CaptureStream> CaptureFile::open(const QString &path, Findings &findings, QString &error)
{
    // A pipe or a device could keep one waiting for ever, or have no end.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        error = tr("This is not a file.");
        return nullptr;
    }
    auto stream = std::make_unique<FileStream>(path);
    QFile &file = stream->file();
    if (!file.open(QIODevice::ReadOnly)) {
        error = tr("The file cannot be opened: %1").arg(file.errorString());
        return nullptr;
    }
    const QByteArray head = file.peek(HeadSize);
    const ExchangeFormat *format = recognisedFormat({head.constData(), static_cast<std::size_t>(head.size())});
    if (format == nullptr) {
        format = exchangeFormatOfPath(path);
    }
    if (format == nullptr) {
        error = tr("The file is of no known kind.");
        return nullptr;
    }
    stream->begin(*format, findings);
    return stream;
}
