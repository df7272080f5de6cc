#pragma once

#include "app/ServiceAddress.h"

#include <QDialog>
#include <QString>

#include <memory>

class GUI_UpdatePrivate;

/// Tells what became of the search for a newer release, and offers the upgrade.
class GUI_Update : public QDialog
{
    Q_OBJECT

public:
    /// webSite: the address that state 1 links to; without one the link is left out.
    explicit GUI_Update(QWidget *parent = nullptr, const QString &webSite = ::webSite());
    ~GUI_Update() override;

    /// 0: this is the latest version; 1: the search failed; 2: there is a newer version.
    void setState(int state);
    /// The release's summary, rich text that is not trusted; states 0 and 2 show it.
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
    std::unique_ptr<GUI_UpdatePrivate> m_p;
};
