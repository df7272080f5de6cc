// Stands in for a program that another one starts: writes its arguments, a line each, to a file beside itself whose
// name is its own with ".arguments" behind it, and ends with 0.

#include <cstdio>
#include <string>

int main(int argc, char *argv[])
{
    const std::string own = argv[0];
    const std::string unfinished = own + ".unfinished";
    std::FILE *file = std::fopen(unfinished.c_str(), "wb");
    if (file == nullptr) {
        return 1;
    }
    for (int argument = 1; argument < argc; ++argument) {
        std::fprintf(file, "%s\n", argv[argument]);
    }
    std::fclose(file);
    return std::rename(unfinished.c_str(), (own + ".arguments").c_str()) == 0 ? 0 : 1;
}
