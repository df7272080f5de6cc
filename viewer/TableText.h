#pragma once

#include <QString>

#include <functional>

class QTableView;
class QWidget;

/// The rows of a table as text, with the titles: all or those that are selected, of the columns that are not hidden and
/// as they stand. With tabs between the cells, or as CSV (RFC 4180).
QString tableText(const QTableView &table, bool isOnlySelected, bool isCsv);

/// How tables of whole rows look; the last column takes what is left.
void setUpRows(QTableView &table);
/// Prepares a table of identifiers: rows are selected, sorted by titles, and copied with Ctrl+C.
void setUpIdentifierTable(QTableView &table);

/// Asks where to save and lets save do it; tells when it fails. suffix: "csv".
void saveAs(QWidget *parent, const QString &title, const QString &suffix,
            const std::function<bool(const QString &path)> &save);
/// True when the file is there as a whole.
bool saveText(const QString &path, const QString &text);
