#include "viewer/DatabasePanel.h"

#include "viewer/TableText.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <numeric>

namespace {

/// In characters; the last column takes what is left.
constexpr std::array<int, DatabasePanel::ColumnCount - 1> Widths{18, 9, 10, 9};

int signalCount(const Database &database)
{
    return std::accumulate(database.messages.begin(), database.messages.end(), 0,
                           [](int count, const DatabaseMessage &message) { return count + message.content.size(); });
}

} // namespace

DatabasePanel::DatabasePanel(CaptureDatabases &databases, QWidget *parent)
    : QWidget(parent)
    , m_databases(databases)
{
    m_details = new QPlainTextEdit;
    m_details->setObjectName(QStringLiteral("databaseFindings"));
    m_details->setAccessibleName(tr("What was found in the database"));
    m_details->setReadOnly(true);
    m_details->setTabChangesFocus(true);
    m_details->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto *splitter = new QSplitter;
    splitter->addWidget(makeTable());
    splitter->addWidget(m_details);
    splitter->setSizes({3, 2}); // shares
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->addWidget(makeButtons());
    layout->addWidget(splitter, 1);
    connect(&databases, &CaptureDatabases::sig_changed, this, &DatabasePanel::slot_refresh);
    slot_refresh();
}

QWidget *DatabasePanel::makeTable()
{
    m_table = new QTableWidget(0, ColumnCount);
    m_table->setObjectName(QStringLiteral("databases"));
    m_table->setAccessibleName(tr("Databases of the capture"));
    m_table->setHorizontalHeaderLabels({tr("Database"), tr("Channels"), tr("Messages"), tr("Signals"), tr("State")});
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    setUpRows(*m_table);
    for (int column = 0; column + 1 < ColumnCount; ++column) {
        m_table->setColumnWidth(column, Widths[static_cast<std::size_t>(column)] *
                                            fontMetrics().horizontalAdvance(QLatin1Char('0')));
    }
    connect(m_table, &QTableWidget::itemChanged, this, &DatabasePanel::slot_changed);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &DatabasePanel::slot_selectionChanged);
    return m_table;
}

QWidget *DatabasePanel::makeButtons()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *add = new QPushButton(tr("&Add database..."));
    add->setObjectName(QStringLiteral("addDatabase"));
    m_remove = new QPushButton(tr("&Remove"));
    m_remove->setObjectName(QStringLiteral("removeDatabase"));
    m_reload = new QPushButton(tr("&Load again"));
    m_reload->setObjectName(QStringLiteral("reloadDatabases"));
    for (QPushButton *button : {add, m_remove, m_reload}) {
        layout->addWidget(button);
    }
    layout->addStretch(1);
    connect(add, &QPushButton::clicked, this, &DatabasePanel::sig_addWanted);
    connect(m_remove, &QPushButton::clicked, this, [this] { m_databases.remove(m_table->currentRow()); });
    connect(m_reload, &QPushButton::clicked, &m_databases, &CaptureDatabases::reload);
    return line;
}

QString DatabasePanel::stateText(const CaptureDatabases::Entry &entry)
{
    if (entry.isLoading()) {
        return tr("loading");
    }
    if (!entry.database) {
        return tr("not usable");
    }
    const int findings = entry.database->findingCount + entry.hidden.size();
    return findings > 0 ? tr("findings: %1").arg(QLocale().toString(findings)) : tr("in use");
}

QString DatabasePanel::detailText(const CaptureDatabases::Entry &entry)
{
    QStringList lines{QDir::toNativeSeparators(entry.choice.path)};
    if (!entry.error.isEmpty()) {
        lines.append(entry.error);
    }
    if (!entry.database) {
        return lines.join(QLatin1Char('\n'));
    }
    lines.append(entry.hidden);
    for (const DatabaseFinding &finding : entry.database->findings) {
        lines.append(
            tr("line %1, column %2: %3")
                .arg(QString::number(finding.place.line), QString::number(finding.place.column), finding.text));
    }
    const int further = entry.database->findingCount - entry.database->findings.size();
    if (further > 0) {
        lines.append(tr("and %1 more").arg(QLocale().toString(further)));
    }
    return lines.join(QLatin1Char('\n'));
}

void DatabasePanel::fillRow(int row)
{
    const CaptureDatabases::Entry &entry = m_databases.entries()[static_cast<std::size_t>(row)];
    const bool isRead = entry.database != nullptr;
    const QString channels = DatabaseChoices::channelText(entry.choice.channels);
    const std::array<QString, ColumnCount> texts{
        QFileInfo(entry.choice.path).fileName(), channels.isEmpty() ? tr("all") : channels,
        isRead ? QLocale().toString(entry.database->messages.size()) : QString(),
        isRead ? QLocale().toString(signalCount(*entry.database)) : QString(), stateText(entry)};
    for (int column = 0; column < ColumnCount; ++column) {
        auto *item = new QTableWidgetItem(texts[static_cast<std::size_t>(column)]);
        item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled |
                       (column == Channels ? Qt::ItemIsEditable : Qt::NoItemFlags));
        item->setToolTip(column == Channels ? tr("Numbers of channels with commas, such as 1, 3; empty for all")
                                            : QDir::toNativeSeparators(entry.choice.path));
        item->setTextAlignment(static_cast<int>(
            Qt::AlignVCenter | (column == Messages || column == Signals ? Qt::AlignRight : Qt::AlignLeft)));
        m_table->setItem(row, column, item);
    }
}

void DatabasePanel::slot_refresh()
{
    const int current = m_table->currentRow();
    {
        const QSignalBlocker blocker(m_table);
        const auto count = static_cast<int>(m_databases.entries().size());
        m_table->setRowCount(count);
        for (int row = 0; row < count; ++row) {
            fillRow(row);
        }
        m_table->setCurrentCell(std::min(std::max(current, 0), count - 1), File);
    }
    slot_selectionChanged();
}

void DatabasePanel::select(int index)
{
    m_table->setCurrentCell(index, File);
}

void DatabasePanel::slot_selectionChanged()
{
    const auto row = static_cast<std::size_t>(m_table->currentRow());
    const bool isEntry = m_table->currentRow() >= 0 && row < m_databases.entries().size();
    m_details->setPlainText(isEntry ? detailText(m_databases.entries()[row])
                                    : tr("DBC and LDF files name the messages and signals of a capture. Add one, or "
                                         "drop it onto the window."));
    m_remove->setEnabled(isEntry);
    m_reload->setEnabled(isEntry);
}

/// What is no list of channels is as if it had not been typed.
void DatabasePanel::slot_changed(QTableWidgetItem *item)
{
    const QString text = item->text().trimmed();
    const std::optional<QVector<int>> channels = text == tr("all") ? QVector<int>() : DatabaseChoices::channelsOf(text);
    if (item->column() == Channels && channels) {
        m_databases.setChannels(item->row(), *channels);
    } else {
        QMetaObject::invokeMethod(this, &DatabasePanel::slot_refresh, Qt::QueuedConnection);
    }
}
