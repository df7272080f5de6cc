#pragma once

#include <QTranslator>

class QApplication;

/// High-DPI attributes; to be set before the QApplication exists.
void setApplicationAttributes();

/// Font, window icon and style sheet.
void applyApplicationLook(QApplication &application);

/// Loads and installs the translation of a language as getLanguage() numbers them. The translator must outlive the
/// windows. False when the translation is not in the program, which then speaks English.
bool installLanguage(QTranslator &translator, int language);
