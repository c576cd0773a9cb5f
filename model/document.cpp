#include "model/document.h"

#include <utility>

Document::Document() {
    Subt.Watch(this);
}

Document::~Document() {
    Subt.Watch(nullptr);
}

void Document::Marks(double blue, double green) {
    m_blueMark = blue;
    m_greenMark = green;
    Tell(Change::Kind::Marks, m_marksWait);
}

void Document::Saved() {
    Tell(Change::Kind::Saved, m_savedWaits);
}

Connection Document::Subscribe(Observer observer) {
    auto held = std::make_shared<const Observer>(std::move(observer));
    m_observers.emplace_back(held);
    return Connection(std::const_pointer_cast<Observer>(std::move(held)));
}

void Document::Changing(const std::string& /*step*/) {}

void Document::StepEnded(const std::optional<Change>& change) {
    if (change)
        Notify(*change);
    if (std::exchange(m_marksWait, false))
        Notify({Change::Kind::Marks, 0, 0});
    if (std::exchange(m_savedWaits, false))
        Notify({Change::Kind::Saved, 0, 0});
}

void Document::Tell(Change::Kind kind, bool& waits) {
    if (Subt.InStep())
        waits = true;
    else
        Notify({kind, 0, 0});
}

void Document::Notify(const Change& change) {
    std::erase_if(m_observers, [](const auto& observer) { return observer.expired(); });
    // Of a copy, as observers may come and go meanwhile.
    const auto observers = m_observers;
    for (const auto& observer : observers)
        if (const auto held = observer.lock())
            (*held)(change);
}
