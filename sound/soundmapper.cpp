#include "sound/soundmapper.h"

#include "media/soundreader.h"
#include "sound/background.h"
#include "sound/pageplan.h"
#include "sound/pagesource.h"
#include "sound/soundcache.h"
#include "sound/speechdetector.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr int MostThreads = 2;

int ThreadCount(int wished) {
    const auto processors = static_cast<int>(std::thread::hardware_concurrency());
    return wished > 0 ? wished : std::clamp(processors, 1, MostThreads);
}

/// What reading all of it gives.
double LengthByReading(SoundReader& reader) {
    SoundReader::Block block;
    double end = 0;
    while (reader.Read(block))
        end = block.Time() + static_cast<double>(block.samples.size()) / SoundReader::Frequency;
    return end;
}

} // namespace

/// What the threads share.
class SoundMapper::Work {
  public:
    Work(Wish wish, std::function<void()> changed)
        : m_wish(std::move(wish))
        , m_changed(std::move(changed))
        , m_first([this] { Guarded([this] { Begin(); }); }) {}

    ~Work() {
        m_stop.request_stop();
        m_first.join();
        for (std::thread& helper : m_helpers)
            helper.join();
    }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    State Now() const {
        const std::lock_guard lock(m_lock);
        return m_state;
    }

    std::shared_ptr<const SoundMap> Map() const {
        const std::lock_guard lock(m_lock);
        return m_map;
    }

    bool FromCache() const {
        const std::lock_guard lock(m_lock);
        return m_fromCache;
    }

    void LookAt(double position) {
        const std::lock_guard lock(m_lock);
        m_wish.position = position;
        if (m_plan)
            m_plan->LookAt(PageAt(position));
    }

    void Wait() const {
        std::unique_lock lock(m_lock);
        m_grown.wait(lock, [this] { return Finished(); });
    }

    void WaitFor(double from, double to) const {
        std::unique_lock lock(m_lock);
        m_grown.wait(lock, [&] { return Finished() || (m_map && m_map->Knows(from, to)); });
    }

  private:
    /// No exception may leave a thread: what goes wrong there is "no sound".
    template <typename TASK>
    void Guarded(TASK task) {
        try {
            task();
        } catch (const std::exception&) {
            Enter(State::NoSound);
        }
    }

    std::unique_ptr<SoundReader> Open() const {
        return SoundReader::Open(m_wish.film, m_wish.track, m_stop.get_token());
    }
    void Begin();
    void Grow(std::unique_ptr<SoundReader> reader);
    void Make(PageSource& source, std::size_t page);
    void AddSpeech(std::size_t page);
    bool TakeSpeech(std::size_t page, std::vector<SpeechBands>& bands, std::size_t& first);
    bool SpeechTaken(std::size_t page) const {
        return page >= m_bands.size() || m_bands[page].taken;
    }
    bool Finished() const { return m_state == State::Complete || m_state == State::NoSound; }
    void Enter(State state);
    void Tell();
    std::size_t PageAt(double position) const;

    Wish m_wish;
    const std::function<void()> m_changed;
    const SoundCache m_cache;
    std::stop_source m_stop;

    mutable std::mutex m_lock;
    mutable std::condition_variable m_grown;
    State m_state = State::Opening;
    std::shared_ptr<SoundMap> m_map;
    bool m_fromCache = false;
    bool m_complete = false;
    std::optional<PagePlan> m_plan;
    struct Bands {
        std::vector<SpeechBands> values;
        bool known = false;
        bool taken = false;
    };
    /// Of each page, as long as some speech depends on it.
    std::vector<Bands> m_bands;

    std::mutex m_telling;
    std::vector<std::thread> m_helpers;
    std::thread m_first;
};

void SoundMapper::Work::Begin() {
    if (m_wish.cache) {
        if (auto map = m_cache.Load(m_wish.film, m_wish.track)) {
            {
                const std::lock_guard lock(m_lock);
                m_map = std::move(map);
                m_fromCache = true;
            }
            return Enter(State::Complete);
        }
    }
    auto reader = Open();
    double length = reader != nullptr ? reader->Length() : 0;
    if (reader != nullptr && length <= 0) {
        length = LengthByReading(*reader);
        reader = Open();
    }
    if (reader == nullptr || length <= 0 || m_stop.stop_requested())
        return Enter(State::NoSound);
    {
        const std::lock_guard lock(m_lock);
        m_map = std::make_shared<SoundMap>(length);
        m_bands.resize(m_map->Pages());
        m_plan.emplace(m_map->Pages());
        m_plan->LookAt(PageAt(m_wish.position));
    }
    Enter(State::Growing);
    for (int i = 1; i < ThreadCount(m_wish.threads); ++i)
        m_helpers.emplace_back([this] {
            Guarded([this] {
                if (m_wish.background)
                    WorkInBackground();
                if (auto another = Open())
                    Grow(std::move(another));
            });
        });
    Grow(std::move(reader));
}

