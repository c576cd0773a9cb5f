#include "platform/keycodes.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <set>

namespace {

struct Row {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    std::uint32_t scanCode;
    int code;
};

constexpr auto None = Qt::NoModifier;
constexpr auto Keypad = Qt::KeypadModifier;

const Row Rows[] = {
    // Events that tests make carry no physical key.
    {"space", Qt::Key_Space, None, 0, 32},
    {"Shift", Qt::Key_Shift, None, 0, 16},
    {"Control", Qt::Key_Control, None, 0, 17},
    {"Alt", Qt::Key_Alt, None, 0, 18},
    {"AltGr", Qt::Key_AltGr, None, 0, 93},
    {"menu", Qt::Key_Menu, None, 0, 93},
    {"A", Qt::Key_A, None, 0, 65},
    {"Z", Qt::Key_Z, None, 0, 90},
    {"0", Qt::Key_0, None, 0, 48},
    {"9", Qt::Key_9, None, 0, 57},
    {"9 with Shift", Qt::Key_ParenLeft, Qt::ShiftModifier, 0, 57},
    {"keypad 0", Qt::Key_0, Keypad, 0, 96},
    {"keypad 9", Qt::Key_9, Keypad, 0, 105},
    {"keypad *", Qt::Key_Asterisk, Keypad, 0, 106},
    {"keypad +", Qt::Key_Plus, Keypad, 0, 107},
    {"keypad -", Qt::Key_Minus, Keypad, 0, 109},
    {"keypad .", Qt::Key_Period, Keypad, 0, 110},
    {"keypad , of other countries", Qt::Key_Comma, Keypad, 0, 110},
    {"keypad /", Qt::Key_Slash, Keypad, 0, 111},
    {"keypad Enter", Qt::Key_Enter, Keypad, 0, 13},
    {"keypad 4 without Num Lock", Qt::Key_Left, Keypad, 83, 37},
    {"keypad 5 without Num Lock", Qt::Key_Clear, Keypad, 84, 12},
    {"F1", Qt::Key_F1, None, 0, 112},
    {"F24", Qt::Key_F24, None, 0, 135},
    {"Backspace", Qt::Key_Backspace, None, 0, 8},
    {"Tab", Qt::Key_Tab, None, 0, 9},
    {"Shift and Tab", Qt::Key_Backtab, Qt::ShiftModifier, 0, 9},
    {"Return", Qt::Key_Return, None, 0, 13},
    {"Escape", Qt::Key_Escape, None, 0, 27},
    {"Page Up", Qt::Key_PageUp, None, 0, 33},
    {"Home", Qt::Key_Home, None, 0, 36},
    {"Left", Qt::Key_Left, None, 0, 37},
    {"Up", Qt::Key_Up, None, 0, 38},
    {"Right", Qt::Key_Right, None, 0, 39},
    {"Down", Qt::Key_Down, None, 0, 40},
    {"Insert", Qt::Key_Insert, None, 0, 45},
    {"Delete", Qt::Key_Delete, None, 0, 46},
    {"Num Lock", Qt::Key_NumLock, None, 0, 144},
    {"semicolon", Qt::Key_Semicolon, None, 0, 186},
    {"quotation mark", Qt::Key_QuoteDbl, Qt::ShiftModifier, 0, 222},
    {"play key", Qt::Key_MediaTogglePlayPause, None, 0, 179},
    {"a key of no kind", Qt::Key_unknown, None, 0, 0},
    // Left and right keys, as X11 and Wayland number them.
    {"left Shift", Qt::Key_Shift, None, 50, 16},
    {"right Shift", Qt::Key_Shift, None, 62, 16},
    {"left Control", Qt::Key_Control, None, 37, 17},
    {"right Control", Qt::Key_Control, None, 105, 17},
    {"left Alt", Qt::Key_Alt, None, 64, 18},
    {"right Alt on a US layout", Qt::Key_Alt, None, 108, 93},
    {"right Alt on a German layout", Qt::Key_AltGr, None, 108, 93},
    {"left Alt with Shift", Qt::Key_Meta, Qt::ShiftModifier, 64, 18},
    {"left system key", Qt::Key_Meta, None, 133, 91},
    {"right system key", Qt::Key_Meta, None, 134, 92},
    {"Caps Lock made a Control", Qt::Key_Control, None, 66, 17},
    // Layouts.
    {"A, US", Qt::Key_A, None, 38, 65},
    {"A, French", Qt::Key_A, None, 24, 65},
    {"Q, French", Qt::Key_Q, None, 38, 81},
    {"Y, German", Qt::Key_Y, None, 52, 89},
    {"A's key, Russian", 0x0424, None, 38, 65},
    {"A's key, Greek", 0x0391, None, 38, 65},
    {"L with AltGr, Polish", 0x0141, Qt::GroupSwitchModifier, 46, 76},
    {"1, French", Qt::Key_Ampersand, None, 10, 49},
    {"1, French with Shift", Qt::Key_1, Qt::ShiftModifier, 10, 49},
    {"7, US with Shift", Qt::Key_Ampersand, Qt::ShiftModifier, 16, 55},
    {"o with dots, German", 0xD6, None, 47, 186},
    {"zh, Russian", 0x0416, None, 47, 186},
    {"apostrophe, Dvorak", Qt::Key_Apostrophe, None, 24, 222},
    {"the key beside the left Shift", Qt::Key_Less, None, 94, 226},
};

TEST(KeyCodes, AreTheSameEverywhere) {
    for (const Row& row : Rows) {
        EXPECT_EQ(VirtualKeyCode(row.key, row.modifiers, row.scanCode), row.code) << row.name;
        const QKeyEvent event(QEvent::KeyPress, row.key, row.modifiers, row.scanCode, 0, 0);
        EXPECT_EQ(VirtualKeyCode(event), row.code) << row.name;
    }
}

TEST(KeyCodes, TellAllPhysicalKeysOfAForeignLayoutApart) {
    std::set<int> codes;
    int keys = 0;
    for (const auto& [first, last] : {std::pair{10U, 21U}, {24U, 35U}, {38U, 49U}, {51U, 61U}})
        for (std::uint32_t scanCode = first; scanCode <= last; ++scanCode, ++keys)
            codes.insert(VirtualKeyCode(0x0410, Qt::NoModifier, scanCode));
    EXPECT_EQ(static_cast<int>(codes.size()), keys);
    EXPECT_FALSE(codes.count(0));
}

TEST(KeyCodes, OfWindows) {
    const struct {
        std::uint32_t virtualKey;
        std::uint32_t scanCode;
        int code;
    } rows[] = {
        {0x20, 0x39, 32},  {0x12, 0x38, 18},  {0x12, 0x138, 93}, {0x5D, 0x15D, 93},
        {0xA4, 0x38, 18},  {0xA5, 0x138, 93}, {0xA0, 0x2A, 16},  {0x10, 0x36, 16},
        {0xA3, 0x11D, 17}, {0x41, 0x1E, 65},  {0x60, 0x52, 96},  {0x0D, 0x11C, 13},
        {0xFF, 0x63, 0},   {0x10000, 0, 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(VirtualKeyCodeOfWindows(row.virtualKey, row.scanCode), row.code)
            << row.virtualKey << " at " << row.scanCode;
}

} // namespace
