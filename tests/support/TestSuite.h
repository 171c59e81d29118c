// The tests of a room in one program: a test is a class, the first argument names its source.
#pragma once

#include <QCoreApplication>
#include <QTest>

namespace TestSuite {

using Run = int (*)(int argc, char **argv);

/// Puts a test on the list of those that the program can run, by its source: "tst_fileio".
class Entry final
{
public:
    Entry(const char *source, Run run);
};

/// Stands for an application object where a test has none.
struct NoApplication
{
    NoApplication(int & /*argc*/, char ** /*argv*/) {}
};

template <typename Application, typename Test>
int run(int argc, char **argv)
{
    [[maybe_unused]] const Application application(argc, argv);
    // Texts are as wide on every screen.
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace TestSuite

/// Stands behind a test's class, as a `main` would in a program of its own. The application is
/// QApplication, QCoreApplication or TestSuite::NoApplication.
#define VANTREL_TEST(Application, TestClass)                                                                 \
    namespace {                                                                                              \
    const TestSuite::Entry testEntry(__FILE__, &TestSuite::run<Application, TestClass>);                     \
    }
