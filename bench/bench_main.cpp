#include <QApplication>
#include <benchmark/benchmark.h>

#include "meshing/NetgenMesher.h"

// Documents and their scripts need an application object; benchmarks draw nothing.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName("Quorlan");
    QCoreApplication::setApplicationName("Zolvane Design Studio Benchmarks");
    const NetgenSession netgen;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
