#pragma once

#include <QIcon>

/// The signs on the list editor's toolbar: line drawings in the colour of button
/// texts, sharp at any scale.
enum class Sign {
    None,
    Undo,
    Find,
    Italic,
    Spelling,
    Edit,
    Insert,
    Delete,
    Sooner,
    Later,
    Shorter,
    Longer,
    Stretch,
    Shift,
    Bye,
};

QIcon DrawnIcon(Sign sign);
