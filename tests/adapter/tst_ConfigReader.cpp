#include "adapter/JsonTree.h"
#include "adapter/virtual/AdapterConfig.h"
#include "adapter/virtual/ConfigReader.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QRandomGenerator>
#include <QtTest>

using va::AdapterConfig;
using va::ConfigError;
using va::NodeConfig;

namespace {

/// Single quotes stand for double ones.
std::variant<AdapterConfig, ConfigError> read(QByteArray text)
{
    return va::readConfig(text.replace('\'', '"').toStdString());
}

QByteArray node(const QByteArray &keys)
{
    return "{'devices': [], 'buses': [{'name': 'b', 'data_rate': 2, 'nodes': [\n{" + keys + "}]}]}";
}

QByteArray bus(const QByteArray &keys)
{
    return "{'devices': [], 'buses': [\n{" + keys + "}]}";
}

QByteArray lin(const QByteArray &keys)
{
    return "{'devices': [], 'lin_buses': [{'name': 'l',\n" + keys + "}]}";
}

QByteArray device(const QByteArray &keys)
{
    return "{'buses': [{'name': 'b'}], 'lin_buses': [{'name': 'l'}], 'devices': [\n{'model': 'X9FC', " + keys + "}]}";
}

} // namespace

class tst_ConfigReader : public QObject
{
    Q_OBJECT

private slots:
    static void errors_data();
    static void errors();
    static void errorLines_data();
    static void errorLines();
    static void messageIsOneShortLine();
    static void accepted_data();
    static void accepted();
    static void smallestConfiguration();
    static void nodeValues();
    static void nodeDefaults();
    static void busTimings_data();
    static void busTimings();
    static void linValues();
    static void deviceValues();
    static void builtInShowsEveryFeature();
    static void exampleLoads();
    static void deepNestingIsRefused();
    static void manyValuesAreRefused();
    static void mutatedTextsNeitherCrashNorHang();
};

