// Times two command lines in turn, run after run, so that the machine's drift (a busy moment, a
// warm or cold cache) falls on both alike; hyperfine times all of one command's runs and then the
// other's. Each run is timed from its start to its end, with its output read from a pipe as it
// comes (as hyperfine's --output=pipe) and its exit status checked.
//   bench_alternate RUNS WARMUP PROGRAM_A ARGUMENTS… -- PROGRAM_B ARGUMENTS…
// Prints "mean_a median_a mean_b median_b", in milliseconds.

#include "platform/ChildProcess.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <vector>

extern char** environ;

namespace {

// One run of `argv` (null-terminated), in milliseconds; exits the program when it fails.
double timedRun(std::vector<char*>& argv)
{
    orwick::ChildIo io;
    io.onOutput = [](std::string_view) {};
    const auto start = std::chrono::steady_clock::now();
    const orwick::ChildEnd end = orwick::runChild(argv[0], argv.data(), environ, io);
    const auto stop = std::chrono::steady_clock::now();
    if (end.status != 0) {
        std::fprintf(stderr, "%s failed (%d): %s\n", argv[0], end.status, end.errors.c_str());
        std::exit(1);
    }
    return std::chrono::duration<double, std::milli>(stop - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

double mean(const std::vector<double>& values) { return std::accumulate(values.begin(), values.end(), 0.0) / double(values.size()); }

} // namespace

int main(int argc, char** argv)
{
    int split = 0;
    for (int i = 4; i < argc; ++i)
        if (!std::strcmp(argv[i], "--"))
            split = i;
    if (argc < 6 || split == 0 || split == argc - 1) {
        std::fprintf(stderr, "usage: bench_alternate RUNS WARMUP PROGRAM_A ARGUMENTS… -- PROGRAM_B ARGUMENTS…\n");
        return 2;
    }
    const int runs = std::atoi(argv[1]);
    const int warmup = std::atoi(argv[2]);
    std::vector<char*> a(argv + 3, argv + split);
    std::vector<char*> b(argv + split + 1, argv + argc);
    a.push_back(nullptr);
    b.push_back(nullptr);
    for (int i = 0; i < warmup; ++i) {
        timedRun(a);
        timedRun(b);
    }
    std::vector<double> timesA, timesB;
    for (int i = 0; i < runs; ++i) {
        // Each goes first in every other pair: neither always runs just after the other.
        if (i % 2) {
            timesA.push_back(timedRun(a));
            timesB.push_back(timedRun(b));
        } else {
            timesB.push_back(timedRun(b));
            timesA.push_back(timedRun(a));
        }
    }
    std::printf("%.3f %.3f %.3f %.3f\n", mean(timesA), median(timesA), mean(timesB), median(timesB));
    return 0;
}
