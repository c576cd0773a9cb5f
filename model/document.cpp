#include "model/document.h"

#include "model/step.h"
#include "model/versions.h"

#include <chrono>
#include <utility>

namespace {

std::int64_t Now() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

Document::Document()
    : m_earlier(std::make_unique<Versions>()) {
    Subt.Watch(this);
}

Document::~Document() {
    Subt.Watch(nullptr);
}

void Document::BlueMark(double position) {
    m_blueMark = position;
    m_blueMarkSet = true;
    Tell(Change::Kind::Marks, m_marksWait);
}

void Document::GreenMark(double position) {
    m_greenMark = position;
    m_greenMarkSet = true;
    Tell(Change::Kind::Marks, m_marksWait);
}

void Document::Marks(double blue, double green) {
    m_blueMark = blue;
    m_greenMark = green;
    m_blueMarkSet = m_greenMarkSet = false;
    Tell(Change::Kind::Marks, m_marksWait);
}

void Document::Saved() {
    Tell(Change::Kind::Saved, m_savedWaits);
}

template <typename OBSERVER>
Connection Document::Add(Observers<OBSERVER>& observers, OBSERVER observer) {
    auto held = std::make_shared<OBSERVER>(std::move(observer));
    observers.emplace_back(held);
    return Connection(std::move(held));
}

template <typename OBSERVER, typename... ARGUMENTS>
void Document::Call(Observers<OBSERVER>& observers, const ARGUMENTS&... arguments) {
    std::erase_if(observers, [](const auto& observer) { return observer.expired(); });
    // Of a copy, as observers may come and go meanwhile.
    const auto called = observers;
    for (const auto& observer : called)
        if (const auto held = observer.lock())
            (*held)(arguments...);
}

Connection Document::Subscribe(Observer observer) {
    return Add(m_observers, std::move(observer));
}

Connection Document::BeforeOther(std::function<void()> observer) {
    return Add(m_beforeOther, std::move(observer));
}

void Document::BeginOther() {
    Call(m_beforeOther);
    ++m_number;
    m_placed.Clear();
    m_fileFollows = true;
    m_typed.reset();
    m_left.reset();
}

void Document::Typing(std::optional<Draft> draft) {
    if (draft == m_typed)
        return;
    m_typed = std::move(draft);
    Call(m_whileTyping);
}

std::optional<Draft> Document::TakeLeft(std::int32_t title) {
    if (!m_left || m_left->title != title || m_left->original != Subt.Text(title))
        return std::nullopt;
    return std::exchange(m_left, std::nullopt);
}

Connection Document::WhileTyping(std::function<void()> observer) {
    return Add(m_whileTyping, std::move(observer));
}

void Document::GoBack(std::size_t age) {
    if (age >= m_earlier->Count())
        return;
    const Version version = m_earlier->At(age);
    {
        const Step step(Subt, "Going back", Step::Undo::Emptied);
        Subt.Replace(TitlesOf(version));
        Style = version.style;
        SubtitleFile = m_file = version.subtitleFile;
        SubtitlesChanged = true;
    }
}

void Document::Changing(const StepName& step, std::int32_t first) {
    const bool inSeries = step.series == StepName::Series::OneAfterTheOther;
    const std::int32_t before = std::exchange(m_seriesTitle, inSeries ? first : 0);
    const bool goesOn = inSeries && before > 0 && (first == before || first == before + 1);
    m_recordedKept = m_recordedKept && goesOn;
    if (!step.text.empty() && !goesOn && Subt.Count() > 0)
        m_earlier->Keep(Subt, About(step.text));
}

Version Document::About(const std::string& step) const {
    Version about;
    about.step = step;
    about.time = Now();
    about.subtitleFile = m_file;
    about.style = Style;
    return about;
}

void Document::KeepRecorded(const std::string& step, std::int32_t title, double start, double end) {
    SUBTITLES recorded = TitlesOf(m_recordedKept ? m_earlier->At(0) : m_earlier->Present(Subt));
    recorded.SetTimes(title, start, end);
    if (std::exchange(m_recordedKept, true))
        m_earlier->DropNewest();
    m_earlier->Keep(recorded, About(step));
}

void Document::StepEnded(const std::optional<Change>& change) {
    if (std::exchange(m_fileFollows, false))
        m_file = SubtitleFile;
    if (change) {
        m_placed.Follow(*change, Subt);
        Call(m_observers, *change);
    }
    if (std::exchange(m_marksWait, false))
        Call(m_observers, Change{Change::Kind::Marks, 0, 0});
    if (std::exchange(m_savedWaits, false))
        Call(m_observers, Change{Change::Kind::Saved, 0, 0});
}

void Document::Tell(Change::Kind kind, bool& waits) {
    if (Subt.InStep())
        waits = true;
    else
        Call(m_observers, Change{kind, 0, 0});
}
