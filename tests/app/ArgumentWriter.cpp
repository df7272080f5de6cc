// Stands in for a program that is handed a file: writes its arguments, one a line, to "arguments.txt" beside itself.
#include <filesystem>
#include <fstream>

int main(int argc, char *argv[])
{
    const std::filesystem::path folder = std::filesystem::path(argv[0]).parent_path();
    const std::filesystem::path unfinished = folder / "arguments.tmp";
    {
        std::ofstream file(unfinished);
        for (int index = 1; index < argc; ++index) {
            file << argv[index] << '\n';
        }
    }
    std::filesystem::rename(unfinished, folder / "arguments.txt"); // whoever sees it sees all of it
    return 0;
}
