#pragma once

#include "lin/CTableViewLIN.h"
#include "lin/LINModePage.h"

#include <memory>

class GUI_LINModeDeveloperPrivate;

class GUI_LINModeDeveloper : public LINModePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeDeveloper(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeDeveloper() override;

signals:
    /// Results for the table of list mode.
    void sig_addRowItems(const QVector<CTableViewLIN::DataObject> &datas);

public slots:
    void slot_changeBtnEnableState(uint8_t mode, bool newState) override;

private:
    std::unique_ptr<GUI_LINModeDeveloperPrivate> m_p;
};
