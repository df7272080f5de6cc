#pragma once

#include "device/ChannelParam.h"

#include <QWidget>

#include <memory>

class QValidator;
class WidgetDeviceBasePrivate;

/// Base of every tab that works on a channel of the adapter: the way up to the main window's messages, the parameters
/// with which the channel was opened, and validators for number entry.
class WidgetDeviceBase : public QWidget
{
    Q_OBJECT

public:
    /// Modes of sig_showMessageBox().
    static constexpr int MessageSuccess = 1;
    static constexpr int MessageCritical = 4;

    explicit WidgetDeviceBase(const ChannelParam &param, QWidget *parent = nullptr);
    ~WidgetDeviceBase() override;

    const ChannelParam &channelParam() const;
    void setChannelParam(const ChannelParam &param);

signals:
    /// Asks for a modal message. Modes: 1 success, 2 question, 3 warning, 4 critical, any other information.
    void sig_showMessageBox(const QString &text, int mode);
    /// Asks for a notice that goes away by itself. Types: 0 done, 1 warning, 2 question, 3 failure, 4 about.
    void sig_showNotice(const QString &text, int type, int delayms);

protected:
    /// Validators owned by this widget: hexadecimal or decimal digits, with or without blanks between them.
    QValidator *hexBlankValidator() const;
    QValidator *decimalBlankValidator() const;
    QValidator *decimalValidator() const;
    QValidator *hexValidator() const;

    /// Asks for a file to save to, starting in the desktop folder. A name typed without an extension gets the one of
    /// the file type chosen. Empty when the user cancels.
    QString askSavePath(const QString &nameFilters);

private:
    std::unique_ptr<WidgetDeviceBasePrivate> m_p;
};
