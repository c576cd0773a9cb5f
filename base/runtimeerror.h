#pragma once

#include <exception>
#include <string>

/// A run-time error that no handler expects. The program reports it in one
/// message box and ends; code that can do better checks before it computes.
class RuntimeError : public std::exception {
  public:
    enum class Number {
        Overflow = 6,
        DivisionByZero = 11,
        TypeMismatch = 13,
        InputPastEndOfFile = 62,
    };

    explicit RuntimeError(Number number);

    int number() const { return static_cast<int>(m_number); }
    /// "Type mismatch", "Overflow", ...
    const std::string& text() const { return m_text; }
    /// The whole report: "Run-time error '13':", a line feed, an empty line, the text.
    const char* what() const noexcept override { return m_report.c_str(); }

  private:
    Number m_number;
    std::string m_text;
    std::string m_report;
};
