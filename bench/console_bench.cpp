// bench/console_bench.cpp: the console program converting whole files, run as a user runs it.
//
// For each data form it writes a data file of N clean records, pipes the answers of a file-to-file
// session into kestrometry-console, and reports records per second and peak resident memory; then
// the time from start to the banner on the screen.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct RunResult
{
    double seconds = 0;
    long peakKiB = 0;
    int status = -1;
};

std::string makeFolder()
{
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/kestro_console_bench_XXXXXX";
    if (!::mkdtemp(pattern.data())) return {};
    return pattern;
}

void writeData(const std::string& path, bool numerical, long records)
{
    std::FILE* f = std::fopen(path.c_str(), "w");
    std::fprintf(f, "'Bench campaign'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n");
    static const char* letters[] = {"16 'E'  50 'N'\n", "30 'E' 60 'S'\n", "16 'W' 200 'A'\n",
                                    "45 'S' 20 'W'\n"};
    static const char* angles[] = {"16 90 50 0\n", "30 90 60 180\n", "16 270 0 200\n", "45 180 20 270\n"};
    for (long i = 0; i < records; ++i)
        std::fputs((numerical ? angles : letters)[i % 4], f);
    std::fclose(f);
}

// Runs the program in `folder` with `answers` on standard input and its output to /dev/null.
RunResult run(const std::string& folder, const std::string& answers)
{
    const std::string answersPath = folder + "/answers.txt";
    std::FILE* f = std::fopen(answersPath.c_str(), "w");
    std::fputs(answers.c_str(), f);
    std::fclose(f);
    ::unlink((folder + "/kestro_out.txt").c_str());

    RunResult result;
    const auto start = Clock::now();
    const pid_t pid = ::fork();
    if (pid == 0) {
        if (::chdir(folder.c_str()) != 0) ::_exit(127);
        const int in = ::open(answersPath.c_str(), O_RDONLY);
        const int out = ::open("/dev/null", O_WRONLY);
        ::dup2(in, 0);
        ::dup2(out, 1);
        ::dup2(out, 2);
        ::setenv("TARNIX_RT_FLAGS", "", 1);
        ::execl(KESTRO_CONSOLE, "kestrometry-console", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    struct rusage usage
    {
    };
    ::wait4(pid, &status, 0, &usage);
    result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    result.peakKiB = usage.ru_maxrss;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

// Milliseconds from start to the first line of the banner's frame on standard output.
double timeToBanner(const std::string& folder)
{
    int pipeOut[2];
    int pipeIn[2];
    if (::pipe(pipeOut) != 0 || ::pipe(pipeIn) != 0) return -1;
    const auto start = Clock::now();
    const pid_t pid = ::fork();
    if (pid == 0) {
        if (::chdir(folder.c_str()) != 0) ::_exit(127);
        ::dup2(pipeIn[0], 0);
        ::dup2(pipeOut[1], 1);
        const int null = ::open("/dev/null", O_WRONLY);
        ::dup2(null, 2);
        ::close(pipeOut[0]);
        ::close(pipeIn[1]);
        ::execl(KESTRO_CONSOLE, "kestrometry-console", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(pipeOut[1]);
    ::close(pipeIn[0]);
    std::string seen;
    char buffer[4096];
    double ms = -1;
    for (;;) {
        const ssize_t n = ::read(pipeOut[0], buffer, sizeof buffer);
        if (n <= 0) break;
        seen.append(buffer, static_cast<std::size_t>(n));
        if (seen.find("HIT RETURN TO CONTINUE") != std::string::npos) {
            ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
            break;
        }
    }
    ::close(pipeIn[1]); // end of input at the banner's pause ends the program
    ::close(pipeOut[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    return ms;
}

} // namespace

int main()
{
    const std::string folder = makeFolder();
    if (folder.empty()) {
        std::fprintf(stderr, "Cannot make a working folder\n");
        return 1;
    }
    int failures = 0;
    for (const bool numerical : {false, true}) {
        for (const long records : {1000L, 1000000L}) {
            writeData(folder + "/kestro_in.txt", numerical, records);
            // Return at the banner, input from the file (default name), the data form, output to a
            // file (default name).
            const std::string answers = std::string("\n1\n\n") + (numerical ? "2\n" : "1\n") + "1\n\n";
            // The machine's speed drifts from run to run: the median of several runs is the figure,
            // the best shows what the program does when nothing else holds it up.
            constexpr int runs = 11;
            std::vector<RunResult> results;
            for (int attempt = 0; attempt < runs; ++attempt)
                results.push_back(run(folder, answers));
            std::sort(results.begin(), results.end(),
                      [](const RunResult& a, const RunResult& b) { return a.seconds < b.seconds; });
            const RunResult& best = results.front();
            const RunResult& median = results[runs / 2];
            long peakKiB = 0;
            int status = 0;
            for (const RunResult& r : results) {
                peakKiB = std::max(peakKiB, r.peakKiB);
                if (r.status != 0) status = r.status;
            }
            std::printf("%-14s %8ld records: median %6.3f s (%10.0f records/s), best %6.3f s, "
                        "peak RSS %5.1f MiB, exit %d (%d runs)\n",
                        numerical ? "numerical" : "alphanumerical", records, median.seconds,
                        static_cast<double>(records) / median.seconds, best.seconds,
                        static_cast<double>(peakKiB) / 1024.0, status, runs);
            if (status != 0) ++failures;
        }
    }
    std::vector<double> times;
    for (int i = 0; i < 21; ++i)
        times.push_back(timeToBanner(folder));
    std::sort(times.begin(), times.end());
    std::printf("start to banner: median %.2f ms, worst %.2f ms (21 runs)\n", times[times.size() / 2],
                times.back());
    std::system(("rm -rf '" + folder + "'").c_str());
    return failures ? 1 : 0;
}
