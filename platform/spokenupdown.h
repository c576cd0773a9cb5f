#pragma once

/// Makes spinners known to assistive tools, as what they are and with their values. May be
/// called any number of times.
void SpeakUpDowns();
