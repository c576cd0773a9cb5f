#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Tolerant reading: a text that breaks its format's rules is rewritten in the form
/// that the strict reader takes. What was mended is listed, so that a person can be
/// asked before it is used. Nothing of a title's words is left out without a word.

/// One kind of damage, and how much of it there was.
struct Mend {
    /// "blank line between blocks", "blank lines between blocks": for one and for more.
    const char* one;
    const char* more;
    std::int32_t count = 0;
    /// The line of the first, counted from 1.
    std::int32_t line = 0;
};

/// A language of a SAMI file: the titles of one paragraph class.
struct MendedLanguage {
    /// What the mending is asked for it by.
    std::size_t number = 0;
    /// "ENCC"
    std::string className;
    /// For people, as the style sheet names it; the class where it does not.
    std::string name;
    std::int32_t titles = 0;
};

struct MendedText {
    /// The whole file in its format's own form, UTF-8.
    std::string text;
    /// In the order in which the kinds were met. Empty: nothing was to be mended.
    std::vector<Mend> mends;
    /// A MicroDVD file that names its own frame rate; greater than 0.
    std::optional<double> frameRate;
    /// More than one: the titles are those of the language that was asked for.
    std::vector<MendedLanguage> languages;
};

/// Takes time in proportion to the text, whatever it holds.
MendedText MendSubRip(std::string_view text);
MendedText MendMicroDvd(std::string_view text);
/// `language`: which of the languages, counted from 0; the first when there is no such one.
/// The titles of the others follow behind the body, where the strict reading keeps them with
/// the file's foot.
MendedText MendSami(std::string_view text, std::size_t language = 0);
/// Are there paragraphs of more than one class? The strict reading takes them all for one
/// language. Quick, and sometimes wrong: mending tells.
bool HoldsSeveralLanguages(std::string_view sami);

/// "3 blank lines between blocks, 1 block without a number"; with lines: "3 blank lines
/// between blocks (first on line 12), ...".
std::string MendSummary(const std::vector<Mend>& mends, bool withLines);

/// Collects mends by kind.
class MendList {
  public:
    /// Both texts are literals; the kind is told by the first.
    void Add(const char* one, const char* more, std::size_t line);
    std::vector<Mend> Take() { return std::move(m_mends); }

  private:
    std::vector<Mend> m_mends;
};

/// Without the blanks, tabs, no-break spaces and invisible marks at both ends.
std::string_view TrimWide(std::string_view text);
