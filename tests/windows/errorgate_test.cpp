#include "platform/errorgate.h"

#include "base/runtimeerror.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

namespace {

class ErrorGate : public testing::Test {
  protected:
    ErrorGate() {
        before = InstallErrorReporter([this](const std::string& report) {
            reports.push_back(report);
            if (whileReporting)
                whileReporting();
        });
    }
    ~ErrorGate() override { InstallErrorReporter(before); }

    ErrorReporter before;
    std::vector<std::string> reports;
    std::function<void()> whileReporting;
};

TEST_F(ErrorGate, RunsTheHandler) {
    int runs = 0;
    Guarded([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(reports.empty());
}

TEST_F(ErrorGate, ReportsWhatAHandlerThrows) {
    Guarded([] { throw RuntimeError(RuntimeError::Number::TypeMismatch); });
    Guarded([] { throw std::bad_alloc(); });
    Guarded([] { throw std::logic_error("a reason"); });
    Guarded([] { throw 1; });
    EXPECT_EQ(reports, (std::vector<std::string>{"Run-time error '13':\n\nType mismatch",
                                                 "Run-time error '7':\n\nOut of memory",
                                                 "Internal error:\n\na reason", "Internal error"}));
}

TEST_F(ErrorGate, ReportsOneErrorAtATime) {
    whileReporting = [] {
        Guarded([] { throw std::logic_error("behind the box"); });
    };
    Guarded([] { throw RuntimeError(RuntimeError::Number::Overflow); });
    EXPECT_EQ(reports, std::vector<std::string>{"Run-time error '6':\n\nOverflow"});
    whileReporting = nullptr;
    Guarded([] { throw std::logic_error("later"); });
    EXPECT_EQ(reports.size(), 2U);
}

TEST_F(ErrorGate, WithoutAReporterTheErrorIsThrownOn) {
    InstallErrorReporter(nullptr);
    EXPECT_THROW(Guarded([] { throw RuntimeError(RuntimeError::Number::Overflow); }), RuntimeError);
}

} // namespace
