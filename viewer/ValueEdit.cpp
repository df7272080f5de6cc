#include "viewer/ValueEdit.h"

#include "viewer/core/PlotExpression.h"

ValueEdit::ValueEdit(QWidget *parent)
    : FilterEdit(parent)
{
    setObjectName(QStringLiteral("value"));
    setPlaceholderText(tr("Plot, such as  data[0] << 8 | data[1] of id == 0x123"));
    setToolTip(tr("A signal, a number of each frame, or “rate”; behind the word “of” a filter for the frames:\n"
                  "Speed\n"
                  "data[0] << 8 | data[1] of id == 0x123\n"
                  "rate of error\n"
                  "rate 100ms of id == 0x123 and dir == tx"));
    connect(this, &FilterEdit::sig_filterTaken, this, [this] {
        const QString taken = text().trimmed();
        if (!taken.isEmpty()) {
            clear();
            emit sig_valueTaken(taken);
        }
    });
}

/// An empty line is right, too.
std::optional<Filter> ValueEdit::parse(const QString &text, FilterError &error) const
{
    const bool isRight = text.trimmed().isEmpty() || PlotExpression::parse(text, source(), error);
    return isRight ? std::make_optional(Filter()) : std::nullopt;
}

FilterCompletion ValueEdit::completionAtCursor() const
{
    return PlotExpression::complete(text(), cursorPosition(), source().get());
}
