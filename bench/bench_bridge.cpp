// bench_bridge: how fast the way to the page is. Each row compares with a reference in the same run.
//
// A plain program and not Google Benchmark, because that one runs a contestant to its end before the next
// begins: on a machine that is busy for a minute the ratio would be that of two different machines.
#include "benchmarks.h"
#include "table.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QStringList>
#include <QTextStream>

#include <iterator>

namespace {

using namespace Ostrel;
using namespace Ostrel::Bench;

struct Benchmark
{
    const char *name;
    FunctionCallResult<QList<Row>> (*measure)(const Effort &effort);
};

constexpr Benchmark benchmarks[] = {
    {"reads", measurePropertyReads},
    {"references", measureReferenceStore},
    {"injection", measureInjection},
    {"session", measureSession},
    {"dumps", measureDumps},
    {"names", measureObjectNames},
    {"typing", measureTyping},
};

std::vector<std::string> benchmarkNames()
{
    std::vector<std::string> names;
    for (const Benchmark &benchmark : benchmarks)
        names.push_back(benchmark.name);
    return names;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    Effort effort;
    std::vector<std::string> wanted = benchmarkNames();
    CLI::App commandLine{"Measures the bridge to the page against references. A missed bar is no failure."};
    commandLine.add_option("benchmarks", wanted, "Which ones; all when left out")
        ->check(CLI::IsMember(benchmarkNames()));
    commandLine.add_option("--rounds", effort.rounds, "Rounds of reads and references")
        ->capture_default_str();
    commandLine.add_option("--reads", effort.reads, "Property reads in a round")->capture_default_str();
    commandLine.add_option("--elements", effort.elements, "Elements in a round")->capture_default_str();
    commandLine.add_option("--loads", effort.loads, "Loads of a page")->capture_default_str();
    commandLine.add_option("--sessions", effort.sessions, "Starts of a browser")->capture_default_str();
    commandLine.add_option("--dumps", effort.dumps, "Rounds of dumps")->capture_default_str();
    commandLine.add_option("--dumped-elements", effort.dumpedElements, "Elements of the page that is dumped")
        ->capture_default_str();
    commandLine.add_option("--screenshots", effort.screenshots, "Elements that get a picture")
        ->capture_default_str();
    commandLine.add_option("--names", effort.names, "Names in a round")->capture_default_str();
    CLI11_PARSE(commandLine, argc, argv);

    QList<Row> rows;
    for (const Benchmark &benchmark : benchmarks) {
        if (std::find(wanted.begin(), wanted.end(), benchmark.name) == wanted.end())
            continue;
        const FunctionCallResult<QList<Row>> measured = benchmark.measure(effort);
        if (measured.failed()) {
            QTextStream(stderr) << "bench_bridge " << benchmark.name << ": " << measured.error << Qt::endl;
            return EXIT_FAILURE;
        }
        rows += measured.value;
    }
    QTextStream(stdout) << tableText(rows);
    return EXIT_SUCCESS;
}
