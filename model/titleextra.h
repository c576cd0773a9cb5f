#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a title of a richer format carries beside times and text, such as its position
/// and its style. Only its format reads the bytes; everybody else carries them along.
/// Never changed once made, so that copies and titles that are alike share it.
class TitleExtra {
  public:
    TitleExtra() = default;
    explicit TitleExtra(std::string bytes)
        : m_bytes(bytes.empty() ? nullptr : std::make_shared<const std::string>(std::move(bytes))) {
    }

    bool Empty() const { return m_bytes == nullptr; }
    std::string_view Bytes() const { return Empty() ? std::string_view() : *m_bytes; }
    bool operator==(const TitleExtra& other) const {
        return m_bytes == other.m_bytes || Bytes() == other.Bytes();
    }

  private:
    std::shared_ptr<const std::string> m_bytes;
};

/// One for each title of a list, counted from 0. It takes memory up to the last title
/// that has one: a list without any takes none.
class ExtraColumn {
  public:
    const TitleExtra& At(std::size_t place) const {
        static const TitleExtra None;
        return place < m_extras.size() ? m_extras[place] : None;
    }
    void Put(std::size_t place, TitleExtra extra) {
        if (place >= m_extras.size()) {
            if (extra.Empty())
                return;
            m_extras.resize(place + 1);
        }
        m_extras[place] = std::move(extra);
    }
    void Insert(std::size_t place, TitleExtra extra) {
        if (place < m_extras.size())
            m_extras.insert(m_extras.begin() + static_cast<std::ptrdiff_t>(place),
                            std::move(extra));
        else
            Put(place, std::move(extra));
    }
    void Erase(std::size_t place) {
        if (place < m_extras.size())
            m_extras.erase(m_extras.begin() + static_cast<std::ptrdiff_t>(place));
    }
    /// To a lower place.
    void Move(std::size_t from, std::size_t to) {
        if (from < m_extras.size())
            m_extras[to] = std::move(m_extras[from]);
        else
            Put(to, {});
    }
    void Truncate(std::size_t count) {
        if (count < m_extras.size())
            m_extras.resize(count);
    }
    void Clear() { m_extras = {}; }
    bool Empty() const { return m_extras.empty(); }

  private:
    std::vector<TitleExtra> m_extras;
};
