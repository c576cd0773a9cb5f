#include "player/mpvengine.h"

#include "player/mpvoptions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <utility>

// What the window thread asks for. libmpv's asynchronous calls only enter a
// request into its queue, so they are made with the lock held and in the order
// of the wishes.

namespace {

using std::chrono::milliseconds;

/// The number's text, whatever the locale.
std::array<char, 32> Decimal(double number) {
    std::array<char, 32> text{};
    std::to_chars(text.data(), text.data() + text.size() - 1, number, std::chars_format::fixed, 6);
    return text;
}

} // namespace

std::unique_ptr<MpvEngine> MpvEngine::Make(const MpvLibrary& mpv, std::function<void()> wake) {
    // libmpv refuses to work under a decimal comma.
    std::setlocale(LC_NUMERIC, "C");
    mpv_handle* player = mpv.create();
    if (player == nullptr)
        return nullptr;
    if (!SetMpvOptions(mpv, player) || mpv.initialize(player) < 0) {
        mpv.terminate_destroy(player);
        return nullptr;
    }
    return std::unique_ptr<MpvEngine>(new MpvEngine(mpv, player, std::move(wake)));
}

MpvEngine::MpvEngine(const MpvLibrary& mpv, mpv_handle* player, std::function<void()> wake)
    : m_mpv(mpv)
    , m_player(player)
    , m_properties(mpv, player)
    , m_wake(std::move(wake)) {
    mpv.observe_property(player, 0, "time-pos", MPV_FORMAT_DOUBLE);
    mpv.observe_property(player, 0, "pause", MPV_FORMAT_FLAG);
    mpv.observe_property(player, 0, "eof-reached", MPV_FORMAT_FLAG);
    mpv.observe_property(player, 0, "duration", MPV_FORMAT_DOUBLE);
    mpv.observe_property(player, 0, "aid", MPV_FORMAT_INT64);
    mpv.observe_property(player, 0, "frame-drop-count", MPV_FORMAT_INT64);
    mpv.observe_property(player, 0, "decoder-frame-drop-count", MPV_FORMAT_INT64);
    m_thread = std::thread([this] { Run(); });
}

MpvEngine::~MpvEngine() {
    {
        const std::lock_guard lock(m_lock);
        m_quit = true;
    }
    m_mpv.wakeup(m_player);
    m_thread.join();
    m_mpv.terminate_destroy(m_player);
}

void MpvEngine::Load(const std::string& path) {
    const std::lock_guard lock(m_lock);
    Forget();
    SetFlag("pause", true);
    m_pause.Told(true);
    Send({"loadfile", path.c_str(), "replace"}, m_loading.Ask(Clock::now()));
    m_mpv.wakeup(m_player);
}

void MpvEngine::Unload() {
    const std::lock_guard lock(m_lock);
    Forget();
    m_loading.Drop();
    Send({"stop"});
    m_mpv.wakeup(m_player);
}

void MpvEngine::Forget() {
    m_media = {};
    m_news = {};
    m_seeking.Forget();
    m_burst.Cancel();
    m_playing = false;
    m_limit.reset();
    m_origin = 0;
    m_dropped = 0;
    ++m_epoch;
    m_clock.Jump(0, Clock::now());
}

bool MpvEngine::WaitForAnswer(milliseconds atMost) {
    std::unique_lock lock(m_lock);
    return m_answered.wait_for(lock, atMost, [this] { return !m_loading.Pending(); });
}

MpvEngine::News MpvEngine::TakeNews() {
    const std::lock_guard lock(m_lock);
    m_told = false;
    return std::exchange(m_news, {});
}

MpvMedia MpvEngine::Media() const {
    const std::lock_guard lock(m_lock);
    return m_media;
}

std::int64_t MpvEngine::DroppedPictures() const {
    const std::lock_guard lock(m_lock);
    return m_dropped;
}

double MpvEngine::Origin() const {
    const std::lock_guard lock(m_lock);
    return m_origin;
}

double MpvEngine::Position() const {
    return PositionBefore(milliseconds(0));
}

