#include "viewer/TableText.h"

#include "widgets/CMessageBox.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QSaveFile>
#include <QTableView>

#include <algorithm>

namespace {

QString joined(QStringList cells, bool isCsv)
{
    for (QString &cell : cells) {
        const bool isQuoted = cell.contains(QLatin1Char(',')) || cell.contains(QLatin1Char('"'));
        if (isCsv && isQuoted) {
            cell = QLatin1Char('"') + cell.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
        }
    }
    return cells.join(isCsv ? QLatin1Char(',') : QLatin1Char('\t')) +
           (isCsv ? QStringLiteral("\r\n") : QStringLiteral("\n"));
}

} // namespace

QString tableText(const QTableView &table, bool isOnlySelected, bool isCsv)
{
    const QAbstractItemModel &model = *table.model();
    const QHeaderView &header = *table.horizontalHeader();
    QVector<int> columns;
    QStringList cells;
    for (int visual = 0; visual < header.count(); ++visual) {
        const int column = header.logicalIndex(visual);
        if (!header.isSectionHidden(column)) {
            columns.append(column);
            cells.append(model.headerData(column, Qt::Horizontal).toString());
        }
    }
    QString text = joined(cells, isCsv);
    for (int row = 0; row < model.rowCount(); ++row) {
        if (isOnlySelected && !table.selectionModel()->isRowSelected(row, {})) {
            continue;
        }
        cells.clear();
        std::transform(columns.cbegin(), columns.cend(), std::back_inserter(cells),
                       [&model, row](int column) { return model.index(row, column).data().toString(); });
        text += joined(cells, isCsv);
    }
    return text;
}

void setUpRows(QTableView &table)
{
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setAlternatingRowColors(true);
    table.setTabKeyNavigation(false);
    table.setWordWrap(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + 6);
    table.horizontalHeader()->setStretchLastSection(true);
    table.horizontalHeader()->setHighlightSections(false);
}

void setUpIdentifierTable(QTableView &table)
{
    setUpRows(table);
    table.setSortingEnabled(true);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto *copy = new QAction(QApplication::translate("TableText", "Copy"), &table);
    copy->setObjectName(QStringLiteral("copy"));
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    auto *copyCsv = new QAction(QApplication::translate("TableText", "Copy as CSV"), &table);
    copyCsv->setObjectName(QStringLiteral("copyCsv"));
    for (QAction *action : {copy, copyCsv}) {
        table.addAction(action);
        QObject::connect(action, &QAction::triggered, &table, [&table, isCsv = action == copyCsv] {
            QApplication::clipboard()->setText(tableText(table, true, isCsv));
        });
    }
    table.setContextMenuPolicy(Qt::ActionsContextMenu);
}

void saveAs(QWidget *parent, const QString &title, const QString &suffix,
            const std::function<bool(const QString &path)> &save)
{
    QString path = QFileDialog::getSaveFileName(parent, title, {}, QStringLiteral("*.") + suffix);
    if (path.isEmpty()) {
        return;
    }
    if (QFileInfo(path).suffix().isEmpty()) {
        path += QLatin1Char('.') + suffix;
    }
    if (!save(path)) {
        auto *box = new CMessageBox(CMessageBox::Warning, title,
                                    QApplication::translate("TableText", "“%1” cannot be written.").arg(path),
                                    CMessageBox::Ok, parent);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    }
}

bool saveText(const QString &path, const QString &text)
{
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}
