#include "app/AdapterProblem.h"
#include "device/CANAPI.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

class tst_AdapterProblem : public QObject
{
    Q_OBJECT

private slots:
    static void missingLibrary();
    static void wrongArchitecture();
    static void unloadableLibrary();
    static void libraryThatIsTooOld();
    static void nothingToTell();
    static void channelThatDoesNotOpen_data();
    static void channelThatDoesNotOpen();
};

namespace {
/// A library for the other word size: an ELF header of 64 bytes with class 32 bit, or a PE file for i386 or x86-64.
QByteArray foreignLibrary()
{
#ifdef Q_OS_WIN
    QByteArray file(256, '\0');
    file.replace(0, 2, "MZ");
    file[0x3C] = '\x80';
    file.replace(0x80, 6, QT_POINTER_SIZE == 8 ? QByteArray("PE\0\0\x4C\x01", 6) : QByteArray("PE\0\0\x64\x86", 6));
#else
    QByteArray file(64, '\0');
    file.replace(0, 7,
                 QByteArray("\x7F"
                            "ELF\x01\x01\x01",
                            7));
    file[16] = 3; // shared object
    file[18] = 3; // EM_386
#endif
    return file;
}

QString writeFile(const QTemporaryDir &folder, const QByteArray &content)
{
    QFile file(folder.filePath(QStringLiteral("library.bin")));
    file.open(QIODevice::WriteOnly);
    file.write(content);
    return file.fileName();
}
} // namespace

void tst_AdapterProblem::missingLibrary()
{
    const CANAPI api(QStringLiteral("./no-such-library.so"));
    const QString text = adapterLibraryProblem(api);
    const QString file = QDir::toNativeSeparators(QDir::currentPath() + QStringLiteral("/no-such-library.so"));
    QVERIFY2(text.contains(file), qPrintable(text));
    QVERIFY2(text.contains(QLatin1String("not found")), qPrintable(text));
}

void tst_AdapterProblem::wrongArchitecture()
{
    const QTemporaryDir folder;
    const CANAPI api(writeFile(folder, foreignLibrary()));
    const QString text = adapterLibraryProblem(api);
    QVERIFY2(text.contains(QStringLiteral("%1-bit").arg(QT_POINTER_SIZE * 8)), qPrintable(text));
}

void tst_AdapterProblem::unloadableLibrary()
{
    const QTemporaryDir folder;
    const CANAPI api(writeFile(folder, "this is no library"));
    const QString text = adapterLibraryProblem(api);
    QVERIFY2(text.contains(QLatin1String("could not be loaded")), qPrintable(text));
    QVERIFY(!api.systemMessage().isEmpty());
    QVERIFY2(text.contains(api.systemMessage()), qPrintable(text));
}

void tst_AdapterProblem::libraryThatIsTooOld()
{
    const CANAPI api(QStringLiteral(X9_VIRTUAL_ADAPTER_CLASSIC));
    const QString text = adapterLibraryProblem(api);
    QVERIFY2(text.contains(QLatin1String("KQ_GetReceiveNumCANFD, KQ_TransmitCANFD, KQ_ReceiveCANFD")),
             qPrintable(text));
}

void tst_AdapterProblem::nothingToTell()
{
    QVERIFY(adapterLibraryProblem(CANAPI(QString())).isEmpty());
}

void tst_AdapterProblem::channelThatDoesNotOpen_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("no device") << int(CAN_DeviceOpenFailed) << "Device 3 could not be opened.";
    QTest::newRow("no CAN FD") << int(CAN_DeviceNotSupport) << "Device 3 does not offer CAN FD.";
    QTest::newRow("open already") << int(CAN_ChannelExists) << "Device 3, channel 1 is open already.";
    QTest::newRow("refused") << int(CAN_ChannelOpenFailed) << "Device 3 refused to open channel 1.";
    QTest::newRow("anything else") << int(CAN_Unknown) << "Device 3, channel 1 could not be opened.";
}

void tst_AdapterProblem::channelThatDoesNotOpen()
{
    QFETCH(int, error);
    ChannelParam param;
    param.device = 3;
    param.channel = 1;
    QTEST(channelOpenProblem(static_cast<CANError>(error), param).section(QLatin1Char('\n'), 0, 0), "text");
}

X9_CORE_TEST(tst_AdapterProblem)
#include "tst_AdapterProblem.moc"
