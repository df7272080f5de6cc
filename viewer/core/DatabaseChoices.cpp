#include "viewer/core/DatabaseChoices.h"

#include "viewer/core/CapturePaths.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>

namespace {

constexpr qint64 MaxFileSize = 1 << 20;
constexpr int MaxChannel = 0xFFFF;

bool isChannel(int channel)
{
    return channel >= 0 && channel <= MaxChannel;
}

} // namespace

namespace DatabaseChoices {

QByteArray toJson(const QString &capture, const QVector<DatabaseChoice> &choices)
{
    QJsonArray list;
    for (const DatabaseChoice &choice : choices) {
        QJsonArray channels;
        for (const int channel : choice.channels) {
            channels.append(channel);
        }
        list.append(QJsonObject{{QStringLiteral("path"), choice.path}, {QStringLiteral("channels"), channels}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("capture"), capture}, {QStringLiteral("databases"), list}})
        .toJson();
}

QVector<DatabaseChoice> fromJson(const QByteArray &json)
{
    QVector<DatabaseChoice> choices;
    const QJsonArray list = QJsonDocument::fromJson(json).object().value(QStringLiteral("databases")).toArray();
    for (const QJsonValue &value : list) {
        DatabaseChoice choice{value.toObject().value(QStringLiteral("path")).toString(), {}};
        const QJsonArray channels = value.toObject().value(QStringLiteral("channels")).toArray();
        for (const QJsonValue &channel : channels) {
            choice.channels.append(channel.toInt(-1));
        }
        const bool isRight = !choice.path.isEmpty() && QDir::isAbsolutePath(choice.path) &&
                             std::all_of(choice.channels.begin(), choice.channels.end(), isChannel);
        if (isRight && choices.size() < MaxCount) {
            choices.append(choice);
        }
    }
    return choices;
}

QVector<DatabaseChoice> load(const QString &folder, const QString &capture)
{
    QFile file(CapturePaths::fileOf(folder, capture));
    return file.open(QIODevice::ReadOnly) ? fromJson(file.read(MaxFileSize)) : QVector<DatabaseChoice>();
}

bool save(const QString &folder, const QString &capture, const QVector<DatabaseChoice> &choices)
{
    const QString path = CapturePaths::fileOf(folder, capture);
    if (choices.isEmpty()) {
        return !QFile::exists(path) || QFile::remove(path);
    }
    QSaveFile file(path);
    return QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) &&
           file.write(toJson(CapturePaths::absolute(capture), choices)) > 0 && file.commit();
}

QString channelText(const QVector<int> &channels)
{
    QStringList numbers;
    for (const int channel : channels) {
        numbers.append(QString::number(channel + 1));
    }
    return numbers.join(QStringLiteral(", "));
}

std::optional<QVector<int>> channelsOf(const QString &text)
{
    QVector<int> channels;
    const QStringList numbers = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &number : numbers) {
        bool isRight = false;
        const int channel = number.trimmed().toInt(&isRight) - 1;
        if (number.trimmed().isEmpty()) {
            continue;
        }
        if (!isRight || !isChannel(channel)) {
            return std::nullopt;
        }
        if (!channels.contains(channel)) {
            channels.append(channel);
        }
    }
    std::sort(channels.begin(), channels.end());
    return channels;
}

} // namespace DatabaseChoices
