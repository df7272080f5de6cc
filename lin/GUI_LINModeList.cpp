#include "lin/GUI_LINModeList.h"

#include "device/LINFrame.h"
#include "lin/LINRecords.h"
#include "lin/WidgetDelegate.h"
#include "ui_GUI_LINModeList.h"
#include "widgets/CMessageBox.h"
#include "widgets/HexEntry.h"
#include "widgets/NumberEntry.h"

#include <QLineEdit>

namespace {

enum ParamColumn {
    SelectColumn,
    DirectionColumn,
    IdColumn,
    DataColumn,
    LengthColumn,
    IntervalColumn,
    ParamColumnCount
};
constexpr int ParamColumnWidths[] = {50, 80, 70, 270, 100}; // the last one's is the default
constexpr quint8 ParamRows = 20;
constexpr int FirstTickMs = 1;
/// Places in the choice of directions.
enum Direction { Send, Request };

/// Edits cells with text that is to be a number or bytes: what is typed or pasted is cleaned, and not checked.
class EntryDelegate : public QStyledItemDelegate
{
public:
    EntryDelegate(NumberEntry kind, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_kind(kind)
    {
    }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto *field = qobject_cast<QLineEdit *>(editor)) {
            cleanEntry(field, m_kind);
        }
        return editor;
    }

private:
    const NumberEntry m_kind;
};

/// The cells that the table starts with.
QList<QStandardItem *> initialRow(quint8 row)
{
    auto *select = new QStandardItem;
    select->setEditable(false);
    const QVector<QString> choices{GUI_LINModeList::tr("Send"), GUI_LINModeList::tr("Revice")};
    auto *direction = new QStandardItem(choices.at(Send));
    direction->setData(Send, WidgetDelegate::ChosenRole);
    direction->setData(QVariant::fromValue(choices), WidgetDelegate::ChoicesRole);
    const QByteArray data = QByteArray(LINScheduleRow::MaxLength - 1, '\0') + static_cast<char>(row);
    return {select,
            direction,
            new QStandardItem(hexNumber(row, 2)),
            new QStandardItem(hexPairs(data).trimmed()),
            new QStandardItem(QString::number(LINScheduleRow::MaxLength)),
            new QStandardItem(QString::number(LINScheduleRow::MinIntervalMs))};
}

} // namespace

GUI_LINModeList::GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINTablePage(LINModeList, param, communication, parent)
    , m_ui(std::make_unique<Ui::GUI_LINModeList>())
    , m_param(0, ParamColumnCount)
{
    m_ui->setupUi(this);
    fillParam();
    showParam();
    m_ui->cbx_mode->addItem(tr("Dynamic display"), 0);
    m_ui->cbx_mode->addItem(tr("Static display"), 1);
    connectRun(m_ui->btn_start, m_ui->btn_stop);
    connectTable(m_ui->tableview, m_ui->btn_save, m_ui->btn_clear);
}

GUI_LINModeList::~GUI_LINModeList() = default;

void GUI_LINModeList::fillParam()
{
    QStringList numbers; // as the messages name the rows
    for (quint8 row = 0; row < ParamRows; ++row) {
        m_param.appendRow(initialRow(row));
        numbers.append(QString::number(row));
    }
    m_param.setVerticalHeaderLabels(numbers);
    m_param.setHorizontalHeaderLabels({tr("Select"), tr("Direction"), QStringLiteral("ID"), tr("Data"), tr("Length"),
                                       tr("Interval") + QStringLiteral("(ms)")});
}

void GUI_LINModeList::showParam()
{
    QTableView *table = m_ui->tableViewParam;
    table->setModel(&m_param);
    table->setItemDelegateForColumn(DirectionColumn, new WidgetDelegate(table));
    table->setItemDelegateForColumn(IdColumn, new EntryDelegate(NumberEntry::Hex, table));
    table->setItemDelegateForColumn(DataColumn, new EntryDelegate(NumberEntry::HexBytes, table));
    for (const int column : {LengthColumn, IntervalColumn}) {
        table->setItemDelegateForColumn(column, new EntryDelegate(NumberEntry::Decimal, table));
    }
    int column = 0;
    for (const int width : ParamColumnWidths) {
        table->setColumnWidth(column++, width);
    }
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    lockParam(false);
}

