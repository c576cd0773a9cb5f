#include "formats/reading.h"
#include "formats/sami.h"
#include "formats/tags.h"
#include "formats/writing.h"
#include "model/numbers.h"

#include <algorithm>
#include <string>

namespace {

constexpr std::string_view DefaultHeader =
    "<SAMI>\r\n"
    "<HEAD>\r\n"
    "<STYLE TYPE=\"Text/css\"><!--\r\n"
    "P {margin-left: 29pt; margin-right: 29pt; font-size: 14pt;\r\n"
    "text-align: center; font-family: tahoma, arial, sans-serif;\r\n"
    "font-weight: bold; color: white; background-color: black;}\r\n"
    ".SUBTTL {Name: 'Subtitles'; SAMIType: CC;}\r\n"
    "-->\r\n"
    "</STYLE>\r\n"
    "</HEAD>\r\n"
    "\r\n"
    "<BODY>\r\n"
    "<SYNC Start=0><P Class=SUBTTL><br>\r\n";

void WriteSAMIHeader(const std::optional<SamiParts>& kept, std::string& out) {
    if (!kept) {
        out += DefaultHeader;
        return;
    }
    out += kept->header;
    out += "<SYNC Start=0><P Class=";
    out += kept->paragraphClass;
    out += "><br>\r\n";
}

void WriteSAMIFooter(const std::optional<SamiParts>& kept, std::string& out) {
    if (!kept) {
        out += "</BODY>\r\n</SAMI>\r\n";
        return;
    }
    out += kept->footer;
    out += LineEnd;
}

void AppendSync(std::string& out, double time) {
    out += "<SYNC Start=";
    AppendNumber(out, RoundToLong(time * 1000));
    out += "><P>";
}

/// Does the text begin with a whole tag that is the title's own? One that a reader takes
/// for the file's would end the title.
bool BeginsWithTag(std::string_view text) {
    const std::size_t end = text.find_first_of("<>\r\n", 1);
    if (end == std::string_view::npos || text[end] != '>')
        return false;
    std::string name(Trim(text.substr(1, end - 1)));
    name.resize(std::min(name.find(' '), name.size()));
    for (char& c : name)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return name != "p" && name != "sync" && name != "/body";
}

/// A "<" that opens no tag would take what follows the title for one.
void AppendText(std::string_view text, std::string& out) {
    while (true) {
        std::size_t loose = text.find('<');
        while (loose != std::string_view::npos && BeginsWithTag(text.substr(loose)))
            loose = text.find('<', loose + 1);
        LineBreaksToTags(text.substr(0, loose), out);
        if (loose == std::string_view::npos)
            return;
        out += "&lt;";
        text.remove_prefix(loose + 1);
    }
}

} // namespace

void WriteSAMI(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
               std::string& out) {
    constexpr std::size_t BesideEach = 66;
    const std::optional<SamiParts> kept = KeptSami(style);
    out.reserve(out.size() + style.kept.size());
    ReserveFor(titles, BesideEach, out);
    WriteSAMIHeader(kept, out);
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        AppendSync(out, titles.StartTime(i));
        AppendText(titles.Text(i), out);
        out += LineEnd;
        // A title that touches the next one is replaced by it; any other is cleared.
        if (i == titles.Count() || titles.EndTime(i) < titles.StartTime(i + 1)) {
            AppendSync(out, titles.EndTime(i));
            out += "<br>\r\n";
        }
    }
    WriteSAMIFooter(kept, out);
}
