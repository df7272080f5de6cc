#pragma once

/// Ends the process at once with exitCode: no destructors, no functions of std::atexit, and nothing of the libraries
/// that are loaded either, which may be in the middle of a call. What was written to files must be flushed before.
[[noreturn]] void endProcessNow(int exitCode);
