#include "fit/fit.h"

#include "fit/answer.h"
#include "fit/spoken.h"

namespace {

/// Everything a search needs, whatever the reference is.
struct Prepared {
    std::vector<SpokenTitle> titles;
    std::vector<SpokenTitle> right;
    SpeechTrack track{SpeechCurve{}};
};

Prepared Prepare(std::span<const FitTitle> titles, const FitReference& reference) {
    Prepared prepared;
    if (const auto* const curve = std::get_if<SpeechCurve>(&reference)) {
        prepared.titles = SpokenTitles(titles, TitleEnds::Spoken);
        prepared.track = SpeechTrack(*curve);
    } else {
        prepared.titles = SpokenTitles(titles, TitleEnds::AsGiven);
        prepared.right = SpokenTitles(std::get<RightTitles>(reference), TitleEnds::AsGiven);
        prepared.track = SpeechTrack(prepared.right);
    }
    return prepared;
}

} // namespace

Fit FindFit(std::span<const FitTitle> titles, const FitReference& reference,
            std::span<const FitAnchor> anchors, const FitProgress& progress,
            const FitOptions& options) {
    Workers workers(options.threads, progress);
    Prepared prepared;
    workers.Run(1, 0.02, [&](std::size_t) { prepared = Prepare(titles, reference); });
    const std::vector<PlacedAnchor> placed = PlacedAnchors(anchors, prepared.titles);
    Answer answer(prepared.titles, prepared.right, prepared.track, placed);
    if (!workers.Cancelled() && !prepared.titles.empty() && !prepared.track.Flat()) {
        const Solver solver(prepared.track, prepared.titles, placed, options.window);
        const Found found = solver.Search(workers);
        workers.Run(1, 0.02, [&](std::size_t) {
            if (!workers.Cancelled())
                answer.Take(found, solver.Searched());
        });
    } else if (!workers.Cancelled()) {
        answer.TakeAnchors();
    }
    Fit fit;
    if (!workers.Cancelled())
        fit = answer.Result(titles);
    else
        fit.titles.resize(titles.size());
    fit.cancelled = workers.Cancelled();
    return fit;
}
