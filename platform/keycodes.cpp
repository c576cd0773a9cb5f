#include "platform/keycodes.h"

#include <QKeyEvent>

#include <algorithm>
#include <iterator>

namespace {

enum Code : std::int16_t {
    NoCode = 0,
    ShiftCode = 16,
    ControlCode = 17,
    LeftAltCode = 18,
    RightAltCode = 93,
    Keypad0Code = 96,
    LeftSystemCode = 91,
    RightSystemCode = 92,
};

struct KeyRow {
    int key;
    std::int16_t code;
};

// Keys that no layout moves.
constexpr KeyRow FixedKeys[] = {
    {Qt::Key_Backspace, 8},
    {Qt::Key_Tab, 9},
    {Qt::Key_Backtab, 9},
    {Qt::Key_Clear, 12},
    {Qt::Key_Return, 13},
    {Qt::Key_Enter, 13},
    {Qt::Key_Shift, ShiftCode},
    {Qt::Key_Control, ControlCode},
    {Qt::Key_Alt, LeftAltCode},
    {Qt::Key_AltGr, RightAltCode},
    {Qt::Key_Menu, 93},
    {Qt::Key_Meta, LeftSystemCode},
    {Qt::Key_Super_L, 91},
    {Qt::Key_Super_R, RightSystemCode},
    {Qt::Key_Pause, 19},
    {Qt::Key_CapsLock, 20},
    {Qt::Key_Escape, 27},
    {Qt::Key_Space, 32},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},
    {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},
    {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},
    {Qt::Key_Down, 40},
    {Qt::Key_Print, 44},
    {Qt::Key_SysReq, 44},
    {Qt::Key_Insert, 45},
    {Qt::Key_Delete, 46},
    {Qt::Key_Help, 47},
    {Qt::Key_Sleep, 95},
    {Qt::Key_NumLock, 144},
    {Qt::Key_ScrollLock, 145},
    {Qt::Key_VolumeMute, 173},
    {Qt::Key_VolumeDown, 174},
    {Qt::Key_VolumeUp, 175},
    {Qt::Key_MediaNext, 176},
    {Qt::Key_MediaPrevious, 177},
    {Qt::Key_MediaStop, 178},
    {Qt::Key_MediaPlay, 179},
    {Qt::Key_MediaTogglePlayPause, 179},
};

constexpr KeyRow KeypadKeys[] = {
    {Qt::Key_Asterisk, 106}, {Qt::Key_Plus, 107},  {Qt::Key_Minus, 109},
    {Qt::Key_Period, 110},   {Qt::Key_Comma, 110}, {Qt::Key_Slash, 111},
};

// The characters of the other keys, with and without Shift, where the physical key
// is not known: as on a US keyboard.
constexpr KeyRow CharacterKeys[] = {
    {Qt::Key_ParenRight, '0'},  {Qt::Key_Exclam, '1'},       {Qt::Key_At, '2'},
    {Qt::Key_NumberSign, '3'},  {Qt::Key_Dollar, '4'},       {Qt::Key_Percent, '5'},
    {Qt::Key_AsciiCircum, '6'}, {Qt::Key_Ampersand, '7'},    {Qt::Key_Asterisk, '8'},
    {Qt::Key_ParenLeft, '9'},   {Qt::Key_Semicolon, 186},    {Qt::Key_Colon, 186},
    {Qt::Key_Equal, 187},       {Qt::Key_Plus, 187},         {Qt::Key_Comma, 188},
    {Qt::Key_Less, 188},        {Qt::Key_Minus, 189},        {Qt::Key_Underscore, 189},
    {Qt::Key_Period, 190},      {Qt::Key_Greater, 190},      {Qt::Key_Slash, 191},
    {Qt::Key_Question, 191},    {Qt::Key_QuoteLeft, 192},    {Qt::Key_AsciiTilde, 192},
    {Qt::Key_BracketLeft, 219}, {Qt::Key_BraceLeft, 219},    {Qt::Key_Backslash, 220},
    {Qt::Key_Bar, 220},         {Qt::Key_BracketRight, 221}, {Qt::Key_BraceRight, 221},
    {Qt::Key_Apostrophe, 222},  {Qt::Key_QuoteDbl, 222},
};

