#include "viewer/ValuePanel.h"

#include "viewer/core/DatabaseChoices.h"
#include "viewer/core/FrameColumns.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace {

constexpr int RowMs = 30; ///< while rows are gone through
constexpr int GrowMs = 300;
/// In characters.
constexpr std::array<int, ValueTreeModel::ColumnCount> Widths{34, 26, 9, 22, 16};

} // namespace

ValuePanel::ValuePanel(OpenCapture &capture, QWidget *parent)
    : QWidget(parent)
    , m_capture(capture)
    , m_model(capture.store())
    , m_last(capture.store(), m_calls.poster([this] { slot_found(); }))
{
    m_shown.setSourceModel(&m_model);
    makeTree();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->addWidget(makeLine());
    layout->addWidget(m_tree, 1);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ValuePanel::slot_find);
    connect(&capture, &OpenCapture::sig_overviewChanged, this, [this] {
        if (m_row < 0 || m_found != m_row) { // what is further behind changes nothing
            findWithin(GrowMs);
        }
    });
    slot_currentChanged();
}

void ValuePanel::makeTree()
{
    m_tree = new QTreeView;
    m_tree->setObjectName(QStringLiteral("values"));
    m_tree->setAccessibleName(tr("Messages and signals with their last values"));
    m_tree->setModel(&m_shown);
    m_tree->setUniformRowHeights(true);
    m_tree->setAlternatingRowColors(true);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->header()->setStretchLastSection(false);
    for (int column = 0; column < ValueTreeModel::ColumnCount; ++column) {
        m_tree->setColumnWidth(column, Widths[static_cast<std::size_t>(column)] *
                                           fontMetrics().horizontalAdvance(QLatin1Char('0')));
    }
    connect(m_tree, &QTreeView::customContextMenuRequested, this, &ValuePanel::slot_menu);
    connect(m_tree, &QTreeView::activated, this, [this] {
        if (m_plot->isEnabled()) {
            m_plot->click();
        }
    });
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this, &ValuePanel::slot_currentChanged);
}

QWidget *ValuePanel::makeLine()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_search = new QLineEdit;
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setPlaceholderText(tr("Search messages and signals"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_search->setClearButtonEnabled(true);
    m_onlySeen = new QCheckBox(tr("&Only what is in the capture"));
    m_onlySeen->setObjectName(QStringLiteral("onlySeen"));
    m_state = new QLabel;
    m_state->setObjectName(QStringLiteral("valuesAt"));
    m_only = new QPushButton(tr("Only frames of t&his"));
    m_only->setObjectName(QStringLiteral("onlyThis"));
    m_plot = new QPushButton(tr("&Plot this"));
    m_plot->setObjectName(QStringLiteral("plotThis"));
    layout->addWidget(m_search, 2);
    layout->addWidget(m_onlySeen);
    layout->addWidget(m_state, 1);
    layout->addWidget(m_only);
    layout->addWidget(m_plot);
    connect(m_search, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_shown.setText(text);
        if (!text.isEmpty()) {
            m_tree->expandAll();
        }
    });
    connect(m_onlySeen, &QCheckBox::toggled, &m_shown, &ValueTreeFilter::setOnlySeen);
    connect(m_only, &QPushButton::clicked, this, [this] { emit sig_filterWanted(filterOf(current())); });
    connect(m_plot, &QPushButton::clicked, this, [this] { emit sig_plotWanted(expressionOf(current())); });
    return line;
}

void ValuePanel::setSource(const std::shared_ptr<const DatabaseSignals> &source)
{
    m_model.setSource(source);
    m_found = -1;
    slot_currentChanged();
    findWithin(0);
}

void ValuePanel::findWithin(int milliseconds)
{
    if (!m_timer.isActive() || m_timer.remainingTime() > milliseconds) {
        m_timer.start(milliseconds);
    }
}

void ValuePanel::setRow(qint64 row)
{
    m_row = row;
    findWithin(RowMs);
}

void ValuePanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_isOld) {
        findWithin(0);
    }
}

void ValuePanel::slot_find()
{
    m_isOld = !isVisible();
    if (m_isOld) {
        return;
    }
    const qint64 end = m_capture.overview().covered() - 1;
    const qint64 row = m_row >= 0 ? std::min(m_row, end) : end;
    if (!m_model.source()) {
        m_state->setText(tr("Values need a database: Signals, Add database..."));
        return;
    }
    if (row >= 0) {
        m_last.find(m_model.source(), row, m_capture.overview().lastRows(row));
    }
}

void ValuePanel::slot_found()
{
    const LastSignals::Rows rows = m_last.take();
    m_model.setRows(rows);
    m_found = rows.isComplete && rows.source == m_model.source() ? rows.row : -1;
    const QString frame = QLocale().toString(rows.row + 1);
    m_state->setText(m_row >= 0 ? tr("Up to frame %1").arg(frame) : tr("At the end, frame %1").arg(frame));
}

QModelIndex ValuePanel::current() const
{
    return m_shown.mapToSource(m_tree->currentIndex());
}

QString ValuePanel::expressionOf(const QModelIndex &index) const
{
    const int signal = m_model.signalOf(index);
    return signal >= 0 ? m_model.source()->expression(signal) : QString();
}

/// Of a multiplexed signal the frames that have it, otherwise all of the message.
QString ValuePanel::filterOf(const QModelIndex &index) const
{
    const int message = m_model.messageOf(index);
    if (message < 0) {
        return {};
    }
    const DatabaseSignals &source = *m_model.source();
    const QString expression = expressionOf(index);
    if (!expression.isEmpty() && source.signal(m_model.signalOf(index)).multiplexor >= 0) {
        return QStringLiteral("%1 == %1").arg(expression); // false where there is no number
    }
    QStringList identifiers;
    const QVector<FrameKey> &keys = source.keys(message);
    for (const FrameKey key : keys) {
        identifiers.append(FrameColumns::identifierFilter(key));
    }
    const QString filter = identifiers.join(QStringLiteral(" or "));
    const QString channels = DatabaseChoices::channelText(source.partOf(message).channels);
    return channels.isEmpty() ? filter : QStringLiteral("(%1) and channel in {%2}").arg(filter, channels);
}

void ValuePanel::slot_currentChanged()
{
    m_only->setEnabled(current().isValid());
    m_plot->setEnabled(!expressionOf(current()).isEmpty());
}

void ValuePanel::slot_menu(const QPoint &position)
{
    const QModelIndex index = m_shown.mapToSource(m_tree->indexAt(position));
    if (!index.isValid()) {
        return;
    }
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(m_only->text(), m_only, &QPushButton::click);
    menu->addAction(m_plot->text(), m_plot, &QPushButton::click)->setEnabled(m_plot->isEnabled());
    const qint64 row = m_model.rowOf(index);
    QAction *go = menu->addAction(tr("&Go to its frame"), this, [this, row] { emit sig_rowWanted(row); });
    go->setEnabled(row >= 0);
    menu->popup(m_tree->viewport()->mapToGlobal(position));
}
