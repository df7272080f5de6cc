#pragma once

#include <QTranslator>

#include <vector>

class QApplication;

/// A language of the interface.
struct Language
{
    const char *code;    ///< its texts are ":/Language/<code>.qm"; also the object name of its entry in the menu
    const char *name;    ///< in the menu, to be translated by GUI_CanView
    const char *toolkit; ///< the file of the toolkit's own texts; null: as they stand in its code
};

/// All of them, by the number that getLanguage() answers.
const std::vector<Language> &languages();
/// The place in languages() of a number that was stored: English for one that no language has.
std::size_t languageIndex(int language);

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

/// Exit code of the event loop that asks for the program to be started again.
constexpr int RestartExitCode = 100;

/// The whole program, from the guard against a second instance to the restart. Answers the exit code of the process:
/// that of the event loop, and 0 at once, without a word, when the program runs already.
int runApplication(int &argc, char **argv);
