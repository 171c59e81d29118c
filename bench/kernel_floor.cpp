// Reads, writes and moves the bytes of a run with nothing between them and the kernel: what a run
// could not be faster than.
#include "Figures.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

/// The folders of a run, below the project directory.
constexpr const char *images = "scr";
constexpr const char *converted = "scr_temp";
constexpr const char *backup = "scr_bak";

struct Tree
{
    std::vector<fs::path> folders; ///< a folder stands before those in it; relative
    std::vector<fs::path> files;
};

void require(bool isDone, const fs::path &path)
{
    if (isDone)
        return;
    std::perror(path.c_str());
    std::exit(1);
}

Tree list(const fs::path &root)
{
    Tree tree{{fs::path()}, {}};
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root))
        (entry.is_directory() ? tree.folders : tree.files).push_back(fs::relative(entry.path(), root));
    return tree;
}

/// In one read and one write each. Returns the number of bytes.
ssize_t copyBytes(const fs::path &from, const fs::path &to, std::vector<char> &buffer)
{
    const int input = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    require(input >= 0 && fstat(input, &status) == 0, from);
    buffer.resize(std::max(buffer.size(), static_cast<std::size_t>(status.st_size)));
    const ssize_t size = read(input, buffer.data(), static_cast<std::size_t>(status.st_size));
    require(size == status.st_size, from);
    close(input);

    const int output = open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    require(output >= 0, to);
    require(write(output, buffer.data(), static_cast<std::size_t>(size)) == size, to);
    close(output);
    return size;
}

void makeFolders(const Tree &tree, const fs::path &root)
{
    for (const fs::path &folder : tree.folders)
        require(mkdir((root / folder).c_str(), 0777) == 0, root / folder);
}

/// File by file, as a run does, and takes the emptied folders away.
void move(const Tree &tree, const fs::path &from, const fs::path &to)
{
    makeFolders(tree, to);
    for (const fs::path &file : tree.files)
        require(rename((from / file).c_str(), (to / file).c_str()) == 0, from / file);
    std::for_each(tree.folders.rbegin(), tree.folders.rend(), [&from](const fs::path &folder) {
        require(rmdir((from / folder).c_str()) == 0, from / folder);
    });
}

} // namespace

int main(int argc, char **argv)
{
    const fs::path project(projectDirOf(argc, argv).toStdString());
    std::vector<char> buffer;
    const Tree tree = list(project / images);
    makeFolders(tree, project / converted);
    ssize_t bytes = 0;
    for (const fs::path &file : tree.files)
        bytes += copyBytes(project / images / file, project / converted / file, buffer);
    move(tree, project / images, project / backup);
    move(tree, project / converted, project / images);
    printFigures(
        {{"files"_L1, static_cast<qint64>(tree.files.size())}, {"bytes"_L1, static_cast<qint64>(bytes)}});
    return 0;
}
