#include "viewer/core/ColorRules.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr quint32 WhiteColor = 0xFFFFFF;

QJsonValue colorToJson(const ColorRule::Color &color)
{
    return color ? QJsonValue(QLatin1Char('#') +
                              QString::number(*color, 16).toUpper().rightJustified(6, QLatin1Char('0')))
                 : QJsonValue();
}

ColorRule::Color colorFromJson(const QJsonValue &value)
{
    const QString text = value.toString();
    bool isRight = false;
    const quint32 color = text.mid(1).toUInt(&isRight, 16);
    return isRight && text.size() == 7 && text.startsWith(QLatin1Char('#')) && color <= WhiteColor
               ? ColorRule::Color(color)
               : ColorRule::Color();
}

} // namespace

QVector<ColorRule> ColorRule::standard()
{
    return {{true, QStringLiteral("error"), 0x8B0000, 0xFFD0D0},
            {true, QStringLiteral("refused"), 0x7A4100, 0xFFE3B8},
            {true, QStringLiteral("tx"), std::nullopt, 0xDDEBFF}};
}

QByteArray ColorRule::toJson(const QVector<ColorRule> &rules)
{
    QJsonArray list;
    for (const ColorRule &rule : rules) {
        list.append(QJsonObject{{QStringLiteral("on"), rule.isOn},
                                {QStringLiteral("filter"), rule.filter},
                                {QStringLiteral("text"), colorToJson(rule.text)},
                                {QStringLiteral("background"), colorToJson(rule.background)}});
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

std::optional<QVector<ColorRule>> ColorRule::fromJson(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray()) {
        return std::nullopt;
    }
    QVector<ColorRule> rules;
    const QJsonArray list = document.array();
    for (const QJsonValue &value : list) {
        const QJsonObject rule = value.toObject();
        const QString filter = rule.value(QStringLiteral("filter")).toString();
        if (!filter.isEmpty() && filter.size() <= Filter::MaxLength && rules.size() < MaxCount) {
            rules.append({rule.value(QStringLiteral("on")).toBool(true), filter,
                          colorFromJson(rule.value(QStringLiteral("text"))),
                          colorFromJson(rule.value(QStringLiteral("background")))});
        }
    }
    return rules;
}

ColorMatcher::ColorMatcher(const QVector<ColorRule> &rules, const std::shared_ptr<const SignalSource> &source)
{
    for (const ColorRule &rule : rules) {
        FilterError error{};
        const std::optional<Filter> filter = rule.isOn ? Filter::parse(rule.filter, source, error) : std::nullopt;
        if (filter && !filter->passesAll()) {
            m_entries.push_back({rule, *filter});
        }
    }
}

const ColorRule *ColorMatcher::matching(const BusFrameStore &store, qint64 row) const
{
    for (const Entry &entry : m_entries) {
        if (entry.filter.passes(store, row)) {
            return &entry.rule;
        }
    }
    return nullptr;
}
