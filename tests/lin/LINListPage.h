#pragma once

#include "device/ChannelParam.h"
#include "lin/GUI_LINDevice.h"
#include "lin/GUI_LINModeList.h"

#include <QAbstractButton>
#include <QModelIndex>
#include <QSignalSpy>
#include <QStringList>
#include <QTableView>

#include <functional>

class LINFrameView;

/// A LIN tab on screen with its list page, used as a user does.
class LINListPage
{
public:
    enum Column { Select, Direction, Id, Data, Length, Interval };

    explicit LINListPage(CANCommunication &communication, quint8 checksum = 0, quint16 baudRate = 19200);

    template<typename Widget>
    Widget *find(const char *name) const
    {
        return page().findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *name) const;
    bool isEnabled(const char *name) const { return find<QWidget>(name)->isEnabled(); }
    GUI_LINModeList &page() const;

    QTableView *param() const { return find<QTableView>("tableViewParam"); }
    QModelIndex paramIndex(int row, Column column) const { return param()->model()->index(row, column); }
    QString paramText(int row, Column column) const { return paramIndex(row, column).data().toString(); }
    /// With the mouse.
    void clickCheckBox(int row) const;
    void clickCell(int row, Column column) const;
    /// Ticks a row and fills it, without the mouse.
    void setRow(int row, const QString &id, const QString &data, int length, bool isRequest = false,
                int interval = 30) const;
    void setText(int row, Column column, const QString &text) const;
    void tick(int row) const;
    /// The editor that is open in the parameter table; null when there is none.
    template<typename Editor>
    Editor *editor() const
    {
        return param()->viewport()->findChild<Editor *>();
    }
    void setCount(int count) const;
    void setMode(int data) const;

    QTableView *frames() const { return find<QTableView>("tableview"); }
    int rowCount() const { return frames()->model()->rowCount(); }
    QString frame(int row, int column) const { return frames()->model()->index(row, column).data().toString(); }
    /// Acts once the table has so many rows, before the next tick.
    void onFrame(int rows, const std::function<void()> &act) const;
    /// "Send 01[C1] 2 01 A2  5C V1": the cells but number and time, data with its trailing blank.
    QStringList frameTexts() const;

    GUI_LINDevice tab;
    QSignalSpy messages; ///< of the tab: text, mode
    QSignalSpy states;   ///< of the tab: mode, newState
};

/// "1 false".
QStringList stateTexts(const QSignalSpy &states);
