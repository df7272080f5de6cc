#pragma once

#include "can/GUI_CanDevice.h"
#include "capture/CTableViewCAN.h"
#include "device/ChannelParam.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTableView>
#include <QtTest>

/// 500 kbit/s, everything accepted; CAN FD at 2 Mbit/s.
inline ChannelParam channel(quint8 device, quint8 ch, bool isCANFD = false)
{
    ChannelParam param;
    param.device = device;
    param.channel = ch;
    param.Timing0 = 0x00;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFF;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? 2 : 0;
    return param;
}

/// Who works with a tab on screen, with its widgets by name.
class TabUser
{
public:
    TabUser(const ChannelParam &param, CANCommunication &communication)
        : tab(param, communication)
    {
        tab.resize(1000, 600);
        tab.show();
    }

    template<typename Widget>
    Widget *find(const char *name) const
    {
        return tab.findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
    void type(const char *name, const QString &text) const { type(find<QLineEdit>(name), text); }
    void typeData(const QString &text) const { type(dataLine(), text); }
    static void type(QLineEdit *field, const QString &text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }
    void choose(const char *name, int data) const
    {
        auto *combo = find<QComboBox>(name);
        combo->setCurrentIndex(combo->findData(data));
    }
    QLineEdit *dataLine() const { return find<QWidget>("lbx_data")->findChild<QLineEdit *>(); }
    CTableViewCAN *table() const { return find<CTableViewCAN>("tableView"); }
    /// A dialog of the tab; null before it was opened.
    template<typename Dialog>
    Dialog *dialog() const
    {
        return tab.findChild<Dialog *>();
    }
    int rows() const { return table()->rowCount(); }
    QString cell(int row, int column) const
    {
        const QAbstractItemModel *model = table()->findChild<QTableView *>()->model();
        return model->index(row, column).data().toString();
    }

    GUI_CanDevice tab;
};
