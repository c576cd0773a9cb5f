#include "tests/windows/xkeys.h"

namespace {

constexpr unsigned long SpaceSymbol = 0x20;

} // namespace

XKeys::XKeys()
    : m_x11(QStringLiteral("X11"), 6)
    , m_test(QStringLiteral("Xtst"), 6) {
    const auto open = reinterpret_cast<void* (*)(const char*)>(m_x11.resolve("XOpenDisplay"));
    const auto code = reinterpret_cast<unsigned char (*)(void*, unsigned long)>(
        m_x11.resolve("XKeysymToKeycode"));
    m_flush = reinterpret_cast<int (*)(void*)>(m_x11.resolve("XFlush"));
    m_fakeKey = reinterpret_cast<int (*)(void*, unsigned, int, unsigned long)>(
        m_test.resolve("XTestFakeKeyEvent"));
    if (open == nullptr || code == nullptr || m_flush == nullptr || m_fakeKey == nullptr)
        return;
    m_display = open(nullptr);
    if (m_display != nullptr)
        m_key = code(m_display, SpaceSymbol);
}

XKeys::~XKeys() {
    const auto close = reinterpret_cast<int (*)(void*)>(m_x11.resolve("XCloseDisplay"));
    if (m_display != nullptr && close != nullptr)
        close(m_display);
}

void XKeys::Space(bool down) {
    m_fakeKey(m_display, m_key, down ? 1 : 0, 0);
    m_flush(m_display);
}