// NOLINTNEXTLINE(readability-function-size): a table
void tst_ConfigReader::errors_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("problem");
    const auto row = [](const char *name, const QByteArray &text, const char *key, const char *problem) {
        QTest::newRow(name) << text << QByteArray(key) << QByteArray(problem);
    };
    // syntax
    row("empty", "", "", "not valid JSON");
    row("not json", "hello", "", "not valid JSON");
    row("cut off", "{'devices': [", "devices", "not valid JSON");
    row("trailing comma", "{'devices': [],}", "devices", "not valid JSON");
    row("text behind", "{'devices': []} x", "devices", "not valid JSON");
    row("comment", "{/* */ 'devices': []}", "", "not valid JSON");
    row("huge number", "{'devices': 1e999}", "devices", "not valid JSON");
    row("not UTF-8", "{'devices': '\xFF'}", "devices", "not valid JSON");
    row("key twice", "{'devices': [], 'devices': []}", "devices", "the key is given twice");
    // the root
    row("array", "[]", "", "must be an object");
    row("null", "null", "", "must be an object");
    row("unknown key", "{'devices': [], 'busses': []}", "busses", "unknown key");
    row("no devices", "{}", "devices", "missing");
    row("devices no array", "{'devices': {}}", "devices", "must be an array of 0 to 256 entries");
    row("buffer zero", "{'devices': [], 'receive_buffer_frames': 0}", "receive_buffer_frames", "from 1 to 1000000");
    row("buffer large", "{'devices': [], 'receive_buffer_frames': 1000001}", "receive_buffer_frames",
        "from 1 to 1000000");
    row("buffer fraction", "{'devices': [], 'receive_buffer_frames': 10.5}", "receive_buffer_frames", "whole number");
    row("buffer negative", "{'devices': [], 'receive_buffer_frames': -1}", "receive_buffer_frames", "whole number");
    row("buffer text", "{'devices': [], 'receive_buffer_frames': '100'}", "receive_buffer_frames", "whole number");
    row("buffer bad hex", "{'devices': [], 'receive_buffer_frames': '0x1G'}", "receive_buffer_frames", "whole number");
    row("buffer long hex", "{'devices': [], 'receive_buffer_frames': '0x1FFFFFFFFFFFFFFFFF'}", "receive_buffer_frames",
        "whole number");
    row("buffer null", "{'devices': [], 'receive_buffer_frames': null}", "receive_buffer_frames", "whole number");
    // buses
    row("bus no object", "{'devices': [], 'buses': [1]}", "buses[0]", "must be an object");
    row("bus without name", bus(""), "buses[0].name", "missing");
    row("bus empty name", bus("'name': ''"), "buses[0].name", "1 to 32 printable");
    row("bus long name", bus("'name': '" + QByteArray(33, 'n') + "'"), "buses[0].name", "1 to 32 printable");
    row("bus name twice", bus("'name': 'x'}, {'name': 'x'"), "buses[1].name", "another bus");
    row("bus unknown key", bus("'name': 'x', 'rate': 1"), "buses[0].rate", "unknown key");
    row("bus bitrate", bus("'name': 'x', 'bitrate': '300k'"), "buses[0].bitrate", "must be 1000k");
    row("bus bitrate number", bus("'name': 'x', 'bitrate': 500"), "buses[0].bitrate", "must be a text");
    row("bus both timings", bus("'name': 'x', 'bitrate': '500k', 'timing0': 0, 'timing1': 28"), "buses[0].bitrate",
        "either bitrate or timing0 and timing1");
    row("bus half a timing", bus("'name': 'x', 'timing0': 0"), "buses[0].timing1", "missing");
    row("bus timing range", bus("'name': 'x', 'timing0': 256, 'timing1': 0"), "buses[0].timing0", "from 0 to 255");
    row("bus data rate", bus("'name': 'x', 'data_rate': 16"), "buses[0].data_rate", "from 0 to 15");
    // nodes
    row("node without id", node("'period_us': 1"), "buses[0].nodes[0].id", "missing");
    row("node id too large", node("'id': 2048, 'period_us': 1"), "buses[0].nodes[0].id", "from 0 to 2047");
    row("node ext id too large", node("'id': '0x20000000', 'extended': true, 'period_us': 1"), "buses[0].nodes[0].id",
        "from 0 to 536870911");
    row("node flag", node("'id': 1, 'extended': 1, 'period_us': 1"), "buses[0].nodes[0].extended", "true or false");
    row("node format", node("'id': 1, 'format': 'FD', 'period_us': 1"), "buses[0].nodes[0].format",
        R"(must be one of "classic", "fd", "fd-brs")");
    row("fd on a classic bus", bus("'name': 'x', 'nodes': [{'id': 1, 'format': 'fd', 'period_us': 1}]"),
        "buses[0].nodes[0].format", "classic frames only");
    row("fd remote", node("'id': 1, 'format': 'fd', 'remote': true, 'period_us': 1"), "buses[0].nodes[0].remote",
        "always data frames");
    row("node length", node("'id': 1, 'length': 9, 'period_us': 1"), "buses[0].nodes[0].length", "from 0 to 8");
    row("node fd length", node("'id': 1, 'format': 'fd', 'length': 65, 'period_us': 1"), "buses[0].nodes[0].length",
        "from 0 to 64");
    row("node payload", node("'id': 1, 'payload': 'zero', 'period_us': 1"), "buses[0].nodes[0].payload", "one of");
    row("data odd", node("'id': 1, 'data': '123', 'period_us': 1"), "buses[0].nodes[0].data", "hexadecimal pairs");
    row("data no hex", node("'id': 1, 'data': 'GG', 'period_us': 1"), "buses[0].nodes[0].data", "hexadecimal pairs");
    row("data sign", node("'id': 1, 'data': '-1', 'period_us': 1"), "buses[0].nodes[0].data", "hexadecimal pairs");
    row("data too long", node("'id': 1, 'data': '000102030405060708', 'period_us': 1"), "buses[0].nodes[0].data",
        "0 to 8 bytes");
    row("data other length", node("'id': 1, 'length': 3, 'data': '0102', 'period_us': 1"), "buses[0].nodes[0].data",
        "must be 3 bytes");
    row("data byte range", node("'id': 1, 'data': [1, 256], 'period_us': 1"), "buses[0].nodes[0].data[1]",
        "from 0 to 255");
    row("data number", node("'id': 1, 'data': 5, 'period_us': 1"), "buses[0].nodes[0].data", "must be an array");
    row("data for counting", node("'id': 1, 'payload': 'counting', 'data': '00', 'period_us': 1"),
        "buses[0].nodes[0].data", "belongs to the payload \"constant\"");
    row("seed for counting", node("'id': 1, 'seed': 1, 'period_us': 1"), "buses[0].nodes[0].seed",
        "belongs to the payload \"random\"");
    row("seed range", node("'id': 1, 'payload': 'random', 'seed': 4294967296, 'period_us': 1"),
        "buses[0].nodes[0].seed", "from 0 to 4294967295");
    row("remote with data", node("'id': 1, 'remote': true, 'data': '00', 'period_us': 1"), "buses[0].nodes[0].data",
        "carries no data");
    row("no period", node("'id': 1"), "buses[0].nodes[0].period_us", "missing");
    row("period zero", node("'id': 1, 'period_us': 0"), "buses[0].nodes[0].period_us", "from 1 to 3600000000");
    row("period large", node("'id': 1, 'period_us': 3600000001"), "buses[0].nodes[0].period_us", "3600000000");
    row("period text", node("'id': 1, 'period_us': 'ten'"), "buses[0].nodes[0].period_us", "whole number");
    row("rate zero", node("'id': 1, 'rate_hz': 0"), "buses[0].nodes[0].rate_hz", "from 1 to 1000000");
    row("rate and period", node("'id': 1, 'rate_hz': 10, 'period_us': 10"), "buses[0].nodes[0].rate_hz", "either");
    row("phase", node("'id': 1, 'period_us': 1, 'phase_us': 3600000001"), "buses[0].nodes[0].phase_us", "3600000000");
    row("period and request", node("'id': 1, 'period_us': 1, 'request_id': 1"), "buses[0].nodes[0].period_us",
        "either sends cyclically or replies");
    row("delay without request", node("'id': 1, 'period_us': 1, 'delay_us': 1"), "buses[0].nodes[0].delay_us",
        "belongs to a node with request_id");
    row("request id", node("'id': 1, 'request_id': '0x800'"), "buses[0].nodes[0].request_id", "from 0 to 2047");
    row("delay", node("'id': 1, 'request_id': 1, 'delay_us': 60000001"), "buses[0].nodes[0].delay_us", "60000000");
    // LIN
    row("lin name", "{'devices': [], 'lin_buses': [{}]}", "lin_buses[0].name", "missing");
    row("lin baud rate", lin("'baud_rate': 65536"), "lin_buses[0].baud_rate", "from 1 to 65535");
    row("slave id", lin("'slaves': [{'id': 64, 'data': '00'}]"), "lin_buses[0].slaves[0].id", "from 0 to 63");
    row("slave twice", lin("'slaves': [{'id': 1, 'data': '00'}, {'id': 1, 'data': '00'}]"), "lin_buses[0].slaves[1].id",
        "another slave");
    row("slave without data", lin("'slaves': [{'id': 1}]"), "lin_buses[0].slaves[0].data", "missing");
    row("slave empty data", lin("'slaves': [{'id': 1, 'data': ''}]"), "lin_buses[0].slaves[0].data", "1 to 8 bytes");
    row("slave checksum", lin("'slaves': [{'id': 1, 'data': '00', 'checksum': 'v2'}]"),
        "lin_buses[0].slaves[0].checksum", R"("classic", "enhanced")");
    row("traffic period", lin("'traffic': [{'id': 1, 'period_ms': 0}]"), "lin_buses[0].traffic[0].period_ms",
        "from 1 to 3600000");
    row("traffic checksum", lin("'traffic': [{'id': 1, 'period_ms': 1, 'checksum': 'classic'}]"),
        "lin_buses[0].traffic[0].checksum", "belongs to a frame with data");
    // devices
    row("device without model", "{'devices': [{}]}", "devices[0].model", "missing");
    row("device text", device("'serial': '" + QByteArray(80, 's') + "'"), "devices[0].serial", "0 to 79 printable");
    row("device not ASCII", device("'firmware': '\xC3\xA4'"), "devices[0].firmware", "printable ASCII");
    row("three channels", device("'can': [{}, {}, {}]"), "devices[0].can", "0 to 2 entries");
    row("unknown bus", device("'can': [{}, {'bus': 'x'}]"), "devices[0].can[1].bus", "no bus of this name");
    row("lin bus is another name space", device("'lin': [{'bus': 'b'}]"), "devices[0].lin[0].bus", "no bus");
    row("gateway", device("'gateway_on': 'yes'"), "devices[0].gateway_on", "true or false");
    row("unknown fault", device("'faults': {'vanish': 1}"), "devices[0].faults.vanish", "unknown key");
    row("return alone", device("'faults': {'return_after_ms': 1}"), "devices[0].faults.return_after_ms",
        "needs vanish_after_ms");
    row("delay too long", device("'faults': {'call_delay_ms': 60001}"), "devices[0].faults.call_delay_ms",
        "from 0 to 60000");
    row("delay of no entry", device("'faults': {'call_delay_ms': {'VCI_Open': 1}}"),
        "devices[0].faults.call_delay_ms.VCI_Open", "unknown key");
    row("delay of an entry", device("'faults': {'call_delay_ms': {'VCI_Receive': 60001}}"),
        "devices[0].faults.call_delay_ms.VCI_Receive", "from 0 to 60000");
    row("can fault", device("'can': [{'faults': {'transmit_accept': -1}}]"), "devices[0].can[0].faults.transmit_accept",
        "whole number");
    row("lin fault", device("'lin': [{'faults': {'mode_refused': [256]}}]"), "devices[0].lin[0].faults.mode_refused[0]",
        "from 0 to 255");
    row("faults no object", device("'faults': []"), "devices[0].faults", "must be an object");
}

