#include "can/CanAcceptanceFilter.h"
#include "tests/support/TestProgram.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <array>
#include <set>

using Ranges = QVector<CanIdRange>;
Q_DECLARE_METATYPE(Ranges)

namespace {
constexpr bool Std = false;
constexpr bool Ext = true;

CanIdRange one(quint32 id, bool extended)
{
    return {id, id, extended};
}

/// 32 characters from bit 31 down: '0', '1', and '-' where there is no bit.
using Picture = std::array<char, 32>;

/// Writes the lowest bits of a number into a picture.
void draw(Picture &picture, std::size_t place, quint32 number, unsigned bits)
{
    for (unsigned i = 0; i < bits; ++i) {
        picture[place + i] = ((number >> (bits - 1 - i)) & 1U) != 0 ? '1' : '0';
    }
}

Picture pictureOf(quint32 number)
{
    Picture picture{};
    draw(picture, 0, number, 32);
    return picture;
}

struct Frame
{
    quint32 id;
    bool extended;
    bool remote;
    quint16 data; ///< the first two bytes
};

Picture pictureOf(const Frame &frame)
{
    Picture picture{};
    picture.fill('-');
    if (frame.extended) {
        draw(picture, 0, frame.id, 29);
        draw(picture, 29, frame.remote ? 1 : 0, 1);
    } else {
        draw(picture, 0, frame.id, 11);
        draw(picture, 11, frame.remote ? 1 : 0, 1);
        draw(picture, 16, frame.data, 16);
    }
    return picture;
}

/// Written down from the data sheet, without a thought of the product's code: compares character by character.
bool receives(const CanAcceptanceFilter &filter, const Frame &frame)
{
    const Picture code = pictureOf(filter.code);
    const Picture mask = pictureOf(filter.mask);
    const Picture bits = pictureOf(frame);
    for (std::size_t i = 0; i < bits.size(); ++i) {
        if (mask[i] == '0' && bits[i] != '-' && bits[i] != code[i]) {
            return false;
        }
    }
    return true;
}

/// Frames with the identifier that differ in all that the filter can see.
std::vector<Frame> framesWith(quint32 id, bool extended)
{
    std::vector<Frame> frames;
    for (const bool remote : {false, true}) {
        for (const unsigned data : {0x0000U, 0xFFFFU}) {
            frames.push_back({id, extended, remote, static_cast<quint16>(data)});
        }
    }
    return frames;
}

/// Tries the frame that is likest the code and the one that is unlike it wherever it can be.
CanPassage passageByTrying(const CanAcceptanceFilter &filter, quint32 id, bool extended)
{
    const Picture code = pictureOf(filter.code);
    const bool remote = code[extended ? 29 : 11] == '1';
    const auto data = static_cast<quint16>(filter.code & 0xFFFFU);
    if (!receives(filter, {id, extended, remote, data})) {
        return CanPassage::NoFrame;
    }
    const auto unlikeData = static_cast<quint16>(~filter.code & 0xFFFFU);
    return receives(filter, {id, extended, !remote, unlikeData}) ? CanPassage::EveryFrame : CanPassage::SomeFrames;
}

bool isListed(const Ranges &listed, quint32 id, bool extended)
{
    return std::any_of(listed.begin(), listed.end(), [id, extended](const CanIdRange &range) {
        return range.extended == extended && range.first <= id && id <= range.last;
    });
}

/// All identifiers of a small range; the ends, powers of two and random ones of a large one.
std::set<quint32> samples(const CanIdRange &range, QRandomGenerator &random)
{
    std::set<quint32> ids{range.first, range.last};
    for (quint32 id = range.first; id <= range.last && id - range.first < 40; ++id) {
        ids.insert(id);
    }
    for (unsigned bit = 0; bit < 29; ++bit) {
        for (const quint32 id : {1U << bit, (1U << bit) - 1, range.first ^ (1U << bit), range.last ^ (1U << bit)}) {
            if (range.first <= id && id <= range.last) {
                ids.insert(id);
            }
        }
    }
    for (int i = 0; i < 10; ++i) {
        ids.insert(range.first + static_cast<quint32>(random.bounded(static_cast<int>(range.last - range.first) + 1)));
    }
    return ids;
}

std::vector<Frame> listedFrames(const Ranges &listed, QRandomGenerator &random)
{
    std::vector<Frame> frames;
    for (const CanIdRange &range : listed) {
        for (const quint32 id : samples(range, random)) {
            const std::vector<Frame> some = framesWith(id, range.extended);
            frames.insert(frames.end(), some.begin(), some.end());
        }
    }
    return frames;
}

/// Whether a frame type in the list has an identifier bit there.
bool meansSomething(const Ranges &listed, int bit)
{
    return std::any_of(listed.begin(), listed.end(),
                       [bit](const CanIdRange &range) { return bit >= (range.extended ? 3 : 21); });
}

CanIdRange randomRange(QRandomGenerator &random)
{
    const bool extended = random.bounded(2) == 1;
    const auto end = static_cast<int>(frameIdMax(extended)) + 1;
    const auto first = static_cast<quint32>(random.bounded(end));
    // Narrow ranges leave bits to compare.
    const quint32 width = random.bounded(3) == 0 ? 0 : random.generate() >> random.bounded(10, 32);
    return {first, std::min(frameIdMax(extended), first + std::min(width, 0x1FFFFFFFU)), extended};
}

/// Any code, and a mask that compares few bits.
CanAcceptanceFilter randomFilter(QRandomGenerator &random)
{
    const quint32 code = random.generate();
    return {code, random.generate() | random.generate() | random.generate()};
}

Ranges randomRanges(QRandomGenerator &random)
{
    Ranges listed;
    const int count = random.bounded(1, 5);
    for (int i = 0; i < count; ++i) {
        listed.append(randomRange(random));
    }
    return listed;
}
} // namespace

