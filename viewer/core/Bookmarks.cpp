#include "viewer/core/Bookmarks.h"

#include "viewer/core/CapturePaths.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>

namespace {

constexpr qint64 MaxFileSize = qint64{16} * 1024 * 1024;
constexpr double MaxRow = 1e15;

} // namespace

bool Bookmarks::set(qint64 row, const QString &note)
{
    if (m_notes.size() >= MaxCount && !m_notes.contains(row)) {
        return false;
    }
    m_notes[row] = note.left(MaxNote);
    return true;
}

qint64 Bookmarks::next(qint64 row) const
{
    const auto found = m_notes.upperBound(row);
    return found != m_notes.end() ? found.key() : -1;
}

qint64 Bookmarks::previous(qint64 row) const
{
    const auto found = m_notes.lowerBound(row);
    return found != m_notes.begin() ? std::prev(found).key() : -1;
}

QByteArray Bookmarks::toJson(const QString &capture) const
{
    QJsonArray list;
    for (auto it = m_notes.begin(); it != m_notes.end(); ++it) {
        list.append(QJsonObject{{QStringLiteral("row"), it.key()}, {QStringLiteral("note"), it.value()}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("capture"), capture}, {QStringLiteral("bookmarks"), list}})
        .toJson();
}

Bookmarks Bookmarks::fromJson(const QByteArray &json)
{
    Bookmarks bookmarks;
    const QJsonArray list = QJsonDocument::fromJson(json).object().value(QStringLiteral("bookmarks")).toArray();
    for (const QJsonValue &value : list) {
        const double row = value.toObject().value(QStringLiteral("row")).toDouble(-1);
        if (row >= 0 && row <= MaxRow) {
            bookmarks.set(static_cast<qint64>(row), value.toObject().value(QStringLiteral("note")).toString());
        }
    }
    return bookmarks;
}

Bookmarks Bookmarks::load(const QString &folder, const QString &capture)
{
    QFile file(CapturePaths::fileOf(folder, capture));
    return file.open(QIODevice::ReadOnly) ? fromJson(file.read(MaxFileSize)) : Bookmarks();
}

bool Bookmarks::save(const QString &folder, const QString &capture) const
{
    const QString path = CapturePaths::fileOf(folder, capture);
    if (m_notes.isEmpty()) {
        return !QFile::exists(path) || QFile::remove(path);
    }
    QSaveFile file(path);
    return QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) &&
           file.write(toJson(CapturePaths::absolute(capture))) > 0 && file.commit();
}
