#pragma once

#include "viewer/core/Filter.h"

#include <QByteArray>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

/// The colours that rows have when they pass a filter. The colours are those for dark letters on light ground; windows
/// turn their lightness round where the surroundings are dark.
struct ColorRule
{
    using Color = std::optional<quint32>; ///< 0xRRGGBB; nothing: as rows without a rule have it

    static constexpr int MaxCount = 100; ///< rules that are kept

    bool isOn = true;
    QString filter;
    Color text;
    Color background;

    bool operator==(const ColorRule &other) const
    {
        return isOn == other.isOn && filter == other.filter && text == other.text && background == other.background;
    }

    /// Those to begin with: error frames, refused ones, sent ones.
    static QVector<ColorRule> standard();
    static QByteArray toJson(const QVector<ColorRule> &rules);
    /// Leaves out what is not right, and what is beyond MaxCount; nothing where json is not a list of rules at all.
    static std::optional<QVector<ColorRule>> fromJson(const QByteArray &json);
};

/// Rules that are ready to be asked, with the names of one database. The first rule that is on and passes a row gives
/// its colours. A rule that is wrong or empty, or names a signal that the database does not have, passes no row.
class ColorMatcher
{
public:
    ColorMatcher() = default;
    /// source may be null.
    ColorMatcher(const QVector<ColorRule> &rules, const std::shared_ptr<const SignalSource> &source);

    /// Null where no rule passes the row.
    const ColorRule *matching(const BusFrameStore &store, qint64 row) const;

private:
    struct Entry
    {
        ColorRule rule;
        Filter filter;
    };

    std::vector<Entry> m_entries;
};
