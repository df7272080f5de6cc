// What Windows reads from the files of the program and of the virtual adapter without starting them.

#include "tests/support/TestProgram.h"

#include <QFile>
#include <QtEndian>
#include <QtTest>
#include <QXmlStreamReader>

#include <windows.h>

namespace {
const QString Program = QStringLiteral(X9_PROGRAM);
const QString VirtualAdapter = QStringLiteral(X9_VIRTUAL_ADAPTER);
constexpr quint32 English = 0x040904B0; ///< language and code page
constexpr quint32 Chinese = 0x080404B0;

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

/// The version resource of a file.
class VersionResource
{
public:
    explicit VersionResource(const QString &path)
        : m_data(int(GetFileVersionInfoSizeW(wide(path), nullptr)), '\0')
    {
        if (!GetFileVersionInfoW(wide(path), 0, DWORD(m_data.size()), m_data.data())) {
            m_data.clear();
        }
    }

    QByteArray block(const QString &name) const
    {
        void *value = nullptr;
        UINT size = 0;
        if (m_data.isEmpty() || !VerQueryValueW(m_data.constData(), wide(name), &value, &size)) {
            return {};
        }
        return {static_cast<const char *>(value), int(size)};
    }

    VS_FIXEDFILEINFO numbers() const
    {
        VS_FIXEDFILEINFO info{};
        const QByteArray bytes = block(QStringLiteral("\\"));
        memcpy(&info, bytes.constData(), qMin(sizeof(info), size_t(bytes.size())));
        return info;
    }

    QString text(quint32 language, const QString &name) const
    {
        void *value = nullptr;
        UINT length = 0;
        const QString path =
            QStringLiteral("\\StringFileInfo\\%1\\%2").arg(language, 8, 16, QLatin1Char('0')).arg(name);
        if (m_data.isEmpty() || !VerQueryValueW(m_data.constData(), wide(path), &value, &length) || length == 0) {
            return {};
        }
        return QString::fromWCharArray(static_cast<const wchar_t *>(value), int(length) - 1);
    }

private:
    QByteArray m_data;
};

/// The resources of a file, which is not run.
class FileResources
{
public:
    explicit FileResources(const QString &path)
        : m_module(LoadLibraryExW(wide(path), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE))
    {
    }
    ~FileResources() { FreeLibrary(m_module); }
    Q_DISABLE_COPY_MOVE(FileResources)

    /// Empty when there is none.
    QByteArray find(int id, LPWSTR type) const
    {
        HRSRC found = FindResourceW(m_module, MAKEINTRESOURCEW(id), type);
        if (found == nullptr) {
            return {};
        }
        const void *bytes = LockResource(LoadResource(m_module, found));
        return {static_cast<const char *>(bytes), int(SizeofResource(m_module, found))};
    }

private:
    HMODULE m_module;
};

/// An element of a manifest with the namespace it belongs to, and its text or the attribute that matters.
using Setting = std::pair<QString, QString>;

QMap<Setting, QStringList> readManifest(QXmlStreamReader &xml)
{
    QMap<Setting, QStringList> settings;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const Setting name(xml.namespaceUri().toString(), xml.name().toString());
        const QXmlStreamAttributes attributes = xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            settings[{name.first, name.second + QLatin1Char('/') + attribute.name()}] += attribute.value().toString();
        }
        if (name.first.contains(QLatin1String("WindowsSettings"))) {
            settings[name] += xml.readElementText();
        }
    }
    return settings;
}

quint16 word(const QByteArray &bytes, int at)
{
    return at + 2 <= bytes.size() ? qFromLittleEndian<quint16>(bytes.constData() + at) : quint16(0);
}

quint32 doubleWord(const QByteArray &bytes, int at)
{
    return at + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + at) : 0;
}
} // namespace

class tst_ProgramFile : public QObject
{
    Q_OBJECT

private slots:
    void versionNumbers_data();
    void versionNumbers();
    void versionTexts_data();
    void versionTexts();
    void icon();
    void manifest();
    void manifestLeavesTheCodePage();
    void adapterHasNoManifest();
    void subsystem();
};

