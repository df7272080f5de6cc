#include "capture/CaptureReader.h"
#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

// Memory of each thread as the operators new and delete hand it out; everything the reader takes comes from them.
namespace {

constexpr std::size_t Header = alignof(std::max_align_t);
thread_local std::size_t taken = 0;
thread_local std::size_t mostTaken = 0;
thread_local std::size_t allowed = std::numeric_limits<std::size_t>::max();

void *take(std::size_t size)
{
    auto *block =
        size <= allowed - std::min(taken, allowed) ? static_cast<std::byte *>(std::malloc(size + Header)) : nullptr;
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t *>(block) = size;
    taken += size;
    mostTaken = std::max(mostTaken, taken);
    return block + Header;
}

void giveBack(void *memory)
{
    if (memory != nullptr) {
        std::byte *block = static_cast<std::byte *>(memory) - Header;
        taken -= *reinterpret_cast<std::size_t *>(block);
        std::free(block);
    }
}

} // namespace

void *operator new(std::size_t size)
{
    return take(size);
}
void *operator new[](std::size_t size)
{
    return take(size);
}
void operator delete(void *memory) noexcept
{
    giveBack(memory);
}
void operator delete[](void *memory) noexcept
{
    giveBack(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    giveBack(memory);
}
void operator delete[](void *memory, std::size_t) noexcept
{
    giveBack(memory);
}

namespace {

/// For the piece that is read and for blocks that are not full.
constexpr std::size_t Allowance = 1U << 20U;

QByteArray binary(const char *header, const QByteArray &record, int count)
{
    return QByteArray(header) + QByteArray(4, '\0') + record.repeated(count);
}

} // namespace

class tst_CaptureMemory : public QObject
{
    Q_OBJECT

private slots:
    static void peakStaysBelowTheFile_data();
    static void peakStaysBelowTheFile();
    static void framesTakeLittleMoreThanTheirSize_data();
    static void framesTakeLittleMoreThanTheirSize();
    static void fileThatMemoryDoesNotSufficeForIsRefused();
};

void tst_CaptureMemory::peakStaysBelowTheFile_data()
{
    QTest::addColumn<CANFile::FileType>("format");
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("shortest .canfd records")
        << CANFile::CANFD << binary("Vantora CAN Data", QByteArray(13, '\0'), 800000);
    QTest::newRow(".can records") << CANFile::CAN << binary("Zhiyuan CAN Data", QByteArray(24, '\0'), 400000);
    QTest::newRow("shortest frames in text") << CANFile::CSV << "x\n" + QByteArray("0,,Extend,,\n").repeated(800000);
    QTest::newRow("shortest frames with a payload")
        << CANFile::CSV << "x\n" + QByteArray("0,,Extend,,1\n").repeated(800000);
    QTest::newRow("one line") << CANFile::CSV << QByteArray(10000000, 'a');
    QTest::newRow("one line of separators") << CANFile::Text << "x\n" + QByteArray(10000000, ' ');
    QTest::newRow("empty lines") << CANFile::CSV << QByteArray(10000000, '\n');
    QTest::newRow("one payload that is no ASCII")
        << CANFile::CSV << "x\n1,,Standard,," + QByteArray("\xDE\x41").repeated(5000000);
}

void tst_CaptureMemory::peakStaysBelowTheFile()
{
    QFETCH(CANFile::FileType, format);
    QFETCH(QByteArray, file);
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    const std::size_t before = taken;
    mostTaken = taken;
    const auto content = readCapture(buffer, captureFormat(format));
    QVERIFY(content);
    const std::size_t peak = mostTaken - before;
    QVERIFY2(peak <= static_cast<std::size_t>(file.size()) + Allowance, qPrintable(QString::number(peak)));
}

void tst_CaptureMemory::framesTakeLittleMoreThanTheirSize_data()
{
    QTest::addColumn<int>("payload");
    for (const int payload : {0, 1, 8, 12, 64}) {
        QTest::addRow("%d bytes", payload) << payload;
    }
}

void tst_CaptureMemory::framesTakeLittleMoreThanTheirSize()
{
    QFETCH(int, payload);
    QByteArray record(13 + payload, '\0');
    record[12] = char(payload);
    constexpr int Count = 500000;
    QByteArray file = binary("Vantora CAN Data", record, Count);
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    const std::size_t before = taken;
    const auto content = readCapture(buffer, captureFormat(CANFile::CANFD));
    QVERIFY(content);
    QCOMPARE(content->frames.size(), qint64(Count));
    const std::size_t own = (12 + std::size_t(payload)) * Count;
    const std::size_t held = taken - before;
    QVERIFY2(held >= own && held <= own + own / 20 + Allowance, qPrintable(QString::number(held)));
}

void tst_CaptureMemory::fileThatMemoryDoesNotSufficeForIsRefused()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.can")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(binary("Zhiyuan CAN Data", QByteArray(24, '\0'), 400000));
    file.close();
    QVERIFY(readCapture(file.fileName()));
    const std::size_t before = taken;
    allowed = taken + 2 * Allowance;
    const auto content = readCapture(file.fileName());
    allowed = std::numeric_limits<std::size_t>::max();
    QVERIFY(!content);
    QVERIFY(taken <= before + Allowance / 2); // what was read is given back
}

X9_PLAIN_TEST(tst_CaptureMemory)
#include "tst_CaptureMemory.moc"
