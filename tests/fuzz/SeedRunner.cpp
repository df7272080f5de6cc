// Takes libFuzzer's place: hands a fuzz target the files that it is called with, one after the other. Ends with 1 where
// there is none or one cannot be read, and by the target's abort where it finds something.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char *argv[])
{
    const std::vector<const char *> paths(argv + 1, argv + argc);
    for (const char *path : paths) {
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (!file) {
            std::fprintf(stderr, "%s cannot be read\n", path);
            return 1;
        }
        std::fprintf(stderr, "%s\n", path);
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    }
    return paths.empty() ? 1 : 0;
}
