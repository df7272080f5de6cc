#pragma once

#include "exchange/database/DecodeWriter.h"

#include <string>

/// A line for each frame: time, channel, and a column for each signal of the databases, those of a message side by
/// side. They are known before the first frame, so that frames can come from a pipe. A value is the physical one, or
/// the raw one of a signal that has none.
class DecodeWide : public DecodeWriter
{
public:
    DecodeWide(const std::vector<DecodeSource> &sources, ByteOutput &out, const DecodeOptions &options);

    void finish() override {}

protected:
    int writeMessage(const BusFrame &frame, int source, int number) override;

private:
    void addColumns(const DatabaseMessage &described, const MessageDecoder &decoder);
    char *putValue(char *to, const SignalDecoder &signal, const uchar *data) const;
    void beginLine(const BusFrame &frame);
    void putCommas(int count);
    int writeWithGaps(const BusFrame &frame, const MessageDecoder &decoder, int first);
    int writeFilled(const BusFrame &frame, const MessageDecoder &decoder, int first);

    bool m_isFilled;
    bool m_isTextPreferred;
    std::vector<std::vector<int>> m_first; ///< by source and message: the column of its first signal
    int m_columns = 0;
    std::vector<std::string> m_last; ///< filled: the last value of each column
    std::vector<char> m_room;        ///< for one value
};
