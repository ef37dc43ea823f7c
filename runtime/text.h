// runtime/text.h: fixed-length, blank-padded texts, as the runtime and its callers share them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace kestro {

// A view of a caller's fixed-length field. Assignment cuts on the right or pads with blanks.
class TextRef
{
public:
    constexpr TextRef() = default;
    constexpr TextRef(char* data, std::size_t size) : data_(data), size_(size) {}

    void assign(std::string_view value) const
    {
        const std::size_t n = std::min(value.size(), size_);
        if (n) std::memmove(data_, value.data(), n);
        if (size_ > n) std::memset(data_ + n, ' ', size_ - n);
    }
    void fill(char c = ' ') const
    {
        if (size_) std::memset(data_, c, size_);
    }

    constexpr char* data() const { return data_; }
    constexpr std::size_t size() const { return size_; }
    constexpr bool empty() const { return size_ == 0; }
    std::string_view view() const { return {data_, size_}; }
    char& operator[](std::size_t i) const { return data_[i]; }

private:
    char* data_ = nullptr;
    std::size_t size_ = 0;
};

// A text of exactly N characters, blank-padded. Text<1> is a one-letter field.
template <std::size_t N> class Text
{
public:
    Text() { chars_.fill(' '); }
    Text(std::string_view value) { ref().assign(value); }
    Text(const char* value) { ref().assign(value); }
    Text& operator=(std::string_view value)
    {
        ref().assign(value);
        return *this;
    }
    Text& operator=(const char* value)
    {
        ref().assign(value);
        return *this;
    }
    template <std::size_t M> Text& operator=(const Text<M>& other)
    {
        ref().assign(other.view());
        return *this;
    }

    static constexpr std::size_t size() { return N; }
    char* data() { return chars_.data(); }
    const char* data() const { return chars_.data(); }
    char& operator[](std::size_t i) { return chars_[i]; }
    char operator[](std::size_t i) const { return chars_[i]; }

    std::string_view view() const { return {chars_.data(), N}; }
    operator std::string_view() const { return view(); }
    std::string str() const { return std::string(view()); }
    TextRef ref() { return {chars_.data(), N}; }

    // Characters first..last, 1-based and inclusive, as textlen gives them.
    std::string_view slice(int first, int last) const
    {
        if (first < 1 || last < first || static_cast<std::size_t>(last) > N) return {};
        return {chars_.data() + first - 1, static_cast<std::size_t>(last - first + 1)};
    }

    // Texts compare as if the shorter one were padded with blanks.
    friend bool operator==(const Text& a, std::string_view b) { return equalPadded(a.view(), b); }
    friend bool operator!=(const Text& a, std::string_view b) { return !equalPadded(a.view(), b); }

private:
    static bool equalPadded(std::string_view a, std::string_view b)
    {
        const std::size_t n = std::min(a.size(), b.size());
        if (a.substr(0, n) != b.substr(0, n)) return false;
        std::string_view rest = a.size() > n ? a.substr(n) : b.substr(n);
        return rest.find_first_not_of(' ') == std::string_view::npos;
    }

    std::array<char, N> chars_;
};

} // namespace kestro
