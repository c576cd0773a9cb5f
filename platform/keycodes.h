#pragma once

#include <Qt>

#include <cstdint>

class QKeyEvent;

/// The virtual-key code of a key event, the same on every platform and keyboard
/// layout: 32 space, 16 Shift, 17 Control, 18 left Alt, 93 right Alt and the menu
/// key, 65 to 90 the letter keys, 96 to 111 the keypad, 112 on F1 ... 0: a key without a code.
std::int16_t VirtualKeyCode(const QKeyEvent& event);

/// The same from what the toolkit knows of the key. `scanCode` is the physical key
/// as X11 and Wayland number it; 0 when unknown (events made by tests).
std::int16_t VirtualKeyCode(int key, Qt::KeyboardModifiers modifiers, std::uint32_t scanCode);
/// The same from what Windows knows of the key; the scan code has bit 8 set for extended keys.
std::int16_t VirtualKeyCodeOfWindows(std::uint32_t virtualKey, std::uint32_t scanCode);
