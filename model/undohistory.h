#pragma once

#include "model/titleextra.h"

#include <array>
#include <cstdint>
#include <string>

/// The latest 100 edits of a title list, each with what takes it back. The
/// oldest is dropped without notice when a further one is recorded.
class UndoHistory {
  public:
    enum class Kind : std::uint8_t { Changed, Inserted, Deleted };

    /// Of an inserted title only the number counts.
    struct Record {
        Kind kind = Kind::Changed;
        std::int32_t title = 0;
        double start = 0;
        double end = 0;
        std::string text;
        TitleExtra extra;
    };

    bool Empty() const { return m_head == m_tail; }
    /// 0 to 100.
    std::int16_t Count() const;
    void Push(Record record);
    /// The newest record; the history must not be empty.
    Record& Newest() { return m_slots[static_cast<std::size_t>(m_head)]; }
    /// The record that is `age` steps older than the newest (0); for whoever stores the history.
    const Record& At(std::int16_t age) const;
    void Pop();
    void Clear() { m_head = m_tail = 0; }

  private:
    static constexpr std::int16_t Slots = 101;
    static std::int16_t Next(std::int16_t slot);
    static std::int16_t Previous(std::int16_t slot);

    std::array<Record, Slots> m_slots;
    std::int16_t m_head = 0;
    std::int16_t m_tail = 0;
};
