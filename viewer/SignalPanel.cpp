#include "viewer/SignalPanel.h"

#include "viewer/BitView.h"
#include "viewer/core/FrameColumns.h"
#include "viewer/core/SignalCells.h"
#include "viewer/TableText.h"

#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>

#include <array>

namespace {

constexpr int PlaceRole = Qt::UserRole;
/// In characters; the last column takes what is left.
constexpr std::array<int, SignalPanel::ColumnCount - 1> Widths{20, 9, 10, 7};

} // namespace

SignalPanel::SignalPanel(OpenCapture &capture, QWidget *parent)
    : QWidget(parent)
    , m_capture(capture)
{
    m_head = new QLabel;
    m_head->setObjectName(QStringLiteral("frame"));
    m_head->setTextFormat(Qt::PlainText);
    m_head->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_bits = new BitView;
    auto *splitter = new QSplitter;
    splitter->addWidget(makeTable());
    splitter->addWidget(m_bits);
    splitter->setSizes({1, 1}); // shares
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->addWidget(m_head);
    layout->addWidget(splitter, 1);
    connect(m_bits, &BitView::sig_selected, this, &SignalPanel::slot_bitChosen);
    update();
}

QWidget *SignalPanel::makeTable()
{
    m_table = new QTableWidget(0, ColumnCount);
    m_table->setObjectName(QStringLiteral("signals"));
    m_table->setAccessibleName(tr("Signals of the frame"));
    m_table->setHorizontalHeaderLabels({tr("Signal"), tr("Raw"), tr("Value"), tr("Unit"), tr("Text")});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    setUpRows(*m_table);
    for (int column = 0; column + 1 < ColumnCount; ++column) {
        m_table->setColumnWidth(column, Widths[static_cast<std::size_t>(column)] *
                                            fontMetrics().horizontalAdvance(QLatin1Char('0')));
    }
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_table, &QTableWidget::customContextMenuRequested, this, &SignalPanel::slot_menu);
    connect(m_table, &QTableWidget::itemActivated, this,
            [this](const QTableWidgetItem *item) { plot(expressionOf(item->row())); });
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &SignalPanel::slot_signalChosen);
    return m_table;
}

void SignalPanel::setRow(qint64 row)
{
    m_row = row;
    update();
}

void SignalPanel::setSource(const std::shared_ptr<const DatabaseSignals> &source)
{
    m_source = source;
    m_message = -1;
    update();
}

void SignalPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_isOld) {
        update();
    }
}

void SignalPanel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        update(); // the signals' colours
    }
}

void SignalPanel::update()
{
    m_isOld = !isVisible();
    if (m_isOld) {
        return;
    }
    if (m_row < 0 || m_row >= m_capture.store().size()) {
        clear(tr("Select a frame to see its signals."));
        return;
    }
    const BusFrame frame = m_capture.store().frame(m_row);
    const int message = m_source ? m_source->messageOf(frame) : -1;
    if (message < 0 || frame.is(BusFrame::Error)) {
        clear(m_source ? tr("No database of this capture describes frame %1.").arg(QLocale().toString(m_row + 1))
                       : tr("Frame %1. Its signals need a database: Signals, Add database...")
                             .arg(QLocale().toString(m_row + 1)));
        m_bits->setBits(FrameBits(frame), {});
        return;
    }
    const FrameBits bits(*m_source, message, frame);
    m_head->setText(headText(message, frame, bits));
    m_head->setToolTip(m_source->message(message).comment);
    const int place = currentPlace();
    fill(message, frame, bits.places());
    m_bits->setBits(bits, m_source->message(message).content);
    slot_bitChosen(m_message == message ? place : -1);
    m_message = message;
}

void SignalPanel::clear(const QString &text)
{
    m_head->setText(text);
    m_head->setToolTip({});
    m_table->setRowCount(0);
    m_bits->setBits(FrameBits(), {});
    m_message = -1;
}

