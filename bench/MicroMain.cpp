// The main function of the micro benchmarks: fonts and widgets need an application, which needs no
// display here.

#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
