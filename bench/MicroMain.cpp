// The main function of the micro benchmarks: fonts need an application, which needs no display
// here.

#include <QGuiApplication>

#include <benchmark/benchmark.h>

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
