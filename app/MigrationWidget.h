#pragma once

#include <QString>
#include <QTimer>
#include <QWidget>

#include <memory>

class UpgradeProcess;

namespace Ui {
class MigrationWidget;
}

/// The program that migrates an older adapter, relative to the folder of the executable.
QString migrationProgram(const QString &applicationDir);
/// The image it writes to the adapter.
QString migrationImage(const QString &applicationDir);

/// Runs the migration program at the click of a button and lists how each run ended. A run that is still going on when
/// the widget is destroyed is left to run.
class MigrationWidget : public QWidget
{
    Q_OBJECT

public:
    /// process starts the program, with its image as the only argument, and must outlive the widget.
    MigrationWidget(UpgradeProcess &process, QString applicationDir, QWidget *parent = nullptr);
    ~MigrationWidget() override;

public slots:
    /// Starts the program, unless an upgrade program runs already, which the user is told then.
    void migrationBtnClicked();

signals:
    /// The program runs. Does not come for a program that cannot be started.
    void started();
    /// The program has ended, in whatever way. Comes once after each started().
    void stopped();

private:
    void showRunning();
    void end(int exitCode);

    UpgradeProcess &m_process;
    const QString m_applicationDir;
    const std::unique_ptr<Ui::MigrationWidget> m_ui;
    QTimer m_timer;       ///< of the progress bar
    bool m_isOwn = false; ///< the program that runs is the one started here
    int m_runs = 0;       ///< since the results were cleared
};
