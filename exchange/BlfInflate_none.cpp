#include "exchange/BlfInflate.h"

struct BlfInflate::Library
{
};

BlfInflate::BlfInflate() = default;
BlfInflate::~BlfInflate() = default;

std::size_t BlfInflate::unpack(std::string_view /*packed*/, char * /*to*/, std::size_t /*size*/)
{
    return 0;
}
