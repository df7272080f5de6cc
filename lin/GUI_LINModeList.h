#pragma once

#include "lin/CTableViewLIN.h"
#include "lin/LINModePage.h"

#include <memory>

class GUI_LINModeListPrivate;

class GUI_LINModeList : public LINModePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeList() override;

public slots:
    void slot_changeBtnEnableState(uint8_t mode, bool newState) override;
    void slot_addRowItem(const CTableViewLIN::DataObject &data, bool isStaticMode);
    /// Adds dynamic rows.
    void slot_addRowItems(const QVector<CTableViewLIN::DataObject> &datas);

private:
    std::unique_ptr<GUI_LINModeListPrivate> m_p;
};