void tst_ConfigReader::errors()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, problem);
    const auto result = read(text);
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY(error != nullptr);
    QCOMPARE(QByteArray::fromStdString(error->key), key);
    QVERIFY2(QByteArray::fromStdString(error->problem).contains(problem), error->problem.c_str());
    QVERIFY(error->line >= 1);
}

void tst_ConfigReader::errorLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::newRow("first line") << QByteArray("{'x': 1}") << 1;
    QTest::newRow("key") << QByteArray("{\n'devices':\n [],\n'x': 1\n}") << 4;
    // A number is followed by the line end at once: the line is still the key's.
    QTest::newRow("number at the end of the line")
        << QByteArray("{'devices': [],\n\n'receive_buffer_frames': 0\n}\n") << 3;
    QTest::newRow("value below its key") << QByteArray("{'devices': [],\n'receive_buffer_frames':\n\n0}") << 2;
    QTest::newRow("missing key: the object") << QByteArray("{'devices': [\n\n{\n'serial': 'x'\n}\n]}") << 3;
    QTest::newRow("second object of an array")
        << QByteArray("{'devices': [], 'buses': [\n{'name': 'a'},\n{'name': 'b',\n'data_rate': 99}]}") << 4;
    QTest::newRow("item of an array: the array")
        << QByteArray("{'devices': [],\n'buses': [{'name': 'a', 'nodes': [{'id': 1, 'period_us': 1,\n'data': [1\n,\n256"
                      "\n]}]}]}")
        << 3;
    QTest::newRow("carriage returns") << QByteArray("{\r\n'devices': [],\r\n'x': 1\r\n}") << 3;
    QTest::newRow("syntax") << QByteArray("{\n'devices': [],\n'buses' []\n}") << 3;
    QTest::newRow("syntax at the end") << QByteArray("{\n'devices': []\n\n") << 4;
    QTest::newRow("bad token at the line end") << QByteArray("{\n'devices': tru\n}") << 2;
    QTest::newRow("key twice") << QByteArray("{\n'devices': [],\n'devices': []}") << 3;
}

