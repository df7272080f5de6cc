#pragma once

/// How many threads this process has started so far, those that have ended and the toolkit's own included; -1 where
/// that is not known (on Windows, under a sanitizer).
int startedThreads();
