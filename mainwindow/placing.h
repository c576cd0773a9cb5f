#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <string>
#include <vector>

/// The positioning key: pressed at a title's start, released at its end.
class Placing {
  public:
    double KeyDownTime() const { return m_keyDownTime; }
    double KeyUpTime() const { return m_keyUpTime; }
    bool KeyIsDown() const { return m_keyIsDown; }

    /// false: the key is held already; repeats and lost releases change nothing.
    bool Press(double position);
    /// A release counts without its press too, with the time of the last one.
    void Release(double position);
    /// The release will not be heard of.
    void Forget() { m_keyIsDown = false; }

  private:
    double m_keyDownTime = 0;
    double m_keyUpTime = 0;
    bool m_keyIsDown = false;
};

/// The titles placed so far, so that each can be taken back, the last one first.
class PlacedTitles {
  public:
    /// Gives the title its times. false: there is no such title.
    bool Place(SUBTITLES& titles, std::int32_t title, double start, double end);
    /// A change of that title was undone. true: it was the last placement that still held.
    bool TakenBack(const SUBTITLES& titles, std::int32_t title);
    /// The title that was placed last gets times a little beside those.
    void Correct(SUBTITLES& titles, double start, double end);
    /// The titles are others now.
    void Clear() { m_placed.clear(); }

  private:
    struct Times {
        double start;
        double end;
        bool operator==(const Times&) const = default;
    };
    struct Placed {
        std::int32_t title;
        Times before;
        Times after;
    };

    static Times TimesOf(const SUBTITLES& titles, std::int32_t title);

    std::vector<Placed> m_placed;
};

/// What was recorded: "12: 00:01:02,300 - 00:01:04,100".
std::string PlacedText(std::int32_t title, double start, double end);

/// By how much that was moved to where speech begins and ends: "start 0.18 s earlier, end
/// 0.05 s later"; empty where neither was.
std::string SnappedText(double startMoved, double endMoved);

/// The position that a key stands for: the person who pressed it answers with a
/// lag, which is taken off; never before the media's begin.
double WithoutLag(double position, std::int32_t lagMilliseconds);
