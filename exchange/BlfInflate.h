#pragma once

#include <memory>
#include <string_view>

/// Unpacks containers of BLF that are at hand as a whole and hold just what they say, by a library that is faster at
/// this than zlib is piece by piece. Where the build has none it unpacks nothing.
class BlfInflate
{
public:
    BlfInflate();
    ~BlfInflate();
    BlfInflate(const BlfInflate &) = delete;
    BlfInflate &operator=(const BlfInflate &) = delete;

    /// packed: begins with zlib data (RFC 1950). Returns how many of its bytes these were when exactly size bytes came
    /// of them and their checksum is right. Otherwise 0, and what is at `to` is undefined: zlib tells what can be
    /// saved.
    std::size_t unpack(std::string_view packed, char *to, std::size_t size);

private:
    struct Library;

    std::unique_ptr<Library> m_library;
};