void tst_ConfigReader::errorLines()
{
    QFETCH(QByteArray, text);
    const auto result = read(text);
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY(error != nullptr);
    QTEST(error->line, "line");
}

void tst_ConfigReader::messageIsOneShortLine()
{
    const auto result = read("{'devices': [],\n'a\\nb\\u0007" + QByteArray(5000, 'x') + "': 1}");
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY(error != nullptr);
    const QByteArray message = QByteArray::fromStdString(error->message("virtual-adapter.json"));
    QVERIFY(message.startsWith("virtual-adapter.json:2: a?b?xxx"));
    QVERIFY(message.endsWith("...: unknown key"));
    QVERIFY(message.size() < 300);
    QVERIFY(!message.contains('\n'));
}

void tst_ConfigReader::accepted_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const QByteArray &text) {
        QTest::newRow(name) << text;
    };
    row("byte order mark", "\xEF\xBB\xBF{'devices': []}");
    row("whole range of the buffer", "{'devices': [], 'receive_buffer_frames': 1000000}");
    row("hex in both cases", "{'devices': [], 'receive_buffer_frames': '0XfF'}");
    row("largest period", node("'id': 1, 'period_us': 3600000000, 'phase_us': 3600000000"));
    row("largest rate", node("'id': 1, 'rate_hz': 1000000"));
    row("no data at all", node("'id': 1, 'length': 0, 'data': '', 'period_us': 1"));
    row("64 bytes", node("'id': 1, 'format': 'fd', 'data': '" + QByteArray(64, '0').append(QByteArray(64, '0')) +
                         "', 'period_us': 1"));
    row("any model", "{'devices': [{'model': 'other'}]}");
    row("empty sections", device("'can': [], 'lin': [], 'faults': {}"));
}

