#include "viewer/PlotCurveList.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QSignalBlocker>
#include <QStyle>

namespace {

enum Column { Name, First, Second, Difference, Pane, ColumnCount };

constexpr int ValueCharacters = 11;

QIcon colorIcon(const QColor &color, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(color);
    QIcon icon(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected); // not tinted as what is selected
    return icon;
}

} // namespace

PlotCurveList::PlotCurveList(QWidget *parent)
    : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("curves"));
    setAccessibleName(tr("Curves"));
    setColumnCount(ColumnCount);
    setHeaderLabels({tr("Curve"), tr("At cursor"), tr("At second"), tr("Difference"), tr("Pane")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTabKeyNavigation(false);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(Name, QHeaderView::Stretch);
    const int character = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    setColumnWidth(Pane, fontMetrics().horizontalAdvance(headerItem()->text(Pane)) + 3 * character);
    for (const int column : {First, Second, Difference}) {
        setColumnWidth(column, ValueCharacters * character);
    }
    setSecondShown(false);
    connect(this, &QTreeWidget::itemChanged, this, &PlotCurveList::slot_itemChanged);
}

void PlotCurveList::fillRow(QTreeWidgetItem &item, const Row &row) const
{
    const bool isRight = row.problem.isEmpty();
    item.setText(Name, row.name);
    item.setToolTip(Name, isRight ? row.name : row.name + QLatin1Char('\n') + row.problem);
    item.setIcon(Name, isRight ? colorIcon(row.color, fontMetrics().height() * 2 / 3)
                               : style()->standardIcon(QStyle::SP_MessageBoxWarning));
    item.setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren);
    item.setCheckState(Name, row.isShown ? Qt::Checked : Qt::Unchecked);
    item.setText(Pane, QString::number(row.pane + 1));
    item.setText(First, isRight ? QString() : row.problem);
    for (const int column : {Pane, First, Second, Difference}) {
        item.setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
}

void PlotCurveList::setRows(const QVector<Row> &rows)
{
    const QSignalBlocker blocker(this);
    while (topLevelItemCount() > rows.size()) {
        delete takeTopLevelItem(topLevelItemCount() - 1);
    }
    for (int i = 0; i < rows.size(); ++i) {
        if (i >= topLevelItemCount()) {
            addTopLevelItem(new QTreeWidgetItem);
        }
        fillRow(*topLevelItem(i), rows.at(i));
    }
}

void PlotCurveList::setValues(int row, const Values &values)
{
    const QSignalBlocker blocker(this);
    QTreeWidgetItem &item = *topLevelItem(row);
    item.setText(First, values.first);
    item.setText(Second, values.second);
    item.setText(Difference, values.difference);
    viewport()->update();
}

void PlotCurveList::setSecondShown(bool isShown)
{
    setColumnHidden(Second, !isShown);
    setColumnHidden(Difference, !isShown);
    const int characters = isShown ? 18 + 3 * ValueCharacters : 20 + ValueCharacters; // the name's and the values'
    setMinimumWidth(columnWidth(Pane) + fontMetrics().horizontalAdvance(QLatin1Char('0')) * characters);
}

int PlotCurveList::currentRow() const
{
    return indexOfTopLevelItem(currentItem());
}

void PlotCurveList::slot_itemChanged(QTreeWidgetItem *item, int column)
{
    if (column == Name) {
        emit sig_shownChanged(indexOfTopLevelItem(item), item->checkState(Name) == Qt::Checked);
    }
}

void PlotCurveList::keyPressEvent(QKeyEvent *event)
{
    const int row = currentRow();
    const bool isControl = (event->modifiers() & Qt::ControlModifier) != 0;
    if (row >= 0 && event->key() == Qt::Key_Delete) {
        emit sig_removeWanted(row);
    } else if (row >= 0 && isControl && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        emit sig_paneWanted(row, event->key() == Qt::Key_Up ? -1 : 1);
    } else if (row >= 0 && isControl && event->key() == Qt::Key_Return) {
        emit sig_colorWanted(row);
    } else {
        QTreeWidget::keyPressEvent(event);
    }
}

void PlotCurveList::contextMenuEvent(QContextMenuEvent *event)
{
    const int row = currentRow();
    if (row < 0) {
        return;
    }
    const bool isKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place =
        isKeyboard ? viewport()->mapToGlobal(visualItemRect(currentItem()).bottomLeft()) : event->globalPos();
    QMenu menu(this);
    menu.addAction(tr("Color..."), this, [this, row] { emit sig_colorWanted(row); });
    menu.addAction(tr("To the pane above"), this, [this, row] { emit sig_paneWanted(row, -1); });
    menu.addAction(tr("To the pane below"), this, [this, row] { emit sig_paneWanted(row, 1); });
    menu.addSeparator();
    menu.addAction(tr("Remove"), this, [this, row] { emit sig_removeWanted(row); });
    menu.exec(place);
}