// The physical keys of the main block by their X11 numbers, row by row, with the
// codes that they have on a US keyboard.
struct ScanRow {
    std::uint32_t first;
    const char16_t* codes;
};
constexpr ScanRow ScanRows[] = {
    {10, u"1234567890\xBD\xBB"},      // 1 ... 0 - =
    {24, u"QWERTYUIOP\xDB\xDD"},      // Q ... P [ ]
    {38, u"ASDFGHJKL\xBA\xDE\xC0"},   // A ... L ; ' `
    {51, u"\xDCZXCVBNM\xBC\xBE\xBF"}, // \ Z ... M , . /
    {94, u"\xE2"},                    // the key beside the left Shift
};

template <std::size_t SIZE>
std::int16_t Find(const KeyRow (&rows)[SIZE], int key) {
    const auto* const row = std::find_if(std::begin(rows), std::end(rows),
                                         [&](const KeyRow& r) { return r.key == key; });
    return row == std::end(rows) ? std::int16_t{NoCode} : row->code;
}

std::int16_t CodeOfScan(std::uint32_t scanCode) {
    for (const auto& [first, codes] : ScanRows) {
        const std::u16string_view row(codes);
        if (scanCode >= first && scanCode < first + row.size())
            return static_cast<std::int16_t>(row[scanCode - first]);
    }
    return NoCode;
}

bool IsLetter(int code) {
    return code >= 'A' && code <= 'Z';
}
bool IsDigit(int code) {
    return code >= '0' && code <= '9';
}

// Alt with Shift held arrives as Meta, and the right Alt as Alt on layouts without
// a third level: the physical key tells them apart.
std::int16_t CodeOfAltOrSystem(int key, std::uint32_t scanCode) {
    switch (scanCode) {
    case 64:
        return LeftAltCode;
    case 108:
        return RightAltCode;
    case 133:
        return LeftSystemCode;
    case 134:
        return RightSystemCode;
    default:
        return Find(FixedKeys, key);
    }
}

std::int16_t CodeOfKeypad(int key) {
    if (IsDigit(key))
        return static_cast<std::int16_t>(Keypad0Code + key - '0');
    return Find(KeypadKeys, key);
}

// Letters keep their names where the layout has Latin letters; other layouts (and
// digits and signs, which move about) go by the physical key.
std::int16_t CodeOfCharacter(int key, std::uint32_t scanCode) {
    const std::int16_t physical = CodeOfScan(scanCode);
    if (IsLetter(key))
        return static_cast<std::int16_t>(key);
    if (physical != NoCode && !IsLetter(physical))
        return physical;
    if (IsDigit(key))
        return static_cast<std::int16_t>(key);
    const std::int16_t sign = Find(CharacterKeys, key);
    return sign != NoCode ? sign : physical;
}

} // namespace

std::int16_t VirtualKeyCode(int key, Qt::KeyboardModifiers modifiers, std::uint32_t scanCode) {
    if (key == Qt::Key_Alt || key == Qt::Key_AltGr || key == Qt::Key_Meta)
        return CodeOfAltOrSystem(key, scanCode);
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return static_cast<std::int16_t>(112 + key - Qt::Key_F1);
    if (const std::int16_t code = Find(FixedKeys, key); code != NoCode)
        return code;
    if (modifiers.testFlag(Qt::KeypadModifier))
        if (const std::int16_t code = CodeOfKeypad(key); code != NoCode)
            return code;
    return CodeOfCharacter(key, scanCode);
}

std::int16_t VirtualKeyCodeOfWindows(std::uint32_t virtualKey, std::uint32_t scanCode) {
    const bool extended = (scanCode & 0x100U) != 0;
    switch (virtualKey) {
    case 0x12: // VK_MENU: either Alt
        return extended ? RightAltCode : LeftAltCode;
    case 0xA0: // VK_LSHIFT, VK_RSHIFT
    case 0xA1:
        return ShiftCode;
    case 0xA2: // VK_LCONTROL, VK_RCONTROL
    case 0xA3:
        return ControlCode;
    case 0xA4: // VK_LMENU
        return LeftAltCode;
    case 0xA5: // VK_RMENU
        return RightAltCode;
    default:
        return virtualKey < 0xFF ? static_cast<std::int16_t>(virtualKey) : std::int16_t{NoCode};
    }
}

std::int16_t VirtualKeyCode(const QKeyEvent& event) {
#ifdef Q_OS_WIN
    if (event.nativeVirtualKey() != 0)
        return VirtualKeyCodeOfWindows(event.nativeVirtualKey(), event.nativeScanCode());
    return VirtualKeyCode(event.key(), event.modifiers(), 0);
#else
    return VirtualKeyCode(event.key(), event.modifiers(), event.nativeScanCode());
#endif
}