class tst_CanAcceptanceFilter : public QObject
{
    Q_OBJECT

private slots:
    static void codeAndMask_data();
    static void codeAndMask();
    static void letsAllListedPass_data();
    static void letsAllListedPass();
    static void isTheNarrowest_data();
    static void isTheNarrowest();
    static void passageOfEveryStandardIdentifier();
    static void passageOfExtendedIdentifiers();
    static void countsPassingIdentifiers_data();
    static void countsPassingIdentifiers();
    static void countsAgreeWithThePassage();
    static void countsListedIdentifiers_data();
    static void countsListedIdentifiers();
    static void countsListedAsASetDoes();

private:
    static void addLists();
};

void tst_CanAcceptanceFilter::codeAndMask_data()
{
    QTest::addColumn<Ranges>("listed");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<quint32>("mask");
    QTest::newRow("nothing") << Ranges() << 0U << 0xFFFFFFFFU;
    QTest::newRow("std 123") << Ranges{one(0x123, Std)} << 0x24600000U << 0x001FFFFFU;
    QTest::newRow("std 000") << Ranges{one(0, Std)} << 0U << 0x001FFFFFU;
    QTest::newRow("std 7FF") << Ranges{one(0x7FF, Std)} << 0xFFE00000U << 0x001FFFFFU;
    QTest::newRow("std 100, 101") << Ranges{one(0x100, Std), one(0x101, Std)} << 0x20000000U << 0x003FFFFFU;
    QTest::newRow("std 100-10F") << Ranges{{0x100, 0x10F, Std}} << 0x20000000U << 0x01FFFFFFU;
    QTest::newRow("std 10F-110") << Ranges{{0x10F, 0x110, Std}} << 0x20000000U << 0x03FFFFFFU;
    QTest::newRow("std 101, 181") << Ranges{one(0x101, Std), one(0x181, Std)} << 0x20200000U << 0x101FFFFFU;
    QTest::newRow("std 3FF-400") << Ranges{{0x3FF, 0x400, Std}} << 0U << 0xFFFFFFFFU;
    QTest::newRow("std all") << Ranges{{0, 0x7FF, Std}} << 0U << 0xFFFFFFFFU;
    QTest::newRow("ext 12345678") << Ranges{one(0x12345678, Ext)} << 0x91A2B3C0U << 0x00000007U;
    QTest::newRow("ext 0") << Ranges{one(0, Ext)} << 0U << 0x00000007U;
    QTest::newRow("ext highest") << Ranges{one(0x1FFFFFFF, Ext)} << 0xFFFFFFF8U << 0x00000007U;
    QTest::newRow("ext 18FF0000-18FFFFFF") << Ranges{{0x18FF0000, 0x18FFFFFF, Ext}} << 0xC7F80000U << 0x0007FFFFU;
    QTest::newRow("ext 10000000-18000000") << Ranges{{0x10000000, 0x18000000, Ext}} << 0x80000000U << 0x7FFFFFFFU;
    QTest::newRow("ext 00000-10000") << Ranges{{0, 0x10000, Ext}} << 0U << 0x000FFFFFU;
    QTest::newRow("ext all") << Ranges{{0, 0x1FFFFFFF, Ext}} << 0U << 0xFFFFFFFFU;
    // The extended identifier begins with the standard one: bits 31..21 agree, 20 and 15..0 are the standard frame's
    // remote bit and data, 19..16 are compared in extended frames alone.
    QTest::newRow("std 123, ext 048F1234")
        << Ranges{one(0x123, Std), one((0x123U << 18U) | 0x31234U, Ext)} << 0x24680000U << 0x0010FFFFU;
    QTest::newRow("std 123, ext 123") << Ranges{one(0x123, Std), one(0x123, Ext)} << 0U << 0x2470FFFFU;
    QTest::newRow("std 7FF, ext 0") << Ranges{one(0x7FF, Std), one(0, Ext)} << 0U << 0xFFF0FFFFU;
    QTest::newRow("std 123, all ext") << Ranges{one(0x123, Std), {0, 0x1FFFFFFF, Ext}} << 0U << 0xFFFFFFFFU;
}

