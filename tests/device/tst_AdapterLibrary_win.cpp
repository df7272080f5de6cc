// What the program finds under ".\\ControlCAN.dll", loaded by Windows.

#include "device/CANAPI.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <memory>

class tst_AdapterLibrary : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void present();
    void presentInAFolderOfAnyName();
    void missing();
    void notTakenFromElsewhere();
    void libraryOfTheOtherKind();
    void withoutCANFDEntries();
    void withoutALibraryThatItNeeds();
    void replacedByTheRightOne();

private:
    /// Lays a library into the working directory under the name that the program loads.
    void put(const QString &library);

    QString m_before;
    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {
const QString WholeAdapter = QStringLiteral(X9_VIRTUAL_ADAPTER);
const QString AdapterOfTheOtherKind = QStringLiteral(X9_ADAPTER_OTHER_KIND);
const QString LibraryName = QStringLiteral("ControlCAN.dll");
} // namespace

void tst_AdapterLibrary::init()
{
    m_before = QDir::currentPath();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    QCOMPARE(CANAPI::defaultLibraryPath(), QStringLiteral(".\\ControlCAN.dll"));
}

void tst_AdapterLibrary::cleanup()
{
    QVERIFY(QDir::setCurrent(m_before));
    m_folder.reset();
}

void tst_AdapterLibrary::put(const QString &library)
{
    QFile::remove(LibraryName);
    QVERIFY2(QFile::copy(library, LibraryName), qPrintable(library));
}

void tst_AdapterLibrary::present()
{
    put(WholeAdapter);
    const CANAPI api(CANAPI::defaultLibraryPath());
    QCOMPARE(api.state(), AdapterLibraryState::Loaded);
    QCOMPARE(api.missingEntries(), QStringList());
    QCOMPARE(api.systemMessage(), QString());
    QVERIFY(api.VCI_OpenDevice != nullptr);
    QCOMPARE(api.VCI_OpenDevice(AdapterDeviceType, 0, 0), 1U);
    QCOMPARE(api.VCI_CloseDevice(AdapterDeviceType, 0), 1U);
}

/// The path that is handed over has none of the folder's characters, which need not be in the local code page.
void tst_AdapterLibrary::presentInAFolderOfAnyName()
{
    const QString name = QStringLiteral("总线 测试 äß");
    QVERIFY(QDir().mkdir(name));
    QVERIFY(QDir::setCurrent(name));
    put(WholeAdapter);
    QCOMPARE(CANAPI(CANAPI::defaultLibraryPath()).state(), AdapterLibraryState::Loaded);
}

void tst_AdapterLibrary::missing()
{
    const CANAPI api(CANAPI::defaultLibraryPath());
    QCOMPARE(api.state(), AdapterLibraryState::NotFound);
    QVERIFY(!api.systemMessage().isEmpty());
    QVERIFY(api.VCI_OpenDevice == nullptr);
}

/// Windows searches the program's folder and the PATH for a library that is asked for by its bare name.
void tst_AdapterLibrary::notTakenFromElsewhere()
{
    const QByteArray path = qgetenv("PATH");
    const QString folder = QDir::toNativeSeparators(QFileInfo(WholeAdapter).path());
    qputenv("PATH", folder.toLocal8Bit() + ';' + path);
    const AdapterLibraryState state = CANAPI(CANAPI::defaultLibraryPath()).state();
    const AdapterLibraryState bareName = CANAPI(LibraryName).state();
    put(QStringLiteral(X9_VIRTUAL_ADAPTER_CLASSIC));
    const AdapterLibraryState own = CANAPI(CANAPI::defaultLibraryPath()).state();
    qputenv("PATH", path);
    QCOMPARE(state, AdapterLibraryState::NotFound);
    QCOMPARE(bareName, AdapterLibraryState::NotFound);
    QCOMPARE(own, AdapterLibraryState::EntriesMissing); // and not the whole one
}

void tst_AdapterLibrary::libraryOfTheOtherKind()
{
    put(AdapterOfTheOtherKind);
    const CANAPI api(CANAPI::defaultLibraryPath());
    QCOMPARE(api.state(), AdapterLibraryState::WrongArchitecture);
    QVERIFY(!api.systemMessage().isEmpty());
    QVERIFY(api.VCI_OpenDevice == nullptr);
}

void tst_AdapterLibrary::withoutCANFDEntries()
{
    put(QStringLiteral(X9_VIRTUAL_ADAPTER_CLASSIC));
    const CANAPI api(CANAPI::defaultLibraryPath());
    QCOMPARE(api.state(), AdapterLibraryState::EntriesMissing);
    QCOMPARE(api.missingEntries(),
             QStringList({QStringLiteral("KQ_GetReceiveNumCANFD"), QStringLiteral("KQ_TransmitCANFD"),
                          QStringLiteral("KQ_ReceiveCANFD")}));
    QVERIFY(api.VCI_OpenDevice != nullptr);
}

/// The file is there and for the right machine: what is wrong only the system can tell.
void tst_AdapterLibrary::withoutALibraryThatItNeeds()
{
    put(QStringLiteral(X9_NEEDY_LIBRARY));
    const CANAPI api(CANAPI::defaultLibraryPath());
    QCOMPARE(api.state(), AdapterLibraryState::LoadFailed);
    QVERIFY(!api.systemMessage().isEmpty());
    QVERIFY(api.VCI_OpenDevice == nullptr);
}

void tst_AdapterLibrary::replacedByTheRightOne()
{
    put(AdapterOfTheOtherKind);
    QCOMPARE(CANAPI(CANAPI::defaultLibraryPath()).state(), AdapterLibraryState::WrongArchitecture);
    put(WholeAdapter);
    QCOMPARE(CANAPI(CANAPI::defaultLibraryPath()).state(), AdapterLibraryState::Loaded);
}

X9_CORE_TEST(tst_AdapterLibrary)
#include "tst_AdapterLibrary_win.moc"
