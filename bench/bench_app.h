// A main for benchmarks of code that needs a QApplication (widgets, fonts):
// headless on the offscreen platform at 96 pixels per inch, as the tests run.
#pragma once

#include <benchmark/benchmark.h>

#include <QApplication>

#include "platform/screen.h"

#define LUMATREX_BENCH_MAIN()                              \
  int main(int argc, char** argv) {                        \
    qputenv("QT_QPA_PLATFORM", "offscreen");               \
    QApplication app(argc, argv);                          \
    lumatrex::SetScreenPixelsPerInch(96);                  \
    benchmark::Initialize(&argc, argv);                    \
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) \
      return 1;                                            \
    benchmark::RunSpecifiedBenchmarks();                   \
    benchmark::Shutdown();                                 \
    return 0;                                              \
  }
