#include "app/Minisign.h"

#include "tests/app/TestSigner.h"
#include "tests/support/TestProgram.h"

#include <QByteArrayList>
#include <QFile>
#include <QtTest>

#ifdef Q_OS_LINUX
#include "tests/app/PeakMemory.h"
#endif

namespace {
const QByteArray Comment("X9CAN release 1.2.0 windows-64bit");

QByteArray dataFile(const char *name)
{
    QFile file(QStringLiteral(X9_TEST_DATA "/minisign/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A good signature file with one of its four lines replaced.
QByteArray withLine(int number, const QByteArray &line)
{
    QByteArrayList lines = TestSigner().sign("content", Comment).split('\n');
    lines[number] = line;
    return lines.join('\n');
}

QByteArray lineOf(int number)
{
    return TestSigner().sign("content", Comment).split('\n').at(number);
}

bool isSigned(const QByteArray &content, const QByteArray &file, const QByteArray &key, int piece = 5)
{
    SignedContent check(minisignKey(key).value(), minisignSignature(file).value());
    for (int begin = 0; begin < content.size(); begin += piece) {
        check.add(content.mid(begin, piece));
    }
    return check.isSigned();
}
} // namespace

class tst_Minisign : public QObject
{
    Q_OBJECT

private slots:
    static void filesOfMinisign_data();
    static void filesOfMinisign();
    static void keys_data();
    static void keys();
    static void otherFilesAreNone_data();
    static void otherFilesAreNone();
    static void changedFilesAreNone();
    static void contents_data();
    static void contents();
    static void comments();
#ifdef Q_OS_LINUX
    static void largeContents();
#endif
};

void tst_Minisign::filesOfMinisign_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("isPrehashed");
    QTest::newRow("prehashed") << dataFile("prehashed.minisig") << true;
    QTest::newRow("legacy") << dataFile("legacy.minisig") << false;
}

void tst_Minisign::filesOfMinisign()
{
    QFETCH(QByteArray, file);
    const QByteArray line = dataFile("test-only.pub").split('\n').value(1);
    const auto key = minisignKey(line);
    QVERIFY(key);
    QCOMPARE(key->id.toHex(), QByteArray("96e641510749a651")); // the number in its comment, lowest byte first
    const auto signature = minisignSignature(file);
    QVERIFY(signature);
    QTEST(signature->isPrehashed, "isPrehashed");
    QCOMPARE(signature->keyId, key->id);
    QCOMPARE(signature->comment, QByteArray("X9CAN firmware X9CANFirmWare 2.06"));
    QVERIFY(isCommentSigned(*signature, *key));
    const QByteArray content = dataFile("content.bin");
    QCOMPARE(content.size(), 24);
    QVERIFY(isSigned(content, file, line));
    QVERIFY(!isSigned(content + '\0', file, line));
}

void tst_Minisign::keys_data()
{
    const QByteArray key = TestSigner().publicKey();
    const QByteArray bytes = QByteArray::fromBase64(key);
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("isKey");
    QTest::newRow("a key") << key << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("cut off") << key.chopped(4) << false;
    QTest::newRow("longer") << key + "AAAA" << false;
    QTest::newRow("end of line") << key + '\n' << false;
    QTest::newRow("blank") << ' ' + key << false;
    QTest::newRow("not base64") << key.chopped(1) + '*' << false;
    QTest::newRow("of a URL") << key.chopped(1) + '_' << false;
    QTest::newRow("other kind") << ("ED" + bytes.mid(2)).toBase64() << false;
    QTest::newRow("no point of the curve") << (bytes.left(10) + QByteArray(32, '\xFF')).toBase64() << false;
    QTest::newRow("a point of small order") << (bytes.left(10) + QByteArray(32, '\0')).toBase64() << false;
}

void tst_Minisign::keys()
{
    QFETCH(QByteArray, line);
    QTEST(minisignKey(line).has_value(), "isKey");
}

void tst_Minisign::otherFilesAreNone_data()
{
    const QByteArray good = TestSigner().sign("content", Comment);
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("isSignature");
    QTest::newRow("good") << good << true;
    QTest::newRow("without its last line feed") << good.chopped(1) << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("binary") << QByteArray("\x00\xFF\x7F\x80\n\n\n\n", 8) << false;
    QTest::newRow("line feeds") << QByteArray(300, '\n') << false;
    for (int count = 1; count <= 3; ++count) {
        QTest::addRow("%d lines", count) << good.split('\n').mid(0, count).join('\n') + '\n' << false;
    }
    QTest::newRow("a line more") << good + "more\n" << false;
    QTest::newRow("an empty line more") << good + '\n' << false;
    QTest::newRow("CR LF") << QByteArray(good).replace("\n", "\r\n") << false;
    QTest::newRow("CR") << QByteArray(good).replace("\n", "\r") << false;
    QTest::newRow("first comment missing") << withLine(0, "comment: a") << false;
    QTest::newRow("trusted comment missing") << withLine(2, Comment) << false;
    QTest::newRow("signature not base64") << withLine(1, lineOf(1).replace(50, 1, "*")) << false;
    QTest::newRow("signature with a blank") << withLine(1, lineOf(1) + ' ') << false;
    QTest::newRow("signature cut off") << withLine(1, lineOf(1).chopped(4)) << false;
    QTest::newRow("signature longer") << withLine(1, "AAAA" + lineOf(1)) << false;
    QTest::newRow("unknown algorithm") << withLine(1, "RX" + lineOf(1).mid(2)) << false;
    QTest::newRow("second signature missing") << withLine(3, QByteArray()) << false;
    QTest::newRow("second signature cut off") << withLine(3, lineOf(3).left(40)) << false;
    QTest::newRow("lines exchanged") << withLine(3, lineOf(1)) << false;
    const QByteArray rest(LargestMinisignFile - good.size(), 'a');
    QTest::newRow("as long as may be") << withLine(0, lineOf(0) + rest) << true;
    QTest::newRow("too long") << withLine(0, lineOf(0) + rest + 'a') << false;
}

void tst_Minisign::otherFilesAreNone()
{
    QFETCH(QByteArray, file);
    QTEST(minisignSignature(file).has_value(), "isSignature");
}

/// Whatever bit of a file is another one, it is no signature, not of this key, or not of this content and comment. The
/// first comment is nobody's.
void tst_Minisign::changedFilesAreNone()
{
    const TestSigner signer;
    const QByteArray good = signer.sign("content", Comment);
    const auto key = minisignKey(signer.publicKey()).value();
    for (int bit = 8 * good.indexOf('\n'); bit < 8 * (good.size() - 1); ++bit) {
        QByteArray file = good;
        file[bit / 8] = static_cast<char>(file.at(bit / 8) ^ (1 << (bit % 8)));
        const auto signature = minisignSignature(file);
        const bool isGood = signature && signature->keyId == key.id && isCommentSigned(*signature, key) &&
                            isSigned("content", file, signer.publicKey());
        QVERIFY2(!isGood, file.constData());
    }
}

void tst_Minisign::contents_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("piece");
    QTest::addColumn<bool>("isPrehashed");
    for (const bool isPrehashed : {true, false}) {
        const char *name = isPrehashed ? "prehashed" : "legacy";
        QTest::addRow("a byte, %s", name) << 1 << 1 << isPrehashed;
        QTest::addRow("a block, %s", name) << 128 << 128 << isPrehashed;
        QTest::addRow("blocks and more, %s", name) << 1000 << 7 << isPrehashed;
        QTest::addRow("a MB, %s", name) << 1000000 << 65536 << isPrehashed;
    }
}

void tst_Minisign::contents()
{
    QFETCH(int, size);
    QFETCH(int, piece);
    QFETCH(bool, isPrehashed);
    const TestSigner signer;
    QByteArray content(size, 'x');
    const QByteArray file =
        signer.sign(content, Comment, isPrehashed ? TestSigner::Format::Prehashed : TestSigner::Format::Legacy);
    QVERIFY(isSigned(content, file, signer.publicKey(), piece));
    QVERIFY(!isSigned(content, file, TestSigner(2).publicKey(), piece));
    QVERIFY(!isSigned(content.left(size - 1), file, signer.publicKey(), piece));
    content[size - 1] = 'y';
    QVERIFY(!isSigned(content, file, signer.publicKey(), piece));
    // A signature of one kind is none of the other.
    const QByteArray kind = isPrehashed ? "RW" : "RU";
    QByteArrayList lines = file.split('\n');
    lines[1].replace(0, 2, kind);
    QVERIFY(minisignSignature(lines.join('\n')));
    QVERIFY(!isSigned(QByteArray(size, 'x'), lines.join('\n'), signer.publicKey(), piece));
}

void tst_Minisign::comments()
{
    const TestSigner signer;
    const auto key = minisignKey(signer.publicKey()).value();
    auto signature = minisignSignature(signer.sign("content", Comment)).value();
    QCOMPARE(signature.comment, Comment);
    QVERIFY(isCommentSigned(signature, key));
    QVERIFY(!isCommentSigned(signature, minisignKey(TestSigner(2).publicKey()).value()));
    signature.comment[0] = 'x';
    QVERIFY(!isCommentSigned(signature, key));
    // Both signatures are good, each for itself: the comment of one content for another one.
    signature = minisignSignature(signer.sign("content", Comment)).value();
    const auto other = minisignSignature(signer.sign("other content", Comment)).value();
    signature.commentSignature = other.commentSignature;
    QVERIFY(!isCommentSigned(signature, key));
}

#ifdef Q_OS_LINUX
/// Of what was prehashed, nothing is kept.
void tst_Minisign::largeContents()
{
    const TestSigner signer;
    const auto key = minisignKey(signer.publicKey()).value();
    SignedContent check(key, minisignSignature(signer.sign("content", Comment)).value());
    const QByteArray piece(1000000, 'x');
    const qint64 before = peakMemory();
    for (int count = 0; count < 200; ++count) {
        check.add(piece);
    }
    QVERIFY(!check.isSigned());
    QVERIFY2(peakMemory() - before < Q_INT64_C(20) * piece.size(), qPrintable(QString::number(peakMemory() - before)));
}
#endif

X9_PLAIN_TEST(tst_Minisign)
#include "tst_Minisign.moc"