void tst_ConfigReader::accepted()
{
    QFETCH(QByteArray, text);
    const auto result = read(text);
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY2(error == nullptr, error == nullptr ? "" : error->message("text").c_str());
}

void tst_ConfigReader::smallestConfiguration()
{
    const auto result = read("{'devices': []}");
    const auto &config = std::get<AdapterConfig>(result);
    QCOMPARE(config.receiveBufferFrames, 200000U);
    QVERIFY(config.buses.empty() && config.linBuses.empty() && config.devices.empty());
}

void tst_ConfigReader::nodeValues()
{
    const auto result = read(
        node("'id': '0x1ABCDEF0', 'extended': true, 'format': 'fd-brs', 'length': 48, 'payload': 'random', 'seed': 9,"
             "'period_us': 250, 'phase_us': 7}, {'id': 5, 'remote': true, 'length': 3, 'rate_hz': 27000},"
             "{'id': 6, 'data': [1, '0xA2'], 'request_id': '0x18DA10F1', 'request_extended': true, 'delay_us': 12"));
    const std::vector<NodeConfig> &nodes = std::get<AdapterConfig>(result).buses.at(0).nodes;
    QCOMPARE(nodes.size(), std::size_t{3});
    QCOMPARE(nodes[0].frame.id, 0x1ABCDEF0U);
    QVERIFY(nodes[0].frame.extended);
    QCOMPARE(nodes[0].frame.format, va::FrameFormat::FdBitRateSwitch);
    QCOMPARE(int{nodes[0].frame.length}, 48);
    QVERIFY(nodes[0].payload == va::PayloadKind::Random);
    QCOMPARE(nodes[0].seed, 9U);
    QCOMPARE(nodes[0].cyclic->period.numeratorNs, std::uint64_t{250000});
    QCOMPARE(nodes[0].cyclic->phaseNs, std::uint64_t{7000});
    QVERIFY(nodes[1].frame.remote);
    QCOMPARE(nodes[1].cyclic->period.denominator, std::uint64_t{27000});
    QVERIFY(nodes[2].payload == va::PayloadKind::Constant);
    QCOMPARE(int{nodes[2].frame.length}, 2);
    QCOMPARE(int{nodes[2].frame.data[1]}, 0xA2);
    QVERIFY(!nodes[2].cyclic);
    QCOMPARE(nodes[2].reply->requestId, 0x18DA10F1U);
    QVERIFY(nodes[2].reply->requestExtended);
    QCOMPARE(nodes[2].reply->delayNs, std::uint64_t{12000});
}

