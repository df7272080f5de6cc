#include "CaptureTestData.h"

#include "capture/CANFile.h"
#include "tests/support/TestProgram.h"

#include <QMetaEnum>
#include <QTemporaryDir>
#include <QTest>

#include <utility>

namespace {
const QString DataFolder = QStringLiteral(X9_TEST_DATA "/capture/");
}

class tst_CANFile : public QObject
{
    Q_OBJECT

private slots:
    static void typesInTheirOrder();
    static void emptyUntilLoaded();
    static void nextGoesRound();
    static void loadBeginsAnew();
    static void failedLoadLeavesNothing_data();
    static void failedLoadLeavesNothing();
    static void endingDecides();
    static void fileIsClosedAfterwards();
    static void takesFramesReadElsewhere();
};

void tst_CANFile::typesInTheirOrder()
{
    const QMetaEnum types = QMetaEnum::fromType<CANFile::FileType>();
    QCOMPARE(types.keyCount(), 4);
    QCOMPARE(types.valueToKey(0), "CAN");
    QCOMPARE(types.valueToKey(1), "CANFD");
    QCOMPARE(types.valueToKey(2), "CSV");
    QCOMPARE(types.valueToKey(3), "Text");
}

void tst_CANFile::emptyUntilLoaded()
{
    CANFile file;
    QVERIFY(file.frames().isEmpty());
    QCOMPARE(file.next().idWord, 0U);
    QCOMPARE(file.next().data, QByteArray());
}

void tst_CANFile::nextGoesRound()
{
    CANFile file;
    QVERIFY(file.load(DataFolder + QStringLiteral("canfd_cut_payload.canfd")));
    QCOMPARE(file.frames().size(), 2);
    QCOMPARE(file.next().id(), 0x1ABU);
    QCOMPARE(file.next().id(), 0x123U);
    QCOMPARE(file.next().id(), 0x1ABU);
}

void tst_CANFile::loadBeginsAnew()
{
    CANFile file;
    QVERIFY(file.load(DataFolder + QStringLiteral("can_four.can")));
    file.next();
    QVERIFY(file.load(DataFolder + QStringLiteral("canfd_five.canfd")));
    QCOMPARE(file.frames().size(), 5);
    QCOMPARE(file.next().id(), 0x1ABU);
    QCOMPARE(int(file.next().protocol()), 1);
}

void tst_CANFile::failedLoadLeavesNothing_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"can_wrong_header.can", "can_header_only.can", "canfd_header_only.canfd",
                             "csv_own_titles_only.csv", "csv_empty.csv", "txt_empty.txt", "missing.can", "README.md"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void tst_CANFile::failedLoadLeavesNothing()
{
    QFETCH(QString, name);
    CANFile file;
    QVERIFY(file.load(DataFolder + QStringLiteral("can_four.can")));
    QVERIFY(!file.load(DataFolder + name));
    QVERIFY(file.frames().isEmpty());
    QCOMPARE(file.next().idWord, 0U);
}

/// The same bytes are a capture under one name and none under another.
void tst_CANFile::endingDecides()
{
    QTemporaryDir folder;
    const QString asCsv = folder.filePath(QStringLiteral("a.csv"));
    const QString asCan = folder.filePath(QStringLiteral("a.can"));
    QVERIFY(QFile::copy(DataFolder + QStringLiteral("csv_own.csv"), asCsv));
    QVERIFY(QFile::copy(DataFolder + QStringLiteral("csv_own.csv"), asCan));
    CANFile file;
    QVERIFY(file.load(asCsv));
    QVERIFY(!file.load(asCan));
}

void tst_CANFile::fileIsClosedAfterwards()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.can"));
    QVERIFY(QFile::copy(DataFolder + QStringLiteral("can_four.can"), path));
    CANFile file;
    QVERIFY(file.load(path));
#ifdef Q_OS_LINUX
    for (const QFileInfo &open : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System)) {
        QVERIFY(open.symLinkTarget() != path);
    }
#endif
    QVERIFY(QFile::remove(path));
    QCOMPARE(file.next().id(), 0x1ABU);
}

void tst_CANFile::takesFramesReadElsewhere()
{
    CANFile file;
    QVERIFY(file.load(DataFolder + QStringLiteral("can_four.can")));
    file.next();
    CaptureFrames frames;
    const uchar data[] = {7};
    frames.append(CaptureFrame::toIdWord(5, false, true), CaptureFrame::toAttributes(1, 0), data, 1);
    file.setFrames(std::move(frames));
    QCOMPARE(file.frames().size(), 1);
    QVERIFY(file.next().isExtended());
    QCOMPARE(file.next().data, QByteArray("\x07"));
}

X9_PLAIN_TEST(tst_CANFile)
#include "tst_CANFile.moc"
