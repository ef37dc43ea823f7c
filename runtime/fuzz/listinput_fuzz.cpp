// runtime/fuzz/listinput_fuzz.cpp: free-form input of arbitrary text into the item lists the program reads.
#include "runtime/io.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace rt = kestro::rt;
using kestro::Text;

namespace {

// The outcome agrees with its code: 0 when ok, -1 at end of file, a code otherwise.
void check(const rt::Iostat& ios)
{
    switch (ios.outcome) {
    case rt::Outcome::ok:
        if (ios.code != 0) std::abort();
        break;
    case rt::Outcome::end:
        if (ios.code != -1) std::abort();
        break;
    case rt::Outcome::error:
        if (ios.code == 0 || ios.code == -1) std::abort();
        break;
    }
}

// The scanner only moves characters: a text field holds blanks and characters of the source.
class Alphabet
{
public:
    explicit Alphabet(std::string_view source)
    {
        present_.fill(false);
        present_[static_cast<unsigned char>(' ')] = true;
        for (char c : source)
            present_[static_cast<unsigned char>(c)] = true;
    }
    template <std::size_t N> void check(const Text<N>& text) const
    {
        for (char c : text.view())
            if (!present_[static_cast<unsigned char>(c)]) std::abort();
    }

private:
    std::array<bool, 256> present_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view source(reinterpret_cast<const char*>(data), size);
    const rt::Control control = rt::onEnd | rt::onError;
    const Alphabet alphabet(source);

    // A fracture record: dipa1, DIPDA(1), dipa2, DIPDA(2).
    float dipa1 = 0.0f;
    float dipa2 = 0.0f;
    Text<1> letter1;
    Text<1> letter2;
    check(rt::readListInternal(control, source, dipa1, letter1, dipa2, letter2));
    alphabet.check(letter1);
    alphabet.check(letter2);

    std::int32_t count = 0;
    check(rt::readListInternal(control, source, count));

    // The header records: the title, then the column line into one character.
    Text<40> title;
    Text<1> columns;
    check(rt::readListInternal(control, source, title));
    check(rt::readListInternal(control, source, title, columns));
    alphabet.check(title);
    alphabet.check(columns);

    bool answer = false;
    check(rt::readListInternal(control, source, answer));

    double wide = 0.0;
    check(rt::readListInternal(control, source, wide));

    // Every type in one statement, with a status variable that must agree with the outcome.
    int status = 0;
    std::int64_t big = 0;
    const rt::Iostat ios = rt::readListInternal(control | rt::withStatus(status), source, big, dipa1, title,
                                                answer, wide, count);
    check(ios);
    if (status != (ios.ok() ? 0 : rt::statusFor(ios.code)) && status != ios.code) std::abort();
    return 0;
}
