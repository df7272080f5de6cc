#include "lin/GUI_LINModeList.h"

#include "device/LINFrame.h"
#include "lin/LINHexPairs.h"
#include "lin/LINRecords.h"
#include "lin/LINSchedule.h"
#include "lin/WidgetDelegate.h"
#include "ui_GUI_LINModeList.h"
#include "widgets/CMessageBox.h"
#include "widgets/NumberEntry.h"

#include <QLineEdit>
#include <QStandardItemModel>

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
            new QStandardItem(hexPair(row)),
            new QStandardItem(hexPairs(data).trimmed()),
            new QStandardItem(QString::number(LINScheduleRow::MaxLength)),
            new QStandardItem(QString::number(LINScheduleRow::MinIntervalMs))};
}

} // namespace

class GUI_LINModeListPrivate
{
public:
    explicit GUI_LINModeListPrivate(GUI_LINModeList *page)
        : q(page)
    {
    }

    void fillParam();
    void showParam();
    void commitParam();
    void lockParam(bool isLocked);
    std::optional<LINScheduleRow> readRow(int row);
    std::optional<QVector<LINScheduleRow>> readSelectedRows();

    GUI_LINModeList *q;
    Ui::GUI_LINModeList ui;
    QStandardItemModel param{0, ParamColumnCount};
    LINSchedule schedule;
};

void GUI_LINModeListPrivate::fillParam()
{
    QStringList numbers; // as the messages name the rows
    for (quint8 row = 0; row < ParamRows; ++row) {
        param.appendRow(initialRow(row));
        numbers.append(QString::number(row));
    }
    param.setVerticalHeaderLabels(numbers);
    param.setHorizontalHeaderLabels({GUI_LINModeList::tr("Select"), GUI_LINModeList::tr("Direction"),
                                     QStringLiteral("ID"), GUI_LINModeList::tr("Data"), GUI_LINModeList::tr("Length"),
                                     GUI_LINModeList::tr("Interval") + QStringLiteral("(ms)")});
}

void GUI_LINModeListPrivate::showParam()
{
    QTableView *table = ui.tableViewParam;
    table->setModel(&param);
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
void GUI_LINModeListPrivate::commitParam()
{
    QTableView *table = ui.tableViewParam;
    const QModelIndex current = table->currentIndex();
    const QAbstractItemView::EditTriggers triggers = table->editTriggers();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers); // coming back opens no editor
    table->selectionModel()->clearCurrentIndex();
    table->selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    table->setEditTriggers(triggers);
}

void GUI_LINModeListPrivate::lockParam(bool isLocked)
{
    ui.tableViewParam->setEditTriggers(isLocked ? QAbstractItemView::NoEditTriggers
                                                : QAbstractItemView::AllEditTriggers);
    for (int row = 0; row < ParamRows; ++row) {
        param.item(row, SelectColumn)->setCheckable(!isLocked); // no edit trigger keeps a click off a check box
    }
}

/// Shows why a row cannot be used.
std::optional<LINScheduleRow> GUI_LINModeListPrivate::readRow(int row)
{
    const auto text = [this, row](ParamColumn column) {
        return param.item(row, column)->text();
    };
    const LINScheduleTexts texts{text(IdColumn), text(DataColumn), text(LengthColumn), text(IntervalColumn)};
    QString error;
    std::optional<LINScheduleRow> frame = readLINScheduleRow(texts, row, error);
    if (frame) {
        const QVariant direction = param.item(row, DirectionColumn)->data(WidgetDelegate::ChosenRole);
        frame->isRequest = direction.toInt() == Request;
    } else {
        emit q->sig_showMessageBox(error, MessageCritical);
    }
    return frame;
}

/// Nothing when one of them cannot be used.
std::optional<QVector<LINScheduleRow>> GUI_LINModeListPrivate::readSelectedRows()
{
    QVector<LINScheduleRow> frames;
    for (int row = 0; row < ParamRows; ++row) {
        if (param.item(row, SelectColumn)->checkState() != Qt::Checked) {
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

GUI_LINModeList::GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINTablePage(LINModeList, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeListPrivate>(this))
{
    const Ui::GUI_LINModeList &ui = m_p->ui;
    m_p->ui.setupUi(this);
    m_p->fillParam();
    m_p->showParam();
    ui.cbx_mode->addItem(tr("Dynamic display"), 0);
    ui.cbx_mode->addItem(tr("Static display"), 1);
    connectRun(ui.btn_start, ui.btn_stop);
    connectTable(ui.tableview, ui.btn_save, ui.btn_clear);
}

GUI_LINModeList::~GUI_LINModeList() = default;

void GUI_LINModeList::enableStartControls(bool enabled)
{
    m_p->commitParam();
    m_p->lockParam(!enabled);
    m_p->ui.btn_start->setEnabled(enabled);
    m_p->ui.btn_save->setEnabled(enabled);
    m_p->ui.lbx_count->setEnabled(enabled);
}

void GUI_LINModeList::slot_startBtnClicked()
{
    m_p->commitParam();
    const std::optional<QVector<LINScheduleRow>> rows = m_p->readSelectedRows();
    if (!rows || rows->isEmpty()) {
        return;
    }
    m_p->schedule = LINSchedule(*rows, m_p->ui.lbx_count->value());
    slot_clearBtnClicked();
    if (startRunning()) {
        timer().start(FirstTickMs);
    }
}

/// The row's wait begins when the adapter has returned. That leaves the window time between the calls of a slow one.
/// A frame that the adapter refuses is listed all the same, a request that nobody answers is not.
void GUI_LINModeList::slot_sendTimeoutEvent()
{
    if (m_p->schedule.remaining() == 0) {
        stopRunning();
        return;
    }
    const LINScheduleRow &row = m_p->schedule.takeNext();
    std::optional<CTableViewLIN::DataObject> frame;
    if (!row.isRequest) {
        transmit(row.id, row.data);
        frame = sentLINFrame(row.id, row.data, channelParam().linChecksum == LINChecksumEnhanced, clockText());
    } else if (const auto answer = request(row.id)) {
        frame = answeredLINFrame(answer->ID & LINScheduleRow::MaxId, *answer, clockText());
    }
    timer().start(row.intervalMs);
    if (frame) {
        slot_addRowItem(*frame, m_p->ui.cbx_mode->currentData().toInt() != 0);
    }
}
