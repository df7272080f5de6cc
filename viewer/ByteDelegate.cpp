#include "viewer/ByteDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

QColor ByteDelegate::colorOf(Mark mark)
{
    constexpr int Alpha = 110;
    switch (mark) {
    case None:
        break;
    case Changed:
        return {240, 150, 0, Alpha};
    case Other:
        return {225, 50, 60, Alpha};
    case MovesHere:
        return {60, 130, 230, Alpha};
    }
    return Qt::transparent;
}

void ByteDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStringList bytes = cell.text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QByteArray marks = index.data(MarksRole).toByteArray();
    cell.text.clear();
    const QStyle *style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    const bool isSelected = (cell.state & QStyle::State_Selected) != 0;
    const QPalette::ColorGroup group = (cell.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
    const int blank = cell.fontMetrics.horizontalAdvance(QLatin1Char(' '));
    painter->save();
    painter->setClipRect(cell.rect);
    painter->setFont(cell.font);
    painter->setPen(cell.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
    int x = cell.rect.x() + margin;
    for (int i = 0; i < bytes.size() && x < cell.rect.right(); ++i) {
        const int width = cell.fontMetrics.horizontalAdvance(bytes.at(i));
        const QRect place(x, cell.rect.y(), width, cell.rect.height());
        if (i < marks.size() && marks.at(i) != None) {
            painter->fillRect(place.adjusted(-blank / 2, 1, blank / 2, -1), colorOf(static_cast<Mark>(marks.at(i))));
        }
        painter->drawText(place, Qt::AlignCenter | Qt::TextSingleLine, bytes.at(i));
        x += width + blank;
    }
    painter->restore();
}
