#include "device/LibraryImage.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

QByteArray elf(char elfClass, char data, const QByteArray &machine)
{
    QByteArray head("\x7F"
                    "ELF");
    head += elfClass;
    head += data;
    head += QByteArray(12, '\0');
    return head + machine;
}

/// A DOS header of 64 bytes whose pointer leads to the bytes behind it.
QByteArray pe(const QByteArray &pointer, const QByteArray &behind)
{
    return QByteArray("MZ") + QByteArray(58, '\x90') + pointer + behind;
}

const QByteArray peX64 = pe(QByteArray("\x40\0\0\0", 4), QByteArray("PE\0\0\x64\x86", 6));
const QByteArray peX64Further = pe(QByteArray("\x42\0\0\0", 4), QByteArray("\0\0PE\0\0\x64\x86", 8));
const QByteArray peX86 = pe(QByteArray("\x42\0\0\0", 4), QByteArray("\0\0PE\0\0\x4C\x01", 8));
const QByteArray elfX64 = elf(2, 1, QByteArray("\x3E\0", 2));

} // namespace

class tst_LibraryImage : public QObject
{
    Q_OBJECT

private slots:
    static void reads_data();
    static void reads();
    static void cutOffHeadersAreNone();
    static void comparesMachines_data();
    static void comparesMachines();
    static void knowsTheRunningProgram();
    static void bits_data();
    static void bits();
};

void tst_LibraryImage::reads_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("isKnown");

    QTest::newRow("ELF x86-64") << elfX64 << true;
    QTest::newRow("ELF x86") << elf(1, 1, QByteArray("\x03\0", 2)) << true;
    QTest::newRow("ELF PowerPC 64") << elf(2, 2, QByteArray("\0\x15", 2)) << true;
    QTest::newRow("ELF unknown class") << elf(3, 1, QByteArray("\x3E\0", 2)) << false;
    QTest::newRow("ELF no class") << elf(0, 1, QByteArray("\x3E\0", 2)) << false;
    QTest::newRow("ELF unknown encoding") << elf(2, 3, QByteArray("\x3E\0", 2)) << false;
    QTest::newRow("PE x64") << peX64 << true;
    QTest::newRow("PE x86") << peX86 << true;
    QTest::newRow("PE signature missing") << pe(QByteArray("\x40\0\0\0", 4), QByteArray("NE\0\0\x64\x86", 6)) << false;
    QTest::newRow("PE pointer behind the end")
        << pe(QByteArray("\0\x10\0\0", 4), QByteArray("PE\0\0\x64\x86", 6)) << false;
    QTest::newRow("PE pointer at the number range's end")
        << pe(QByteArray("\xFF\xFF\xFF\xFF", 4), QByteArray("PE\0\0\x64\x86", 6)) << false;
    QTest::newRow("text") << QByteArray("this is no library, but long enough to look like one at first sight, is it?")
                          << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void tst_LibraryImage::reads()
{
    QFETCH(QByteArray, head);
    QTEST(!libraryMachine(head).isEmpty(), "isKnown");
}

void tst_LibraryImage::cutOffHeadersAreNone()
{
    for (const QByteArray &whole : {elfX64, peX64}) {
        for (int length = 0; length < whole.size(); ++length) {
            // A copy of its own, so that the address sanitizer sees a read behind it.
            const QByteArray part(whole.constData(), length);
            QCOMPARE(libraryMachine(part), QByteArray());
        }
        QVERIFY(!libraryMachine(whole).isEmpty());
    }
}

void tst_LibraryImage::comparesMachines_data()
{
    QTest::addColumn<QByteArray>("library");
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<bool>("isSame");

    QTest::newRow("same") << elfX64 << elfX64 + "more" << true;
    QTest::newRow("same, at another place") << peX64 << peX64Further << true;
    QTest::newRow("other processor") << elf(2, 1, QByteArray("\xB7\0", 2)) << elfX64 << false;
    QTest::newRow("other word size") << elf(1, 1, QByteArray("\x3E\0", 2)) << elfX64 << false;
    QTest::newRow("other byte order") << elf(2, 2, QByteArray("\0\x3E", 2)) << elfX64 << false;
    QTest::newRow("other processor of Windows") << peX86 << peX64 << false;
    QTest::newRow("other system") << peX64 << elfX64 << false;
}

void tst_LibraryImage::comparesMachines()
{
    QFETCH(QByteArray, library);
    QFETCH(QByteArray, program);
    QTEST(libraryMachine(library) == libraryMachine(program), "isSame");
}

void tst_LibraryImage::knowsTheRunningProgram()
{
    QFile program(QCoreApplication::applicationFilePath());
    QVERIFY(program.open(QIODevice::ReadOnly));
    QVERIFY(!libraryMachine(program.read(LibraryImageHeadSize)).isEmpty());
}

void tst_LibraryImage::bits_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<int>("bits");
    QTest::newRow("ELF x86-64") << elfX64 << 64;
    QTest::newRow("ELF x86") << elf(1, 1, QByteArray("\x03\0", 2)) << 32;
    QTest::newRow("ELF x86-64 with 32-bit addresses") << elf(1, 1, QByteArray("\x3E\0", 2)) << 0;
    QTest::newRow("ELF PowerPC 64") << elf(2, 2, QByteArray("\0\x15", 2)) << 0;
    QTest::newRow("ELF ARM 64") << elf(2, 1, QByteArray("\xB7\0", 2)) << 0;
    QTest::newRow("PE x64") << peX64 << 64;
    QTest::newRow("PE x86") << peX86 << 32;
    QTest::newRow("PE ARM 64") << pe(QByteArray("\x40\0\0\0", 4), QByteArray("PE\0\0\x64\xAA", 6)) << 0;
    QTest::newRow("no library") << QByteArray("text") << 0;
}

void tst_LibraryImage::bits()
{
    QFETCH(QByteArray, head);
    QTEST(libraryBits(libraryMachine(head)), "bits");
    QCOMPARE(libraryBits(fileMachine(QCoreApplication::applicationFilePath())), int(8 * sizeof(void *)));
    QCOMPARE(fileMachine(QStringLiteral("no such file")), QByteArray());
}

X9_CORE_TEST(tst_LibraryImage)
#include "tst_LibraryImage.moc"
