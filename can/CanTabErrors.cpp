#include "can/CanTabErrors.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <array>
#include <iterator>

namespace {

/// The place of these texts in the translations.
class ErrorText
{
    Q_DECLARE_TR_FUNCTIONS(ErrorText)
};

struct Kind
{
    QString brief;
    QString words;
    quint64 count;
};

/// The kinds of errors that there are.
QVector<Kind> kindsOf(const CanTabErrors &errors)
{
    const std::array<Kind, 3> all{
        Kind{ErrorText::tr("Full %1"), ErrorText::tr("Frames not listed because the table is full: %1"),
             errors.unlisted},
        Kind{ErrorText::tr("Send %1"), ErrorText::tr("Frames that the adapter refused to send: %1"), errors.refused},
        Kind{ErrorText::tr("Recv %1"), ErrorText::tr("Errors of the adapter while receiving: %1"), errors.receiving},
    };
    QVector<Kind> kinds;
    std::copy_if(all.begin(), all.end(), std::back_inserter(kinds), [](const Kind &kind) { return kind.count > 0; });
    return kinds;
}

QString shortNumber(quint64 count)
{
    constexpr quint64 Exact = 10000;
    constexpr quint64 Thousand = 1000;
    constexpr std::array<char, 4> Units = {'k', 'M', 'G', 'T'};
    if (count < Exact) {
        return QString::number(count);
    }
    std::size_t unit = 0;
    for (count /= Thousand; count >= Thousand && unit + 1 < Units.size(); count /= Thousand) {
        ++unit;
    }
    return QString::number(count) + QLatin1Char(Units[unit]);
}

} // namespace

QString errorText(const CanTabErrors &errors)
{
    const QVector<Kind> kinds = kindsOf(errors);
    if (kinds.isEmpty()) {
        return {};
    }
    const QString text = kinds.size() == 1 ? kinds.first().brief : ErrorText::tr("Errors %1");
    return text.arg(shortNumber(errors.unlisted + errors.refused + errors.receiving));
}

QString errorToolTip(const CanTabErrors &errors)
{
    const QVector<Kind> kinds = kindsOf(errors);
    if (kinds.isEmpty()) {
        return {};
    }
    QStringList lines{ErrorText::tr("Since the table was last cleared:")};
    for (const Kind &kind : kinds) {
        lines.append(kind.words.arg(QLocale().toString(kind.count)));
    }
    return lines.join(QLatin1Char('\n'));
}
