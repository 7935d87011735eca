// Reading parts into their root classes, and the preprocessing on the way.
#include <algorithm>
#include <wx/log.h>

#include "ooxml/aliases.h"
#include "ooxml/package/bibliography.h"
#include "ooxml/spreadsheetml/sml.h"
#include "ooxml/wordprocessingml/wml.h"
#include "package_support.h"

using namespace package_test;
namespace sml = ooxml::sml;

namespace
{
const std::string kBibliography = "http://schemas.openxmlformats.org/officeDocument/2006/bibliography";
const std::string kSheet = "<worksheet xmlns='" + kSml + "' xmlns:mc='" + kMcUri + "' xmlns:q='urn:example:future'";

// "ok" and the dimension of a worksheet part (if any), "read false" for ReadXML false, or the error.
std::string Dimension(const opc::Package& package, const char* part, opc::PrepareStats* stats = nullptr)
{
    wxLogNull quiet; // names the worksheet map does not know
    opc::PartRoot root;
    opc::Error e;
    if (!opc::ReadPartRoot(package, part, &root, &e, stats))
        return Utf8(e.ToString());
    sml::CT_Worksheet* sheet = root.Get<sml::CT_Worksheet>();
    const std::string dimension = sheet && sheet->GetDimension() ? " " + Utf8(sheet->GetDimension()->GetRef()) : "";
    return (root.ReadOk() ? "ok" : "read false") + dimension;
}
} // namespace

