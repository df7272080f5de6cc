#include "device/CANAPI.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QtEndian>
#include <QtTest>

namespace {

const QStringList lookUpOrder =
    QStringLiteral("VCI_OpenDevice VCI_CloseDevice VCI_InitCAN VCI_ReadBoardInfo VCI_ReadErrInfo VCI_ReadCANStatus "
                   "VCI_GetReference VCI_SetReference VCI_StartCAN VCI_ResetCAN VCI_GetReceiveNum VCI_ClearBuffer "
                   "VCI_Transmit VCI_Receive KQ_OpenCANGateWay KQ_SetCANGateWayIDFilter KQ_GetCANGateWayIDFilter "
                   "KQ_ReadInfo KQ_OpenLIN KQ_CloseLIN KQ_TransmitLIN KQ_ReceiveLIN KQ_ChangeLINMode "
                   "KQ_TransmitLINBySlave KQ_ReceiveLINBySlave KQ_ReceiveLINBySlave KQ_GetReceiveNumCANFD "
                   "KQ_TransmitCANFD KQ_ReceiveCANFD")
        .split(QLatin1Char(' '));

using Symbol = void (*)();

/// The slots in the order of the table, as addresses.
QVector<Symbol> slotsOf(const CANAPI &api)
{
    return {reinterpret_cast<Symbol>(api.VCI_OpenDevice),
            reinterpret_cast<Symbol>(api.VCI_CloseDevice),
            reinterpret_cast<Symbol>(api.VCI_InitCAN),
            reinterpret_cast<Symbol>(api.VCI_ReadBoardInfo),
            reinterpret_cast<Symbol>(api.VCI_ReadErrInfo),
            reinterpret_cast<Symbol>(api.VCI_ReadCANStatus),
            reinterpret_cast<Symbol>(api.VCI_GetReference),
            reinterpret_cast<Symbol>(api.VCI_SetReference),
            reinterpret_cast<Symbol>(api.VCI_StartCAN),
            reinterpret_cast<Symbol>(api.VCI_ResetCAN),
            reinterpret_cast<Symbol>(api.VCI_GetReceiveNum),
            reinterpret_cast<Symbol>(api.VCI_ClearBuffer),
            reinterpret_cast<Symbol>(api.VCI_Transmit),
            reinterpret_cast<Symbol>(api.VCI_Receive),
            reinterpret_cast<Symbol>(api.KQ_OpenCANGateWay),
            reinterpret_cast<Symbol>(api.KQ_SetCANGateWayIDFilter),
            reinterpret_cast<Symbol>(api.KQ_GetCANGateWayIDFilter),
            reinterpret_cast<Symbol>(api.KQ_ReadInfo),
            reinterpret_cast<Symbol>(api.KQ_OpenLIN),
            reinterpret_cast<Symbol>(api.KQ_CloseLIN),
            reinterpret_cast<Symbol>(api.KQ_TransmitLIN),
            reinterpret_cast<Symbol>(api.KQ_ReceiveLIN),
            reinterpret_cast<Symbol>(api.KQ_ChangeLINMode),
            reinterpret_cast<Symbol>(api.KQ_TransmitLINBySlave),
            reinterpret_cast<Symbol>(api.KQ_ReceiveLINBySlave),
            reinterpret_cast<Symbol>(api.KQ_GetReceiveNumCANFD),
            reinterpret_cast<Symbol>(api.KQ_TransmitCANFD),
            reinterpret_cast<Symbol>(api.KQ_ReceiveCANFD)};
}

QStringList namesOnce()
{
    QStringList names = lookUpOrder;
    names.removeDuplicates();
    return names;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// Where the machine number stands in a library of this system.
int machineOffset(const QByteArray &library)
{
#ifdef Q_OS_WIN
    constexpr int PeHeaderOffset = 0x3C; // behind the signature of four bytes
    return qFromLittleEndian<int>(library.constData() + PeHeaderOffset) + 4;
#else
    Q_UNUSED(library);
    return 18; // of the ELF header
#endif
}
} // namespace

class tst_CANAPI : public QObject
{
    Q_OBJECT

private slots:
    void init();
    static void withoutPath();
    static void defaultPathIsInTheWorkingDirectory();
    static void entriesAreLookedUpInOrder();
    static void eachNameFillsItsSlot();
    static void missingEntriesAreListedOnce();
    void missingFile();
    void textFile();
    void directory();
    void libraryForAnotherProcessor();
    void cutOffLibrary();
    static void libraryWithOneEntry();
    static void bareNameMeansTheWorkingDirectory();
    static void libraryIsFreed();
    static void wholeLibrary();
    static void libraryWithoutCANFDEntries();

private:
    static void verifyEmpty(const CANAPI &api);

