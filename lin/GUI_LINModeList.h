#pragma once

#include "lin/LINSchedule.h"
#include "lin/LINTablePage.h"

#include <QStandardItemModel>

#include <memory>

namespace Ui {
class GUI_LINModeList;
}

/// The page that works off a schedule: up to twenty frames, each sent or requested from a slave, in turn and each with
/// an interval of its own.
class GUI_LINModeList : public LINTablePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeList() override;

protected:
    void enableStartControls(bool enabled) override;
    void slot_startBtnClicked() override;
    /// Serves the frame whose turn it is.
    void slot_sendTimeoutEvent() override;

private:
    void fillParam();
    void showParam();
    void commitParam();
    void lockParam(bool isLocked);
    std::optional<LINScheduleRow> readRow(int row);
    std::optional<QVector<LINScheduleRow>> readSelectedRows();

    std::unique_ptr<Ui::GUI_LINModeList> m_ui;
    QStandardItemModel m_param; ///< the schedule as it is typed
    LINSchedule m_schedule;
};