void tst_ProgramFile::versionNumbers_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<quint32>("type");
    QTest::newRow("program") << Program << quint32(VFT_APP);
    QTest::newRow("virtual adapter") << VirtualAdapter << quint32(VFT_DLL);
}

void tst_ProgramFile::versionNumbers()
{
    QFETCH(QString, path);
    const VS_FIXEDFILEINFO info = VersionResource(path).numbers();
    const auto version = [](DWORD upper, DWORD lower) {
        return QStringLiteral("%1.%2.%3.%4")
            .arg(HIWORD(upper))
            .arg(LOWORD(upper))
            .arg(HIWORD(lower))
            .arg(LOWORD(lower));
    };
    QCOMPARE(version(info.dwFileVersionMS, info.dwFileVersionLS), QStringLiteral(X9_VERSION ".0"));
    QCOMPARE(version(info.dwProductVersionMS, info.dwProductVersionLS), QStringLiteral(X9_VERSION ".0"));
    QCOMPARE(info.dwFileOS, DWORD(VOS_NT_WINDOWS32));
    QTEST(quint32(info.dwFileType), "type");
    QCOMPARE(info.dwFileFlags, DWORD(0));
}

void tst_ProgramFile::versionTexts_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<quint32>("language");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("internalName");
    QTest::addColumn<QString>("fileName");
    const auto add = [](const char *name, const QString &path, quint32 language, const char *description,
                        const char *internalName, const char *fileName) {
        QTest::newRow(name) << path << language << QString::fromUtf8(description) << QString::fromLatin1(internalName)
                            << QString::fromLatin1(fileName);
    };
    add("program, English", Program, English, "X9CAN - CAN, CAN FD and LIN bus analyser", "X9CAN", "X9CAN.exe");
    add("program, Chinese", Program, Chinese, "X9CAN - CAN、CAN FD 和 LIN 总线分析仪", "X9CAN", "X9CAN.exe");
    add("virtual adapter, English", VirtualAdapter, English, "Virtual adapter of X9CAN: simulated buses, no hardware",
        "ControlCAN", "ControlCAN.dll");
    add("virtual adapter, Chinese", VirtualAdapter, Chinese, "X9CAN 虚拟适配器：模拟总线，不访问硬件", "ControlCAN",
        "ControlCAN.dll");
}

void tst_ProgramFile::versionTexts()
{
    QFETCH(QString, path);
    QFETCH(quint32, language);
    const VersionResource version(path);
    const auto text = [&](const char *name) {
        return version.text(language, QString::fromLatin1(name));
    };
    QTEST(text("FileDescription"), "description");
    QTEST(text("InternalName"), "internalName");
    QTEST(text("OriginalFilename"), "fileName");
    QCOMPARE(text("CompanyName"), QStringLiteral("X9CAN developers"));
    QCOMPARE(text("ProductName"), QStringLiteral("X9CAN"));
    QCOMPARE(text("FileVersion"), QStringLiteral(X9_VERSION));
    QCOMPARE(text("ProductVersion"), QStringLiteral(X9_VERSION));
    QVERIFY2(text("LegalCopyright").endsWith(QLatin1String("X9CAN developers")), qPrintable(text("LegalCopyright")));

    // The Explorer takes the texts whose language is in this list.
    const QByteArray languages = version.block(QStringLiteral("\\VarFileInfo\\Translation"));
    QSet<quint32> listed;
    for (int at = 0; at < languages.size(); at += 4) {
        listed += quint32(word(languages, at)) << 16 | word(languages, at + 2);
    }
    QCOMPARE(listed, QSet<quint32>({English, Chinese}));
}