    QTemporaryDir m_dir;
};

void tst_CANAPI::init()
{
    QVERIFY(m_dir.isValid());
    QVERIFY(QFile::exists(QStringLiteral(X9_ONE_ENTRY_LIBRARY)));
}

void tst_CANAPI::verifyEmpty(const CANAPI &api)
{
    for (const Symbol slot : slotsOf(api)) {
        QVERIFY(slot == nullptr);
    }
    QCOMPARE(api.missingEntries(), QStringList());
}

void tst_CANAPI::withoutPath()
{
    const CANAPI api{QString()};
    QCOMPARE(api.state(), AdapterLibraryState::NotLoaded);
    QCOMPARE(api.systemMessage(), QString());
    verifyEmpty(api);
}

void tst_CANAPI::defaultPathIsInTheWorkingDirectory()
{
#ifdef Q_OS_WIN
    QCOMPARE(CANAPI::defaultLibraryPath(), QStringLiteral(".\\ControlCAN.dll"));
#else
    QCOMPARE(CANAPI::defaultLibraryPath(), QStringLiteral("./libControlCAN.so"));
#endif
}

void tst_CANAPI::entriesAreLookedUpInOrder()
{
    QStringList asked;
    const CANAPI::EntryLookUp lookUp = [&asked](const char *name) -> Symbol {
        asked.append(QString::fromLatin1(name));
        return nullptr;
    };
    const CANAPI api(lookUp);
    QCOMPARE(asked, lookUpOrder);
    QCOMPARE(api.state(), AdapterLibraryState::EntriesMissing);
    QCOMPARE(api.missingEntries(), namesOnce());
}

void tst_CANAPI::eachNameFillsItsSlot()
{
    // Every name gets an address of its own, which is compared and never called.
    const QStringList names = namesOnce();
    const auto address = [&names](const QString &name) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): never called
        return reinterpret_cast<Symbol>(quintptr(0x1000 + 16 * names.indexOf(name)));
    };
    const CANAPI::EntryLookUp lookUp = [&address](const char *name) {
        return address(QString::fromLatin1(name));
    };
    const CANAPI api(lookUp);
    QCOMPARE(api.state(), AdapterLibraryState::Loaded);
    QCOMPARE(api.missingEntries(), QStringList());
    const QVector<Symbol> filled = slotsOf(api);
    QCOMPARE(filled.size(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        QVERIFY2(filled[i] == address(names[i]), qPrintable(names[i]));
    }
}

void tst_CANAPI::missingEntriesAreListedOnce()
{
    const ScriptedAdapter adapter;
    const QStringList missing{QStringLiteral("VCI_Receive"), QStringLiteral("KQ_ReceiveLINBySlave")};
    const std::unique_ptr<CANAPI> api = adapter.table(missing);
    QCOMPARE(api->state(), AdapterLibraryState::EntriesMissing);
    QCOMPARE(api->missingEntries(), missing);
    QVERIFY(api->VCI_Receive == nullptr);
    QVERIFY(api->KQ_ReceiveLINBySlave == nullptr);
    QVERIFY(api->VCI_Transmit != nullptr);
}

void tst_CANAPI::missingFile()
{
    const QString path = m_dir.filePath(QStringLiteral("libnowhere.so"));
    const CANAPI api(path);
    QCOMPARE(api.state(), AdapterLibraryState::NotFound);
    QCOMPARE(api.libraryPath(), path);
    QVERIFY(!api.systemMessage().isEmpty());
    verifyEmpty(api);
}

