#pragma once

/// From now on this thread gives way to others, a film that plays for example, as far as the
/// system has a way to say so.
void WorkInBackground();
