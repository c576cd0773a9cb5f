#include "formats/sami.h"
#include "formats/tags.h"
#include "formats/writing.h"
#include "model/numbers.h"

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
        LineBreaksToTags(titles.Text(i), out);
        out += LineEnd;
        // A title that touches the next one is replaced by it; any other is cleared.
        if (i == titles.Count() || titles.EndTime(i) < titles.StartTime(i + 1)) {
            AppendSync(out, titles.EndTime(i));
            out += "<br>\r\n";
        }
    }
    WriteSAMIFooter(kept, out);
}
