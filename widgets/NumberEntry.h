#pragma once

#include <QString>

class QLineEdit;
class QSpinBox;
class QWidget;

/// What a number brings along when it is copied from somewhere else, and an entry field takes out before anything else
/// looks at the text: white space and characters that are not seen, and the "0x" of hexadecimal numbers.
enum class NumberEntry {
    Decimal,     ///< white space goes
    Hex,         ///< white space and each "0x" go
    PrefixedHex, ///< as Hex, but a "0x" at the beginning stays
    HexBytes,    ///< each "0x" goes, that of a single digit as "0"; white space is one of blanks
};

/// The text cleaned; anything else stays in it. cursor, a position in the text, stays between the same characters.
QString cleanedEntry(const QString &text, NumberEntry kind, int &cursor);

/// From now on the field cleans what is typed, pasted, dropped or set, and hands the rest to the validator it has.
void cleanEntry(QLineEdit *field, NumberEntry kind);
/// The same, and the rest has to match the pattern, or to become a match when more is typed.
void restrictEntry(QLineEdit *field, NumberEntry kind, const QString &pattern);

/// The same for a spin box, as it shows its number.
void cleanSpinBox(QSpinBox *box);
/// The same for all spin boxes that the window has by now.
void cleanSpinBoxes(const QWidget *window);
