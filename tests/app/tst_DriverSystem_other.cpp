// The driver functions on systems that need no driver from this program.

#include "app/Driver.h"

#include <QtTest>

class tst_DriverSystem : public QObject
{
    Q_OBJECT

private slots:
    void installsNothing();
};

void tst_DriverSystem::installsNothing()
{
    QVERIFY(!installDriver());
    QVERIFY(!installMigrationDriver());
    QVERIFY(isDeviceUnregistered());
}

QTEST_GUILESS_MAIN(tst_DriverSystem)
#include "tst_DriverSystem_other.moc"
