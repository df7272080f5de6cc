#include "exchange/BlfInflate.h"
#include "tests/support/TestProgram.h"

#include <QByteArray>

/// Containers that are unpacked as a whole. What of it is not done is left to zlib, which tst_BlfFormat sees.
class tst_BlfInflate : public QObject
{
    Q_OBJECT

private slots:
    static void sound();
    static void whatIsNotSoundIsLeft_data();
    static void whatIsNotSoundIsLeft();
};

namespace {

const QByteArray Content = QByteArray("twenty bytes of text").repeated(50);

/// As zlib has it: behind the four bytes of Qt's.
QByteArray packed()
{
    return qCompress(Content).mid(4);
}

std::size_t unpack(const QByteArray &bytes, QByteArray &to)
{
    return BlfInflate().unpack({bytes.constData(), static_cast<std::size_t>(bytes.size())}, to.data(),
                               static_cast<std::size_t>(to.size()));
}

} // namespace

void tst_BlfInflate::sound()
{
    QByteArray to(Content.size(), '\0');
    const std::size_t used = unpack(packed() + "what is behind", to);
    if (!X9_UNPACKS_WHOLE) {
        QCOMPARE(used, std::size_t(0));
        return;
    }
    QCOMPARE(used, static_cast<std::size_t>(packed().size()));
    QCOMPARE(to, Content);
}

void tst_BlfInflate::whatIsNotSoundIsLeft_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("size");
    QByteArray broken = packed();
    broken[8] = static_cast<char>(~broken[8]);
    QByteArray checksum = packed();
    checksum[checksum.size() - 1] = static_cast<char>(~checksum[checksum.size() - 1]);
    QTest::newRow("damaged") << broken << Content.size();
    QTest::newRow("wrong checksum") << checksum << Content.size();
    QTest::newRow("cut") << packed().chopped(1) << Content.size();
    QTest::newRow("nothing") << QByteArray() << Content.size();
    QTest::newRow("holds more") << packed() << Content.size() - 1;
    QTest::newRow("holds less") << packed() << Content.size() + 1;
}

void tst_BlfInflate::whatIsNotSoundIsLeft()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, size);
    QByteArray to(size, '\0');
    QCOMPARE(unpack(bytes, to), std::size_t(0));
}

X9_PLAIN_TEST(tst_BlfInflate)
#include "tst_BlfInflate.moc"
