#include "player/loading.h"

namespace {

constexpr auto Patience = std::chrono::seconds(10);

} // namespace

std::uint64_t Loading::Ask(Moment now) {
    m_stage = Stage::Asked;
    m_entry.reset();
    m_deadline = now + Patience;
    return ++m_request;
}

void Loading::Drop() {
    m_stage = Stage::Idle;
    m_entry.reset();
    ++m_request;
}

bool Loading::Replied(std::uint64_t request, std::optional<std::int64_t> entry) {
    if (request != m_request || m_stage != Stage::Asked)
        return false;
    m_entry = entry;
    return !entry;
}

void Loading::Started(std::int64_t entry) {
    if (m_stage == Stage::Asked && m_entry == entry)
        m_stage = Stage::Started;
}

void Loading::Loaded() {
    if (m_stage == Stage::Started)
        m_stage = Stage::Loaded;
}

Loading::End Loading::Ended(std::int64_t entry) const {
    if (m_entry != entry)
        return End::OfAnother;
    return m_stage == Stage::Done ? End::WhileOpen : End::BeforeItWasOpen;
}

void Loading::Answer(bool ready) {
    m_stage = Stage::Done;
    if (!ready)
        m_entry.reset();
}
