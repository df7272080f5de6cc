#include "bench/bench_adapter_interfaces.h"

void addInterfaceFigures(BenchReport & /*report*/, const QString & /*interface*/, int /*seconds*/) {}
