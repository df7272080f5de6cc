#include "lin/LINIdSpinBox.h"

namespace {
constexpr int MaxId = 0x3F;
}

LINIdSpinBox::LINIdSpinBox(QWidget *parent)
    : QSpinBox(parent)
{
    setDisplayIntegerBase(16); // decides what can be typed
    setRange(0, MaxId);
}

QValidator::State LINIdSpinBox::validate(QString &input, int &position) const
{
    input = input.toUpper();
    return QSpinBox::validate(input, position);
}

QString LINIdSpinBox::textFromValue(int value) const
{
    return QString::number(value, 16).toUpper();
}
