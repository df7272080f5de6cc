#pragma once

#include "lin/CTableViewLIN.h"
#include "lin/LINModePage.h"

class LINFrameView;

/// A mode that lists frames.
class LINTablePage : public LINModePage
{
    Q_OBJECT

public:
    using LINModePage::LINModePage;

public slots:
    /// isStaticMode: the frame takes the place of the one with its identifier.
    void slot_addRowItem(const CTableViewLIN::DataObject &frame, bool isStaticMode);
    /// Adds dynamic rows.
    void slot_addRowItems(const QVector<CTableViewLIN::DataObject> &frames);

protected slots:
    /// Asks for a file, writes the table to it and tells how it went. Nothing when the user cancels.
    void slot_saveBtnClicked();
    void slot_clearBtnClicked();

protected:
    /// To be called once.
    void connectTable(LINFrameView *table, QPushButton *save, QPushButton *clear);

private:
    LINFrameView *m_table = nullptr;
};