void tst_ConfigReader::nodeDefaults()
{
    const auto result = read(node("'id': 1, 'period_us': 10}, {'id': 2, 'request_id': 3"));
    const std::vector<NodeConfig> &nodes = std::get<AdapterConfig>(result).buses.at(0).nodes;
    QVERIFY(!nodes[0].frame.extended && !nodes[0].frame.remote && !nodes[0].frame.isFd());
    QCOMPARE(int{nodes[0].frame.length}, 8);
    QVERIFY(nodes[0].payload == va::PayloadKind::Counting);
    QCOMPARE(nodes[0].cyclic->phaseNs, std::uint64_t{0});
    QCOMPARE(nodes[1].reply->delayNs, std::uint64_t{1000000});
    QVERIFY(!nodes[1].reply->requestExtended);
}

void tst_ConfigReader::busTimings_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<int>("timing0");
    QTest::addColumn<int>("timing1");
    const auto rate = [](const char *name, int timing0, int timing1) {
        QTest::newRow(name) << "'bitrate': '" + QByteArray(name) + "'" << timing0 << timing1;
    };
    rate("1000k", 0x00, 0x14);
    rate("800k", 0x00, 0x16);
    rate("500k", 0x00, 0x1C);
    rate("250k", 0x01, 0x1C);
    rate("125k", 0x03, 0x1C);
    rate("100k", 0x04, 0x1C);
    rate("50k", 0x09, 0x1C);
    rate("25k", 0x18, 0x1C);
    rate("10k", 0x31, 0x1C);
    rate("5k", 0xBF, 0xFF);
    QTest::newRow("default") << QByteArray("'data_rate': 0") << 0x00 << 0x1C;
    QTest::newRow("own pair") << QByteArray("'timing0': '0x81', 'timing1': 37") << 0x81 << 37;
}

void tst_ConfigReader::busTimings()
{
    QFETCH(QByteArray, keys);
    const auto result = read(bus("'name': 'x', " + keys));
    const va::CanBusConfig &config = std::get<AdapterConfig>(result).buses.at(0);
    QTEST(int{config.timing0}, "timing0");
    QTEST(int{config.timing1}, "timing1");
    QCOMPARE(int{config.dataRate}, 0);
}

void tst_ConfigReader::linValues()
{
    const auto result = read(
        lin("'baud_rate': 10400, 'slaves': [{'id': '0x3C', 'data': '01'}, {'id': 1, 'data': '0102', 'counting': true},"
            "{'id': 2, 'data': '00', 'checksum': 'classic', 'present': false, 'wrong_checksum': true}],"
            "'traffic': [{'id': 1, 'period_ms': 5}, {'id': 3, 'period_ms': 7, 'data': 'AA', 'wrong_parity': true}]"));
    const va::LinBusConfig &config = std::get<AdapterConfig>(result).linBuses.at(0);
    QCOMPARE(int{config.baudRate}, 10400);
    QVERIFY(config.slaves[0].checksum == va::LinChecksum::Classic); // a diagnostic identifier
    QVERIFY(config.slaves[1].checksum == va::LinChecksum::Enhanced);
    QVERIFY(config.slaves[1].present && config.slaves[1].data.counting && !config.slaves[1].wrongChecksum);
    QCOMPARE(int{config.slaves[1].data.size}, 2);
    QVERIFY(config.slaves[2].checksum == va::LinChecksum::Classic);
    QVERIFY(!config.slaves[2].present && config.slaves[2].wrongChecksum);
    QCOMPARE(config.traffic[0].period.numeratorNs, std::uint64_t{5000000});
    QVERIFY(!config.traffic[0].data && !config.traffic[0].wrongParity);
    QCOMPARE(int{config.traffic[1].data->bytes[0]}, 0xAA);
    QVERIFY(config.traffic[1].wrongParity);
}

