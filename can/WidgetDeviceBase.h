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
    /// Hexadecimal or decimal digits, with or without blanks between them.
    enum Digits { HexBlank, DecimalBlank, Decimal, Hex };
    /// Takes such texts only; owned by this widget.
    QValidator *validator(Digits digits);

    /// Asks for a file to save to, starting in the desktop folder. A name typed without an extension gets the one of
    /// the file type chosen. Empty when the user cancels.
    QString askSavePath(const QString &nameFilters);

private:
    std::unique_ptr<WidgetDeviceBasePrivate> m_p;
};
