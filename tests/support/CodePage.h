#pragma once

#include <QTextCodec>

/// The local encoding of a Western Windows: what it cannot write becomes a question mark, and it counts no errors, so
/// that canEncode() says yes to everything. Made with new; the toolkit deletes it at the end.
class CodePage : public QTextCodec
{
public:
    static QByteArray codecName() { return "code page"; }

    QByteArray name() const override { return codecName(); }
    int mibEnum() const override { return 0x5A5A; }

protected:
    QString convertToUnicode(const char *text, int length, ConverterState *) const override
    {
        return QString::fromLatin1(text, length);
    }
    QByteArray convertFromUnicode(const QChar *text, int length, ConverterState *) const override
    {
        return QString(text, length).toLatin1();
    }
};
