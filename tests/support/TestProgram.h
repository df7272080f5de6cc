#pragma once

#include <QtTest>

#ifdef QT_WIDGETS_LIB
#include <QApplication>
#endif

/// One test class of a test program. A program holds the tests of one folder and runs one of them, the one that its
/// first argument names: each is a process of its own, with Qt Test's other arguments behind the name.
class RegisteredTest
{
public:
    using Run = int (*)(int argc, char *argv[]);

    /// For static objects: the macros below make them. name: a literal.
    RegisteredTest(const char *name, Run function);

    const char *name() const { return m_name; }
    int run(int argc, char *argv[]) const { return m_run(argc, argv); }
    const RegisteredTest *next() const { return m_next; }

    /// The program's tests, in no particular order; then next().
    static const RegisteredTest *first() { return s_first; }

private:
    static const RegisteredTest *s_first;

    const char *m_name;
    Run m_run;
    const RegisteredTest *m_next;
};

template<class Test>
int runPlainTest(int argc, char *argv[])
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

template<class Test, class Application>
int runTestIn(int argc, char *argv[])
{
    QTest::Internal::callInitMain<Test>();
    Application application(argc, argv);
    application.setAttribute(Qt::AA_Use96Dpi);
    return runPlainTest<Test>(argc, argv);
}

/// For a test that makes its own application: run is a RegisteredTest::Run.
#define X9_TEST_RUN_BY(Test, run) static const RegisteredTest registered_##Test(#Test, run);
/// For tests of plain functions: without an application.
#define X9_PLAIN_TEST(Test) X9_TEST_RUN_BY(Test, runPlainTest<Test>)
/// With an event loop, without windows.
#define X9_CORE_TEST(Test) X9_TEST_RUN_BY(Test, (runTestIn<Test, QCoreApplication>))
/// With windows.
#define X9_GUI_TEST(Test) X9_TEST_RUN_BY(Test, (runTestIn<Test, QApplication>))
