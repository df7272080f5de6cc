#include "device/AdapterRecords.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;
const QString WholePath = QStringLiteral(X9_VIRTUAL_ADAPTER);
const QString ClassicPath = QStringLiteral(X9_VIRTUAL_ADAPTER_CLASSIC);

/// Unloads also when a test ends early, so that the next one starts with a fresh adapter.
class Library : public QLibrary
{
public:
    using QLibrary::QLibrary;
    ~Library() override { unload(); }
};

template<class Function>
Function resolve(QLibrary &library, const char *name)
{
    return reinterpret_cast<Function>(library.resolve(name));
}

/// In the order in which the program looks them up; the last three are missing in the build without CAN FD.
QStringList entryNames()
{
    return QStringLiteral("VCI_OpenDevice VCI_CloseDevice VCI_InitCAN VCI_ReadBoardInfo VCI_ReadErrInfo "
                          "VCI_ReadCANStatus VCI_GetReference VCI_SetReference VCI_StartCAN VCI_ResetCAN "
                          "VCI_GetReceiveNum VCI_ClearBuffer VCI_Transmit VCI_Receive KQ_OpenCANGateWay "
                          "KQ_SetCANGateWayIDFilter KQ_GetCANGateWayIDFilter KQ_ReadInfo KQ_OpenLIN KQ_CloseLIN "
                          "KQ_TransmitLIN KQ_ReceiveLIN KQ_ChangeLINMode KQ_TransmitLINBySlave KQ_ReceiveLINBySlave "
                          "KQ_GetReceiveNumCANFD KQ_TransmitCANFD KQ_ReceiveCANFD")
        .split(QLatin1Char(' '));
}

QStringList missingEntries(QLibrary &library)
{
    QStringList missing;
    for (const QString &name : entryNames()) {
        if (library.resolve(name.toLatin1().constData()) == nullptr) {
            missing.append(name);
        }
    }
    return missing;
}

QByteArray modelOf(QLibrary &library, std::uint8_t dev)
{
    std::array<std::array<char, AdapterInfoSize>, 4> info{};
    resolve<AdapterEntry::OpenDevice>(library, "VCI_OpenDevice")(Type, dev, 0);
    const auto readInfo = resolve<AdapterEntry::ReadInfo>(library, "KQ_ReadInfo");
    readInfo(Type, dev, info[0].data(), info[1].data(), info[2].data(), info[3].data());
    return {info[1].data()};
}

/// Runs the function and answers what it wrote to the standard error stream.
template<class Function>
QByteArray standardErrorOf(Function function)
{
    QFile file(QStringLiteral("stderr.txt"));
    if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate)) {
        qFatal("cannot write");
    }
    std::fflush(stderr);
    const int saved = dup(2);
    dup2(file.handle(), 2);
    function();
    std::fflush(stderr);
    dup2(saved, 2);
    close(saved);
    file.seek(0);
    return file.readAll();
}

#if defined(Q_PROCESSOR_X86_32)
/// How many bytes of the stack a function has freed when it returns. It is called with words that are all 0.
unsigned stackFreedBy(QFunctionPointer function, unsigned words)
{
    unsigned freed = 0;
    asm volatile("movl %%esp, %%esi\n\t"
                 "1: testl %%ecx, %%ecx\n\t"
                 "jz 2f\n\t"
                 "pushl $0\n\t"
                 "decl %%ecx\n\t"
                 "jmp 1b\n\t"
                 "2: movl %%esp, %%edi\n\t"
                 "call *%[function]\n\t"
                 "movl %%esp, %%eax\n\t"
                 "subl %%edi, %%eax\n\t"
                 "movl %%esi, %%esp"
                 : "=a"(freed), "+c"(words)
                 : [function] "b"(function)
                 : "edx", "esi", "edi", "cc", "memory");
    return freed;
}

/// What the arguments take on the stack: whole words each.
template<class... Arguments>
constexpr unsigned stackOf(std::uint32_t(X9_ADAPTER_CALL * /*entry*/)(Arguments...))
{
    return static_cast<unsigned>((0 + ... + ((sizeof(Arguments) + 3) / 4 * 4)));
}

template<class Function>
constexpr unsigned StackOf = stackOf(Function{nullptr});
#endif

} // namespace

class tst_VirtualAdapterLibrary : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    static void exportsEveryEntry();
    static void classicBuildLacksTheFdEntriesOnly();
    static void classicBuildWorks();
    static void unsupportedEntriesAnswerZero();
    static void exportsNothingElse();
