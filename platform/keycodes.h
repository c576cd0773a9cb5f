#pragma once

#include <cstdint>

class QKeyEvent;

/// The virtual-key code of a key event, the same on every platform and keyboard
/// layout: 32 space, 16 Shift, 17 Control, 18 left Alt, 93 right Alt and the menu
/// key, 65 to 90 the letter keys, 96 to 111 the keypad, 112 on F1 ... 0: a key without a code.
std::int16_t VirtualKeyCode(const QKeyEvent& event);
