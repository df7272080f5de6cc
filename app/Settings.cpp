#include "app/Settings.h"

#include "device/SaveTarget.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace {
constexpr int DefaultLanguage = 0;
const QLatin1String LanguageKey("language");

/// The settings in a file; empty where something stands that is no file, a pipe for instance, which opening waits for.
class Settings : public QSettings
{
public:
    explicit Settings(const QString &file)
        : QSettings(isFileTarget(file) ? file : QString(), IniFormat)
    {
    }
};

/// Whether the value stands in the file afterwards.
bool store(const QString &file, int language)
{
    Settings settings(file);
    const QVariant before = settings.value(LanguageKey);
    settings.setValue(LanguageKey, language);
    settings.sync();
    const bool isStored = settings.status() == QSettings::NoError && QFileInfo(file).isFile();
    if (!isStored) {
        // QSettings would answer the new value from its memory as long as the program runs.
        before.isValid() ? settings.setValue(LanguageKey, before) : settings.remove(LanguageKey);
    }
    return isStored;
}

/// Of installations in different folders; it never changes, as it names a file.
QString installationKey()
{
    const QString folder = QDir(QCoreApplication::applicationDirPath()).canonicalPath();
    return QString::fromLatin1(QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha1).toHex().left(8));
}
} // namespace

SettingsFiles::SettingsFiles(QString programFile, QString userFile)
    : m_programFile(std::move(programFile))
    , m_userFile(std::move(userFile))
{
}

SettingsFiles SettingsFiles::ofProgram()
{
    const QDir userFolder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    return {QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("Init.ini")),
            userFolder.filePath(QStringLiteral("X9CAN/Init-%1.ini").arg(installationKey()))};
}

int SettingsFiles::language() const
{
    const Settings program(m_programFile);
    const Settings user(m_userFile);
    const bool isUsers = user.contains(LanguageKey) && !(isFileTarget(m_programFile) && program.isWritable());
    return (isUsers ? user : program).value(LanguageKey, DefaultLanguage).toInt();
}

bool SettingsFiles::setLanguage(int language) const
{
    return store(m_programFile, language) || store(m_userFile, language);
}

QString SettingsFiles::updateServer() const
{
    const Settings program(m_programFile);
    return program.value(QStringLiteral("updateServer")).toString();
}

int getLanguage()
{
    return SettingsFiles::ofProgram().language();
}

bool setLanguage(int language)
{
    return SettingsFiles::ofProgram().setLanguage(language);
}

QString updateServer()
{
    const QString stored = SettingsFiles::ofProgram().updateServer();
    return stored.isEmpty() ? QStringLiteral(X9CAN_UPDATE_SERVER) : stored;
}
