#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// A database that a capture is decoded with.
struct DatabaseChoice
{
    QString path;          ///< absolute
    QVector<int> channels; ///< from 0; empty: all
};

/// The databases of captures, kept in a folder.
namespace DatabaseChoices {

/// Databases of a capture at most.
constexpr int MaxCount = 64;

QByteArray toJson(const QString &capture, const QVector<DatabaseChoice> &choices);
/// Leaves out what is not right; nothing is left of another text.
QVector<DatabaseChoice> fromJson(const QByteArray &json);

/// Nothing where nothing is kept of the capture.
QVector<DatabaseChoice> load(const QString &folder, const QString &capture);
/// Makes the folder; without databases the capture's file goes. False when it cannot be written.
bool save(const QString &folder, const QString &capture, const QVector<DatabaseChoice> &choices);

/// "1, 3"; empty for all channels.
QString channelText(const QVector<int> &channels);
/// Of what a user types; nothing where that is not numbers from 1 to 65536 with commas. An empty text is all.
std::optional<QVector<int>> channelsOf(const QString &text);

} // namespace DatabaseChoices