QString SignalPanel::headText(int message, const BusFrame &frame, const FrameBits &bits) const
{
    const DatabaseMessage &described = m_source->message(message);
    QStringList parts{tr("Frame %1: %2 (%3)")
                          .arg(QLocale().toString(m_row + 1), described.name,
                               FrameColumns::identifierText(frameKey(frame.identifier, frame.flags)))};
    if (!described.senders.isEmpty()) {
        parts.append(tr("from %1").arg(described.senders.join(QStringLiteral(", "))));
    }
    if (described.cycleTime && *described.cycleTime > 0) {
        parts.append(tr("every %1 ms").arg(*described.cycleTime));
    }
    if (bits.missing() > 0) {
        parts.append(tr("too short for %1 of its signals").arg(bits.missing()));
    }
    if (bits.isCut()) {
        parts.append(tr("only the first %1 signals are shown").arg(bits.places().size()));
    }
    if (frame.is(BusFrame::Remote)) {
        parts.append(tr("a remote frame has no data"));
    } else if (!hasSoundData(frame)) {
        parts.append(tr("these data were not on the bus; filters and plots leave them out"));
    }
    return parts.join(tr(", "));
}

void SignalPanel::fill(int message, const BusFrame &frame, const std::vector<int> &places)
{
    const QSignalBlocker blocker(m_table);
    m_table->setRowCount(static_cast<int>(places.size()));
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const int place = places[static_cast<std::size_t>(row)];
        const int number = m_source->firstSignal(message) + place;
        const DatabaseSignal &signal = m_source->signal(number);
        const SignalCells cells = signalCells(m_source->signalDecoder(number), frame.data.data());
        const std::array<QString, ColumnCount> texts{signal.name, cells.raw, cells.physical, cells.unit, cells.text};
        for (int column = 0; column < ColumnCount; ++column) {
            QTableWidgetItem *item = m_table->item(row, column);
            if (item == nullptr) {
                item = new QTableWidgetItem;
                m_table->setItem(row, column, item);
            }
            item->setText(texts[static_cast<std::size_t>(column)]);
            item->setToolTip(signal.comment);
            item->setTextAlignment(static_cast<int>(
                Qt::AlignVCenter | (column == Raw || column == Physical ? Qt::AlignRight : Qt::AlignLeft)));
        }
        m_table->item(row, Name)->setData(PlaceRole, place);
        QPixmap swatch(fontMetrics().height(), fontMetrics().height());
        swatch.fill(BitView::colour(place, palette()));
        m_table->item(row, Name)->setIcon(QIcon(swatch));
    }
}

int SignalPanel::currentPlace() const
{
    const QList<QTableWidgetItem *> selected = m_table->selectedItems();
    return selected.isEmpty() ? -1 : m_table->item(selected.first()->row(), Name)->data(PlaceRole).toInt();
}

void SignalPanel::slot_signalChosen()
{
    m_bits->select(currentPlace());
}

void SignalPanel::slot_bitChosen(int place)
{
    m_table->clearSelection();
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->item(row, Name)->data(PlaceRole).toInt() == place) {
            m_table->setCurrentCell(row, Name);
            m_table->selectRow(row);
        }
    }
    m_bits->select(place);
}

QString SignalPanel::expressionOf(int row) const
{
    const int place = m_table->item(row, Name)->data(PlaceRole).toInt();
    return m_source->expression(m_source->firstSignal(m_message) + place);
}

void SignalPanel::plot(const QString &expression)
{
    if (!expression.isEmpty()) {
        emit sig_plotWanted(expression);
    }
}

void SignalPanel::slot_menu(const QPoint &position)
{
    const QTableWidgetItem *item = m_table->itemAt(position);
    if (item == nullptr || m_message < 0) {
        return;
    }
    const QString expression = expressionOf(item->row());
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *action = menu->addAction(tr("&Plot this"), this, [this, expression] { plot(expression); });
    action->setEnabled(!expression.isEmpty());
    menu->popup(m_table->viewport()->mapToGlobal(position));
}
