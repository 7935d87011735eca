// Streaming the rows of a worksheet: the same rows, in order, as a whole read, the preprocessing applied to
// each, the rest of the sheet read around them, and an early stop.
#include <wx/log.h>

#include "ooxml/aliases.h"
#include "ooxml/spreadsheetml/sml.h"
#include "ooxml/wordprocessingml/wml.h"
#include "package_support.h"

using namespace package_test;
namespace sml = ooxml::sml;

namespace
{
const std::string kStrictSml = "http://purl.oclc.org/ooxml/spreadsheetml/main";

// "r:v v ..." per row: its number and its cells' values.
std::string Describe(const sml::CT_Row& row)
{
    std::string text = std::to_string(row.GetR()) + ":";
    for (const sml::CT_Cell* cell : row.GetC())
        text += " " + Utf8(cell->GetV());
    return text;
}

std::string Whole(const opc::Package& package)
{
    opc::PartRoot root;
    opc::Error error;
    if (!opc::ReadPartRoot(package, "/s.xml", &root, &error))
        return Utf8(error.ToString());
    std::string rows;
    for (const sml::CT_Row* row : root.Get<sml::CT_Worksheet>()->GetSheetData()->GetRow())
        rows += Describe(*row) + "|";
    return rows;
}

// The rows streamed (up to `stop` of them), then what the rest of the sheet says: its rows left in the tree and its
// merged cells.
std::string Streamed(const opc::Package& package, std::size_t stop = 1000)
{
    opc::PartRoot root;
    opc::Error error;
    std::string rows;
    std::size_t count = 0;
    const bool ok = opc::StreamPart<sml::CT_Row>(
        package, "/s.xml", {"worksheet", "sheetData", "row"},
        [&](sml::CT_Row& row, bool readOk) {
            rows += Describe(row) + (readOk ? "|" : " (read false)|");
            return ++count < stop;
        },
        &root, &error);
    if (!ok)
        return Utf8(error.ToString());
    const sml::CT_Worksheet* sheet = root.Get<sml::CT_Worksheet>();
    rows += " left " + std::to_string(sheet->GetSheetData()->GetRow().size());
    if (sheet->GetMergeCells())
        rows += " merged " + std::to_string(sheet->GetMergeCells()->GetMergeCell().size());
    return rows;
}

std::string Sheet(const std::string& uri, const std::string& rows)
{
    return "<worksheet xmlns='" + uri + "' xmlns:mc='" + kMcUri + "' xmlns:x='urn:example:future' mc:Ignorable='x'>" +
           "<sheetData>" + rows + "</sheetData><mergeCells count='1'><mergeCell ref='A1:B1'/></mergeCells></worksheet>";
}
} // namespace

TEST(Streaming, RowsAsTheWholeReadGivesThemWithTheRestOfTheSheetAround)
{
    wxLogNull quiet;
    // Markup compatibility inside a row, an ignorable row, and a declaration on the row itself.
    const std::string rows =
        "<row r='1'><c><v>1</v></c><mc:AlternateContent><mc:Choice Requires='x'><c><v>no</v></c></mc:Choice>"
        "<mc:Fallback><c><v>2</v></c></mc:Fallback></mc:AlternateContent></row>"
        "<x:row r='9'><c><v>ignored</v></c></x:row>"
        "<row r='2' x:extra='dropped'><c><v>3</v></c></row>"
        "<row xmlns:y='urn:y' r='3'><c y:z='1'><v>4</v></c></row>";
    for (const std::string& uri : {kSml, kStrictSml})
    {
        opc::Package package;
        opc::Error error;
        ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types({{"/s.xml", kWorksheetType}})}, {"s.xml", Sheet(uri, rows)}},
                         &error));
        EXPECT_EQ(Whole(package), "1: 1 2|2: 3|3: 4|") << uri;
        EXPECT_EQ(Streamed(package), "1: 1 2|2: 3|3: 4| left 0 merged 1") << uri;
        EXPECT_EQ(Streamed(package, 2), "1: 1 2|2: 3| left 0") << uri; // stopped: the rest is not read
    }
    // Rows that markup compatibility puts in place are read with the rest of the sheet.
    opc::Package package;
    opc::Error error;
    const std::string wrapped = "<row r='1'/><mc:AlternateContent><mc:Fallback><row r='2'/></mc:Fallback></mc:AlternateContent>";
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types({{"/s.xml", kWorksheetType}})}, {"s.xml", Sheet(kSml, wrapped)}},
                     &error));
    EXPECT_EQ(Streamed(package), "1:| left 1 merged 1");
    // Problems are those of a whole read.
    opc::Package broken;
    ASSERT_TRUE(Open(broken, {{"[Content_Types].xml", Types({{"/s.xml", kWorksheetType}})},
                              {"s.xml", Sheet(kSml, "<row mc:MustUnderstand='x'/>")}},
                     &error));
    EXPECT_EQ(Streamed(broken), "test.docx: /s.xml: mc:MustUnderstand names a namespace the library does not understand: "
                                "urn:example:future");
    EXPECT_EQ(Streamed(broken), Whole(broken));
}

TEST(Streaming, AnyPathOfElementNames)
{
    // The paragraphs of a document body, each a typed CT_P; a table between them stays with the rest.
    const std::string w = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";
    const std::string body = "<w:document xmlns:w='" + w + "'><w:body><w:p w:rsidR='00A1'/><w:tbl/>"
                             "<w:p w:rsidR='00B2'><w:r><w:t>x</w:t></w:r></w:p><w:sectPr/></w:body></w:document>";
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types({{"/d.xml", "application/vnd.openxmlformats-officedocument."
                                                                          "wordprocessingml.document.main+xml"}})},
                               {"d.xml", body}},
                     &error));
    std::string rsids;
    opc::PartRoot rest;
    ASSERT_TRUE(opc::StreamPart<ooxml::wml::CT_P>(
        package, "d.xml", {"document", "body", "p"},
        [&](ooxml::wml::CT_P& p, bool ok) {
            rsids += Utf8(p.GetRsidR()) + (ok && p.GetEG_PContent().size() == (rsids.empty() ? 0u : 1u) ? " " : "? ");
            return true;
        },
        &rest, &error))
        << Utf8(error.ToString());
    EXPECT_EQ(rsids, "00A1 00B2 ");
    EXPECT_TRUE(rest.ReadOk() && rest.Get<ooxml::wml::CT_Document>() && rest.Get<ooxml::wml::CT_Document>()->GetBody());
}
