#pragma once

#include <QSpinBox>

/// Entry of a LIN frame identifier, 0 to 3F, in upper-case hexadecimal digits.
class LINIdSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit LINIdSpinBox(QWidget *parent = nullptr);

    quint8 id() const { return static_cast<quint8>(value()); }

protected:
    /// Turns what is typed to upper case.
    QValidator::State validate(QString &input, int &position) const override;
    QString textFromValue(int value) const override;
};
