#include "exchange/BlfInflate.h"

#include <libdeflate.h>

#include <new>

struct BlfInflate::Library
{
    Library()
    {
        if (decompressor == nullptr) {
            throw std::bad_alloc();
        }
    }
    ~Library() { libdeflate_free_decompressor(decompressor); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    libdeflate_decompressor *decompressor = libdeflate_alloc_decompressor();
};

BlfInflate::BlfInflate()
    : m_library(std::make_unique<Library>())
{
}

BlfInflate::~BlfInflate() = default;

std::size_t BlfInflate::unpack(std::string_view packed, char *to, std::size_t size)
{
    std::size_t used = 0;
    const libdeflate_result result =
        libdeflate_zlib_decompress_ex(m_library->decompressor, packed.data(), packed.size(), to, size, &used, nullptr);
    return result == LIBDEFLATE_SUCCESS ? used : 0;
}
