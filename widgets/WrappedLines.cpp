#include "widgets/WrappedLines.h"

#include <QFontMetricsF>
#include <QTextLayout>
#include <QTextOption>

namespace {
/// Appends the lines of one paragraph, maxLines at most. Answers whether all of it was appended.
bool appendParagraph(QStringList &lines, const QString &paragraph, const QFont &font, int maxWidth, int maxLines)
{
    QTextLayout layout(paragraph, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    int end = 0;
    for (QTextLine line = layout.createLine(); line.isValid() && lines.size() < maxLines; line = layout.createLine()) {
        line.setLineWidth(maxWidth);
        end = line.textStart() + line.textLength();
        QString part = paragraph.mid(line.textStart(), line.textLength());
        while (end < paragraph.size() && part.endsWith(QLatin1Char(' '))) {
            part.chop(1);
        }
        lines.append(part);
    }
    layout.endLayout();
    return end == paragraph.size();
}
} // namespace

QStringList wrappedLines(const QString &text, const QFont &font, int maxWidth, int maxLines)
{
    QString normal = text;
    normal.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    const QStringList paragraphs = normal.split(QLatin1Char('\n'));
    QStringList lines;
    bool isWhole = true;
    for (int i = 0; i < paragraphs.size() && isWhole; ++i) {
        isWhole = lines.size() < maxLines && appendParagraph(lines, paragraphs.at(i), font, maxWidth, maxLines);
    }
    if (!isWhole) {
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
