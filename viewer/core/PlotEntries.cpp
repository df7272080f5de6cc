#include "viewer/core/PlotEntries.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>

namespace {

constexpr qint64 MaxFileSize = qint64{4} * 1024 * 1024;
constexpr quint32 Opaque = 0xFF000000;

const QString CurvesKey = QStringLiteral("curves");
const QString TextKey = QStringLiteral("text");
const QString PaneKey = QStringLiteral("pane");
const QString ColorKey = QStringLiteral("color");
const QString HiddenKey = QStringLiteral("hidden");

QString fileOf(const QString &folder, const QString &capture)
{
    const QFileInfo info(capture);
    const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1);
    return QDir(folder).filePath(QString::fromLatin1(hash.toHex()) + QStringLiteral(".plots.json"));
}

/// "#12ab34"; 0 for another text.
quint32 colorOf(const QString &text)
{
    bool isNumber = false;
    const quint32 color = text.midRef(1).toUInt(&isNumber, 16);
    return text.size() == 7 && text.at(0) == QLatin1Char('#') && isNumber ? color | Opaque : 0;
}

QString colorText(quint32 color)
{
    return QStringLiteral("#%1").arg(color & ~Opaque, 6, 16, QLatin1Char('0'));
}

} // namespace

QByteArray PlotEntries::toJson(const std::vector<PlotEntry> &entries)
{
    QJsonArray list;
    for (const PlotEntry &entry : entries) {
        QJsonObject object{{TextKey, entry.text}, {PaneKey, entry.pane}};
        if (entry.color != 0) {
            object.insert(ColorKey, colorText(entry.color));
        }
        if (!entry.isShown) {
            object.insert(HiddenKey, true);
        }
        list.append(object);
    }
    return QJsonDocument(QJsonObject{{CurvesKey, list}}).toJson();
}

std::vector<PlotEntry> PlotEntries::fromJson(const QByteArray &json)
{
    std::vector<PlotEntry> entries;
    const QJsonArray list = QJsonDocument::fromJson(json).object().value(CurvesKey).toArray();
    for (const QJsonValue &value : list) {
        const QJsonObject object = value.toObject();
        PlotEntry entry;
        entry.text = object.value(TextKey).toString();
        entry.pane = std::min(std::max(object.value(PaneKey).toInt(), 0), MaxPanes - 1);
        entry.color = colorOf(object.value(ColorKey).toString());
        entry.isShown = !object.value(HiddenKey).toBool();
        const bool isKnown = std::any_of(entries.begin(), entries.end(),
                                         [&entry](const PlotEntry &other) { return other.text == entry.text; });
        if (!entry.text.trimmed().isEmpty() && entry.text.size() <= MaxText && !isKnown && entries.size() < MaxCount) {
            entries.push_back(entry);
        }
    }
    return entries;
}

std::vector<PlotEntry> PlotEntries::load(const QString &folder, const QString &capture)
{
    QFile file(fileOf(folder, capture));
    return file.open(QIODevice::ReadOnly) ? fromJson(file.read(MaxFileSize)) : std::vector<PlotEntry>();
}

bool PlotEntries::save(const std::vector<PlotEntry> &entries, const QString &folder, const QString &capture)
{
    const QString path = fileOf(folder, capture);
    if (entries.empty()) {
        return !QFile::exists(path) || QFile::remove(path);
    }
    QSaveFile file(path);
    const QByteArray json = toJson(entries);
    return QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) && file.write(json) == json.size() && file.commit();
}
