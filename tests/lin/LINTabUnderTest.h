#pragma once

#include "device/CANCommunication.h"
#include "lin/GUI_LINDevice.h"
#include "lin/LINFrameModel.h"
#include "lin/LINFrameView.h"
#include "lin/LINModePage.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

/// LIN channel ch of device 0.
inline ChannelParam linChannel(quint8 ch = 0, quint8 checksum = 0, quint16 baudRate = 19200)
{
    ChannelParam param;
    param.channel = ch;
    param.linChecksum = checksum;
    param.linBaudRate = baudRate;
    return param;
}

/// A LIN tab on screen with one of its pages in front; the page's widgets by name.
template<typename Page>
class LINTabUnderTest
{
public:
    LINTabUnderTest(CANCommunication &communication, const char *modeButton, const ChannelParam &param = linChannel())
        : tab(param, communication)
        , page(*tab.findChild<Page *>())
        , messages(&tab, &WidgetDeviceBase::sig_showMessageBox)
    {
        QObject::connect(&tab, &GUI_LINDevice::sig_changeBtnEnableState, &tab, [this](uint8_t mode, bool newState) {
            announced.append(QStringLiteral("%1 %2").arg(mode).arg(newState ? 1 : 0));
        });
        tab.resize(1000, 600);
        tab.show();
        clickTab(modeButton);
    }

    template<typename Widget = QWidget>
    Widget *find(const char *name) const
    {
        return page.template findChild<Widget *>(QLatin1String(name));
    }
    /// What a user's click does: nothing on a button that is disabled or out of sight.
    void click(const char *name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
    void clickTab(const char *name) const
    {
        QTest::mouseClick(tab.template findChild<QAbstractButton *>(QLatin1String(name)), Qt::LeftButton);
    }
    void choose(const char *name, int data) const
    {
        auto *combo = find<QComboBox>(name);
        combo->setCurrentIndex(combo->findData(data));
    }
    void setNumber(const char *name, int value) const { find<QSpinBox>(name)->setValue(value); }
    void tick(int pair, int id) const
    {
        setNumber(qPrintable(QStringLiteral("sbx_ID%1").arg(pair)), id);
        find<QAbstractButton>(qPrintable(QStringLiteral("chbx_ID%1").arg(pair)))->setChecked(true);
    }
    /// "caption style class"
    QString button(const char *name) const
    {
        const auto *found = find<QAbstractButton>(name);
        return found->text() + QLatin1Char(' ') + found->property("nav").toString();
    }
    bool isEnabled(const char *name) const { return find(name)->isEnabled(); }
    /// "text mode" of the message that came last.
    QString lastMessage() const
    {
        return messages.isEmpty()
                   ? QString()
                   : messages.last().at(0).toString() + QLatin1Char(' ') + messages.last().at(1).toString();
    }
    const LINFrameModel &frames() const { return find<LINFrameView>("tableView")->frames(); }
    int rows() const { return frames().rowCount(); }
    QString cell(int row, int column) const { return frames().cellText(row, column); }
    QStringList column(int number) const
    {
        QStringList texts;
        for (int row = 0; row < rows(); ++row) {
            texts.append(cell(row, number));
        }
        return texts;
    }

    QStringList announced; ///< "mode state" of every sig_changeBtnEnableState(), in order
    GUI_LINDevice tab;
    Page &page;
    QSignalSpy messages;
};
