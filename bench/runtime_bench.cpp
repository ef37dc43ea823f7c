// bench/runtime_bench.cpp: speed and peak memory of the record I/O runtime on the program's own records.
//
//   runtime_bench [benchmark flags]   the statement benchmarks, then the round trips below
//   runtime_bench --roundtrip=N       writes N data records to a file, reads them back, prints the figures
//
// Each round trip runs in a fresh process (this binary started again), so its peak resident memory
// is its own and can be compared across record counts.
#include "runtime/io.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace rt = kestro::rt;
using kestro::Text;

namespace {

constexpr std::string_view resultsFormat = "(2(f6.1,a1,'''',a1,'''',a1),f6.1,a1,f6.1,a1,a)";
// Writes a data record that free-form input reads back as four values: " 16.0 'E'  50.0 'N'".
constexpr std::string_view dataFormat = "(f5.1,1x,'''',a1,'''',1x,f5.1,1x,'''',a1,'''')";
constexpr std::string_view dataRecord = "16 'E'  50 'N'\n";
constexpr std::string_view roundTripFlag = "--roundtrip=";

constexpr rt::Unit dataUnit = 25;
constexpr rt::Unit resultsUnit = 26;
constexpr rt::Unit roundTripUnit = 27;

constexpr long readFileRecords = 2'000'000;
constexpr long rewindEvery = 1L << 20; // keeps the results file of a long run below ~90 MB
constexpr long roundTripCounts[] = {1'000, 1'000'000};

// A folder of its own under TMPDIR (or /tmp), removed with its files at exit.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/kestro_bench_XXXXXX";
        if (mkdtemp(pattern.data())) path_ = pattern;
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    bool ok() const { return !path_.empty(); }
    std::string file(std::string_view name) const { return path_ + "/" + std::string(name); }

private:
    std::string path_;
};

ScratchFolder& scratch()
{
    static ScratchFolder folder;
    return folder;
}

rt::Iostat openFile(rt::Unit unit, const std::string& path, std::string_view status)
{
    rt::OpenSpec specifiers;
    specifiers.file = path;
    specifiers.status = status;
    return rt::open(rt::onError, unit, specifiers);
}

// The input file of the read benchmark, written once per process without the runtime.
const std::string& dataFile()
{
    static const std::string path = [] {
        std::string name = scratch().file("data.txt");
        std::FILE* f = std::fopen(name.c_str(), "w");
        if (!f) return std::string();
        std::string block;
        for (int i = 0; i < 4096; ++i)
            block += dataRecord;
        bool written = true;
        for (long n = 0; n < readFileRecords && written; n += 4096)
            written = std::fwrite(block.data(), 1, block.size(), f) == block.size();
        if (std::fclose(f) != 0 || !written) return std::string();
        return name;
    }();
    return path;
}

// WRITE(26, '(2(f6.1,a1,'''',a1,'''',a1),f6.1,a1,f6.1,a1,a)') dipa1, tab, ... comment
void BM_WriteResultsLine(benchmark::State& state)
{
    if (!scratch().ok() || !openFile(resultsUnit, scratch().file("results.txt"), "REPLACE").ok()) {
        state.SkipWithError("Cannot open the results file");
        return;
    }
    const Text<55> comment("error: same dip direction [modulo 180], early detection");
    long written = 0;
    for (auto _ : state) {
        const rt::Iostat ios = rt::write(rt::onError, resultsUnit, resultsFormat, 16.0f, "\t", "E", "\t",
                                         50.0f, "\t", "N", "\t", 283.5f, "\t", 50.8f, "\t", comment);
        if (!ios.ok()) {
            state.SkipWithError("The results line was not written");
            break;
        }
        if (++written % rewindEvery == 0) rt::rewind(rt::onError, resultsUnit);
    }
    rt::close(rt::onError, resultsUnit, "DELETE");
    state.SetItemsProcessed(state.iterations());
}

// READ(25, *, END=..., ERR=...) dipa1, DIPDA(1), dipa2, DIPDA(2)
void BM_ReadListRecord(benchmark::State& state)
{
    const std::string& path = dataFile();
    if (path.empty() || !openFile(dataUnit, path, "OLD").ok()) {
        state.SkipWithError("Cannot prepare the data file");
        return;
    }
    float dipa1 = 0.0f;
    float dipa2 = 0.0f;
    Text<1> letter1;
    Text<1> letter2;
    for (auto _ : state) {
        const rt::Iostat ios =
            rt::readList(rt::onEnd | rt::onError, dataUnit, dipa1, letter1, dipa2, letter2);
        if (ios.outcome == rt::Outcome::end) {
            rt::rewind(rt::onError, dataUnit);
            continue;
        }
        if (!ios.ok()) {
            state.SkipWithError("A data record was not read");
            break;
        }
    }
    rt::close(rt::onError, dataUnit);
    if (dipa1 != 16.0f || letter1 != "E" || dipa2 != 50.0f || letter2 != "N")
        state.SkipWithError("The values read differ from 16 'E'  50 'N'");
    state.SetItemsProcessed(state.iterations());
}

// Peak resident memory of this process in KiB, from VmHWM; -1 if it can't be read.
long peakResidentKiB()
{
    std::FILE* f = std::fopen("/proc/self/status", "r");
    if (!f) return -1;
    long kib = -1;
    char line[256];
    while (std::fgets(line, sizeof line, f))
        if (std::strncmp(line, "VmHWM:", 6) == 0) kib = std::strtol(line + 6, nullptr, 10);
    std::fclose(f);
    return kib;
}

double seconds(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

// Writes `count` data records with varying values, reads them back free-form and compares.
int roundTrip(long count)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::string_view letters = "ENSW";
    const auto dipOf = [](long i) { return static_cast<float>(i % 91); };
    const auto otherDipOf = [](long i) { return static_cast<float>((i * 7) % 91); };
    const auto letterOf = [&](long i) { return letters.substr(i % 4, 1); };
    const auto otherLetterOf = [&](long i) { return letters.substr((i / 4) % 4, 1); };

    if (!scratch().ok()) return 1;
    const std::string path = scratch().file("roundtrip.txt");
    if (!openFile(roundTripUnit, path, "REPLACE").ok()) {
        std::printf("round trip %8ld records: cannot open %s\n", count, path.c_str());
        return 1;
    }
    const Clock::time_point writeStart = Clock::now();
    for (long i = 0; i < count; ++i) {
        if (!rt::write(rt::onError, roundTripUnit, dataFormat, dipOf(i), letterOf(i), otherDipOf(i),
                       otherLetterOf(i))
                 .ok()) {
            std::printf("round trip %8ld records: write failed at record %ld\n", count, i + 1);
            return 1;
        }
    }
    rt::close(rt::onError, roundTripUnit);
    const Clock::time_point writeEnd = Clock::now();

    if (!openFile(roundTripUnit, path, "OLD").ok()) return 1;
    long mismatches = 0;
    float dipa1 = 0.0f;
    float dipa2 = 0.0f;
    Text<1> letter1;
    Text<1> letter2;
    const Clock::time_point readStart = Clock::now();
    for (long i = 0; i < count; ++i) {
        if (!rt::readList(rt::onEnd | rt::onError, roundTripUnit, dipa1, letter1, dipa2, letter2).ok()) {
            std::printf("round trip %8ld records: read failed at record %ld\n", count, i + 1);
            return 1;
        }
        if (dipa1 != dipOf(i) || letter1 != letterOf(i) || dipa2 != otherDipOf(i) ||
            letter2 != otherLetterOf(i))
            ++mismatches;
    }
    const Clock::time_point readEnd = Clock::now();
    const bool endSeen =
        rt::readList(rt::onEnd | rt::onError, roundTripUnit, dipa1, letter1, dipa2, letter2).outcome ==
        rt::Outcome::end;
    rt::close(rt::onError, roundTripUnit, "DELETE");

    const long peak = peakResidentKiB();
    std::printf("round trip %8ld records: write %11.0f records/s, read %11.0f records/s, "
                "peak RSS %6.1f MiB (goal <= 16), %ld mismatches%s\n",
                count, count / seconds(writeStart, writeEnd), count / seconds(readStart, readEnd),
                peak / 1024.0, mismatches, endSeen ? "" : ", no end of file behind the last record");
    return mismatches == 0 && endSeen && peak >= 0 && peak <= 16 * 1024 ? 0 : 1;
}

// Runs one round trip in a fresh copy of this program; false if it could not run or failed.
bool roundTripInChild(long count)
{
    std::fflush(stdout);
    std::string program = "/proc/self/exe";
    std::string argument = std::string(roundTripFlag) + std::to_string(count);
    char* argv[] = {program.data(), argument.data(), nullptr};
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, argv, environ) != 0) {
        std::printf("round trip %8ld records: cannot start a child process\n", count);
        return false;
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::string_view(argv[1]).substr(0, roundTripFlag.size()) == roundTripFlag)
        return roundTrip(std::strtol(argv[1] + roundTripFlag.size(), nullptr, 10));

    benchmark::RegisterBenchmark("BM_WriteResultsLine", BM_WriteResultsLine);
    benchmark::RegisterBenchmark("BM_ReadListRecord", BM_ReadListRecord);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    std::printf("\nRound trip, each count in a fresh process:\n");
    bool ok = true;
    for (long count : roundTripCounts)
        ok = roundTripInChild(count) && ok;
    return ok ? 0 : 1;
}
