#pragma once

#include <QTranslator>

class QApplication;

/// High-DPI attributes; to be set before the QApplication exists.
void setApplicationAttributes();

/// Font, window icon, style sheet, and the masks over windows that a modal dialog blocks. Once per application.
void applyApplicationLook(QApplication &application);

/// The texts of the program and of the toolkit's own dialogs. Must outlive the windows.
struct Translators
{
    QTranslator program;
    QTranslator toolkit;
};

/// Loads and installs the translations of a language as getLanguage() numbers them. False when the program's own is
/// missing; it then speaks English. The toolkit's own come from the system and may be missing without harm.
bool installLanguage(Translators &translators, int language);