void tst_CanAcceptanceFilter::codeAndMask()
{
    QFETCH(Ranges, listed);
    const CanAcceptanceFilter filter = narrowestFilter(listed);
    QTEST(filter.code, "code");
    QTEST(filter.mask, "mask");
    std::reverse(listed.begin(), listed.end());
    QTEST(narrowestFilter(listed).code, "code");
    QTEST(narrowestFilter(listed).mask, "mask");
}

void tst_CanAcceptanceFilter::addLists()
{
    QTest::addColumn<Ranges>("listed");
    QTest::newRow("std") << Ranges{one(0x123, Std)};
    QTest::newRow("std range over a power of two") << Ranges{{0x3FE, 0x401, Std}};
    QTest::newRow("all std") << Ranges{{0, 0x7FF, Std}};
    QTest::newRow("ext") << Ranges{one(0x1ABCDEF0, Ext)};
    QTest::newRow("ext range") << Ranges{{0x18FF0000, 0x18FF00FF, Ext}};
    QTest::newRow("all ext") << Ranges{{0, 0x1FFFFFFF, Ext}};
    QTest::newRow("ends that differ in one bit") << Ranges{{0x10000000, 0x18000000, Ext}};
    QTest::newRow("mixed") << Ranges{one(0x123, Std), one(0x048F1234, Ext)};
    QTest::newRow("mixed ranges") << Ranges{{0x100, 0x10F, Std}, {0x04000000, 0x0400FFFF, Ext}, one(0x1FFFFFFF, Ext)};
    QRandomGenerator random(20260101);
    for (int i = 0; i < 100; ++i) {
        QTest::addRow("random %d", i) << randomRanges(random);
    }
}

void tst_CanAcceptanceFilter::letsAllListedPass_data()
{
    addLists();
}

void tst_CanAcceptanceFilter::letsAllListedPass()
{
    QFETCH(Ranges, listed);
    const CanAcceptanceFilter filter = narrowestFilter(listed);
    QRandomGenerator random(1);
    for (const Frame &frame : listedFrames(listed, random)) {
        QVERIFY2(receives(filter, frame), qPrintable(QString::number(frame.id, 16)));
        QVERIFY(passage(filter, frame.id, frame.extended) == CanPassage::EveryFrame);
    }
}

void tst_CanAcceptanceFilter::isTheNarrowest_data()
{
    addLists();
}

// Comparing one bit more, with whatever code, would keep a listed frame out.
void tst_CanAcceptanceFilter::isTheNarrowest()
{
    QFETCH(Ranges, listed);
    const CanAcceptanceFilter filter = narrowestFilter(listed);
    QRandomGenerator random(1);
    const std::vector<Frame> frames = listedFrames(listed, random);
    for (int bit = 0; bit < 32; ++bit) {
        const quint32 weight = 1U << static_cast<unsigned>(bit);
        if ((filter.mask & weight) == 0) {
            continue;
        }
        QCOMPARE(filter.code & weight, 0U);
        if (!meansSomething(listed, bit)) {
            continue;
        }
        for (const quint32 value : {0U, weight}) {
            const CanAcceptanceFilter narrower{(filter.code & ~weight) | value, filter.mask & ~weight};
            const auto isKeptOut = [&narrower](const Frame &frame) {
                return !receives(narrower, frame);
            };
            QVERIFY2(std::any_of(frames.begin(), frames.end(), isKeptOut), qPrintable(QString::number(bit)));
        }
    }
}

void tst_CanAcceptanceFilter::passageOfEveryStandardIdentifier()
{
    QRandomGenerator random(2);
    for (int i = 0; i < 60; ++i) {
        const CanAcceptanceFilter filter = i % 2 == 0 ? narrowestFilter(randomRanges(random)) : randomFilter(random);
        for (quint32 id = 0; id <= 0x7FF; ++id) {
            QVERIFY(passage(filter, id, Std) == passageByTrying(filter, id, Std));
        }
    }
}