#if defined(Q_PROCESSOR_X86_32)
    static void entriesFreeTheirArguments_data();
    static void entriesFreeTheirArguments();
#endif
    static void hasTheNameTheProgramLoads();
    static void builtInTrafficArrives();
    static void builtInCanFdTrafficArrives();
    static void linThroughTheEntries();
    static void configurationIsReadFromTheWorkingDirectory();
    static void badConfigurationIsReportedOnce();
    static void missingConfigurationIsNotReported();
    static void unloadingForgetsEverything();
    static void loadCycles();
    static void threadsThroughTheEntries();

private:
    static void writeConfig(const QByteArray &text);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
};

void tst_VirtualAdapterLibrary::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
}

void tst_VirtualAdapterLibrary::cleanup()
{
    QVERIFY(QDir::setCurrent(m_before));
}

void tst_VirtualAdapterLibrary::writeConfig(const QByteArray &text)
{
    QFile file(QStringLiteral("virtual-adapter.json"));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(text), static_cast<qint64>(text.size()));
}

void tst_VirtualAdapterLibrary::exportsEveryEntry()
{
    Library library(WholePath);
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    QCOMPARE(entryNames().size(), 28);
    QCOMPARE(missingEntries(library), QStringList());
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::classicBuildLacksTheFdEntriesOnly()
{
    Library library(ClassicPath);
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    const QStringList expected = {QStringLiteral("KQ_GetReceiveNumCANFD"), QStringLiteral("KQ_TransmitCANFD"),
                                  QStringLiteral("KQ_ReceiveCANFD")};
    QCOMPARE(missingEntries(library), expected);
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::classicBuildWorks()
{
    Library library(ClassicPath);
    QVERIFY(library.load());
    QCOMPARE(modelOf(library, 0).left(4), QByteArray("X9FC"));
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::unsupportedEntriesAnswerZero()
{
    Library library(WholePath);
    QVERIFY(library.load());
    for (const char *name : {"VCI_ReadBoardInfo", "VCI_ReadCANStatus", "VCI_GetReference", "VCI_SetReference"}) {
        QCOMPARE(resolve<AdapterEntry::Unused>(library, name)(), 0U);
    }
    VCI_ERR_INFO info{};
    QCOMPARE(resolve<AdapterEntry::ReadErrInfo>(library, "VCI_ReadErrInfo")(AdapterDeviceType, 0, 0, &info), 0U);
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::exportsNothingElse()
{
    Library library(WholePath);
    QVERIFY(library.load());
    QVERIFY(library.resolve("X9_GetOverflowNum") != nullptr);
    QVERIFY(library.resolve("_ZN2va13builtInConfigEv") == nullptr); // a function of the core
    QVERIFY(library.unload());
}

#if defined(Q_PROCESSOR_X86_32)
/// In the convention of 32-bit Windows' libraries the entry does it, not its caller; elsewhere it is the caller.
void tst_VirtualAdapterLibrary::entriesFreeTheirArguments_data()
{
    using namespace AdapterEntry;
    QTest::addColumn<unsigned>("bytes");
    QTest::newRow("VCI_OpenDevice") << StackOf<OpenDevice>;
    QTest::newRow("VCI_CloseDevice") << StackOf<CloseDevice>;
    QTest::newRow("VCI_InitCAN") << StackOf<InitCAN>;
    QTest::newRow("VCI_ReadBoardInfo") << StackOf<Unused>;
    QTest::newRow("VCI_ReadErrInfo") << StackOf<ReadErrInfo>;
    QTest::newRow("VCI_StartCAN") << StackOf<Channel>;
    QTest::newRow("VCI_ResetCAN") << StackOf<Channel>;
    QTest::newRow("VCI_GetReceiveNum") << StackOf<Channel>;
    QTest::newRow("VCI_ClearBuffer") << StackOf<Channel>;
    QTest::newRow("VCI_Transmit") << StackOf<Transmit>;
    QTest::newRow("VCI_Receive") << StackOf<Receive>;
    QTest::newRow("KQ_OpenCANGateWay") << StackOf<OpenCANGateWay>;
    QTest::newRow("KQ_SetCANGateWayIDFilter") << StackOf<SetCANGateWayIDFilter>;
    QTest::newRow("KQ_GetCANGateWayIDFilter") << StackOf<GetCANGateWayIDFilter>;
    QTest::newRow("KQ_ReadInfo") << StackOf<ReadInfo>;
    QTest::newRow("KQ_OpenLIN") << StackOf<OpenLIN>;
    QTest::newRow("KQ_CloseLIN") << StackOf<Channel>;
    QTest::newRow("KQ_TransmitLIN") << StackOf<TransmitLIN>;
    QTest::newRow("KQ_ReceiveLIN") << StackOf<ReceiveLIN>;
    QTest::newRow("KQ_ChangeLINMode") << StackOf<ChangeLINMode>;
    QTest::newRow("KQ_TransmitLINBySlave") << StackOf<TransmitLIN>;
    QTest::newRow("KQ_ReceiveLINBySlave") << StackOf<ReceiveLIN>;
    QTest::newRow("KQ_GetReceiveNumCANFD") << StackOf<Channel>;
    QTest::newRow("KQ_TransmitCANFD") << StackOf<TransmitCANFD>;
    QTest::newRow("KQ_ReceiveCANFD") << StackOf<ReceiveCANFD>;
}

void tst_VirtualAdapterLibrary::entriesFreeTheirArguments()
{
    constexpr unsigned MostWords = 8;
    static_assert(StackOf<AdapterEntry::TransmitLIN> == 24 && StackOf<AdapterEntry::Receive> == 24); // of 32 bytes
    QFETCH(unsigned, bytes);
    Library library(WholePath);
    QVERIFY(library.load());
    const QFunctionPointer entry = library.resolve(QTest::currentDataTag());
    QVERIFY(entry != nullptr);
#if defined(Q_OS_WIN)
    QCOMPARE(stackFreedBy(entry, MostWords), bytes);
#else
    QCOMPARE(stackFreedBy(entry, MostWords), 0U);
#endif
    QVERIFY(library.unload());
}
#endif

void tst_VirtualAdapterLibrary::hasTheNameTheProgramLoads()
{
#if defined(Q_OS_WIN)
    const QString name = QStringLiteral("ControlCAN.dll");
#else
    const QString name = QStringLiteral("libControlCAN.so");
#endif
    QCOMPARE(QFileInfo(WholePath).fileName(), name);
    QCOMPARE(QFileInfo(ClassicPath).fileName(), name);
}

void tst_VirtualAdapterLibrary::builtInTrafficArrives()
{
    Library library(WholePath);
    QVERIFY(library.load());
    QCOMPARE(modelOf(library, 0).left(4), QByteArray("X9FC"));
    QCOMPARE(modelOf(library, 1).left(4), QByteArray("X9EC"));
    VCI_INIT_CONFIG config{};
    config.AccMask = 0xFFFFFFFFU;
    config.Filter = 1;
    config.Timing1 = 0x1C;
    config.Mode = AdapterModeAlways;
    const auto waiting = resolve<AdapterEntry::Channel>(library, "VCI_GetReceiveNum");
    for (const std::uint8_t ch : {std::uint8_t{0}, std::uint8_t{1}}) {
        QCOMPARE(resolve<AdapterEntry::InitCAN>(library, "VCI_InitCAN")(Type, 0, ch, &config), 1U);
        QCOMPARE(resolve<AdapterEntry::Channel>(library, "VCI_StartCAN")(Type, 0, ch), 1U);
        QCOMPARE(resolve<AdapterEntry::Channel>(library, "VCI_ClearBuffer")(Type, 0, ch), 1U);
        QTRY_VERIFY(waiting(Type, 0, ch) >= 50);
        std::array<VCI_CAN_OBJ, 50> frames{};
        QCOMPARE(resolve<AdapterEntry::Receive>(library, "VCI_Receive")(Type, 0, ch, frames.data(), 50, 3000), 50U);
        QSet<std::uint32_t> ids;
        std::uint32_t last = 0;
        for (const VCI_CAN_OBJ &frame : frames) {
            ids.insert(frame.ID);
            QVERIFY(frame.TimeStamp >= last);
            last = frame.TimeStamp;
        }
        QVERIFY(ids.size() >= 5);
    }
    // A request is answered.
    VCI_CAN_OBJ request{};
    request.ID = 0x7E0;
    request.DataLen = 8;
    QCOMPARE(resolve<AdapterEntry::Transmit>(library, "VCI_Transmit")(Type, 0, 0, &request, 1), 1U);
    bool replied = false;
    const auto replyCame = [&library, &replied] {
        std::array<VCI_CAN_OBJ, 1000> frames{};
        const std::uint32_t count =
            resolve<AdapterEntry::Receive>(library, "VCI_Receive")(Type, 0, 0, frames.data(), 1000, 3000);
        const auto isReply = [](const VCI_CAN_OBJ &frame) {
            return frame.ID == 0x7E8;
        };
        replied = replied || std::any_of(frames.begin(), frames.begin() + count, isReply);
        return replied;
    };
    QTRY_VERIFY(replyCame());
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::builtInCanFdTrafficArrives()
{
    Library library(WholePath);
    QVERIFY(library.load());
    modelOf(library, 0);
    VCI_INIT_CONFIG config{};
    config.AccMask = 0xFFFFFFFFU;
    config.Timing1 = 0x1C;
    config.Mode = AdapterModeAlways | (2U << AdapterModeDataRateShift);
    QCOMPARE(resolve<AdapterEntry::InitCAN>(library, "VCI_InitCAN")(Type, 0, 0, &config), 1U);
    QCOMPARE(resolve<AdapterEntry::Channel>(library, "VCI_StartCAN")(Type, 0, 0), 1U);
    QSet<int> kinds;
    const auto allKindsCame = [&library, &kinds] {
        std::array<VCI_CANFD_OBJ, 1000> frames{};
        const std::uint32_t count =
            resolve<AdapterEntry::ReceiveCANFD>(library, "KQ_ReceiveCANFD")(Type, 0, 0, frames.data(), 1000, 3000);
        std::for_each(frames.begin(), frames.begin() + count, [&kinds](const auto &f) { kinds.insert(f.FDFlag); });
        return kinds.size() == 3;
    };
    QTRY_VERIFY(allKindsCame());
    const VCI_CANFD_OBJ frame{};
    QCOMPARE(resolve<AdapterEntry::TransmitCANFD>(library, "KQ_TransmitCANFD")(Type, 0, 0, &frame, 1), 1U);
    QTRY_VERIFY(resolve<AdapterEntry::Channel>(library, "KQ_GetReceiveNumCANFD")(Type, 0, 0) > 0);
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::linThroughTheEntries()
{
    writeConfig(R"({"lin_buses": [{"name": "l", "slaves": [{"id": 16, "data": "01 02 03"}]}],
                    "devices": [{"model": "X9FC", "lin": [{"bus": "l"}, {"bus": "l"}]}]})");
    Library library(WholePath);
    QVERIFY(library.load());
    modelOf(library, 0);
    const auto open = resolve<AdapterEntry::OpenLIN>(library, "KQ_OpenLIN");
    const auto changeMode = resolve<AdapterEntry::ChangeLINMode>(library, "KQ_ChangeLINMode");
    QCOMPARE(open(Type, 0, 0, 19200, 1), 1U);
    QCOMPARE(open(Type, 0, 1, 19200, 1), 1U);
    QCOMPARE(changeMode(Type, 0, 0, 1), 1U);
    QCOMPARE(changeMode(Type, 0, 1, 3), 1U);
    VCI_LIN_OBJ frame{};
    frame.ID = 16;
    QCOMPARE(resolve<AdapterEntry::ReceiveLIN>(library, "KQ_ReceiveLIN")(Type, 0, 0, &frame), 1U);
    QCOMPARE(int{frame.DataLen}, 3);
    QCOMPARE(int{frame.Data[2]}, 3);
    VCI_LIN_OBJ seen{};
    QCOMPARE(resolve<AdapterEntry::ReceiveLIN>(library, "KQ_ReceiveLINBySlave")(Type, 0, 1, &seen), 1U);
    QCOMPARE(int{seen.ID}, 0x50);
    // The record is passed by value, with every one of its bytes.
    VCI_LIN_OBJ sent{8, 0x3F, {1, 2, 3, 4, 5, 6, 7, 8}, 0};
    QCOMPARE(resolve<AdapterEntry::TransmitLIN>(library, "KQ_TransmitLIN")(Type, 0, 0, sent), 1U);
    QCOMPARE(resolve<AdapterEntry::ReceiveLIN>(library, "KQ_ReceiveLINBySlave")(Type, 0, 1, &seen), 1U);
    QCOMPARE(int{seen.ID}, 0xBF);
    QCOMPARE(int{seen.DataLen}, 8);
    QCOMPARE(std::memcmp(seen.Data, sent.Data, 8), 0);
    QCOMPARE(resolve<AdapterEntry::TransmitLIN>(library, "KQ_TransmitLINBySlave")(Type, 0, 0, sent), 1U);
    frame = {};
    frame.ID = 0x3F;
    QCOMPARE(resolve<AdapterEntry::ReceiveLIN>(library, "KQ_ReceiveLIN")(Type, 0, 0, &frame), 1U);
    QCOMPARE(std::memcmp(frame.Data, sent.Data, 8), 0);
    QCOMPARE(resolve<AdapterEntry::Channel>(library, "KQ_CloseLIN")(Type, 0, 0), 1U);
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::configurationIsReadFromTheWorkingDirectory()
{
    writeConfig(R"({"devices": [{"model": "mine"}]})");
    Library library(WholePath);
    QVERIFY(library.load());
    QCOMPARE(modelOf(library, 0), QByteArray("mine"));
    QCOMPARE(modelOf(library, 1), QByteArray());
    writeConfig(R"({"devices": [{"model": "other"}]})"); // read once only
    QCOMPARE(modelOf(library, 0), QByteArray("mine"));
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::badConfigurationIsReportedOnce()
{
    writeConfig("{\"devices\": [],\n\"buses\": [{\"name\": \"a\",\n\"data_rate\": 77\n}]}");
    Library library(WholePath);
    QVERIFY(library.load());
    const QByteArray said = standardErrorOf([&library] {
        modelOf(library, 0);
        modelOf(library, 1);
    });
    QCOMPARE(said, QByteArray("virtual adapter: virtual-adapter.json:3: buses[0].data_rate: must be a whole number "
                              "from 0 to 15; the built-in configuration is used\n"));
    QCOMPARE(modelOf(library, 0).left(4), QByteArray("X9FC"));
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::missingConfigurationIsNotReported()
{
    Library library(WholePath);
    QVERIFY(library.load());
    QCOMPARE(standardErrorOf([&library] { modelOf(library, 0); }), QByteArray());
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::unloadingForgetsEverything()
{
    writeConfig(R"({"devices": [{"model": "first"}]})");
    Library library(WholePath);
    QVERIFY(library.load());
    QCOMPARE(modelOf(library, 0), QByteArray("first")); // and stays open
    QVERIFY(library.unload());
    writeConfig(R"({"devices": [{"model": "second"}]})");
    QVERIFY(library.load());
    QCOMPARE(resolve<AdapterEntry::OpenDevice>(library, "VCI_OpenDevice")(Type, 0, 0), 1U);
    QCOMPARE(modelOf(library, 0), QByteArray("second"));
    QVERIFY(library.unload());
}

void tst_VirtualAdapterLibrary::loadCycles()
{
    for (int i = 0; i < 50; ++i) {
        Library library(i % 2 == 0 ? WholePath : ClassicPath);
        QVERIFY(library.load());
        QCOMPARE(resolve<AdapterEntry::OpenDevice>(library, "VCI_OpenDevice")(Type, 0, 0), 1U);
        if (i % 3 == 0) {
            QCOMPARE(resolve<AdapterEntry::CloseDevice>(library, "VCI_CloseDevice")(Type, 0), 1U);
        }
        QVERIFY(library.unload());
    }
}

void tst_VirtualAdapterLibrary::threadsThroughTheEntries()
{
    Library library(WholePath);
    QVERIFY(library.load());
    const auto open = resolve<AdapterEntry::OpenDevice>(library, "VCI_OpenDevice");
    const auto close = resolve<AdapterEntry::CloseDevice>(library, "VCI_CloseDevice");
    const auto waiting = resolve<AdapterEntry::Channel>(library, "VCI_GetReceiveNum");
    std::vector<std::thread> threads;
    std::atomic<int> opened{0};
    std::atomic<int> closed{0};
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 1000; ++round) {
                opened += static_cast<int>(open(Type, 0, 0)); // the first call of all builds the adapter, once
                waiting(Type, 0, 0);
                closed += static_cast<int>(close(Type, 0));
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    closed += static_cast<int>(close(Type, 0));
    QCOMPARE(opened.load(), closed.load());
    QVERIFY(opened > 0);
    QVERIFY(library.unload());
}

X9_PLAIN_TEST(tst_VirtualAdapterLibrary)
#include "tst_VirtualAdapterLibrary.moc"
