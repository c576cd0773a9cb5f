#pragma once

#include "model/document.h"

#include <optional>

class QWidget;

/// What an earlier run left typed for the title, if the user wants to go on with it.
/// The question is asked once.
std::optional<Draft> GoOnTyping(Document& document, std::int32_t title, QWidget* parent);
