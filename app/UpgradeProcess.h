#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

/// Runs an external upgrade program. What it writes is dropped. Nothing here ever ends the program, since it may be
/// writing to the flash memory of an adapter: when this object goes while the program runs, the program runs on.
class UpgradeProcess : public QObject
{
    Q_OBJECT

public:
    explicit UpgradeProcess(QObject *parent = nullptr);
    /// As release().
    ~UpgradeProcess() override;

    /// Starts the program and returns at once; ignored while one runs. The signals may come before this returns.
    void start(const QString &program, const QStringList &arguments);
    /// Lets a running program go: it runs on, and none of its signals come any more.
    void release();
    /// From start() until the program has ended, could not be started, or was released.
    bool isRunning() const { return m_process != nullptr; }

signals:
    void sig_started();
    /// The program ended by itself.
    void sig_finished(int exitCode);
    /// The program crashed, after sig_started, or could not be started, without it. The reason is in the log as well.
    void sig_failed(const QString &reason);

private:
    class Process;
    void fail(const QString &reason);
    void freeProcess();

    Process *m_process = nullptr; ///< a child; null while no program runs
};
