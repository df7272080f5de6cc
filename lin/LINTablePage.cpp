#include "lin/LINTablePage.h"

#include "lin/LINCapture.h"
#include "lin/LINFrameView.h"
#include "widgets/CMessageBox.h"

#include <QPushButton>

void LINTablePage::connectTable(LINFrameView *table, QPushButton *save, QPushButton *clear)
{
    m_table = table;
    connect(save, &QPushButton::clicked, this, &LINTablePage::slot_saveBtnClicked);
    connect(clear, &QPushButton::clicked, this, &LINTablePage::slot_clearBtnClicked);
}

void LINTablePage::slot_addRowItem(const CTableViewLIN::DataObject &frame, bool isStaticMode)
{
    m_table->addRow(frame, isStaticMode, channelParam().linChecksum);
}

void LINTablePage::slot_addRowItems(const QVector<CTableViewLIN::DataObject> &frames)
{
    m_table->addRows(frames, channelParam().linChecksum);
}

void LINTablePage::slot_saveBtnClicked()
{
    const QString path = askSavePath(tr("Csv File(*.csv)"));
    if (path.isEmpty()) {
        return;
    }
    if (saveLINCapture(path, m_table->frames())) {
        emit sig_showMessageBox(tr("Save successfully"), MessageSuccess);
    } else {
        emit sig_showMessageBox(tr("Save failure"), MessageCritical);
    }
}

void LINTablePage::slot_clearBtnClicked()
{
    m_table->clearRows();
}