void tst_CanAcceptanceFilter::passageOfExtendedIdentifiers()
{
    QRandomGenerator random(3);
    for (int i = 0; i < 2000; ++i) {
        const CanAcceptanceFilter filter = i % 2 == 0 ? narrowestFilter(randomRanges(random)) : randomFilter(random);
        for (const quint32 id : {random.generate() & 0x1FFFFFFFU, filter.code >> 3U,
                                 (filter.code >> 3U) ^ (1U << static_cast<unsigned>(random.bounded(29)))}) {
            QVERIFY(passage(filter, id, Ext) == passageByTrying(filter, id, Ext));
        }
    }
}

void tst_CanAcceptanceFilter::countsPassingIdentifiers_data()
{
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<quint64>("standard");
    QTest::addColumn<quint64>("extended");
    QTest::newRow("everything") << 0xFFFFFFFFU << quint64(2048) << quint64(536870912);
    QTest::newRow("nothing masked") << 0U << quint64(1) << quint64(1);
    QTest::newRow("one std") << 0x001FFFFFU << quint64(1) << quint64(262144);
    QTest::newRow("one ext") << 0x00000007U << quint64(1) << quint64(1);
    QTest::newRow("two of each") << 0x80000007U << quint64(2) << quint64(2);
    QTest::newRow("bits of the ext alone") << 0x000F0008U << quint64(1) << quint64(32);
}

void tst_CanAcceptanceFilter::countsPassingIdentifiers()
{
    QFETCH(quint32, mask);
    QTEST(passingIds({0, mask}).standard, "standard");
    QTEST(passingIds({0, mask}).extended, "extended");
}

void tst_CanAcceptanceFilter::countsAgreeWithThePassage()
{
    QRandomGenerator random(4);
    for (int i = 0; i < 200; ++i) {
        const CanAcceptanceFilter filter = narrowestFilter(randomRanges(random));
        quint64 passing = 0;
        for (quint32 id = 0; id <= 0x7FF; ++id) {
            passing += passage(filter, id, Std) != CanPassage::NoFrame ? 1 : 0;
        }
        QCOMPARE(passingIds(filter).standard, passing);
    }
    // Of the extended ones every identifier below 2^16, with the upper bits as in the code.
    for (int i = 0; i < 20; ++i) {
        const CanAcceptanceFilter filter{random.generate(), random.generate() & 0x0007FFFFU};
        quint64 passing = 0;
        for (quint32 id = 0; id <= 0xFFFF; ++id) {
            passing += passage(filter, ((filter.code >> 3U) & 0x1FFF0000U) | id, Ext) != CanPassage::NoFrame ? 1 : 0;
        }
        QCOMPARE(passingIds(filter).extended, passing);
    }
}

void tst_CanAcceptanceFilter::countsListedIdentifiers_data()
{
    QTest::addColumn<Ranges>("listed");
    QTest::addColumn<quint64>("standard");
    QTest::addColumn<quint64>("extended");
    const auto row = [](const char *name, const Ranges &listed, quint64 standard, quint64 extended) {
        QTest::newRow(name) << listed << standard << extended;
    };
    row("nothing", {}, 0, 0);
    row("one", {one(5, Std)}, 1, 0);
    row("the same twice", {one(5, Ext), one(5, Ext)}, 0, 1);
    row("the same in both types", {one(5, Std), one(5, Ext)}, 1, 1);
    row("side by side", {{0, 4, Std}, {5, 9, Std}}, 10, 0);
    row("overlapping", {{3, 9, Std}, {0, 4, Std}}, 10, 0);
    row("one inside the other", {{0, 9, Std}, {3, 4, Std}, {5, 12, Std}}, 13, 0);
    row("apart", {{20, 29, Ext}, {0, 9, Ext}}, 0, 20);
    row("all", {{0, 0x7FF, Std}, {0, 0x1FFFFFFF, Ext}, {0, 0x1FFFFFFF, Ext}}, 2048, 536870912);
}

void tst_CanAcceptanceFilter::countsListedIdentifiers()
{
    QFETCH(Ranges, listed);
    QTEST(listedIds(listed).standard, "standard");
    QTEST(listedIds(listed).extended, "extended");
}

void tst_CanAcceptanceFilter::countsListedAsASetDoes()
{
    QRandomGenerator random(5);
    for (int i = 0; i < 200; ++i) {
        const Ranges listed = randomRanges(random);
        quint64 count = 0;
        for (quint32 id = 0; id <= 0x7FF; ++id) {
            count += isListed(listed, id, Std) ? 1 : 0;
        }
        QCOMPARE(listedIds(listed).standard, count);
        QVERIFY(listedIds(listed).extended <= passingIds(narrowestFilter(listed)).extended);
        QVERIFY(count <= passingIds(narrowestFilter(listed)).standard);
    }
}

X9_PLAIN_TEST(tst_CanAcceptanceFilter)
#include "tst_CanAcceptanceFilter.moc"
