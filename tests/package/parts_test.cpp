// Reading parts into their root classes, and the preprocessing on the way.
#include <algorithm>

#include <wx/log.h>

#include "ooxml/aliases.h"
#include "ooxml/opc/parts.h"
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

Entries Workbook()
{
    const char* const sheet = kWorksheetType;
    return {{"[Content_Types].xml", Types({{"/s.xml", sheet}, {"/bad.xml", sheet}, {"/must.xml", sheet},
                                           {"/mce.xml", sheet}, {"/strict.xml", sheet},
                                           {"/xl/odd.bin", "application/vnd.example.unknown+xml"}})},
            {"s.xml", kSheet + "><dimension ref='A1:B2'/></worksheet>"},
            {"bad.xml", kSheet + "><sheetFormatPr baseColWidth='-1'/></worksheet>"},
            {"must.xml", kSheet + " mc:MustUnderstand='q'/>"},
            {"mce.xml", kSheet + " mc:Ignorable='q'><mc:AlternateContent><mc:Choice Requires='q'><dimension ref='Z9'/>"
                                 "</mc:Choice><mc:Fallback><dimension ref='A1:C3'/></mc:Fallback></mc:AlternateContent>"
                                 "<sheetFormatPr defaultRowHeight='15' q:dyDescent='0.25'/></worksheet>"},
            {"strict.xml", "<x:worksheet xmlns:x='http://purl.oclc.org/ooxml/spreadsheetml/main'>"
                           "<x:dimension ref='B2'/></x:worksheet>"},
            {"xl/odd.bin", "<odd/>"},
            {"customXml/item1.xml", "<b:Sources xmlns:b='" + kBibliography + "' SelectedStyle='APA'/>"},
            {"customXml/item2.xml", "<b:Sources xmlns:b='http://purl.oclc.org/ooxml/officeDocument/bibliography'/>"},
            {"customXml/item3.xml", "<invoice/>"},
            {"media/image1.png", "PNG"}};
}

// "ok" and the dimension of a worksheet part (if any), or the error.
std::string Dimension(const opc::Package& package, const char* part, opc::PrepareStats* stats = nullptr)
{
    wxLogNull quiet; // names the worksheet map does not know
    opc::PartRoot root;
    opc::Error e;
    if (!opc::ReadPart(package, part, &root, &e, stats))
        return Utf8(e.ToString());
    sml::CT_Worksheet* sheet = root.Get<sml::CT_Worksheet>();
    const std::string dimension = sheet && sheet->GetDimension() ? " " + Utf8(sheet->GetDimension()->GetRef()) : "";
    return (root.ReadOk() ? "ok" : "read false") + dimension;
}
} // namespace

TEST(RootClasses, ByContentTypeAndByRootElement)
{
    const opc::RootClass* sheet = opc::FindRootClassByContentType(wxString(kWorksheetType).Upper() + "; charset=UTF-8");
    EXPECT_STREQ(sheet->name, "sml::CT_Worksheet"); // without case or parameters
    EXPECT_FALSE(opc::FindRootClassByContentType("application/xml") || opc::FindRootClassByContentType(""));
    const std::string office = "application/vnd.openxmlformats-officedocument.";
    const std::string rows[][2] = {
        {office + "spreadsheetml.sheet.main+xml", "sml::CT_Workbook"},
        {"application/vnd.ms-excel.sheet.macroEnabled.main+xml", "sml::CT_Workbook"},
        {office + "wordprocessingml.footer+xml", "wml::CT_HdrFtr"},
        {office + "presentationml.slideLayout+xml", "pml::CT_SlideLayout"},
        {office + "theme+xml", "dml::CT_OfficeStyleSheet"},
        {"application/vnd.ms-office.chartex+xml", "chartex::CT_ChartSpace"},
        {office + "vmlDrawing", "vml::CT_Group"},
        {"application/vnd.openxmlformats-package.core-properties+xml", "core_properties::CT_CoreProperties"}};
    for (const auto& row : rows)
    {
        const opc::RootClass* cls = opc::FindRootClassByContentType(row[0]);
        EXPECT_EQ(cls ? cls->name : "-", row[1]) << row[0];
    }
    EXPECT_STREQ(opc::FindRootClassByElement(kBibliography, "Sources")->name, "bibliography::CT_Sources");
    EXPECT_FALSE(opc::FindRootClassByElement(kBibliography, "Other") || opc::FindRootClassByElement("", "Sources"));
}

