// A program of tests: "<program> <test class> [<argument of Qt Test>...]".

#include "tests/support/TestProgram.h"

#include "tests/support/StartedThreads.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

const RegisteredTest *RegisteredTest::s_first = nullptr;

RegisteredTest::RegisteredTest(const char *name, Run function)
    : m_name(name)
    , m_run(function)
    , m_next(s_first)
{
    s_first = this;
}

namespace {

const RegisteredTest *testNamed(const char *name)
{
    const RegisteredTest *test = RegisteredTest::first();
    while (test && std::strcmp(test->name(), name) != 0) {
        test = test->next();
    }
    return test;
}

int listTests(const char *program)
{
    std::fprintf(stderr, "usage: %s TEST [ARGUMENT...], where TEST is one of\n", program);
    for (const RegisteredTest *test = RegisteredTest::first(); test; test = test->next()) {
        std::fprintf(stderr, "  %s\n", test->name());
    }
    return 2;
}

/// CTest's label decides whether a test runs under ThreadSanitizer, so it has to be right: X9_TEST_THREADS is "some"
/// with the label, "none" without.
bool isLabelRight(const char *test)
{
    const QByteArray label = qgetenv("X9_TEST_THREADS");
    const int started = startedThreads() - 1; // one is the watchdog of Qt Test
    if (started > 0 && label == "none") {
        std::fprintf(stderr, "FAIL!  : %s starts %d threads and lacks the label \"threads\"\n", test, started);
        return false;
    }
    if (started == 0 && label == "some") {
        std::fprintf(stderr, "FAIL!  : %s has the label \"threads\" and starts none\n", test);
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    const RegisteredTest *test = argc > 1 ? testNamed(argv[1]) : nullptr;
    if (!test) {
        return listTests(argv[0]);
    }
    argv[1] = argv[0];
    const int failures = test->run(argc - 1, argv + 1);
    return isLabelRight(test->name()) ? failures : std::max(failures, 1);
}