double MpvEngine::PositionBefore(milliseconds age) const {
    const std::lock_guard lock(m_lock);
    const double position = m_clock.Position(Clock::now() - age);
    return m_media.length > 0 ? std::min(position, m_media.length) : position;
}

bool MpvEngine::Playing() const {
    const std::lock_guard lock(m_lock);
    return m_playing;
}

void MpvEngine::Seek(double position) {
    const std::lock_guard lock(m_lock);
    if (!m_media.ready)
        return;
    m_burst.Cancel();
    GoTo(position);
}

void MpvEngine::Scrub(double position) {
    const std::lock_guard lock(m_lock);
    if (!m_media.ready)
        return;
    m_burst.Ask(position);
    GoTo(position);
}

void MpvEngine::GoTo(double position) {
    ++m_epoch;
    m_clock.Jump(position, Clock::now());
    m_news.fileEnded = false;
    m_seeking.Want(position);
    Pump();
    m_mpv.wakeup(m_player);
}

void MpvEngine::Play() {
    const std::lock_guard lock(m_lock);
    if (!m_media.ready || m_playing)
        return;
    ++m_epoch;
    m_playing = true;
    m_news.limitReached = m_news.fileEnded = false;
    m_lastSound = Clock::now();
    // A burst has gone beyond the place where playing is to begin.
    if (m_burst.Sounding() && !m_seeking.Wanted())
        m_seeking.Want(m_burst.Position());
    m_burst.Cancel();
    Pump();
    m_mpv.wakeup(m_player);
}

void MpvEngine::Pause() {
    const std::lock_guard lock(m_lock);
    if (!m_playing)
        return;
    ++m_epoch;
    m_playing = false;
    m_burst.Cancel();
    m_clock.Hold(Clock::now());
    Pump();
    m_mpv.wakeup(m_player);
}

void MpvEngine::Limit(std::optional<double> position) {
    const std::lock_guard lock(m_lock);
    m_limit = position;
    m_mpv.wakeup(m_player);
}

void MpvEngine::Rate(double rate) {
    const std::lock_guard lock(m_lock);
    ++m_epoch;
    m_rate = rate;
    m_clock.Rate(rate, Clock::now());
    SetDouble("speed", rate);
    m_mpv.wakeup(m_player);
}

void MpvEngine::Volume(int percent) {
    const std::lock_guard lock(m_lock);
    SetDouble("volume", percent);
}

void MpvEngine::Mute(bool muted) {
    const std::lock_guard lock(m_lock);
    SetFlag("mute", muted);
}

void MpvEngine::Sound(std::int64_t track) {
    const std::lock_guard lock(m_lock);
    m_mpv.set_property_async(m_player, 0, "aid", MPV_FORMAT_INT64, &track);
}

void MpvEngine::Aspect(double ratio) {
    const std::lock_guard lock(m_lock);
    SetDouble("video-aspect-override", ratio > 0 ? ratio : -1);
}

void MpvEngine::Send(std::initializer_list<const char*> command, std::uint64_t request) {
    std::array<const char*, 5> words{};
    std::copy(command.begin(), command.end(), words.begin());
    m_mpv.command_async(m_player, request, words.data());
}

void MpvEngine::SetFlag(const char* name, bool value) {
    int flag = value ? 1 : 0;
    m_mpv.set_property_async(m_player, 0, name, MPV_FORMAT_FLAG, &flag);
}

void MpvEngine::SetDouble(const char* name, double value) {
    m_mpv.set_property_async(m_player, 0, name, MPV_FORMAT_DOUBLE, &value);
}

/// The pause follows the seeks, so that nothing is played before the place that
/// was asked for.
void MpvEngine::Pump() {
    if (m_seeking.UnderWay() || m_burst.Sounding())
        return;
    if (const auto position = m_seeking.Next(Clock::now()))
        SendSeek(*position);
    if (const auto pause = m_pause.Tell(!m_playing))
        SetFlag("pause", *pause);
}

void MpvEngine::SendSeek(double position) {
    Send({"seek", Decimal(m_origin + position).data(), "absolute+exact"});
}
