#pragma once

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class GUI_SoftwareInfo;
}

/// Name and version of this program, and where to ask about it.
class GUI_SoftwareInfo : public QDialog
{
    Q_OBJECT

public:
    /// supportAddress: plain text, shown as a link where it is a web or mail address. Without one nothing is said about
    /// support.
    explicit GUI_SoftwareInfo(const QString &supportAddress, QWidget *parent = nullptr);
    ~GUI_SoftwareInfo() override;

    /// Whether the answer to sig_update is still to come; the user cannot ask again meanwhile.
    void setChecking(bool isChecking);

signals:
    /// The user asks whether there is a newer version. The dialog stays open.
    void sig_update();

private:
    std::unique_ptr<Ui::GUI_SoftwareInfo> m_ui;
};