/// The group icon lists its pictures in entries of 14 bytes behind a head of 6; width 0 stands for 256. The icon with
/// the lowest number is the one of the file.
void tst_ProgramFile::icon()
{
    const FileResources resources(Program);
    const QByteArray group = resources.find(1, RT_GROUP_ICON);
    QVERIFY(!group.isEmpty());
    QCOMPARE(word(group, 2), quint16(1)); // an icon and not a cursor
    QList<int> sizes;
    for (int entry = 0; entry < word(group, 4); ++entry) {
        const int at = 6 + 14 * entry;
        const int width = quint8(group.at(at));
        sizes += width == 0 ? 256 : width;
        const QByteArray picture = resources.find(word(group, at + 12), RT_ICON);
        QCOMPARE(quint32(picture.size()), doubleWord(group, at + 8));
        QVERIFY(picture.size() > 0);
    }
    std::sort(sizes.begin(), sizes.end());
    QCOMPARE(sizes, QList<int>({16, 24, 32, 48, 256}));
}

void tst_ProgramFile::manifest()
{
    QXmlStreamReader xml(FileResources(Program).find(1, RT_MANIFEST));
    const QMap<Setting, QStringList> settings = readManifest(xml);
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));

    const QString v1 = QStringLiteral("urn:schemas-microsoft-com:asm.v1");
    const QString v3 = QStringLiteral("urn:schemas-microsoft-com:asm.v3");
    const QString settings2005 = QStringLiteral("http://schemas.microsoft.com/SMI/2005/WindowsSettings");
    const QString settings2016 = QStringLiteral("http://schemas.microsoft.com/SMI/2016/WindowsSettings");
    const auto value = [&](const QString &space, const char *name) {
        return settings.value({space, QString::fromLatin1(name)}).join(QLatin1Char(' '));
    };
    QCOMPARE(value(v1, "assemblyIdentity/name"), QStringLiteral("X9CAN Microsoft.Windows.Common-Controls"));
    QCOMPARE(value(v1, "assemblyIdentity/version"), QStringLiteral("1.0.0.0 6.0.0.0"));
    QCOMPARE(value(v1, "assemblyIdentity/publicKeyToken"), QStringLiteral("6595b64144ccf1df"));
    QCOMPARE(value(v3, "requestedExecutionLevel/level"), QStringLiteral("asInvoker"));
    QCOMPARE(value(v3, "requestedExecutionLevel/uiAccess"), QStringLiteral("false"));
    QCOMPARE(value(settings2016, "dpiAwareness"), QStringLiteral("PerMonitorV2, PerMonitor"));
    QCOMPARE(value(settings2005, "dpiAware"), QStringLiteral("true/pm"));
    QCOMPARE(value(settings2016, "longPathAware"), QStringLiteral("true"));
    const QStringList systems = settings.value(
        {QStringLiteral("urn:schemas-microsoft-com:compatibility.v1"), QStringLiteral("supportedOS/Id")});
    QVERIFY(systems.contains(QStringLiteral("{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"))); // Windows 10 and 11
    QCOMPARE(systems.size(), 4);
}

/// Capture files are in the user's own code page.
void tst_ProgramFile::manifestLeavesTheCodePage()
{
    QXmlStreamReader xml(FileResources(Program).find(1, RT_MANIFEST));
    const QMap<Setting, QStringList> settings = readManifest(xml);
    QVERIFY(!settings.isEmpty());
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        QVERIFY(it.key().second != QLatin1String("activeCodePage"));
    }
}

/// Its program's counts.
void tst_ProgramFile::adapterHasNoManifest()
{
    QVERIFY(FileResources(VirtualAdapter).find(1, RT_MANIFEST).isEmpty());
    QVERIFY(FileResources(VirtualAdapter).find(2, RT_MANIFEST).isEmpty());
}

/// No console window appears with the program.
void tst_ProgramFile::subsystem()
{
    QFile file(Program);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray head = file.read(4096);
    const int pe = int(doubleWord(head, 0x3C));
    QCOMPARE(head.mid(pe, 4), QByteArray("PE\0\0", 4));
    QCOMPARE(word(head, pe + 4), quint16(QT_POINTER_SIZE == 8 ? IMAGE_FILE_MACHINE_AMD64 : IMAGE_FILE_MACHINE_I386));
    QCOMPARE(word(head, pe + 24 + 68), quint16(IMAGE_SUBSYSTEM_WINDOWS_GUI));
}

X9_PLAIN_TEST(tst_ProgramFile)
#include "tst_ProgramFile_win.moc"
