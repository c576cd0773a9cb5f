#pragma once

#include <filesystem>

class QWidget;

/// Asks about the files whose saving was cut short while they were overwritten in place,
/// and makes them whole again as the user wishes. What is put off is asked about at the
/// next start.
void OfferInterruptedSaves(QWidget& window, const std::filesystem::path& folder);
