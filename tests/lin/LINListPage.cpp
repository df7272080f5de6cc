#include "tests/lin/LINListPage.h"

#include "lin/WidgetDelegate.h"

#include <QComboBox>
#include <QSpinBox>
#include <QtTest>

namespace {
ChannelParam linChannel(quint8 checksum, quint16 baudRate)
{
    ChannelParam param;
    param.linChecksum = checksum;
    param.linBaudRate = baudRate;
    return param;
}
} // namespace

LINListPage::LINListPage(CANCommunication &communication, quint8 checksum, quint16 baudRate)
    : tab(linChannel(checksum, baudRate), communication)
    , messages(&tab, &WidgetDeviceBase::sig_showMessageBox)
    , states(&tab, &GUI_LINDevice::sig_changeBtnEnableState)
{
    tab.resize(980, 580);
    tab.show();
    tab.activateWindow();
    if (!QTest::qWaitForWindowActive(&tab)) {
        qFatal("the tab does not come to the front");
    }
}

void LINListPage::click(const char *name) const
{
    QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
}

GUI_LINModeList &LINListPage::page() const
{
    return *tab.findChild<GUI_LINModeList *>();
}

void LINListPage::clickCheckBox(int row) const
{
    const QRect cell = param()->visualRect(paramIndex(row, Select));
    QTest::mouseClick(param()->viewport(), Qt::LeftButton, {}, QPoint(cell.left() + 9, cell.center().y()));
}

void LINListPage::clickCell(int row, Column column) const
{
    const QRect cell = param()->visualRect(paramIndex(row, column));
    QTest::mouseClick(param()->viewport(), Qt::LeftButton, {}, cell.center());
}

void LINListPage::setRow(int row, const QString &id, const QString &data, int length, bool isRequest,
                         int interval) const
{
    tick(row);
    setText(row, Id, id);
    setText(row, Data, data);
    setText(row, Length, QString::number(length));
    setText(row, Interval, QString::number(interval));
    param()->model()->setData(paramIndex(row, Direction), isRequest ? 1 : 0, WidgetDelegate::ChosenRole);
}

void LINListPage::setText(int row, Column column, const QString &text) const
{
    param()->model()->setData(paramIndex(row, column), text);
}

void LINListPage::tick(int row) const
{
    param()->model()->setData(paramIndex(row, Select), Qt::Checked, Qt::CheckStateRole);
}

void LINListPage::setCount(int count) const
{
    find<QSpinBox>("lbx_count")->setValue(count);
}

void LINListPage::setMode(int data) const
{
    auto *combo = find<QComboBox>("cbx_mode");
    combo->setCurrentIndex(combo->findData(data));
}

void LINListPage::onFrame(int rows, const std::function<void()> &act) const
{
    QObject::connect(
        frames()->model(), &QAbstractItemModel::rowsInserted, frames(),
        [this, rows, act] {
            if (rowCount() == rows) {
                act();
            }
        },
        Qt::QueuedConnection);
}

QStringList LINListPage::frameTexts() const
{
    QStringList texts;
    for (int row = 0; row < rowCount(); ++row) {
        QStringList cells;
        for (int column = 2; column < 8; ++column) {
            cells.append(frame(row, column));
        }
        texts.append(cells.join(QLatin1Char(' ')));
    }
    return texts;
}

QStringList stateTexts(const QSignalSpy &states)
{
    QStringList texts;
    for (const QList<QVariant> &state : states) {
        texts.append(QStringLiteral("%1 %2")
                         .arg(state.at(0).value<uint8_t>())
                         .arg(state.at(1).toBool() ? QStringLiteral("true") : QStringLiteral("false")));
    }
    return texts;
}
