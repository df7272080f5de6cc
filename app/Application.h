#pragma once

/// Exit code of the event loop that asks for the program to be started again.
constexpr int RestartExitCode = 100;

/// The whole program, from the guard against a second instance to the restart. Answers the exit code of the process:
/// that of the event loop, and 0 at once, without a word, when the program runs already.
int runApplication(int &argc, char **argv);
