// The driver functions on systems that need no driver from this program.

#include "app/Driver.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_DriverSystem : public QObject
{
    Q_OBJECT

private slots:
    static void installsNothing();
};

void tst_DriverSystem::installsNothing()
{
    QVERIFY(!installDriver());
    QVERIFY(!installMigrationDriver());
    QVERIFY(isDeviceUnregistered());
}

X9_CORE_TEST(tst_DriverSystem)
#include "tst_DriverSystem_other.moc"
