#pragma once

#include "platform/errorgate.h"

#include <QObject>

/// Connects a control's event to the handler; what the handler throws is reported.
template <typename SENDER, typename SIGNAL, typename OWNER>
void On(SENDER* sender, SIGNAL signal, OWNER* owner, void (OWNER::*handler)()) {
    QObject::connect(sender, signal, owner,
                     [owner, handler] { Guarded([&] { (owner->*handler)(); }); });
}

template <typename SENDER, typename SIGNAL, typename OWNER, typename... ARGUMENTS>
void On(SENDER* sender, SIGNAL signal, OWNER* owner, void (OWNER::*handler)(ARGUMENTS...)) {
    QObject::connect(sender, signal, owner, [owner, handler](ARGUMENTS... arguments) {
        Guarded([&] { (owner->*handler)(arguments...); });
    });
}
