// runtime/buffer.h: heap bytes that grow by doubling and are never zero-filled.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

namespace kestro::rt {

class ByteBuffer
{
public:
    char* data() { return data_.get(); }
    const char* data() const { return data_.get(); }
    std::size_t capacity() const { return capacity_; }

    // At least `needed` bytes, the first `keep` of them kept.
    void ensure(std::size_t needed, std::size_t keep)
    {
        if (needed <= capacity_) return;
        std::size_t capacity = capacity_ ? capacity_ : 1024;
        while (capacity < needed)
            capacity *= 2;
        std::unique_ptr<char[]> data(new char[capacity]);
        if (keep) std::memcpy(data.get(), data_.get(), keep);
        data_ = std::move(data);
        capacity_ = capacity;
    }

private:
    std::unique_ptr<char[]> data_;
    std::size_t capacity_ = 0;
};

} // namespace kestro::rt