void tst_ConfigReader::deviceValues()
{
    const auto result = read(device(
        "'serial': 'S', 'firmware': 'V1.2', 'hardware': '', 'gateway_on': true,"
        "'can': [{}, {'bus': 'b', 'faults': {'init_refused': true, 'start_refused': true, 'receive_error_every': 3,"
        "'transmit_accept': 0}}], 'lin': [{'bus': 'l', 'faults': {'open_refused': true, 'close_refused': true,"
        "'mode_refused': [1, 3], 'transmit_refused': true, 'receive_refused': true}}],"
        "'faults': {'open_refused': true, 'info_refused': true, 'gateway_refused': true, 'vanish_after_ms': 5,"
        "'return_after_ms': 6, 'call_delay_ms': {'KQ_ReceiveCANFD': 9}}}, {'model': 'X9EC', "
        "'faults': {'call_delay_ms': 4}"));
    const auto &config = std::get<AdapterConfig>(result);
    const va::DeviceConfig &first = config.devices.at(0);
    QVERIFY(first.hasCanFd() && first.gatewayOn && first.hardware.empty());
    QVERIFY(!first.can[0].bus && first.can[1].bus == std::size_t{0});
    QVERIFY(first.can[1].faults.initRefused && first.can[1].faults.startRefused);
    QCOMPARE(first.can[1].faults.receiveErrorEvery, 3U);
    QCOMPARE(first.can[1].faults.transmitAccept.value_or(7), 0U);
    QVERIFY(first.lin[0].faults.openRefused && first.lin[0].faults.closeRefused);
    QVERIFY(first.lin[0].faults.transmitRefused && first.lin[0].faults.receiveRefused);
    QCOMPARE(first.lin[0].faults.modeRefused, std::vector<std::uint8_t>({1, 3}));
    QVERIFY(first.faults.openRefused && first.faults.infoRefused && first.faults.gatewayRefused);
    QCOMPARE(first.faults.vanishAfterNs.value_or(0), std::uint64_t{5000000});
    QCOMPARE(first.faults.returnAfterNs.value_or(0), std::uint64_t{6000000});
    QCOMPARE(first.faults.callDelayMs.at("KQ_ReceiveCANFD"), 9U);
    QCOMPARE(first.faults.callDelayMs.at("VCI_Receive"), 0U);
    const va::DeviceConfig &second = config.devices.at(1);
    QVERIFY(!second.hasCanFd() && !second.gatewayOn);
    QCOMPARE(QByteArray::fromStdString(second.firmware), QByteArray("V2.05"));
    QVERIFY(std::all_of(second.faults.callDelayMs.begin(), second.faults.callDelayMs.end(),
                        [](const auto &delay) { return delay.second == 4; }));
}

