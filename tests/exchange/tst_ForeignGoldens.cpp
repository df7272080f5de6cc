#include "tests/exchange/ExchangeTestData.h"
#include "tests/exchange/FrameText.h"
#include "tests/exchange/RandomFrames.h"
#include "tests/support/TestProgram.h"

#include <QDir>

using namespace ExchangeTestData;

/// Each file of another kind in tests/data/exchange holds the frames of the file of its name with the ending ".frames",
/// where there is one; README.md there tells of each. None makes a reader fail.
class tst_ForeignGoldens : public QObject
{
    Q_OBJECT

private slots:
    static void everyFile_data();
    static void everyFile();
    static void everyFileIsKnown();
};

namespace {

constexpr const char *Endings[] = {"asc", "blf", "pcapng", "pcap", "trc"};
constexpr qint64 NsPerUs = 1000;

/// A file's clock on the wall is where it was written, and the frames tell UTC: what it shows is taken for that.
qint64 asUtc(qint64 start)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(start / 1000000, Qt::LocalTime);
    return start == 0 ? 0
                      : QDateTime(local.date(), local.time(), Qt::UTC).toMSecsSinceEpoch() * 1000000 + start % 1000000;
}

QStringList goldens()
{
    QStringList patterns;
    for (const char *ending : Endings) {
        patterns.append(QStringLiteral("*.") + QLatin1String(ending));
    }
    return QDir(QStringLiteral(X9_TEST_DATA "/exchange")).entryList(patterns, QDir::Files, QDir::Name);
}

} // namespace

void tst_ForeignGoldens::everyFile_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = goldens();
    QVERIFY(names.size() >= 15);
    for (const QString &name : names) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void tst_ForeignGoldens::everyFile()
{
    QFETCH(const QString, name);
    const QFileInfo file(name);
    Reading reading = readBytes(*exchangeFormat(file.suffix()), fileBytes(QStringLiteral("exchange/") + name));
    if (reading.info.timeBase == CaptureInfo::SinceStart) {
        for (BusFrame &frame : reading.frames) {
            frame.time += asUtc(reading.info.start);
        }
    }
    const QByteArray expected =
        fileBytes(QStringLiteral("exchange/") + file.completeBaseName() + QStringLiteral(".frames"));
    if (!expected.isEmpty()) {
        QCOMPARE(RandomFrames::difference(reading.frames, FrameText::frames(expected), NsPerUs), QString());
        QCOMPARE(described(reading.findings), QStringList());
    } else {
        QVERIFY(reading.findings.count() > 0);
    }
}

void tst_ForeignGoldens::everyFileIsKnown()
{
    const QByteArray readme = fileBytes(QStringLiteral("exchange/README.md"));
    for (const QString &name : goldens()) {
        QVERIFY2(readme.contains('`' + name.toUtf8() + '`'), qPrintable(name));
    }
}

X9_CORE_TEST(tst_ForeignGoldens)
#include "tst_ForeignGoldens.moc"
