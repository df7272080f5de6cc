#pragma once

/// Keeps what others lay out from being loaded into the program: plugins that the environment names, and, on Windows,
/// DLLs in the working directory. The adapter's library is loaded by its path all the same; what it needs itself is
/// found beside the program. To be called before anything of the toolkit's is.
void prepareProcess();