TEST(ReadPartRoot, RootClassesTypedRootsReadResultsErrorsAndPreprocessing)
{
    // The root class of a part: by its content type, or by its root element.
    const std::string office = "application/vnd.openxmlformats-officedocument.";
    const std::string rows[][2] = {
        {wxString(kWorksheetType).Upper().ToStdString() + "; charset=UTF-8", "sml::CT_Worksheet"}, // case, parameters
        {"application/vnd.ms-excel.sheet.macroEnabled.main+xml", "sml::CT_Workbook"},
        {office + "wordprocessingml.footer+xml", "wml::CT_HdrFtr"}, {office + "vmlDrawing", "vml::CT_Group"},
        {"application/vnd.ms-office.chartex+xml", "chartex::CT_ChartSpace"}, {"application/xml", "-"}, {"", "-"},
        {"application/vnd.openxmlformats-package.core-properties+xml", "core_properties::CT_CoreProperties"}};
    auto name = [](const opc::RootClass* cls) { return std::string(cls ? cls->fullName : "-"); };
    for (const auto& row : rows)
        EXPECT_EQ(name(opc::FindRootClassByContentType(row[0])), row[1]) << row[0];
    EXPECT_EQ(name(opc::FindRootClassByElement(kBibliography, "Sources")), "bibliography::CT_Sources");
    EXPECT_FALSE(opc::FindRootClassByElement(kBibliography, "Other") || opc::FindRootClassByElement("", "Sources"));

    const char* const type = kWorksheetType;
    const Entries workbook = {
        {"[Content_Types].xml", Types({{"/s.xml", type}, {"/bad.xml", type}, {"/must.xml", type}, {"/mce.xml", type},
                                       {"/strict.xml", type}, {"/xl/odd.bin", "application/vnd.example.unknown+xml"}})},
        {"s.xml", kSheet + "><dimension ref='A1:B2'/></worksheet>"},
        {"bad.xml", kSheet + "><sheetFormatPr baseColWidth='-1'/></worksheet>"},
        {"must.xml", kSheet + " mc:MustUnderstand='q'/>"},
        {"mce.xml", kSheet + " mc:Ignorable='q'><mc:AlternateContent><mc:Choice Requires='q'><dimension ref='Z9'/>"
                             "</mc:Choice><mc:Fallback><dimension ref='A1:C3'/></mc:Fallback></mc:AlternateContent>"
                             "<sheetFormatPr defaultRowHeight='15' q:dyDescent='0.25'/></worksheet>"},
        {"strict.xml", "<x:worksheet xmlns:x='http://purl.oclc.org/ooxml/spreadsheetml/main'><x:dimension ref='B2'/>"
                       "</x:worksheet>"},
        {"customXml/item1.xml", "<b:Sources xmlns:b='" + kBibliography + "' SelectedStyle='APA'/>"},
        {"customXml/item2.xml", "<b:Sources xmlns:b='http://purl.oclc.org/ooxml/officeDocument/bibliography'/>"},
        {"xl/odd.bin", "<odd/>"}, {"customXml/item3.xml", "<invoice/>"}, {"media/image1.png", "PNG"}};
    opc::Package package;
    opc::Error e;
    ASSERT_TRUE(Open(package, workbook, &e)) << Result(false, e);
    // ReadXML false is a result, not an error.
    EXPECT_EQ(Dimension(package, "/s.xml") + ", " + Dimension(package, "/bad.xml"), "ok A1:B2, read false");
    opc::PartRoot root;
    ASSERT_EQ(Result(opc::ReadPartRoot(package, "/s.xml", &root, &e), e), "ok");
    sml::CT_Worksheet* sheet = root.Get<sml::CT_Worksheet>();
    EXPECT_TRUE(sheet && !root.Get<ooxml::wml::CT_Document>() && root.GetNode().object == sheet); // not its class: null
    opc::PartRoot moved(std::move(root));
    EXPECT_TRUE(moved.Get<sml::CT_Worksheet>() == sheet && root.IsEmpty());
    std::unique_ptr<sml::CT_Worksheet> owned(static_cast<sml::CT_Worksheet*>(moved.Release()));
    EXPECT_TRUE(owned.get() == sheet && moved.IsEmpty());
    ASSERT_EQ(Result(opc::ReadPartRoot(package, "/customXml/item1.xml", &root, &e), e), "ok"); // by root element
    EXPECT_EQ(root.Get<ooxml::bibliography::CT_Sources>()->GetSelectedStyle(), "APA");
    ASSERT_EQ(Result(opc::ReadPartRoot(package, "/customXml/item2.xml", &root, &e), e), "ok"); // Strict too
    EXPECT_NE(root.Get<ooxml::bibliography::CT_Sources>(), nullptr);
    opc::PartRoot none; // a part that does not read leaves the root as it was
    EXPECT_EQ(Result(opc::ReadPartRoot(package, "/xl/odd.bin", &none, &e), e),
              "test.docx: /xl/odd.bin: no root class for content type application/vnd.example.unknown+xml");
    EXPECT_EQ(Result(opc::ReadPartRoot(package, "/customXml/item3.xml", &none, &e), e),
              "test.docx: /customXml/item3.xml: no root class for root element invoice of (no namespace)");
    EXPECT_EQ(Result(opc::ReadPartRoot(package, "/media/image1.png", &none, &e), e) // no content type: tried as XML
                  .rfind("test.docx: /media/image1.png: XML does not parse", 0), 0u);
    EXPECT_FALSE(opc::ReadPartRoot(package, "/nope.xml", &none, nullptr));
    EXPECT_TRUE(none.IsEmpty() && root.Get<ooxml::bibliography::CT_Sources>());
    const std::vector<opc::Part>& parts = package.GetParts();
    auto isXml = [&package](const opc::Part& part) { return opc::IsXmlPart(package, part); };
    EXPECT_EQ(std::count_if(parts.begin(), parts.end(), isXml), 10);
    EXPECT_FALSE(opc::IsXmlPart(package, *package.FindPart("/media/image1.png")));

    // The preprocessing before ReadXML, and its switches.
    opc::Package raw(opc::Limits(), opc::ReadOptions{false, false});
    opc::Package noStrict(opc::Limits(), opc::ReadOptions{true, false});
    ASSERT_TRUE(Open(raw, workbook, &e) && Open(noStrict, workbook, &e));
    opc::PrepareStats mce, strict;
    EXPECT_EQ(Dimension(package, "/mce.xml", &mce) + ", " + Dimension(raw, "/mce.xml"), "ok A1:C3, ok");
    EXPECT_TRUE(mce.fallbacks == 1 && mce.ignoredAttributes == 1);
    EXPECT_EQ(Dimension(package, "/strict.xml", &strict) + ", " + Dimension(noStrict, "/strict.xml"), "ok B2, ok");
    EXPECT_TRUE(strict.strict);
    EXPECT_EQ(Dimension(noStrict, "/customXml/item2.xml"),
              "test.docx: /customXml/item2.xml: no root class for root element Sources of "
              "http://purl.oclc.org/ooxml/officeDocument/bibliography");
    EXPECT_EQ(Dimension(package, "/must.xml") + ", " + Dimension(raw, "/must.xml"),
              "test.docx: /must.xml: mc:MustUnderstand names a namespace the library does not understand: "
              "urn:example:future, ok");
}
