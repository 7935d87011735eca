// Fuzzes the streaming read: the input is the worksheet part of a package made in memory, whose rows are handed out
// one at a time (StreamPart of sml::CT_Row on {"worksheet", "sheetData", "row"}), each read and freed, while the rest
// of the part is read into the root.  The same part read whole must succeed or fail alike, with the same message.
#include <cstdio>
#include <cstdlib>
#include <string>

#include <wx/mstream.h>
#include <wx/zipstrm.h>

#include "fuzz_part.h"
#include "ooxml/opc/parts.h"
#include "ooxml/spreadsheetml/sml.h"

namespace
{
// A package of [Content_Types].xml and the input as /s.xml, a worksheet.
std::string Package(const char* bytes, std::size_t size)
{
    static const char types[] =
        "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'><Override PartName='/s.xml' "
        "ContentType='application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml'/></Types>";
    wxMemoryOutputStream memory;
    {
        wxZipOutputStream zip(memory, 0); // stored: the deflate costs more than the read
        zip.PutNextEntry("[Content_Types].xml");
        zip.Write(types, sizeof types - 1);
        zip.PutNextEntry("s.xml");
        zip.Write(bytes, size);
    }
    std::string zip(memory.GetLength(), '\0');
    memory.CopyTo(&zip[0], zip.size());
    return zip;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ooxml_fuzz::Initialise();
    const std::string zip = Package(reinterpret_cast<const char*>(data), size);
    ooxml::opc::Package package;
    ooxml::opc::Error error;
    if (!package.OpenMemory(zip.data(), zip.size(), "fuzz.xlsx", &error))
        return 0;
    ooxml::opc::PartRoot streamed, whole;
    std::size_t rows = 0;
    const bool streamOk = ooxml::opc::StreamPart<ooxml::sml::CT_Row>(
        package, "/s.xml", {"worksheet", "sheetData", "row"},
        [&rows](ooxml::sml::CT_Row& row, bool) {
            rows += row.GetC().size() + 1;
            return rows < 100000;
        },
        &streamed, &error);
    const wxString streamMessage = error.message;
    const bool wholeOk = ooxml::opc::ReadPartRoot(package, "/s.xml", &whole, &error);
    if (streamOk != wholeOk || (!streamOk && streamMessage != error.message))
    {
        std::fprintf(stderr, "streamed and whole reads differ:\nstreamed: %s\nwhole:    %s\n",
                     streamOk ? "ok" : static_cast<const char*>(streamMessage.utf8_str()),
                     wholeOk ? "ok" : static_cast<const char*>(error.message.utf8_str()));
        std::abort();
    }
    return 0;
}
