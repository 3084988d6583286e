#include "ftdi/holders.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace ftdi {

namespace {

namespace fs = std::filesystem;

bool hasOpen(const fs::path &process, const struct stat &file)
{
    std::error_code error;
    for (fs::directory_iterator entry(process / "fd", error), end; !error && entry != end;
         entry.increment(error)) {
        struct stat open = {};
        if (stat(entry->path().c_str(), &open) == 0 && open.st_dev == file.st_dev &&
            open.st_ino == file.st_ino)
            return true;
    }
    return false;
}

std::string nameOf(const fs::path &process)
{
    std::ifstream file(process / "comm");
    std::string name;
    std::getline(file, name);
    return name;
}

} // namespace

std::vector<Holder> holdersOf(const std::string &path)
{
    std::vector<Holder> holders;
    struct stat file = {};
    if (stat(path.c_str(), &file) != 0)
        return holders;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error)) {
        const int process = std::atoi(entry->path().filename().c_str());
        if (process > 0 && process != getpid() && hasOpen(entry->path(), file))
            holders.push_back({process, nameOf(entry->path())});
    }
    return holders;
}

} // namespace ftdi
