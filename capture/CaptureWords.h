#pragma once

#include "capture/FrameCells.h"

#include <optional>
#include <string_view>

/// The words of text captures, once for all who write and read them. Each has one spelling that is written for each
/// language; more are read, Chinese ones as UTF-8 and as GBK bytes.

/// The word that a cell says; nothing for any other text.
std::optional<FrameLabel> captureWord(std::string_view cell);

/// Titles and words as they are written, in English or in (simplified) Chinese, whatever the user's language.
FrameLabels captureLabels(bool isChinese);
