#pragma once

#include "exchange/database/DecodeWriter.h"

/// A line for each signal of each frame: time,channel,message,signal,raw,physical,unit,text
class DecodeTable : public DecodeWriter
{
public:
    DecodeTable(const std::vector<DecodeSource> &sources, ByteOutput &out, const DecodeOptions &options);

    void finish() override {}

protected:
    int writeMessage(const BusFrame &frame, int source, int number) override;

private:
    /// For each signal that is written, the cells with the names of message and signal, a comma behind each.
    using Names = std::vector<QByteArray>;

    std::vector<std::vector<Names>> m_names; ///< by source and message
    QByteArray m_begin;                      ///< room for the cells that the lines of a frame have in common
};
