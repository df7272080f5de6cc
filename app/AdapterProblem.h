#pragma once

#include <QString>

class CANAPI;

/// In the user's language: why the adapter library cannot be used and what to do about it. Empty when it can.
QString adapterLibraryProblem(const CANAPI &api);
