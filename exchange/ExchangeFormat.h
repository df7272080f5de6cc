#pragma once

#include "exchange/FrameReader.h"
#include "exchange/FrameWriter.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <string_view>
#include <vector>

class ByteInput;
class ByteOutput;
class Findings;

/// What a reader is told beside the bytes.
struct ReadOptions
{
    QDateTime fileDate; ///< for clock times without a date: the file's last change; invalid: not known
};

/// What a writer is told beside the frames.
struct WriteOptions
{
    CaptureInfo info;               ///< of the capture that is written
    bool isChinese = false;         ///< words of text captures that exist in two languages
    const char *encoding = nullptr; ///< of text captures; null: the system's, as the program writes them
};

/// A kind of capture file. A further one is a row of the table and a pair of files with the functions of the row.
struct ExchangeFormat
{
    /// What a kind can hold; the bits of `holds`.
    enum Ability : quint32 {
        ClassicCan = 1U << 0U,
        CanFd = 1U << 1U,
        RemoteFrames = 1U << 2U,
        ErrorFrames = 1U << 3U,
        LinFrames = 1U << 4U,
        Channels = 1U << 5U,   ///< more than one
        Directions = 1U << 6U, ///< received and sent told apart
        RefusedFrames = 1U << 7U,
        AbsoluteTime = 1U << 8U,
        DeviceTime = 1U << 9U,
        ErrorStateFlag = 1U << 10U,
        ClockTime = 1U << 11U ///< times of day without a date, which then is the file's
    };

    const char *name;    ///< as users type it: "candump"
    const char *title;   ///< untranslated, what it is
    const char *endings; ///< of paths, lower case, separated by blanks: ".log .candump"
    quint32 holds;       ///< Ability
    qint64 tick;         ///< nanoseconds that its times can tell apart

    /// Whether a file that begins with head (up to 64 KiB, all of a smaller one) is of this kind.
    bool (*recognises)(std::string_view head);
    std::unique_ptr<FrameReader> (*reader)(ByteInput &in, const ReadOptions &options, Findings &findings);
    /// Null where the kind is only read.
    std::unique_ptr<FrameWriter> (*writer)(ByteOutput &out, const WriteOptions &options, Findings &findings);
};

const std::vector<ExchangeFormat> &exchangeFormats();
/// By name; null for any other.
const ExchangeFormat *exchangeFormat(const QString &name);
/// The kind that a path's ending stands for, the first in the table's order; null for any other.
const ExchangeFormat *exchangeFormatOfPath(const QString &path);
/// The kind of what begins with head; null when none recognises it.
const ExchangeFormat *recognisedFormat(std::string_view head);
