#include "adapter/virtual/ConfigReader.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class tst_ConfigFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void noFileIsTheBuiltInConfiguration();
    void goodFileIsUsed();
    void badFileIsNamedAndTheBuiltInConfigurationUsed();
    void directoryIsRefused();
#if defined(Q_OS_UNIX)
    void deviceFileIsRefused();
#endif
    void emptyFileIsRefused();
    void largestFileIsRead();
    void largerFileIsRefused();

private:
    std::string write(const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ConfigFile::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

std::string tst_ConfigFile::write(const QByteArray &content)
{
    QFile file(m_folder->filePath(QStringLiteral("virtual-adapter.json")));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write");
    }
    return file.fileName().toStdString();
}

void tst_ConfigFile::noFileIsTheBuiltInConfiguration()
{
    const va::LoadedConfig loaded = va::loadConfig(m_folder->filePath(QStringLiteral("none.json")).toStdString());
    QCOMPARE(loaded.complaint, std::string());
    QCOMPARE(loaded.config.devices.size(), std::size_t{2});
}

void tst_ConfigFile::goodFileIsUsed()
{
    const va::LoadedConfig loaded = va::loadConfig(write(R"({"devices": [{"model": "M"}]})"));
    QCOMPARE(loaded.complaint, std::string());
    QCOMPARE(loaded.config.devices.size(), std::size_t{1});
    QCOMPARE(loaded.config.devices[0].model, std::string("M"));
}

void tst_ConfigFile::badFileIsNamedAndTheBuiltInConfigurationUsed()
{
    const std::string path = write("{\"devices\": [\n{\"model\": 5}\n]}");
    const va::LoadedConfig loaded = va::loadConfig(path);
    QCOMPARE(loaded.complaint, "virtual adapter: " + path +
                                   ":2: devices[0].model: must be a text of 0 to 79 printable ASCII characters; the "
                                   "built-in configuration is used");
    QCOMPARE(loaded.config.devices.size(), std::size_t{2});
}

void tst_ConfigFile::directoryIsRefused()
{
    const va::LoadedConfig loaded = va::loadConfig(m_folder->path().toStdString());
    QVERIFY(loaded.complaint.find("cannot be read") != std::string::npos);
    QCOMPARE(loaded.config.devices.size(), std::size_t{2});
}

#if defined(Q_OS_UNIX)
void tst_ConfigFile::deviceFileIsRefused()
{
    const QString link = m_folder->filePath(QStringLiteral("device.json"));
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), link));
    const va::LoadedConfig loaded = va::loadConfig(link.toStdString());
    QVERIFY2(loaded.complaint.find("cannot be read") != std::string::npos, loaded.complaint.c_str());
}
#endif

void tst_ConfigFile::emptyFileIsRefused()
{
    const va::LoadedConfig loaded = va::loadConfig(write({}));
    QVERIFY(loaded.complaint.find(":1: not valid JSON") != std::string::npos);
    QCOMPARE(loaded.config.devices.size(), std::size_t{2});
}

void tst_ConfigFile::largestFileIsRead()
{
    const QByteArray text = R"({"devices": []})";
    const QByteArray spaces(static_cast<int>(va::MaxConfigFileSize) - text.size(), ' ');
    const va::LoadedConfig loaded = va::loadConfig(write(spaces + text));
    QCOMPARE(loaded.complaint, std::string());
    QVERIFY(loaded.config.devices.empty());
}

void tst_ConfigFile::largerFileIsRefused()
{
    const QByteArray text = R"({"devices": []})";
    const QByteArray spaces(static_cast<int>(va::MaxConfigFileSize) - text.size() + 1, ' ');
    const va::LoadedConfig loaded = va::loadConfig(write(spaces + text));
    QVERIFY(loaded.complaint.find("larger than 1048576 bytes") != std::string::npos);
    QCOMPARE(loaded.config.devices.size(), std::size_t{2});
}

X9_PLAIN_TEST(tst_ConfigFile)
#include "tst_ConfigFile.moc"
