#include "lin/GUI_LINModeList.h"

#include "device/CANCommunication.h"
#include "device/LINFrame.h"
#include "device/TickTimer.h"
#include "lin/LINEntryDelegate.h"
#include "lin/LINFrameModel.h"
#include "lin/LINRecords.h"
#include "lin/LINSchedule.h"
#include "lin/WidgetDelegate.h"
#include "ui_GUI_LINModeList.h"

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
constexpr int ParamRows = 20;
constexpr int RowHeight = 23;
constexpr int FirstTickMs = 1;
/// Places in the choice of directions.
constexpr int DirectionSend = 0;
constexpr int DirectionRequest = 1;

QStandardItem *cell(const QString &text)
{
    return new QStandardItem(text);
}

QStandardItem *selectCell()
{
    auto *item = new QStandardItem;
    item->setEditable(false);
    item->setCheckable(true);
    return item;
}

QStandardItem *directionCell()
{
    const QVector<QString> choices{GUI_LINModeList::tr("Send"), GUI_LINModeList::tr("Revice")};
    QStandardItem *item = cell(choices.at(DirectionSend));
    item->setData(DirectionSend, WidgetDelegate::ChosenRole);
    item->setData(QVariant::fromValue(choices), WidgetDelegate::ChoicesRole);
    return item;
}

/// "05"
QString initialId(int row)
{
    return QStringLiteral("%1").arg(row, 2, 16, QLatin1Char('0')).toUpper();
}

/// "00 00 00 00 00 00 00 05"
QString initialData(int row)
{
    return QStringLiteral("00 ").repeated(LINScheduleRow::MaxLength - 1) + initialId(row);
}

} // namespace

class GUI_LINModeListPrivate
{
public:
    GUI_LINModeListPrivate(GUI_LINModeList *page, CANCommunication &manager)
        : q(page)
        , communication(manager)
    {
    }

    void fillParam();
    void showParam();
    void fillModes();
    void connectSignals();
    void commitParam();
    void lockParam(bool isLocked);
    std::optional<LINScheduleRow> readRow(int row);
    std::optional<QVector<LINScheduleRow>> readSelectedRows();
    void serve(const LINScheduleRow &row);
    std::optional<CTableViewLIN::DataObject> request(quint8 id);
    CTableViewLIN::DataObject send(quint8 id, const QByteArray &data);

    GUI_LINModeList *q;
    CANCommunication &communication;
    Ui::GUI_LINModeList ui;
    QStandardItemModel param{ParamRows, ParamColumnCount};
    TickTimer timer;
    LINSchedule schedule;
};

