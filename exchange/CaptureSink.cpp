#include "exchange/CaptureSink.h"

#include "device/SaveTarget.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QSaveFile>

#include <utility>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(CaptureSink)
};

std::unique_ptr<QFileDevice> opened(const QString &path, CaptureSink::Way way)
{
    if (way == CaptureSink::Way::Growing) {
        auto file = std::make_unique<QFile>(path);
        return isFileTarget(path) && file->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)
                   ? std::move(file)
                   : nullptr;
    }
    auto file = std::make_unique<QSaveFile>(path);
    return openForSaving(*file, QIODevice::WriteOnly | QIODevice::Unbuffered) ? std::move(file) : nullptr;
}

} // namespace

CaptureSink::CaptureSink(QString name, std::unique_ptr<QFileDevice> file)
    : m_name(std::move(name))
    , m_file(std::move(file))
    , m_out(*m_file)
{
}

std::unique_ptr<CaptureSink> CaptureSink::open(const QString &path, Way way, QString &error)
{
    std::unique_ptr<QFileDevice> file = opened(path, way);
    if (file == nullptr) {
        error = Texts::tr("%1 cannot be written.").arg(path);
        return nullptr;
    }
    auto sink = std::make_unique<CaptureSink>(path, std::move(file));
    sink->m_takesTime = true;
    return sink;
}

bool CaptureSink::flush()
{
    return m_out.flush() && m_file->flush();
}

bool CaptureSink::commit(qint64 lastTime, QString &error)
{
    auto *whole = qobject_cast<QSaveFile *>(m_file.get());
    if (!flush() || (whole != nullptr && !whole->commit())) {
        error = Texts::tr("%1 cannot be written: %2").arg(m_name, m_file->errorString());
        return false;
    }
    if (whole == nullptr) {
        m_file->close();
    }
    if (lastTime >= 0 && m_takesTime) {
        // That of the last frame, as if the program had saved the capture then: its times have no date of their own.
        QFile file(m_name);
        if (file.open(QIODevice::ReadWrite)) {
            file.setFileTime(QDateTime::fromMSecsSinceEpoch(lastTime), QFileDevice::FileModificationTime);
        }
    }
    return true;
}
