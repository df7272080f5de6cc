#pragma once

#include <QtGlobal>

#include <array>
#include <optional>
#include <string_view>

/// The frame that stands in a line of a text capture. Text files give at most MaxData bytes of a payload, also of a
/// longer CAN FD one, and always a data frame: what the text formats lose is written down in docs/formats.md.
struct CaptureLine
{
    static constexpr std::size_t MaxData = 8;

    quint32 idWord = 0;     ///< as in CaptureFrame
    quint32 attributes = 0; ///< as in CaptureFrame
    std::array<uchar, MaxData> data{};
    int size = 0; ///< of the payload, 0 to MaxData

    /// A line of the program's own files, without its line end: identifier, protocol and type stand in the 5th, 6th and
    /// 8th cell, the payload in the last one. Words may be English, or Chinese in UTF-8 or GB18030. Nothing when the
    /// line holds no frame. separator: one character, or the same one several times.
    static std::optional<CaptureLine> own(std::string_view line, std::string_view separator);
    /// A line of another program's file: identifier and type stand in the fifth and third cell from the end, the
    /// payload in the last one.
    static std::optional<CaptureLine> foreign(std::string_view line, std::string_view separator);
};
