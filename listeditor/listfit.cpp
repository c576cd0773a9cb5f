#include "listeditor/listfit.h"

#include "listeditor/frmList.h"

#include <utility>

// A mark that stands at the start of its title was not set by a person: the list editor
// puts both there when it opens.
std::vector<FitAnchor> ListFit::FitAnchors() const {
    const Document& document = m_host.document();
    std::vector<FitAnchor> anchors;
    const auto add = [&](std::int32_t title, double mark) {
        if (title > 0 && mark != document.Subt.StartTime(title))
            anchors.push_back({title, mark});
    };
    if (m_list != nullptr) {
        add(m_list->FirstMark, document.BlueMark());
        add(m_list->SecondMark, document.GreenMark());
    }
    return anchors;
}

void ListFit::ShowProposed(std::span<const FitTimes> times) {
    if (times.empty()) {
        if (!std::exchange(m_shown, false))
            return;
        m_host.ShowOwn();
        if (m_list != nullptr)
            m_list->ShowOwn();
        return;
    }
    const SUBTITLES& present = FitTitles();
    SUBTITLES proposed;
    proposed.Reserve(present.Count());
    for (std::int32_t i = 1; i <= present.Count(); ++i) {
        const FitTimes& time = times[static_cast<std::size_t>(i - 1)];
        proposed.Add(time.start, time.end, present.Text(i));
    }
    m_host.ShowInstead(proposed);
    if (m_list != nullptr)
        m_list->ShowInstead(proposed);
    m_shown = true;
}

void ListFit::Fitted(std::span<const std::int32_t> rows) {
    if (rows.empty())
        return;
    m_host.document().SubtitlesChanged = true;
    if (m_list == nullptr)
        return;
    m_list->LoadList();
    m_list->ShowAllEdited(rows);
}
