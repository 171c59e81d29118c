// The tests of a room in one program.
#include "TestSuite.h"

#include <QFileInfo>

#include <cstdio>
#include <map>
#include <string>

namespace {

using Tests = std::map<std::string, TestSuite::Run>;

/// Made when the first entry needs it: entries of other sources may come before objects of this one.
Tests &tests()
{
    static Tests list;
    return list;
}

int refuse(const char *program)
{
    std::fprintf(stderr, "usage: %s TEST [OPTIONS OF QT TEST]; the tests are:\n", program);
    for (const auto &[name, run] : tests())
        std::fprintf(stderr, "  %s\n", name.c_str());
    return 2;
}

} // namespace

TestSuite::Entry::Entry(const char *source, Run run)
{
    tests().emplace(QFileInfo(QString::fromUtf8(source)).baseName().toStdString(), run);
}

int main(int argc, char **argv)
{
    const auto test = argc > 1 ? tests().find(argv[1]) : tests().end();
    if (test == tests().end())
        return refuse(argv[0]);
    // What is left is the test's own.
    argv[1] = argv[0];
    return test->second(argc - 1, argv + 1);
}
