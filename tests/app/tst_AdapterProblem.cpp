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
    static void whatTheLibraryTells_data();
    static void whatTheLibraryTells();
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
    QTEST(channelOpenProblem(static_cast<CANError>(error), param, {}).section(QLatin1Char('\n'), 0, 0), "text");
}

void tst_AdapterProblem::whatTheLibraryTells_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("sentence");
    using Code = AdapterProblemCode;
    const auto row = [](Code code, const char *sentence) {
        QTest::newRow(sentence) << static_cast<int>(code) << QString::fromLatin1(sentence);
    };
    row(Code::NoInterface, "This computer has no CAN interface for it.");
    row(Code::WrongBitRate, "Its interface runs at another bit rate, which this program may not change.");
    row(Code::WrongMode, "Its interface is in another mode, which this program may not change.");
    row(Code::IsDown, "Its interface is down, and this program may not bring it up.");
    row(Code::NoCanFd, "Its interface has no CAN FD.");
    row(Code::NoSuchBitRate, "This bit rate cannot be set.");
    row(Code::System, "The system refused it.");
    row(static_cast<Code>(77), "The system refused it.");
}

void tst_AdapterProblem::whatTheLibraryTells()
{
    QFETCH(int, code);
    QFETCH(QString, sentence);
    ChannelParam param;
    param.channel = 1;
    const ChannelProblem reason{static_cast<AdapterProblemCode>(code), QStringLiteral("can1 is so"),
                                QStringLiteral("ip link set can1 up")};
    QCOMPARE(channelOpenProblem(CAN_ChannelOpenFailed, param, reason),
             QStringLiteral("Device 0 could not open channel 1.\n%1\n(can1 is so)\n"
                            "An administrator can help with this command:\nip link set can1 up")
                 .arg(sentence));
    const ChannelProblem noLin{AdapterProblemCode::NoLin, QStringLiteral("this adapter has no LIN"), {}};
    QCOMPARE(channelOpenProblem(CAN_ChannelOpenFailed, param, noLin),
             QStringLiteral("Device 0 could not open channel 1.\nThis adapter has no LIN."));
    QVERIFY(!channelOpenProblem(CAN_ChannelExists, param, reason).contains(sentence)); // of another opening
}

X9_CORE_TEST(tst_AdapterProblem)
#include "tst_AdapterProblem.moc"
