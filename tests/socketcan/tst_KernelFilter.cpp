#include "adapter/AcceptanceFilter.h"
#include "adapter/socketcan/KernelFilter.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <algorithm>
#include <random>

namespace {

/// What the kernel does with its filters: linux/can.h.
bool kernelAccepts(const socketcan::KernelFilters &filters, const va::CanFrame &frame)
{
    const canid_t id = frame.id | (frame.extended ? CAN_EFF_FLAG : 0U) | (frame.remote ? CAN_RTR_FLAG : 0U);
    return std::any_of(filters.begin(), filters.end(), [id](const can_filter &filter) {
        return (id & filter.can_mask) == (filter.can_id & filter.can_mask);
    });
}

va::CanFrame frameOf(std::uint32_t id, bool isExtended, bool isRemote)
{
    va::CanFrame frame;
    frame.extended = isExtended;
    frame.id = id & (isExtended ? va::MaxExtendedId : va::MaxStandardId);
    frame.remote = isRemote;
    return frame;
}

} // namespace

class tst_KernelFilter : public QObject
{
    Q_OBJECT

private slots:
    static void words_data();
    static void words();
    static void agreesWithTheAcceptanceFilter();
    static void dataBytesAreNotTheKernels_data();
    static void dataBytesAreNotTheKernels();
};

void tst_KernelFilter::words_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<quint32>("standardId");
    QTest::addColumn<quint32>("standardMask");
    QTest::addColumn<quint32>("extendedId");
    QTest::addColumn<quint32>("extendedMask");
    QTest::newRow("everything") << 0U << 0xFFFFFFFFU << 0U << 0x80000000U << 0x80000000U << 0x80000000U;
    QTest::newRow("standard 0x123, data or remote")
        << (0x123U << 21U) << 0x001FFFFFU << 0x123U << 0x800007FFU << 0x848C0000U << 0x9FFC0000U;
    QTest::newRow("extended 0x12345678, data only")
        << (0x12345678U << 3U) << 0x00000003U << 0x48DU << 0xC00007FFU << 0x92345678U << 0xDFFFFFFFU;
    QTest::newRow("remote standard") << 0x00100000U << 0xFFEFFFFFU << 0x40000000U << 0xC0000000U << 0x80020000U
                                     << 0x80020000U;
}

void tst_KernelFilter::words()
{
    QFETCH(quint32, code);
    QFETCH(quint32, mask);
    const socketcan::KernelFilters filters = socketcan::kernelFilters({code, mask});
    QTEST(quint32{filters[0].can_id}, "standardId");
    QTEST(quint32{filters[0].can_mask}, "standardMask");
    QTEST(quint32{filters[1].can_id}, "extendedId");
    QTEST(quint32{filters[1].can_mask}, "extendedMask");
}

void tst_KernelFilter::agreesWithTheAcceptanceFilter()
{
    std::mt19937 random(20261122); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same frames each time
    int accepted = 0;
    for (int i = 0; i < 200000; ++i) {
        // Few bits are compared, so that a good part passes.
        const va::AcceptanceFilter filter{std::uint32_t(random()), std::uint32_t(random() | random() | random())};
        const socketcan::KernelFilters filters = socketcan::kernelFilters(filter);
        const auto kind = static_cast<unsigned>(random());
        const va::CanFrame frame = frameOf(std::uint32_t(random()), (kind & 1U) != 0, (kind & 2U) != 0);
        QCOMPARE(kernelAccepts(filters, frame), filter.acceptsIdentifier(frame));
        accepted += filter.acceptsIdentifier(frame) ? 1 : 0;
    }
    QVERIFY(accepted > 10000 && accepted < 190000);
}

void tst_KernelFilter::dataBytesAreNotTheKernels_data()
{
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<bool>("isExact");
    QTest::newRow("nothing compared") << 0xFFFFFFFFU << true;
    QTest::newRow("identifier compared") << 0x0000FFFFU << true;
    QTest::newRow("first byte compared") << 0xFFFF00FFU << false;
    QTest::newRow("a bit of the second byte") << 0xFFFFFFFEU << false;
}

void tst_KernelFilter::dataBytesAreNotTheKernels()
{
    QFETCH(quint32, mask);
    QTEST(socketcan::isExact({0, mask}), "isExact");
}

X9_PLAIN_TEST(tst_KernelFilter)
#include "tst_KernelFilter.moc"
