#pragma once

#include <QLibrary>

/// Presses and releases the space bar through the X server, as a keyboard would.
/// The libraries are loaded at run time: nothing else needs them.
class XKeys {
  public:
    XKeys();
    ~XKeys();
    XKeys(const XKeys&) = delete;
    XKeys& operator=(const XKeys&) = delete;

    /// false: no X server, or its test extension is missing.
    bool Ready() const { return m_key != 0; }
    void Space(bool down);

  private:
    QLibrary m_x11;
    QLibrary m_test;
    void* m_display = nullptr;
    unsigned m_key = 0;
    int (*m_fakeKey)(void*, unsigned, int, unsigned long) = nullptr;
    int (*m_flush)(void*) = nullptr;
};
