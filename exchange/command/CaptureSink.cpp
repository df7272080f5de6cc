#include "exchange/command/CaptureSink.h"

#include "device/SaveTarget.h"
#include "exchange/command/Terminal.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>
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

CaptureSink::CaptureSink(QString path, std::unique_ptr<QFileDevice> file)
    : m_path(std::move(path))
    , m_file(std::move(file))
    , m_out(*m_file)
{
}

std::unique_ptr<CaptureSink> CaptureSink::open(const QString &path, bool isReplaced, Way way, QString &error)
{
    std::unique_ptr<QFileDevice> file;
    if (path == QLatin1String("-")) {
        Terminal::makeBinary(Terminal::Output);
        auto output = std::make_unique<QFile>();
        output->open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
        file = std::move(output);
    } else if (!isReplaced && (QFileInfo::exists(path) || QFileInfo(path).isSymLink())) {
        error = Texts::tr("%1 exists already. It is replaced with --force only.").arg(path);
        return nullptr;
    } else {
        file = opened(path, way);
    }
    if (file == nullptr) {
        error = Texts::tr("%1 cannot be written.").arg(path);
        return nullptr;
    }
    return std::unique_ptr<CaptureSink>(new CaptureSink(path, std::move(file)));
}

bool CaptureSink::flush()
{
    return m_out.flush() && m_file->flush();
}

bool CaptureSink::commit(qint64 lastTime, QString &error)
{
    auto *whole = qobject_cast<QSaveFile *>(m_file.get());
    if (!flush() || (whole != nullptr && !whole->commit())) {
        error = Texts::tr("%1 cannot be written: %2").arg(m_path, m_file->errorString());
        return false;
    }
    if (whole == nullptr) {
        m_file->close();
    }
    if (lastTime >= 0 && m_path != QLatin1String("-")) {
        // That of the last frame, as if the program had saved the capture then: its times have no date of their own.
        QFile file(m_path);
        if (file.open(QIODevice::ReadWrite)) {
            file.setFileTime(QDateTime::fromMSecsSinceEpoch(lastTime), QFileDevice::FileModificationTime);
        }
    }
    return true;
}
