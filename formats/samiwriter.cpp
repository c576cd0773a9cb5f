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

void WriteSAMIHeader(const FileStyle& style, std::string& out) {
    if (!style.keepSamiHeader) {
        out += DefaultHeader;
        return;
    }
    out += style.samiHeader;
    out += "<SYNC Start=0><P Class=";
    out += style.samiClass;
    out += "><br>\r\n";
}

void WriteSAMIFooter(const FileStyle& style, std::string& out) {
    if (!style.keepSamiHeader) {
        out += "</BODY>\r\n</SAMI>\r\n";
        return;
    }
    out += style.samiFooter;
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
    out.reserve(out.size() + style.samiHeader.size() + style.samiFooter.size());
    ReserveFor(titles, BesideEach, out);
    WriteSAMIHeader(style, out);
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
    WriteSAMIFooter(style, out);
}