void tst_CANAPI::textFile()
{
    const QString path = m_dir.filePath(QStringLiteral("libtext.so"));
    QVERIFY(write(path, "this is not a library\n"));
    const CANAPI api(path);
    QCOMPARE(api.state(), AdapterLibraryState::LoadFailed);
    QVERIFY(!api.systemMessage().isEmpty());
    verifyEmpty(api);
}

void tst_CANAPI::directory()
{
    const CANAPI api(m_dir.path());
    QCOMPARE(api.state(), AdapterLibraryState::LoadFailed);
    verifyEmpty(api);
}

void tst_CANAPI::libraryForAnotherProcessor()
{
    QByteArray library = contentOf(QStringLiteral(X9_ONE_ENTRY_LIBRARY));
    QVERIFY(library.size() > 64);
    library[machineOffset(library)] = char(library[machineOffset(library)] ^ 0x55);
    const QString path = m_dir.filePath(QStringLiteral("libother.so"));
    QVERIFY(write(path, library));
    const CANAPI api(path);
    QCOMPARE(api.state(), AdapterLibraryState::WrongArchitecture);
    QVERIFY(!api.systemMessage().isEmpty());
    verifyEmpty(api);
}

void tst_CANAPI::cutOffLibrary()
{
    const QString path = m_dir.filePath(QStringLiteral("libcut.so"));
    QVERIFY(write(path, contentOf(QStringLiteral(X9_ONE_ENTRY_LIBRARY)).left(64)));
    const CANAPI api(path);
    QCOMPARE(api.state(), AdapterLibraryState::LoadFailed);
    QVERIFY(!api.systemMessage().isEmpty());
    verifyEmpty(api);
}

void tst_CANAPI::libraryWithOneEntry()
{
    const CANAPI api(QStringLiteral(X9_ONE_ENTRY_LIBRARY));
    QCOMPARE(api.state(), AdapterLibraryState::EntriesMissing);
    QCOMPARE(api.systemMessage(), QString());
    QCOMPARE(api.missingEntries(), namesOnce().mid(1));
    QVERIFY(api.VCI_OpenDevice != nullptr);
    QCOMPARE(api.VCI_OpenDevice(AdapterDeviceType, 0, 0), 1U);
}

void tst_CANAPI::bareNameMeansTheWorkingDirectory()
{
    const QString before = QDir::currentPath();
    const QFileInfo library(QStringLiteral(X9_ONE_ENTRY_LIBRARY));
    QVERIFY(QDir::setCurrent(library.path()));
    const CANAPI api(library.fileName());
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(api.state(), AdapterLibraryState::EntriesMissing);
}

void tst_CANAPI::libraryIsFreed()
{
    // The library counts its calls from its loading on.
    for (int time = 0; time < 2; ++time) {
        const CANAPI api(QStringLiteral(X9_ONE_ENTRY_LIBRARY));
        QVERIFY(api.VCI_OpenDevice != nullptr);
        QCOMPARE(api.VCI_OpenDevice(AdapterDeviceType, 0, 0), 1U);
        QCOMPARE(api.VCI_OpenDevice(AdapterDeviceType, 0, 0), 2U);
    }
}

void tst_CANAPI::wholeLibrary()
{
    const CANAPI api(QStringLiteral(X9_VIRTUAL_ADAPTER));
    QCOMPARE(api.missingEntries(), QStringList());
    QCOMPARE(api.state(), AdapterLibraryState::Loaded);
    QVERIFY(!slotsOf(api).contains(nullptr));
}

void tst_CANAPI::libraryWithoutCANFDEntries()
{
    const CANAPI api(QStringLiteral(X9_VIRTUAL_ADAPTER_CLASSIC));
    QCOMPARE(api.state(), AdapterLibraryState::EntriesMissing);
    QCOMPARE(api.missingEntries(),
             QStringList({QStringLiteral("KQ_GetReceiveNumCANFD"), QStringLiteral("KQ_TransmitCANFD"),
                          QStringLiteral("KQ_ReceiveCANFD")}));
    QVERIFY(api.VCI_Receive != nullptr);
}

X9_CORE_TEST(tst_CANAPI)
#include "tst_CANAPI.moc"
