// app/fuzz/records_fuzz.cpp: the record loop on an arbitrary data file, in either data form.
//
// The first byte picks the form; the rest is the file: two header records, then data records.
// Screen text is discarded and panels do not pause.
#include "app/kestrometry.h"
#include "app/records.h"
#include "runtime/io.h"
#include "support/math.h"
#include "support/sio.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

namespace rt = kestro::rt;

long discard(char*, long* length, int, long*)
{
    return length ? *length : -1;
}
long noInput(char*, long, long*)
{
    return 0;
}

std::string dataPath()
{
    const char* tmp = std::getenv("TMPDIR");
    return std::string(tmp && *tmp ? tmp : "/tmp") + "/kestro_records_fuzz_" + std::to_string(::getpid()) +
           ".txt";
}

bool setUp()
{
    quor_f_init(noInput, discard, nullptr, nullptr, nullptr, nullptr, nullptr);
    kestro::initsio2(5);
    kestro::iocom.LPAUSE = false;
    kestro::trigoset();
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool ready = setUp();
    static const std::string path = dataPath();
    (void)ready;
    if (size == 0) return 0;

    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return 0;
    std::fwrite(data + 1, 1, size - 1, file);
    std::fclose(file);

    rt::OpenSpec input;
    input.file = path;
    input.status = "old";
    rt::OpenSpec output;
    output.file = "/dev/null";
    output.status = "unknown";
    if (!rt::open(rt::onError, 25, input).ok() || !rt::open(rt::onError, 26, output).ok()) return 0;

    kestro::app::RecordLoop loop;
    loop.form = data[0] & 1 ? kestro::app::DataForm::numerical : kestro::app::DataForm::alphanumerical;
    kestro::Text<40> title;
    std::int32_t readCount = 0;
    std::int32_t convertedCount = 0;
    if (kestro::app::readHeader(loop.input, title) == kestro::app::ReadOutcome::record)
        kestro::app::convertRecords(loop, readCount, convertedCount);
    if (convertedCount > readCount) __builtin_trap();

    rt::close(25);
    rt::close(26);
    ::unlink(path.c_str());
    return 0;
}
