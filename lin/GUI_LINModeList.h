#pragma once

#include "lin/CTableViewLIN.h"
#include "lin/LINModePage.h"

#include <memory>

class GUI_LINModeListPrivate;

/// The page that works off a schedule: up to twenty frames, each sent or requested from a slave, in turn and each with
/// an interval of its own.
class GUI_LINModeList : public LINModePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeList() override;

public slots:
    void slot_changeBtnEnableState(uint8_t mode, bool newState) override;
    void slot_addRowItem(const CTableViewLIN::DataObject &frame, bool isStaticMode);
    /// Adds dynamic rows.
    void slot_addRowItems(const QVector<CTableViewLIN::DataObject> &frames);

private slots:
    void slot_startBtnClicked();
    void slot_stopBtnClicked();
    void slot_saveBtnClicked();
    void slot_clearBtnClicked();
    void slot_sendTimeoutEvent();

private:
    friend class GUI_LINModeListPrivate;
    std::unique_ptr<GUI_LINModeListPrivate> m_p;
};
