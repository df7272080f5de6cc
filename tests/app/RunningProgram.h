#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A folder with a copy of the program under test and of the virtual adapter, apart from everything else on the
/// machine: temporary files, settings and the guard against a second instance are its own.
class ProgramFolder
{
public:
    enum class Library { Present, Missing };

    explicit ProgramFolder(const QByteArray &adapter, Library library = Library::Present);
    ~ProgramFolder();
    Q_DISABLE_COPY_MOVE(ProgramFolder)

    QString path(const QString &name) const { return m_folder.filePath(name); }
    QByteArray read(const QString &name) const;
    void write(const QString &name, const QByteArray &content) const;
    /// What the programs wrote down.
    QString log() const { return QString::fromUtf8(read(QStringLiteral("log")).replace("\r\n", "\n")); }
    /// Of the guard against a second instance.
    QString lockFile() const;
    /// Waits until no program runs here any more.
    bool isFree() const;
    QProcessEnvironment environment() const;

private:
    QTemporaryDir m_folder;
};

/// One process of the program under test. It is ended with this object.
class RunningProgram
{
public:
    RunningProgram(const ProgramFolder &folder, const QString &steps, const QStringList &arguments = {});
    ~RunningProgram();

    /// Waits until the log has so many lines that begin with a text.
    bool waitForLine(const QString &begin, int count = 1) const;
    bool waitForEnd(int limitMs = 60000);
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    int exitCode() const { return m_process.exitCode(); }
    QProcess::ExitStatus exitStatus() const { return m_process.exitStatus(); }
    void kill();
    /// What it wrote on standard error, but for what the toolkit says of the platform.
    QString errors();

private:
    const ProgramFolder &m_folder;
    QProcess m_process;
};
