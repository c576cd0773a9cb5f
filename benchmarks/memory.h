#pragma once

/// A virtual machine gets its memory from its host when it is touched for the first time,
/// for several times the price of a page that the machine has at hand. That is no
/// program's doing, so what is about to be measured has been touched before.
void TouchMemory();

/// From now on every large block comes fresh from the system and goes back when it is
/// freed. Otherwise small files would find memory at hand that large ones have to wait for.
void TakeMemoryFresh();
