#include "model/step.h"

#include <utility>

Step::Step(SUBTITLES& titles, StepName name, Undo undo)
    : m_titles(titles)
    , m_undo(undo)
    , m_before(titles.m_watch.recording) {
    titles.BeginStep(std::move(name));
    using Recording = SUBTITLES::Recording;
    if (undo == Undo::Emptied)
        titles.m_watch.recording = Recording::Off;
    else if (undo == Undo::Once && m_before == Recording::On)
        titles.m_watch.recording = Recording::OnForOne;
}

Step::~Step() {
    if (m_undo != Undo::Each)
        m_titles.m_watch.recording = m_before;
    if (m_undo == Undo::Emptied)
        m_titles.ClearUndo();
    m_titles.EndStep();
}