void GUI_LINModeListPrivate::fillParam()
{
    QStringList numbers; // as the messages name the rows
    for (int row = 0; row < ParamRows; ++row) {
        param.setItem(row, SelectColumn, selectCell());
        param.setItem(row, DirectionColumn, directionCell());
        param.setItem(row, IdColumn, cell(initialId(row)));
        param.setItem(row, DataColumn, cell(initialData(row)));
        param.setItem(row, LengthColumn, cell(QString::number(LINScheduleRow::MaxLength)));
        param.setItem(row, IntervalColumn, cell(QString::number(LINScheduleRow::MinIntervalMs)));
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
    table->setItemDelegateForColumn(IdColumn, new LINEntryDelegate(NumberEntry::Hex, table));
    table->setItemDelegateForColumn(DataColumn, new LINEntryDelegate(NumberEntry::HexBytes, table));
    for (const int column : {LengthColumn, IntervalColumn}) {
        table->setItemDelegateForColumn(column, new LINEntryDelegate(NumberEntry::Decimal, table));
    }
    int column = 0;
    for (const int width : ParamColumnWidths) {
        table->setColumnWidth(column++, width);
    }
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setMinimumSectionSize(RowHeight);
    table->verticalHeader()->setDefaultSectionSize(RowHeight);
    lockParam(false);
}

void GUI_LINModeListPrivate::fillModes()
{
    ui.cbx_mode->addItem(GUI_LINModeList::tr("Dynamic display"), 0);
    ui.cbx_mode->addItem(GUI_LINModeList::tr("Static display"), 1);
}

void GUI_LINModeListPrivate::connectSignals()
{
    using Page = GUI_LINModeList;
    QObject::connect(ui.btn_start, &QPushButton::clicked, q, &Page::slot_startBtnClicked);
    QObject::connect(ui.btn_stop, &QPushButton::clicked, q, &Page::slot_stopBtnClicked);
    QObject::connect(ui.btn_save, &QPushButton::clicked, q, &Page::slot_saveBtnClicked);
    QObject::connect(ui.btn_clear, &QPushButton::clicked, q, &Page::slot_clearBtnClicked);
    QObject::connect(&timer, &TickTimer::sig_tick, q, &Page::slot_sendTimeoutEvent);
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
        frame->isRequest = direction.toInt() == DirectionRequest;
    } else {
        emit q->sig_showMessageBox(error, LINModePage::MessageCritical);
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

/// The row's wait begins when the adapter has returned. That leaves the window time between the calls of a slow one.
void GUI_LINModeListPrivate::serve(const LINScheduleRow &row)
{
    const std::optional<CTableViewLIN::DataObject> frame = row.isRequest ? request(row.id) : send(row.id, row.data);
    timer.start(row.intervalMs);
    if (frame) {
        q->slot_addRowItem(*frame, ui.cbx_mode->currentData().toInt() != 0);
    }
}

/// Nothing when no slave answers, or the adapter fails.
std::optional<CTableViewLIN::DataObject> GUI_LINModeListPrivate::request(quint8 id)
{
    const ChannelParam &channel = q->channelParam();
    VCI_LIN_OBJ answer = linRecord(id, {});
    if (communication.receiveLIN(channel.device, channel.channel, &answer) != CAN_OK || answer.DataLen == 0) {
        return std::nullopt;
    }
    return answeredLINFrame(answer.ID & LINScheduleRow::MaxId, answer, clockText());
}

/// A frame that the adapter refuses is listed all the same.
CTableViewLIN::DataObject GUI_LINModeListPrivate::send(quint8 id, const QByteArray &data)
{
    const ChannelParam &channel = q->channelParam();
    communication.transmitLIN(channel.device, channel.channel, linRecord(id, data));
    CTableViewLIN::DataObject frame;
    frame.time = clockText();
    frame.direction = CTableViewLIN::DataObject::Sent;
    frame.ID = id;
    frame.PID = calcPID(id);
    frame.data = data;
    frame.checksum = calcChecksum(id, channel.linChecksum == LINChecksumEnhanced, data);
    return frame;
}

GUI_LINModeList::GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINModePage(LINModeList, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeListPrivate>(this, communication))
{
    m_p->ui.setupUi(this);
    m_p->fillParam();
    m_p->showParam();
    m_p->fillModes();
    m_p->connectSignals();
}

GUI_LINModeList::~GUI_LINModeList() = default;

void GUI_LINModeList::slot_changeBtnEnableState(uint8_t mode, bool newState)
{
    m_p->commitParam();
    m_p->lockParam(!newState);
    m_p->ui.btn_start->setEnabled(newState);
    m_p->ui.btn_save->setEnabled(newState);
    m_p->ui.lbx_count->setEnabled(newState);
    if (mode != LINModeList) {
        m_p->ui.btn_stop->setEnabled(newState);
    }
}

void GUI_LINModeList::slot_addRowItem(const CTableViewLIN::DataObject &frame, bool isStaticMode)
{
    m_p->ui.tableview->addRow(frame, isStaticMode, channelParam().linChecksum);
}

void GUI_LINModeList::slot_addRowItems(const QVector<CTableViewLIN::DataObject> &frames)
{
    m_p->ui.tableview->addRows(frames, channelParam().linChecksum);
}

void GUI_LINModeList::slot_startBtnClicked()
{
    m_p->commitParam();
    const std::optional<QVector<LINScheduleRow>> rows = m_p->readSelectedRows();
    if (!rows || rows->isEmpty()) {
        return;
    }
    m_p->schedule = LINSchedule(*rows, m_p->ui.lbx_count->value());
    m_p->ui.tableview->clearRows();
    if (startRunning()) {
        m_p->timer.start(FirstTickMs);
    }
}

void GUI_LINModeList::slot_stopBtnClicked()
{
    m_p->timer.stop();
    stopRunning();
}

void GUI_LINModeList::slot_saveBtnClicked()
{
    saveTable(m_p->ui.tableview->frames());
}

void GUI_LINModeList::slot_clearBtnClicked()
{
    m_p->ui.tableview->clearRows();
}

void GUI_LINModeList::slot_sendTimeoutEvent()
{
    if (m_p->schedule.remaining() == 0) {
        m_p->timer.stop();
        stopRunning();
        return;
    }
    m_p->serve(m_p->schedule.takeNext());
}
