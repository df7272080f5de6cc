#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

/// Runs external upgrade programs, one at a time: the program has one object of this class, handed to all who may start
/// or have to know. What an upgrade program writes is dropped. Nothing here ever ends one, since it may be writing to
/// the flash memory of an adapter: when this object goes while one runs, that one runs on.
class UpgradeProcess : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    /// As release().
    ~UpgradeProcess() override;

    /// The meaning of an exit code of an upgrade program, for the user.
    static QString resultText(int exitCode);
    /// For the user who wants something that has to wait until the upgrade program has ended.
    static QString runningText();

    /// Starts the program and returns at once; ignored while one runs. The signals may come before this returns. All
    /// who share this object hear them: one that has called this while isRunning() was false knows the run as its own.
    void start(const QString &program, const QStringList &arguments);
    /// Lets a running program go: it runs on, and none of its signals come any more.
    void release();
    /// From start() until the program has ended, could not be started, or was released.
    bool isRunning() const { return m_process != nullptr; }
    /// Whether a program runs, which the user of the window is told then.
    bool isRefused(QWidget &window) const;

signals:
    /// isRunning() has changed; not for a program that was released.
    void sig_runningChanged(bool isRunning);
    void sig_started();
    /// The program ended by itself.
    void sig_finished(int exitCode);
    /// The program crashed, after sig_started, or could not be started, without it. The reason is in the log as well.
    void sig_failed(const QString &reason);

private:
    class Process;
    void end(bool isByItself, int exitCode);

    Process *m_process = nullptr; ///< a child; null while no program runs
};
