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
    static void libraryOfTheOtherWordSize();
    static void wrongArchitecture_data();
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
/// The head of a library of this system: for x86 of so many bits, or else, with 0, for an ARM processor.
QByteArray library(int bits)
{
#ifdef Q_OS_WIN
    const QByteArray machine =
        bits == 32 ? QByteArray("\x4C\x01", 2) : QByteArray(bits == 64 ? "\x64\x86" : "\x64\xAA", 2);
    return "MZ" + QByteArray(0x3A, '\0') + QByteArray("\x40\0\0\0PE\0\0", 8) + machine + QByteArray(128, '\0');
#else
    const QByteArray machine = bits == 32 ? QByteArray("\x03\0", 2) : QByteArray(bits == 64 ? "\x3E\0" : "\xB7\0", 2);
    const QByteArray first("\x7F"
                           "ELF");
    return first + (bits == 32 ? '\1' : '\2') + QByteArray("\1\1", 2) + QByteArray(9, '\0') + QByteArray("\3\0", 2) +
           machine + QByteArray(128, '\0');
#endif
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

/// Which one it is, and on Windows which download fits it.
void tst_AdapterProblem::libraryOfTheOtherWordSize()
{
    constexpr int Own = QT_POINTER_SIZE * 8;
    constexpr int Other = 96 - Own;
    const QTemporaryDir folder;
    const CANAPI api(writeFile(folder, library(Other)));
    QCOMPARE(api.state(), AdapterLibraryState::WrongArchitecture);
    const QString text = adapterLibraryProblem(api);
    const QString file = QDir::toNativeSeparators(api.libraryPath());
    const QString first = QStringLiteral("The adapter library %1 is a %2-bit one; this is the %3-bit program.")
                              .arg(file, QString::number(Other), QString::number(Own));
    QVERIFY2(text.startsWith(first + QLatin1Char('\n')), qPrintable(text));
#ifdef Q_OS_WIN
    const QString download = QStringLiteral("the download with \"windows-%1bit\" in its name").arg(Other);
    QVERIFY2(text.contains(download), qPrintable(text));
#else
    QVERIFY2(!text.contains(QLatin1String("download")), qPrintable(text)); // there is no other one
#endif
    QVERIFY2(text.contains(QStringLiteral("the adapter's %1-bit library beside").arg(Own)), qPrintable(text));
    QVERIFY2(!text.contains(QLatin1Char('%')), qPrintable(text));
}

void tst_AdapterProblem::wrongArchitecture_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("another processor") << library(0);
#ifdef Q_OS_WIN
    QTest::newRow("another system") << QByteArray("\x7F"
                                                  "ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\x3E\0",
                                                  20);
#else
    QTest::newRow("another system") << QByteArray("MZ" + QByteArray(0x3A, '\0') +
                                                  QByteArray("\x40\0\0\0PE\0\0\x4C\1", 10));
#endif
}

void tst_AdapterProblem::wrongArchitecture()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const CANAPI api(writeFile(folder, content));
    QCOMPARE(api.state(), AdapterLibraryState::WrongArchitecture);
    const QString text = adapterLibraryProblem(api);
    const QString needs = QStringLiteral("is made for another kind of processor; this program needs the %1-bit one.");
    QVERIFY2(text.contains(needs.arg(QT_POINTER_SIZE * 8)), qPrintable(text));
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
