#pragma once

/// Makes the main window known to assistive tools as a window, and its drawn strip as the four
/// buttons that it is. May be called any number of times.
void SpeakMainWindow();
