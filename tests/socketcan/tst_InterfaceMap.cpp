#include "adapter/socketcan/InterfaceMap.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QtTest>

using socketcan::InterfaceMap;

namespace {

/// "device.channel=interface" in order; single quotes stand for double ones.
QString shown(const InterfaceMap &map)
{
    QStringList entries;
    for (const auto &[device, interfaces] : map) {
        for (std::size_t channel = 0; channel < interfaces.size(); ++channel) {
            if (!interfaces.at(channel).empty()) {
                entries.append(QStringLiteral("%1.%2=%3")
                                   .arg(device)
                                   .arg(channel)
                                   .arg(QString::fromStdString(interfaces.at(channel))));
            }
        }
    }
    return entries.join(QLatin1Char(' '));
}

std::string json(QByteArray text)
{
    return text.replace('\'', '"').toStdString();
}

QString write(const QTemporaryDir &folder, const char *name, const QByteArray &text)
{
    QFile file(folder.filePath(QString::fromLatin1(name)));
    file.open(QIODevice::WriteOnly);
    file.write(text);
    return file.fileName();
}

} // namespace

class tst_InterfaceMap : public QObject
{
    Q_OBJECT

private slots:
    static void good();
    static void bad_data();
    static void bad();
    static void twoToADevice();
    static void firstFileCounts();
    static void badFileIsComplainedOf();
    static void places();
};

void tst_InterfaceMap::good()
{
    const auto map = socketcan::readInterfaceMap(
        json("{'channels': [{'device': 0, 'channel': 1, 'interface': 'can1'},\n"
             "{'device': 3, 'channel': 0, 'interface': 'vcan0'}, {'device': 0, 'channel': 0, 'interface': 'can7'}]}"));
    QVERIFY(std::holds_alternative<InterfaceMap>(map));
    QCOMPARE(shown(std::get<InterfaceMap>(map)), QStringLiteral("0.0=can7 0.1=can1 3.0=vcan0"));
}

void tst_InterfaceMap::bad_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    const QByteArray good = "{'device': 0, 'channel': 0, 'interface': 'can0'}";
    QTest::newRow("no JSON") << QByteArray("{\n'channels': [\n}") << "f:3: ";
    QTest::newRow("no channels") << QByteArray("{}") << "f:1: channels: missing";
    QTest::newRow("unknown key") << QByteArray("{'channels': [],\n'speed': 1}") << "f:2: speed: unknown key";
    QTest::newRow("channel out of range")
        << QByteArray("{'channels': [\n{'device': 0,\n'channel': 2, 'interface': 'can0'}]}")
        << "f:3: channels[0].channel: must be a whole number from 0 to 1";
    QTest::newRow("device out of range") << QByteArray(
                                                "{'channels': [{'device': 256, 'channel': 1, 'interface': 'can0'}]}")
                                         << "f:1: channels[0].device: must be a whole number from 0 to 255";
    QTest::newRow("no interface") << QByteArray("{'channels': [{'device': 0, 'channel': 1}]}")
                                  << "f:1: channels[0].interface: missing";
    QTest::newRow("name too long")
        << QByteArray("{'channels': [{'device': 0, 'channel': 1, 'interface': '0123456789abcdef'}]}")
        << "f:1: channels[0].interface: must be a text of 1 to 15 printable ASCII characters";
    QTest::newRow("channel twice") << QByteArray("{'channels': [" + good +
                                                 ", {'device': 0, 'channel': 0, 'interface': 'can1'}]}")
                                   << "f:1: channels[1]: this channel has an interface already";
    QTest::newRow("interface twice") << QByteArray("{'channels': [" + good +
                                                   ", {'device': 1, 'channel': 0, 'interface': 'can0'}]}")
                                     << "f:1: channels[1]: this interface has a channel already";
}

void tst_InterfaceMap::bad()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    const auto map = socketcan::readInterfaceMap(json(text));
    const auto *error = std::get_if<va::ConfigError>(&map);
    QVERIFY(error != nullptr);
    QVERIFY2(QString::fromStdString(error->message("f")).startsWith(message), error->message("f").c_str());
}

void tst_InterfaceMap::twoToADevice()
{
    QCOMPARE(shown(socketcan::inOrder({"can0", "can1", "can2"})), QStringLiteral("0.0=can0 0.1=can1 1.0=can2"));
    QCOMPARE(shown(socketcan::inOrder({})), QString());
    QCOMPARE(socketcan::inOrder(std::vector<std::string>(1000, "c")).size(), socketcan::MaxDevices);
}

void tst_InterfaceMap::firstFileCounts()
{
    const QTemporaryDir folder;
    const QString second = write(folder, "b", R"({"channels": [{"device": 1, "channel": 1, "interface": "x"}]})");
    const std::vector<std::string> paths = {folder.filePath(QStringLiteral("a")).toStdString(), second.toStdString()};
    QCOMPARE(shown(*socketcan::loadInterfaceMap(paths).map), QStringLiteral("1.1=x"));
    write(folder, "a", R"({"channels": []})");
    const socketcan::LoadedMap first = socketcan::loadInterfaceMap(paths);
    QVERIFY(first.map && first.map->empty() && first.complaint.empty());
    QVERIFY(!socketcan::loadInterfaceMap({folder.filePath(QStringLiteral("c")).toStdString()}).map);
}

void tst_InterfaceMap::badFileIsComplainedOf()
{
    const QTemporaryDir folder;
    const QString path = write(folder, "a", "{\n\"wrong\": 1}");
    const socketcan::LoadedMap loaded = socketcan::loadInterfaceMap({path.toStdString()});
    QVERIFY(!loaded.map);
    QCOMPARE(QString::fromStdString(loaded.complaint),
             QStringLiteral("socketcan: %1:2: wrong: unknown key; the interfaces are taken in the order of their names")
                 .arg(path));
    QVERIFY(!socketcan::loadInterfaceMap({folder.path().toStdString()}).complaint.empty()); // no file
}

void tst_InterfaceMap::places()
{
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/there");
    QCOMPARE(socketcan::interfaceMapPaths().back(), std::string("/there/X9CAN/socketcan.json"));
    qputenv("XDG_CONFIG_HOME", "relative");
    qputenv("HOME", "/home/somebody");
    QCOMPARE(socketcan::interfaceMapPaths().back(), std::string("/home/somebody/.config/X9CAN/socketcan.json"));
    QCOMPARE(socketcan::interfaceMapPaths().front(), std::string("socketcan.json"));
    qputenv("XDG_CONFIG_HOME", before);
}

X9_PLAIN_TEST(tst_InterfaceMap)
#include "tst_InterfaceMap.moc"
