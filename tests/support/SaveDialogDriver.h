#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class QFileDialog;

/// Answers the next file dialog as a user does: types a name and presses Save or Open (or Cancel). Create it before the
/// click that opens the dialog. A click that opens a "Save File" dialog does not return until the dialog is answered.
/// Needs Qt::AA_DontUseNativeDialogs.
class SaveDialogDriver : public QObject
{
    Q_OBJECT

public:
    /// path is typed as it is; an empty one presses Cancel. beforeAnswer sees the dialog once it is on screen.
    explicit SaveDialogDriver(QString path, std::function<void(QFileDialog &)> beforeAnswer = {});

    /// Whether a dialog came and was answered.
    bool isAnswered() const { return m_isAnswered; }
    const QString &windowTitle() const { return m_windowTitle; }
    /// Where the dialog started.
    const QString &folder() const { return m_folder; }
    /// The file types the dialog offered.
    const QStringList &nameFilters() const { return m_nameFilters; }

private:
    void lookForDialog();

    QString m_path;
    std::function<void(QFileDialog &)> m_beforeAnswer;
    QTimer m_timer;
    QString m_windowTitle;
    QString m_folder;
    QStringList m_nameFilters;
    bool m_isAnswered = false;
};
