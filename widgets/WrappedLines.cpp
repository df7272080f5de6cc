#include "widgets/WrappedLines.h"

#include <QFontMetricsF>
#include <QTextLayout>
#include <QTextOption>

QStringList wrappedLines(const QString &text, const QFont &font, int maxWidth, int maxLines)
{
    QString whole = text;
    whole.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    whole.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(whole, font);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    QTextLine line = layout.createLine();
    for (; line.isValid() && lines.size() < maxLines; line = layout.createLine()) {
        line.setLineWidth(maxWidth);
        const int end = line.textStart() + line.textLength();
        QString part = whole.mid(line.textStart(), line.textLength());
        if (part.endsWith(QChar::LineSeparator)) {
            part.chop(1);
        } else {
            while (end < whole.size() && part.endsWith(QLatin1Char(' '))) { // where it was broken
                part.chop(1);
            }
        }
        lines.append(part);
    }
    layout.endLayout();
    if (line.isValid()) {
        const QString ellipsis(QChar(0x2026));
        const QFontMetricsF metrics(font);
        QString &last = lines.last();
        while (!last.isEmpty() && metrics.horizontalAdvance(last + ellipsis) > maxWidth) {
            last.chop(last.at(last.size() - 1).isLowSurrogate() ? 2 : 1);
        }
        last += ellipsis;
    }
    return lines;
}
