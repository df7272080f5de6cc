#pragma once

/// The interface language stored in "Init.ini" beside the program: 0 Chinese (also when nothing is stored), 1 English.
int getLanguage();