TEST(ReadPart, TypedRootsReadResultsAndErrors)
{
    opc::Package package;
    opc::Error e;
    ASSERT_TRUE(Open(package, Workbook(), &e)) << Utf8(e.ToString());
    opc::PartRoot root;
    ASSERT_TRUE(opc::ReadPart(package, "/s.xml", &root, &e)) << Utf8(e.ToString());
    sml::CT_Worksheet* sheet = root.Get<sml::CT_Worksheet>();
    ASSERT_TRUE(root.ReadOk() && sheet);
    EXPECT_EQ(sheet->GetDimension()->GetRef(), "A1:B2");
    EXPECT_TRUE(!root.Get<ooxml::wml::CT_Document>() && root.GetNode().object == sheet); // not its class: null
    opc::PartRoot moved(std::move(root));
    EXPECT_TRUE(moved.Get<sml::CT_Worksheet>() == sheet && root.IsEmpty());
    std::unique_ptr<sml::CT_Worksheet> owned(static_cast<sml::CT_Worksheet*>(moved.Release()));
    EXPECT_TRUE(owned.get() == sheet && moved.IsEmpty());
    EXPECT_EQ(Dimension(package, "/bad.xml"), "read false"); // ReadXML false is a result, not an error
    ASSERT_TRUE(opc::ReadPart(package, "/customXml/item1.xml", &root, &e)) << Utf8(e.ToString()); // by root element
    EXPECT_EQ(root.Get<ooxml::bibliography::CT_Sources>()->GetSelectedStyle(), "APA");
    ASSERT_TRUE(opc::ReadPart(package, "/customXml/item2.xml", &root, &e)) << Utf8(e.ToString()); // Strict too
    EXPECT_NE(root.Get<ooxml::bibliography::CT_Sources>(), nullptr);
    opc::PartRoot none; // a part that does not read leaves the root as it was
    EXPECT_FALSE(opc::ReadPart(package, "/xl/odd.bin", &none, &e));
    EXPECT_EQ(Utf8(e.ToString()),
              "test.docx: /xl/odd.bin: no root class for content type application/vnd.example.unknown+xml");
    EXPECT_FALSE(opc::ReadPart(package, "/customXml/item3.xml", &none, &e));
    EXPECT_EQ(Utf8(e.message), "no root class for root element invoice of (no namespace)");
    EXPECT_FALSE(opc::ReadPart(package, "/media/image1.png", &none, &e)); // no content type: tried as XML
    EXPECT_EQ(Utf8(e.message).rfind("XML does not parse", 0), 0u) << Utf8(e.message);
    EXPECT_FALSE(opc::ReadPart(package, "/nope.xml", &none, nullptr));
    EXPECT_TRUE(none.IsEmpty() && root.Get<ooxml::bibliography::CT_Sources>());
    const std::vector<opc::Part>& parts = package.GetParts();
    auto isXml = [&package](const opc::Part& part) { return opc::IsXmlPart(package, part); };
    EXPECT_EQ(std::count_if(parts.begin(), parts.end(), isXml), 10);
    EXPECT_FALSE(opc::IsXmlPart(package, *package.FindPart("/media/image1.png")));
    EXPECT_NE(opc::FindRootClass(package, "/[Content_Types].xml"), nullptr);
}

TEST(ReadPart, PreprocessingBeforeReadXmlAndItsSwitches)
{
    opc::Package package, raw(opc::Limits(), opc::ReadOptions{false, false});
    opc::Package noStrict(opc::Limits(), opc::ReadOptions{true, false});
    opc::Error e;
    ASSERT_TRUE(Open(package, Workbook(), &e) && Open(raw, Workbook(), &e) && Open(noStrict, Workbook(), &e));
    opc::PrepareStats stats;
    EXPECT_EQ(Dimension(package, "/mce.xml", &stats), "ok A1:C3");
    EXPECT_TRUE(stats.fallbacks == 1 && stats.ignoredAttributes == 1);
    EXPECT_EQ(Dimension(raw, "/mce.xml"), "ok");
    EXPECT_EQ(Dimension(package, "/strict.xml", &stats), "ok B2");
    EXPECT_TRUE(stats.strict);
    EXPECT_EQ(Dimension(noStrict, "/strict.xml"), "ok");
    EXPECT_EQ(Dimension(noStrict, "/customXml/item2.xml"),
              "test.docx: /customXml/item2.xml: no root class for root element Sources of "
              "http://purl.oclc.org/ooxml/officeDocument/bibliography");
    EXPECT_EQ(Dimension(package, "/must.xml"), "test.docx: /must.xml: mc:MustUnderstand names a namespace "
                                               "the library does not understand: urn:example:future");
    EXPECT_EQ(Dimension(raw, "/must.xml"), "ok");
}