void SoundMapper::Work::Grow(std::unique_ptr<SoundReader> reader) {
    PageSource source(std::move(reader));
    std::optional<std::size_t> behind;
    bool hidden = !m_wish.background;
    for (;;) {
        std::optional<PagePlan::Pages> pages;
        {
            const std::lock_guard lock(m_lock);
            pages = m_plan->Take(behind);
        }
        if (!pages)
            return;
        behind = pages->first + pages->count;
        for (std::size_t page = pages->first; page < *behind; ++page) {
            Make(source, page);
            // Only the first page is waited for.
            if (!std::exchange(hidden, true))
                WorkInBackground();
            if (m_stop.stop_requested())
                return;
        }
    }
}

void SoundMapper::Work::Make(PageSource& source, std::size_t page) {
    PageSource::Page made = source.Read(page);
    if (m_stop.stop_requested())
        return;
    const double from = static_cast<double>(page) * SoundPage::Milliseconds / 1000;
    const auto values =
        static_cast<std::size_t>(std::ceil((m_map->Length() - from) * SoundMap::SpeechRate));
    made.bands.resize(std::min(made.bands.size(), values));
    m_map->Add(page, made.shape);
    {
        const std::lock_guard lock(m_lock);
        m_bands[page].values = std::move(made.bands);
        m_bands[page].known = true;
    }
    for (const std::size_t judged : {page - 1, page, page + 1})
        AddSpeech(judged);
    Tell();
}

/// When all that the speech of the page depends on is there.
void SoundMapper::Work::AddSpeech(std::size_t page) {
    std::vector<SpeechBands> bands;
    std::size_t first = 0;
    if (!TakeSpeech(page, bands, first))
        return;
    m_map->Add(page, DetectSpeech(bands, first));
    if (!m_map->Complete())
        return;
    {
        const std::lock_guard lock(m_lock);
        if (std::exchange(m_complete, true))
            return;
    }
    if (m_wish.cache)
        m_cache.Store(m_wish.film, m_wish.track, *m_map, m_stop.get_token());
    Enter(State::Complete);
}

bool SoundMapper::Work::TakeSpeech(std::size_t page, std::vector<SpeechBands>& bands,
                                   std::size_t& first) {
    const std::lock_guard lock(m_lock);
    if (page >= m_bands.size() || m_bands[page].taken)
        return false;
    const std::size_t from = page == 0 ? 0 : page - 1;
    const std::size_t to = std::min(page + 2, m_bands.size());
    for (std::size_t i = from; i < to; ++i)
        if (!m_bands[i].known)
            return false;
    m_bands[page].taken = true;
    for (std::size_t i = from; i < to; ++i) {
        if (i == page)
            first = bands.size();
        bands.insert(bands.end(), m_bands[i].values.begin(), m_bands[i].values.end());
        if (SpeechTaken(i - 1) && SpeechTaken(i) && SpeechTaken(i + 1))
            m_bands[i].values = {};
    }
    return true;
}

std::size_t SoundMapper::Work::PageAt(double position) const {
    const double page = std::max(position, 0.0) * 1000 / SoundPage::Milliseconds;
    const double last = static_cast<double>(m_map->Pages()) - 1;
    return static_cast<std::size_t>(std::min(page, last));
}

void SoundMapper::Work::Enter(State state) {
    {
        const std::lock_guard lock(m_lock);
        m_state = state;
    }
    Tell();
}

void SoundMapper::Work::Tell() {
    {
        // So that nobody misses it between looking and waiting.
        const std::lock_guard lock(m_lock);
    }
    m_grown.notify_all();
    if (!m_changed)
        return;
    const std::lock_guard lock(m_telling);
    m_changed();
}

SoundMapper::SoundMapper(Wish wish, std::function<void()> changed)
    : m_work(std::make_unique<Work>(std::move(wish), std::move(changed))) {}

SoundMapper::~SoundMapper() = default;

SoundMapper::State SoundMapper::Now() const {
    return m_work->Now();
}

std::shared_ptr<const SoundMap> SoundMapper::Map() const {
    return m_work->Map();
}

void SoundMapper::LookAt(double position) {
    m_work->LookAt(position);
}

void SoundMapper::Wait() const {
    m_work->Wait();
}

void SoundMapper::WaitFor(double from, double to) const {
    m_work->WaitFor(from, to);
}

bool SoundMapper::FromCache() const {
    return m_work->FromCache();
}
