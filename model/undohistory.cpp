#include "model/undohistory.h"

#include <utility>

std::int16_t UndoHistory::Next(std::int16_t slot) {
    return slot + 1 < Slots ? static_cast<std::int16_t>(slot + 1) : std::int16_t{0};
}

std::int16_t UndoHistory::Previous(std::int16_t slot) {
    return slot > 0 ? static_cast<std::int16_t>(slot - 1) : static_cast<std::int16_t>(Slots - 1);
}

std::int16_t UndoHistory::Count() const {
    const int count = m_head - m_tail;
    return static_cast<std::int16_t>(count < 0 ? count + Slots : count);
}

void UndoHistory::Push(Record record) {
    m_head = Next(m_head);
    if (m_head == m_tail)
        m_tail = Next(m_tail);
    Newest() = std::move(record);
}

const UndoHistory::Record& UndoHistory::At(std::int16_t age) const {
    const int slot = m_head - age;
    return m_slots[static_cast<std::size_t>(slot < 0 ? slot + Slots : slot)];
}

void UndoHistory::Pop() {
    m_head = Previous(m_head);
}
