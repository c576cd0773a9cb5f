#pragma once

#include "model/subtitles.h"

/// A scope within which all changes of the titles are one step of work: whoever watches
/// them hears of it once, when the outermost scope ends. A change outside of any scope is
/// a step of its own. Scopes nest; of their names the outermost one counts.
class Step {
  public:
    /// What becomes of the undo history.
    enum class Undo : std::uint8_t {
        /// Each change is recorded, as without a step.
        Each,
        /// The first change is recorded and the further ones, all of the same title,
        /// belong to it.
        Once,
        /// No change is recorded, and the history is emptied at the end: neither the step
        /// nor what came before it can be undone.
        Emptied,
    };

    explicit Step(SUBTITLES& titles, StepName name = {}, Undo undo = Undo::Each);
    Step(SUBTITLES& titles, Undo undo)
        : Step(titles, {}, undo) {}
    ~Step();
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

  private:
    SUBTITLES& m_titles;
    const Undo m_undo;
    const SUBTITLES::Recording m_before;
};
