#pragma once

#include <QString>

// The settings are in "Init.ini" beside the program. Where that cannot be written, in a program folder for all users
// for instance, what the user chooses goes to a file in the user's own configuration folder, one for each folder that a
// program is installed in, which then counts first.

/// The interface language by its number, see languages(): 0 Chinese, also when nothing is stored or the file cannot be
/// read; 1 English.
int getLanguage();
/// Stores the interface language. False when it could be stored nowhere.
bool setLanguage(int language);

/// The base URL of the update server: the one set for this installation, else the one the program was built with
/// (X9CAN_UPDATE_SERVER). Empty: there is none, and every query fails at once.
QString updateServer();

/// The settings in two given files, as the functions above read and write them.
class SettingsFiles
{
public:
    SettingsFiles(QString programFile, QString userFile);
    /// The files of this program and this user.
    static SettingsFiles ofProgram();

    int language() const;
    bool setLanguage(int language) const;
    /// The base URL of the update server that is set for this installation, by the key "updateServer" of the program's
    /// file; empty when there is none.
    QString updateServer() const;
    QString userFile() const { return m_userFile; }

private:
    QString m_programFile;
    QString m_userFile;
};