void tst_ConfigReader::builtInShowsEveryFeature()
{
    const auto result = va::readConfig(va::builtInConfigText());
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY2(error == nullptr, error == nullptr ? "" : error->message("built-in").c_str());
    const AdapterConfig config = va::builtInConfig();
    QCOMPARE(config.devices.size(), std::size_t{2});
    QVERIFY(config.devices[0].hasCanFd());
    QCOMPARE(config.devices[1].model.substr(0, 4), std::string("X9EC"));
    QCOMPARE(config.devices[0].firmware, std::string("V2.05"));
    const auto any = [](const std::vector<NodeConfig> &nodes, auto &&what) {
        return std::any_of(nodes.begin(), nodes.end(), what);
    };
    const std::vector<NodeConfig> &nodes = config.buses.at(0).nodes;
    QVERIFY(any(nodes, [](const NodeConfig &n) { return n.frame.extended; }));
    QVERIFY(any(nodes, [](const NodeConfig &n) { return n.frame.remote; }));
    QVERIFY(any(nodes, [](const NodeConfig &n) { return n.frame.format == va::FrameFormat::Fd; }));
    QVERIFY(any(nodes, [](const NodeConfig &n) { return n.frame.format == va::FrameFormat::FdBitRateSwitch; }));
    QVERIFY(any(nodes, [](const NodeConfig &n) { return n.reply.has_value(); }));
    QVERIFY(any(nodes, [](const NodeConfig &n) { return n.payload == va::PayloadKind::Random; }));
    QVERIFY(any(nodes, [](const NodeConfig &n) { return n.payload == va::PayloadKind::Constant; }));
    for (const va::CanChannelConfig &channel : config.devices[0].can) {
        const va::CanBusConfig &on = config.buses.at(channel.bus.value());
        QCOMPARE(int{on.timing0}, 0x00);
        QCOMPARE(int{on.timing1}, 0x1C);
        double perSecond = 0;
        for (const NodeConfig &n : on.nodes) {
            if (n.cyclic && !n.frame.isFd()) {
                perSecond += 1e9 * static_cast<double>(n.cyclic->period.denominator) /
                             static_cast<double>(n.cyclic->period.numeratorNs);
            }
        }
        QVERIFY2(perSecond >= 300 && perSecond <= 800, QByteArray::number(perSecond).constData());
    }
    const std::vector<va::LinSlaveConfig> &slaves = config.linBuses.at(0).slaves;
    QVERIFY(std::any_of(slaves.begin(), slaves.end(), [](const va::LinSlaveConfig &s) { return !s.present; }));
    QVERIFY(std::any_of(slaves.begin(), slaves.end(), [](const va::LinSlaveConfig &s) { return s.present; }));
    QVERIFY(!config.linBuses.at(0).traffic.empty());
}

void tst_ConfigReader::exampleLoads()
{
    QFile file(QStringLiteral(X9_ADAPTER_EXAMPLE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto result = va::readConfig(file.readAll().toStdString());
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY2(error == nullptr, error == nullptr ? "" : error->message("example").c_str());
    QCOMPARE(std::get<AdapterConfig>(result).devices.size(), std::size_t{2});
}

void tst_ConfigReader::deepNestingIsRefused()
{
    const auto result = read("{'devices': " + QByteArray(400000, '['));
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY(error != nullptr);
    QCOMPARE(QByteArray::fromStdString(error->problem), QByteArray("nested too deeply"));
}

void tst_ConfigReader::manyValuesAreRefused()
{
    QByteArray text = "{'devices': [";
    for (std::size_t i = 0; i < va::MaxJsonValues; ++i) {
        text += "0,";
    }
    const auto result = read(text + "0]}");
    const auto *error = std::get_if<ConfigError>(&result);
    QVERIFY(error != nullptr);
    QCOMPARE(QByteArray::fromStdString(error->problem), QByteArray("too many values"));
}

void tst_ConfigReader::mutatedTextsNeitherCrashNorHang()
{
    QFile file(QStringLiteral(X9_ADAPTER_EXAMPLE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray original = file.readAll();
    QRandomGenerator random(20240607);
    const QByteArray pieces = "{}[]\",:0123456789abcdefx-.e\n\\\xFF ";
    int refused = 0;
    for (int i = 0; i < 3000; ++i) {
        QByteArray text = original;
        for (int changes = random.bounded(1, 6); changes > 0; --changes) {
            const int at = random.bounded(text.size());
            switch (random.bounded(4)) {
            case 0:
                text[at] = pieces[random.bounded(pieces.size())];
                break;
            case 1:
                text.remove(at, random.bounded(1, 40));
                break;
            case 2:
                text.insert(at, text.mid(random.bounded(text.size()), random.bounded(1, 60)));
                break;
            case 3:
                text.truncate(std::max(at, 1));
                break;
            }
        }
        const auto result = va::readConfig(text.toStdString());
        if (const auto *error = std::get_if<ConfigError>(&result)) {
            ++refused;
            QVERIFY(error->line >= 1 && error->line <= text.count('\n') + 1);
            QVERIFY(!error->problem.empty());
            QVERIFY(error->message("f").find('\n') == std::string::npos);
        }
    }
    QVERIFY(refused > 1000);
}

X9_PLAIN_TEST(tst_ConfigReader)
#include "tst_ConfigReader.moc"
