#include "model/knownstarts.h"

#include <algorithm>

void KnownStarts::Add(const SUBTITLES& titles, std::int32_t title, double was) {
    if (title < 1 || title > titles.Count())
        return;
    const auto place =
        std::lower_bound(m_known.begin(), m_known.end(), title,
                         [](const Known& known, std::int32_t i) { return known.title < i; });
    Known known{title, titles.StartTime(title), was, titles.Text(title)};
    if (place == m_known.end() || place->title != title) {
        m_known.insert(place, std::move(known));
        return;
    }
    known.was = place->was;
    *place = std::move(known);
}

void KnownStarts::Follow(const Change& change, const SUBTITLES& titles) {
    const std::int32_t count = change.last - change.first + 1;
    const auto within = [&change](const Known& known) {
        return known.title >= change.first && known.title <= change.last;
    };
    const auto startsElsewhere = [&titles](const Known& known) {
        return titles.StartTime(known.title) != known.start;
    };
    const auto forgetWas = [this] {
        for (Known& known : m_known)
            known.was = known.start;
    };
    switch (change.kind) {
    case Change::Kind::Inserted:
        for (Known& known : m_known)
            known.title += known.title >= change.first ? count : 0;
        return;
    case Change::Kind::Deleted:
        std::erase_if(m_known, within);
        for (Known& known : m_known)
            known.title -= known.title > change.last ? count : 0;
        return;
    case Change::Kind::Times:
    case Change::Kind::Text:
        std::erase_if(m_known,
                      [&](const Known& known) { return within(known) && startsElsewhere(known); });
        for (Known& known : m_known)
            if (within(known))
                known.text = titles.Text(known.title);
        if (count > 1)
            forgetWas();
        return;
    case Change::Kind::Replaced:
        std::erase_if(m_known, [&](const Known& known) {
            return known.title >= change.first &&
                   (startsElsewhere(known) || titles.Text(known.title) != known.text);
        });
        forgetWas();
        return;
    case Change::Kind::Marks:
    case Change::Kind::Saved:
        return;
    }
}
