#pragma once

#include <QTranslator>

class QString;

/// The texts of the program and of the toolkit's own dialogs. Must outlive the windows.
struct ViewerTranslators
{
    QTranslator program;
    QTranslator toolkit;
};

/// High-DPI attributes; to be set before the QApplication exists.
void setViewerAttributes();
/// Style and icon. The palette is the system's. Once per application.
void applyViewerLook();
/// language: "CN" or "EN". False when the program's own texts are missing; it then speaks English.
bool installViewerLanguage(ViewerTranslators &translators, const QString &language);

/// The whole program. Its arguments are the captures to open. Answers the exit code of the process.
int runViewer(int &argc, char **argv);
