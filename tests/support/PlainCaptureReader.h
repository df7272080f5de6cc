#pragma once

#include "capture/CaptureFormat.h"

#include <optional>
#include <vector>

/// The rules of reading a capture, written down as plainly as Qt's strings allow and without a thought of speed or
/// memory: what the real reader is compared with. Nothing when the real one is to refuse the file.
std::optional<std::vector<CaptureFrame>> readPlainly(const QByteArray &file, CANFile::FileType format);
