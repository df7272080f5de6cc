#include "viewer/core/ColumnLayout.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace {

struct Standard
{
    const char *name; ///< in settings
    int width;
    bool isShown;
};

/// By FrameColumn.
constexpr std::array<Standard, FrameColumnCount> Standards{{{"number", 10, true},
                                                            {"absolute", 30, false},
                                                            {"sinceStart", 15, true},
                                                            {"sinceShown", 13, true},
                                                            {"sinceIdentifier", 13, false},
                                                            {"sinceMark", 15, false},
                                                            {"channel", 6, true},
                                                            {"direction", 8, true},
                                                            {"identifier", 9, true},
                                                            {"name", 14, true},
                                                            {"type", 11, true},
                                                            {"length", 5, true},
                                                            {"data", 25, true}}};

const Standard &standardOf(FrameColumn column)
{
    return Standards[static_cast<std::size_t>(column)];
}

} // namespace

ColumnLayout::ColumnLayout()
{
    for (int column = 0; column < FrameColumnCount; ++column) {
        const Standard &standard = standardOf(static_cast<FrameColumn>(column));
        m_columns.push_back({static_cast<FrameColumn>(column), double(standard.width), standard.isShown});
    }
}

ColumnLayout::ColumnLayout(const std::vector<Column> &columns)
{
    const auto add = [this](Column column) {
        const auto isSame = [&column](const Column &other) {
            return other.column == column.column;
        };
        if (std::none_of(m_columns.begin(), m_columns.end(), isSame)) {
            column.width = std::max(MinWidth, std::min(column.width, MaxWidth));
            m_columns.push_back(column);
        }
    };
    for (const Column &column : columns) {
        add(column);
    }
    const ColumnLayout standard;
    for (Column column : standard.columns()) {
        column.isShown = false;
        add(column);
    }
}

QByteArray ColumnLayout::toJson() const
{
    QJsonArray list;
    for (const Column &column : m_columns) {
        list.append(QJsonObject{{QStringLiteral("column"), QLatin1String(standardOf(column.column).name)},
                                {QStringLiteral("width"), column.width},
                                {QStringLiteral("shown"), column.isShown}});
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

ColumnLayout ColumnLayout::fromJson(const QByteArray &json)
{
    std::vector<Column> columns;
    const QJsonArray list = QJsonDocument::fromJson(json).array();
    for (const QJsonValue &value : list) {
        const QString name = value.toObject().value(QStringLiteral("column")).toString();
        const auto *const found = std::find_if(Standards.begin(), Standards.end(), [&name](const Standard &standard) {
            return name == QLatin1String(standard.name);
        });
        if (found != Standards.end()) {
            columns.push_back({static_cast<FrameColumn>(found - Standards.begin()),
                               value.toObject().value(QStringLiteral("width")).toDouble(found->width),
                               value.toObject().value(QStringLiteral("shown")).toBool(found->isShown)});
        }
    }
    const bool isAnyShown =
        std::any_of(columns.begin(), columns.end(), [](const Column &column) { return column.isShown; });
    return isAnyShown ? ColumnLayout(columns) : ColumnLayout();
}