/// Takes over what is being typed: a cell whose editor is open gets its text when the current cell changes.
void GUI_LINModeList::commitParam()
{
    QTableView *table = m_ui->tableViewParam;
    const QModelIndex current = table->currentIndex();
    const QAbstractItemView::EditTriggers triggers = table->editTriggers();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers); // coming back opens no editor
    table->selectionModel()->clearCurrentIndex();
    table->selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    table->setEditTriggers(triggers);
}

void GUI_LINModeList::lockParam(bool isLocked)
{
    m_ui->tableViewParam->setEditTriggers(isLocked ? QAbstractItemView::NoEditTriggers
                                                   : QAbstractItemView::AllEditTriggers);
    for (int row = 0; row < ParamRows; ++row) {
        m_param.item(row, SelectColumn)->setCheckable(!isLocked); // no edit trigger keeps a click off a check box
    }
}

/// Shows why a row cannot be used.
std::optional<LINScheduleRow> GUI_LINModeList::readRow(int row)
{
    const auto text = [this, row](ParamColumn column) {
        return m_param.item(row, column)->text();
    };
    const LINScheduleTexts texts{text(IdColumn), text(DataColumn), text(LengthColumn), text(IntervalColumn)};
    QString error;
    std::optional<LINScheduleRow> frame = readLINScheduleRow(texts, row, error);
    if (frame) {
        const QVariant direction = m_param.item(row, DirectionColumn)->data(WidgetDelegate::ChosenRole);
        frame->isRequest = direction.toInt() == Request;
    } else {
        emit sig_showMessageBox(error, MessageCritical);
    }
    return frame;
}

/// Nothing when one of them cannot be used.
std::optional<QVector<LINScheduleRow>> GUI_LINModeList::readSelectedRows()
{
    QVector<LINScheduleRow> frames;
    for (int row = 0; row < ParamRows; ++row) {
        if (m_param.item(row, SelectColumn)->checkState() != Qt::Checked) {
            continue;
        }
        const std::optional<LINScheduleRow> frame = readRow(row);
        if (!frame) {
            return std::nullopt;
        }
        frames.append(*frame);
    }
    return frames;
}

void GUI_LINModeList::enableStartControls(bool enabled)
{
    commitParam();
    lockParam(!enabled);
    m_ui->btn_start->setEnabled(enabled);
    m_ui->btn_save->setEnabled(enabled);
    m_ui->lbx_count->setEnabled(enabled);
}

void GUI_LINModeList::slot_startBtnClicked()
{
    commitParam();
    const std::optional<QVector<LINScheduleRow>> rows = readSelectedRows();
    if (!rows || rows->isEmpty()) {
        return;
    }
    m_schedule = LINSchedule(*rows, m_ui->lbx_count->value());
    slot_clearBtnClicked();
    if (startRunning()) {
        timer().start(FirstTickMs);
    }
}

/// The row's wait begins when the adapter has returned. That leaves the window time between the calls of a slow one.
/// A frame that the adapter refuses is listed all the same, a request that nobody answers is not.
void GUI_LINModeList::slot_sendTimeoutEvent()
{
    if (m_schedule.remaining() == 0) {
        stopRunning();
        return;
    }
    const LINScheduleRow &row = m_schedule.takeNext();
    std::optional<CTableViewLIN::DataObject> frame;
    if (!row.isRequest) {
        transmit(row.id, row.data);
        frame = sentLINFrame(row.id, row.data, channelParam().linChecksum == LINChecksumEnhanced, clockText());
    } else if (const auto answer = request(row.id)) {
        frame = answeredLINFrame(answer->ID & LINScheduleRow::MaxId, *answer, clockText());
    }
    timer().start(row.intervalMs);
    if (frame) {
        slot_addRowItem(*frame, m_ui->cbx_mode->currentData().toInt() != 0);
    }
}
