#include "platform/errorgate.h"

#include "base/runtimeerror.h"

#include <new>

namespace {

struct Gate {
    ErrorReporter reporter;
    bool reporting = false;
};

Gate& TheGate() {
    static Gate gate;
    return gate;
}

std::string ReportOfCurrentError() {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error.what();
    } catch (const std::bad_alloc&) {
        return "Run-time error '7':\n\nOut of memory";
    } catch (const std::exception& error) {
        return std::string("Internal error:\n\n") + error.what();
    } catch (...) {
        return "Internal error";
    }
}

class Reporting {
  public:
    explicit Reporting(Gate& gate)
        : m_gate(gate) {
        m_gate.reporting = true;
    }
    ~Reporting() { m_gate.reporting = false; }
    Reporting(const Reporting&) = delete;
    Reporting& operator=(const Reporting&) = delete;

  private:
    Gate& m_gate;
};

} // namespace

ErrorReporter InstallErrorReporter(ErrorReporter reporter) {
    return std::exchange(TheGate().reporter, std::move(reporter));
}

void ReportCurrentError() {
    Gate& gate = TheGate();
    if (!gate.reporter)
        throw;
    if (gate.reporting)
        return;
    const Reporting reporting(gate);
    // A copy: the reporter may be exchanged while it runs.
    const ErrorReporter reporter = gate.reporter;
    reporter(ReportOfCurrentError());
}
