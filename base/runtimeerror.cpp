#include "base/runtimeerror.h"

namespace {

const char* TextOf(RuntimeError::Number number) {
    switch (number) {
    case RuntimeError::Number::Overflow:
        return "Overflow";
    case RuntimeError::Number::DivisionByZero:
        return "Division by zero";
    case RuntimeError::Number::TypeMismatch:
        return "Type mismatch";
    case RuntimeError::Number::InputPastEndOfFile:
        return "Input past end of file";
    }
    return "Application-defined or object-defined error";
}

} // namespace

RuntimeError::RuntimeError(Number number)
    : m_number(number)
    , m_text(TextOf(number))
    , m_report("Run-time error '" + std::to_string(static_cast<int>(number)) + "':\n\n" + m_text) {}
