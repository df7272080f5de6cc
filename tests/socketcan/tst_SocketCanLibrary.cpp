#include "device/CANAPI.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

/// The library itself, as the program loads it. What it does on interfaces is tested where there are some.
class tst_SocketCanLibrary : public QObject
{
    Q_OBJECT

private slots:
    static void hasEveryEntry();
    static void deviceThatIsNotThere();
};

void tst_SocketCanLibrary::hasEveryEntry()
{
    const CANAPI api(QStringLiteral(X9_SOCKETCAN_ADAPTER));
    QCOMPARE(api.state(), AdapterLibraryState::Loaded);
    QVERIFY(api.tellsErrors());
    QVERIFY(!CANAPI(QString()).tellsErrors());
}

void tst_SocketCanLibrary::deviceThatIsNotThere()
{
    const CANAPI api(QStringLiteral(X9_SOCKETCAN_ADAPTER));
    QCOMPARE(api.VCI_OpenDevice(AdapterDeviceType, 255, 0), 0U);
    VCI_ERR_INFO info{};
    info.ErrCode = 99;
    QCOMPARE(api.VCI_ReadErrInfo(AdapterDeviceType, 255, 0, &info), 1U);
    QCOMPARE(info.ErrCode, 0U);
}

X9_CORE_TEST(tst_SocketCanLibrary)
#include "tst_SocketCanLibrary.moc"
