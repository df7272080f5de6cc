#include "app/AdapterProblem.h"
#include "device/CANAPI.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

class tst_AdapterProblem : public QObject
{
    Q_OBJECT

private slots:
    void missingLibrary();
    void wrongArchitecture();
    void unloadableLibrary();
    void libraryThatIsTooOld();
    void nothingToTell();
};

namespace {
/// A library for the other word size: an ELF header of 64 bytes with class 32 bit, or a PE file for i386.
QByteArray foreignLibrary()
{
#ifdef Q_OS_WIN
    QByteArray file(256, '\0');
    file.replace(0, 2, "MZ");
    file[0x3C] = '\x80';
    file.replace(0x80, 6, QByteArray("PE\0\0\x4C\x01", 6));
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

QTEST_GUILESS_MAIN(tst_AdapterProblem)
#include "tst_AdapterProblem.moc"
