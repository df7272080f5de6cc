#pragma once

/// Makes the pictures, the style sheet and the translations of this library known to Qt (":/..."). Called once at the
/// start of a program, before the first of them is used; further calls do nothing.
void initResources();
