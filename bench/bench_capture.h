#pragma once

#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"
#include "capture/FrameRecord.h"

struct CaptureBenchOptions
{
    int frames = 1000000;
    int repetitions = 5;
    QString folder; ///< where files are saved: a memory file system
};

/// A batch as the adapter delivers it, converted into rows: CAN FD when size is above 8.
QVector<FrameRecord> receivedBatch(int count, int size, quint32 firstTime);

void benchAppend(BenchReport &report, const CaptureBenchOptions &options, int size);
void benchRefresh(BenchReport &report, const CaptureBenchOptions &options);
void benchSave(BenchReport &report, const CaptureBenchOptions &options, int size);
void benchLoad(BenchReport &report, const CaptureBenchOptions &options, int size);
