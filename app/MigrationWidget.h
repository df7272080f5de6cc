#pragma once

#include <QString>
#include <QWidget>

#include <memory>

class MigrationWidgetPrivate;
class UpgradeProcess;

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
    /// program is started by process, which must outlive the widget, with image as its only argument.
    MigrationWidget(UpgradeProcess &process, QString program, QString image, QWidget *parent = nullptr);
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
    std::unique_ptr<MigrationWidgetPrivate> m_p;
};
