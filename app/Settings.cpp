#include "app/Settings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace {
constexpr int LanguageChinese = 0;

QString languageKey()
{
    return QStringLiteral("language");
}

/// Whether the value stands in the file afterwards.
bool store(const QString &file, int language)
{
    QSettings settings(file, QSettings::IniFormat);
    const QVariant before = settings.value(languageKey());
    settings.setValue(languageKey(), language);
    settings.sync();
    const bool isStored = settings.status() == QSettings::NoError && QFileInfo(file).isFile();
    if (!isStored) {
        // QSettings would answer the new value from its memory as long as the program runs.
        before.isValid() ? settings.setValue(languageKey(), before) : settings.remove(languageKey());
    }
    return isStored;
}
} // namespace

SettingsFiles::SettingsFiles(QString programFile, QString userFile)
    : m_programFile(std::move(programFile))
    , m_userFile(std::move(userFile))
{
}

SettingsFiles SettingsFiles::ofProgram()
{
    const QString name = QStringLiteral("Init.ini");
    const QDir userFolder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    return {QDir(QCoreApplication::applicationDirPath()).filePath(name),
            userFolder.filePath(QStringLiteral("X9CAN/") + name)};
}

int SettingsFiles::language() const
{
    const QSettings program(m_programFile, QSettings::IniFormat);
    const QSettings user(m_userFile, QSettings::IniFormat);
    const QSettings &settings = user.contains(languageKey()) ? user : program;
    return settings.value(languageKey(), LanguageChinese).toInt();
}

bool SettingsFiles::setLanguage(int language) const
{
    if (!store(m_programFile, language)) {
        return store(m_userFile, language);
    }
    QSettings user(m_userFile, QSettings::IniFormat);
    if (user.contains(languageKey())) {
        user.remove(languageKey()); // from a time when the program's own file could not be written
    }
    return true;
}

QString SettingsFiles::updateServer() const
{
    const QSettings program(m_programFile, QSettings::IniFormat);
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

QString storedUpdateServer()
{
    return SettingsFiles::ofProgram().updateServer();
}
