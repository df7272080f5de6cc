#pragma once

#include "viewer/core/CaptureComparison.h"
#include "viewer/core/SliceRun.h"

#include <limits>
#include <memory>
#include <vector>

/// Rows of a capture: [first, end), and where end is EndOfCapture, all that still come.
struct CapturePart
{
    static constexpr qint64 EndOfCapture = std::numeric_limits<qint64>::max();

    std::shared_ptr<const BusFrameStore> store; ///< not null
    qint64 first = 0;
    qint64 end = EndOfCapture;
};

bool operator==(const CapturePart &a, const CapturePart &b);

/// An identifier here and there. Where it is on one side only, the other's figures count no frame.
struct ComparedIdentifier
{
    IdentifierDifference difference;
    IdentifierStatistics here;
    IdentifierStatistics there;
    ByteValues bytesHere;
    ByteValues bytesThere;
    int rank = 0; ///< switchRank()
};

struct Comparison
{
    qint64 rowsHere = 0; ///< that were looked at
    qint64 rowsThere = 0;
    bool isComplete = false;                     ///< all rows that there were
    std::vector<ComparedIdentifier> identifiers; ///< in the order of channel and key, those that do not differ, too
};

/// Compares two captures, or parts of them, and goes on while they grow.
class ComparisonWork : public SliceWork<Comparison>
{
public:
    /// tellsChannels: otherwise an identifier is the same on all channels, for captures of other adapters.
    ComparisonWork(CapturePart here, CapturePart there, bool tellsChannels, const ComparisonThresholds &thresholds);
    ~ComparisonWork() override;

    bool work() override;
    Comparison result() const override;

private:
    struct Side
    {
        Side(CapturePart itsPart, bool tellsChannels);
        qint64 left() const;

        CapturePart part;
        Overview overview;
    };

    Side m_here;
    Side m_there;
    ComparisonThresholds m_thresholds;
};

/// A filter that passes the frames of an identifier in which byte's bits that never change here are other ones: what a
/// switch does that was moved. Empty where none are.
QString filterOfByte(const ComparedIdentifier &identifier, int byte);
