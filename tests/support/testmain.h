#pragma once
// What makes a test class one of its folder's executable. Each folder of tests is one program,
// `FOLDER_tests tst_class [functions and options of Qt Test]`; CTest runs every class in a process of its
// own.

#include <QTest>

#include <type_traits>

namespace TestMain {

using Run = int (*)(int argc, char* argv[]);

/// Registers a class's run under the name of its source file. Made before main.
class Entry {
public:
    Entry(const char* sourceFile, Run run);
};

/// Runs all of `Test` with an application of that type, or with none. Returns the number of failed functions.
template <class Application, class Test> int run(int argc, char* argv[]) {
    if constexpr (std::is_void_v<Application>) {
        Test test;
        return QTest::qExec(&test, argc, argv);
    } else {
        Application application(argc, argv);
        Application::setAttribute(Qt::AA_Use96Dpi); // letters of one size on every screen
        Test test;
        return QTest::qExec(&test, argc, argv);
    }
}

} // namespace TestMain

/// A test whose class needs more than an application before it starts: `function` is its main.
#define GRAMO_TEST_RUN(function)                                                                             \
    namespace {                                                                                              \
    const TestMain::Entry testEntry(__FILE__, function);                                                     \
    }
/// A test with widgets.
#define GRAMO_TEST_MAIN(Test) GRAMO_TEST_RUN((&TestMain::run<QApplication, Test>))
/// A test with an event loop and no widgets.
#define GRAMO_TEST_GUILESS_MAIN(Test) GRAMO_TEST_RUN((&TestMain::run<QCoreApplication, Test>))
/// A test with neither.
#define GRAMO_TEST_APPLESS_MAIN(Test) GRAMO_TEST_RUN((&TestMain::run<void, Test>))
