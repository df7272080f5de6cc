#include "widgets/NumberEntry.h"

#include "widgets/HexEntry.h"

#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSpinBox>

namespace {
constexpr int Hexadecimal = 16;
const QLatin1String HexPrefix("0x");

bool isUnseen(QChar character)
{
    const QChar::Category category = character.category();
    return character.isSpace() || category == QChar::Other_Control || category == QChar::Other_Format;
}

bool isDigitAt(const QString &text, int position)
{
    return bytesFromHexText(text.mid(position, 1)).has_value();
}

void removeAt(QString &text, int position, int count, int &cursor)
{
    text.remove(position, count);
    if (cursor > position) {
        cursor = qMax(position, cursor - count);
    }
}

void removePrefixes(QString &text, NumberEntry kind, int &cursor)
{
    int i = kind == NumberEntry::PrefixedHex && text.startsWith(HexPrefix, Qt::CaseInsensitive) ? HexPrefix.size() : 0;
    while ((i = text.indexOf(HexPrefix, i, Qt::CaseInsensitive)) >= 0) {
        const int digits = i + HexPrefix.size();
        const bool isFresh = i == 0 || text.at(i - 1).isSpace();
        if (!isFresh && !isDigitAt(text, digits)) {
            ++i; // an x typed behind a number that ends with 0, which is not to lose it
            continue;
        }
        const bool isSingle = kind == NumberEntry::HexBytes && isDigitAt(text, digits) && !isDigitAt(text, digits + 1);
        removeAt(text, isSingle ? i + 1 : i, isSingle ? 1 : HexPrefix.size(), cursor);
    }
}

/// Cleans, then asks the validator that the field had.
class CleaningValidator : public QValidator
{
public:
    CleaningValidator(NumberEntry kind, QLineEdit *field, const QSpinBox *box = nullptr)
        : QValidator(field)
        , m_kind(kind)
        , m_inner(field->validator())
        , m_box(box)
    {
    }

    State validate(QString &input, int &position) const override
    {
        const QString suffix = m_box != nullptr && input.endsWith(m_box->suffix()) ? m_box->suffix() : QString();
        input = cleanedEntry(input.left(input.size() - suffix.size()), m_kind, position) + suffix;
        return m_inner != nullptr ? m_inner->validate(input, position) : Acceptable;
    }

private:
    const NumberEntry m_kind;
    const QValidator *const m_inner; ///< of the field, as this one
    const QSpinBox *const m_box;     ///< whose suffix is no part of the number
};
} // namespace

QString cleanedEntry(const QString &text, NumberEntry kind, int &cursor)
{
    QString cleaned = text;
    for (int i = cleaned.size() - 1; i >= 0; --i) {
        if (!isUnseen(cleaned.at(i))) {
            continue;
        }
        if (kind == NumberEntry::HexBytes) {
            cleaned[i] = QLatin1Char(' ');
        } else {
            removeAt(cleaned, i, 1, cursor);
        }
    }
    if (kind != NumberEntry::Decimal) {
        removePrefixes(cleaned, kind, cursor);
    }
    return cleaned;
}

void cleanEntry(QLineEdit *field, NumberEntry kind)
{
    field->setValidator(new CleaningValidator(kind, field));
}

void restrictEntry(QLineEdit *field, NumberEntry kind, const QString &pattern)
{
    field->setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), field));
    cleanEntry(field, kind);
}

void cleanSpinBox(QSpinBox *box)
{
    const NumberEntry kind = box->displayIntegerBase() == Hexadecimal ? NumberEntry::Hex : NumberEntry::Decimal;
    auto *field = box->findChild<QLineEdit *>();
    field->setValidator(new CleaningValidator(kind, field, box));
}

void cleanSpinBoxes(const QWidget *window)
{
    for (QSpinBox *box : window->findChildren<QSpinBox *>()) {
        cleanSpinBox(box);
    }
}
