#pragma once

#include "app/Release.h"

#include <QDialog>
#include <QString>

#include <memory>

class QToolButton;

namespace Ui {
class GUI_Update;
}

/// Tells what became of the search for a newer release, and offers the upgrade.
class GUI_Update : public QDialog
{
    Q_OBJECT

public:
    /// webSite: the address that state 1 links to; without one the link is left out.
    explicit GUI_Update(QWidget *parent = nullptr, QString webSite = ::webSite());
    ~GUI_Update() override;

    enum State { UpToDate = 0, CheckFailed = 1, NewVersion = 2 };

    /// Any other number changes nothing.
    void setState(int state);
    /// The release's summary, rich text that is not trusted; the states 0 and 2 show it.
    void setSummary(const QString &summary);
    /// The line with the versions, plain text.
    void setVersionLine(const QString &line);

signals:
    /// The user wants the newer version.
    void sig_update();

protected:
    void showEvent(QShowEvent *event) override;
    /// Enter presses the button that has the focus.
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString adviceText() const;
    /// The button for which Enter stands.
    QToolButton *mainButton() const;

    const std::unique_ptr<Ui::GUI_Update> m_ui;
    const QString m_webSite;
    QString m_summary;
};
