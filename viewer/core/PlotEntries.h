#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// A curve as users asked for it.
struct PlotEntry
{
    QString text;      ///< see PlotExpression
    int pane = 0;      ///< from the top, 0 to PlotEntries::MaxPanes - 1
    quint32 color = 0; ///< 0xRRGGBB with 0xFF000000; 0: the next one that suits the window's colours
    bool isShown = true;
};

/// The curves that were drawn of a capture, kept from one run to the next.
namespace PlotEntries {

constexpr int MaxCount = 100;
constexpr int MaxPanes = 12;
constexpr int MaxText = 2000; ///< characters

QByteArray toJson(const std::vector<PlotEntry> &entries);
/// Leaves out what is not right; nothing is left of another text.
std::vector<PlotEntry> fromJson(const QByteArray &json);

/// From a file of folder that belongs to the capture's path alone. Nothing where there is no such file.
std::vector<PlotEntry> load(const QString &folder, const QString &capture);
/// Makes the folder; without entries the file goes. False when it cannot be written.
bool save(const std::vector<PlotEntry> &entries, const QString &folder, const QString &capture);

} // namespace PlotEntries
