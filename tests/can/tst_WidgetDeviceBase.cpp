#include "can/WidgetDeviceBase.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/TestProgram.h"

#include <QFileDialog>
#include <QTemporaryDir>
#include <QtTest>
#include <QValidator>

namespace {
/// Makes the helpers that tabs use reachable for the test.
class Tab : public WidgetDeviceBase
{
    Q_OBJECT

public:
    using WidgetDeviceBase::askSavePath;
    using WidgetDeviceBase::Decimal;
    using WidgetDeviceBase::DecimalBlank;
    using WidgetDeviceBase::Hex;
    using WidgetDeviceBase::HexBlank;
    using WidgetDeviceBase::validator;
    using WidgetDeviceBase::WidgetDeviceBase;
};

bool accepts(QValidator *validator, QString text)
{
    int position = 0;
    return validator->validate(text, position) == QValidator::Acceptable;
}
} // namespace

class tst_WidgetDeviceBase : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    static void keepsTheChannelParameters();
    static void validators();
    static void savePath_data();
    static void savePath();
    static void cancelledSave();
};

void tst_WidgetDeviceBase::keepsTheChannelParameters()
{
    ChannelParam param;
    param.device = 3;
    Tab tab(param);
    QCOMPARE(tab.channelParam().device, quint8(3));
    param.linBaudRate = 19200;
    tab.setChannelParam(param);
    QCOMPARE(tab.channelParam().linBaudRate, quint16(19200));
}

void tst_WidgetDeviceBase::validators()
{
    Tab tab{ChannelParam()};
    QVERIFY(accepts(tab.validator(Tab::HexBlank), QStringLiteral("0 aF 9")));
    QVERIFY(!accepts(tab.validator(Tab::HexBlank), QStringLiteral("0x1")));
    QVERIFY(accepts(tab.validator(Tab::Hex), QStringLiteral("0aF9")));
    QVERIFY(!accepts(tab.validator(Tab::Hex), QStringLiteral("0 a")));
    QVERIFY(accepts(tab.validator(Tab::DecimalBlank), QStringLiteral("1 000")));
    QVERIFY(!accepts(tab.validator(Tab::DecimalBlank), QStringLiteral("1A")));
    QVERIFY(accepts(tab.validator(Tab::Decimal), QStringLiteral("1000")));
    QVERIFY(!accepts(tab.validator(Tab::Decimal), QStringLiteral("1 000")));
}

void tst_WidgetDeviceBase::savePath_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("filter");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("extension typed") << "a.csv" << 0 << "a.csv";
    QTest::newRow("first type's extension") << "a" << 0 << "a.can";
    QTest::newRow("chosen type's extension") << "a" << 1 << "a.csv";
}

void tst_WidgetDeviceBase::savePath()
{
    QFETCH(QString, typed);
    QFETCH(int, filter);
    QFETCH(QString, chosen);
    const QTemporaryDir folder;
    Tab tab{ChannelParam()};
    tab.show();
    SaveDialogDriver user(folder.filePath(typed), [filter](QFileDialog &dialog) {
        if (filter == 0) {
            return;
        }
        dialog.selectNameFilter(dialog.nameFilters().at(filter));
        emit dialog.filterSelected(dialog.nameFilters().at(filter));
    });
    QCOMPARE(tab.askSavePath(QStringLiteral("CAN File(*.can);;Csv File(*.csv)")), folder.filePath(chosen));
    QVERIFY(user.isAnswered());
    QCOMPARE(user.nameFilters().size(), 2);
}

void tst_WidgetDeviceBase::cancelledSave()
{
    Tab tab{ChannelParam()};
    SaveDialogDriver user{QString()};
    QCOMPARE(tab.askSavePath(QStringLiteral("Csv File(*.csv)")), QString());
    QVERIFY(user.isAnswered());
}

X9_GUI_TEST(tst_WidgetDeviceBase)
#include "tst_WidgetDeviceBase.moc"
