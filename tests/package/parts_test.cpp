// Reading parts into their root classes: the root tables, PartRoot, errors,
// and the preprocessing applied on the way.
#include <gtest/gtest.h>

#include "ooxml/aliases.h"
#include "ooxml/opc/parts.h"
#include "ooxml/package/bibliography.h"
#include "ooxml/package/relationships.h"
#include "ooxml/spreadsheetml/sml.h"
#include "ooxml/wordprocessingml/wml.h"
#include "package_support.h"

using namespace package_test;
namespace opc = ooxml::opc;

namespace
{

const std::string kBibliography = "http://schemas.openxmlformats.org/officeDocument/2006/bibliography";
const std::string kSml = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

Entries Workbook()
{
    return {{"[Content_Types].xml", Types({{"/xl/worksheets/sheet1.xml", kWorksheetType},
                                           {"/xl/odd.bin", "application/vnd.example.unknown+xml"},
                                           {"/xl/worksheets/bad.xml", kWorksheetType}})},
            {"xl/worksheets/sheet1.xml", "<worksheet xmlns='" + kSml + "'><dimension ref='A1:B2'/></worksheet>"},
            {"xl/worksheets/bad.xml", "<worksheet xmlns='" + kSml + "'><sheetFormatPr baseColWidth='-1'/></worksheet>"},
            {"xl/odd.bin", "<odd/>"},
            {"customXml/item1.xml", "<b:Sources xmlns:b='" + kBibliography + "' SelectedStyle='APA'/>"},
            {"customXml/item2.xml", "<b:Sources xmlns:b='http://purl.oclc.org/ooxml/officeDocument/bibliography'/>"},
            {"customXml/item3.xml", "<invoice/>"},
            {"media/image1.png", "PNG"}};
}

} // namespace

TEST(RootClasses, ByContentTypeWithoutCaseOrParameters)
{
    const opc::RootClass* sheet = opc::FindRootClassByContentType(kWorksheetType);
    ASSERT_NE(sheet, nullptr);
    EXPECT_STREQ(sheet->name, "sml::CT_Worksheet");
    EXPECT_EQ(opc::FindRootClassByContentType(wxString(kWorksheetType).Upper() + "; charset=UTF-8"), sheet);
    EXPECT_EQ(opc::FindRootClassByContentType("application/xml"), nullptr);
    EXPECT_EQ(opc::FindRootClassByContentType(""), nullptr);
    // A sample of each family's table.
    const std::pair<const char*, const char*> rows[] = {
        {"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml", "sml::CT_Workbook"},
        {"application/vnd.ms-excel.sheet.macroEnabled.main+xml", "sml::CT_Workbook"},
        {"application/vnd.openxmlformats-officedocument.wordprocessingml.numbering+xml", "wml::CT_Numbering"},
        {"application/vnd.openxmlformats-officedocument.wordprocessingml.footer+xml", "wml::CT_HdrFtr"},
        {"application/vnd.openxmlformats-officedocument.presentationml.slideLayout+xml", "pml::CT_SlideLayout"},
        {"application/vnd.openxmlformats-officedocument.theme+xml", "dml::CT_OfficeStyleSheet"},
        {"application/vnd.openxmlformats-officedocument.drawingml.chart+xml", "chart::CT_ChartSpace"},
        {"application/vnd.ms-office.chartex+xml", "chartex::CT_ChartSpace"},
        {"application/vnd.openxmlformats-officedocument.drawingml.diagramData+xml", "dgm::CT_DataModel"},
        {"application/vnd.openxmlformats-officedocument.vmlDrawing", "vml::CT_Group"},
        {"application/vnd.openxmlformats-package.core-properties+xml", "core_properties::CT_CoreProperties"},
        {"application/vnd.openxmlformats-officedocument.customXmlProperties+xml", "custom_xml::CT_DatastoreItem"},
    };
    for (const auto& row : rows)
    {
        const opc::RootClass* cls = opc::FindRootClassByContentType(row.first);
        ASSERT_NE(cls, nullptr) << row.first;
        EXPECT_STREQ(cls->name, row.second) << row.first;
    }
}

TEST(RootClasses, ByRootElement)
{
    const opc::RootClass* sources = opc::FindRootClassByElement(kBibliography, "Sources");
    ASSERT_NE(sources, nullptr);
    EXPECT_STREQ(sources->name, "bibliography::CT_Sources");
    EXPECT_EQ(opc::FindRootClassByElement(kBibliography, "Other"), nullptr);
    EXPECT_EQ(opc::FindRootClassByElement("", "Sources"), nullptr);
}

TEST(ReadPart, ByContentTypeIntoATypedRoot)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, Workbook(), &error)) << Utf8(error.ToString());
    opc::PartRoot root;
    EXPECT_TRUE(root.IsEmpty());
    ASSERT_TRUE(opc::ReadPart(package, "/xl/worksheets/sheet1.xml", &root, &error)) << Utf8(error.ToString());
    EXPECT_TRUE(root.ReadOk());
    EXPECT_STREQ(root.GetClass()->name, "sml::CT_Worksheet");
    ooxml::sml::CT_Worksheet* sheet = root.Get<ooxml::sml::CT_Worksheet>();
    ASSERT_NE(sheet, nullptr);
    ASSERT_NE(sheet->GetDimension(), nullptr);
    EXPECT_EQ(sheet->GetDimension()->GetRef(), "A1:B2");
    EXPECT_EQ(root.Get<ooxml::wml::CT_Document>(), nullptr);
    EXPECT_EQ(root.GetNode().object, sheet);
    // Moving keeps one owner.
    opc::PartRoot moved(std::move(root));
    EXPECT_EQ(moved.Get<ooxml::sml::CT_Worksheet>(), sheet);
    EXPECT_TRUE(root.IsEmpty());
    // Release hands the object over.
    std::unique_ptr<ooxml::sml::CT_Worksheet> owned(static_cast<ooxml::sml::CT_Worksheet*>(moved.Release()));
    EXPECT_EQ(owned.get(), sheet);
    EXPECT_TRUE(moved.IsEmpty());
}

TEST(ReadPart, ReadXmlFalseIsReportedNotAnError)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, Workbook(), &error));
    opc::PartRoot root;
    ASSERT_TRUE(opc::ReadPart(package, "/xl/worksheets/bad.xml", &root, &error));
    EXPECT_FALSE(root.ReadOk());
    EXPECT_NE(root.Get<ooxml::sml::CT_Worksheet>(), nullptr);
}

TEST(ReadPart, GenericXmlByItsRootElementStrictToo)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, Workbook(), &error));
    opc::PartRoot root;
    ASSERT_TRUE(opc::ReadPart(package, "/customXml/item1.xml", &root, &error)) << Utf8(error.ToString());
    ASSERT_NE(root.Get<ooxml::bibliography::CT_Sources>(), nullptr);
    EXPECT_EQ(root.Get<ooxml::bibliography::CT_Sources>()->GetSelectedStyle(), "APA");
    ASSERT_TRUE(opc::ReadPart(package, "/customXml/item2.xml", &root, &error)) << Utf8(error.ToString());
    EXPECT_NE(root.Get<ooxml::bibliography::CT_Sources>(), nullptr);
    // Without the Strict rewrite the Strict root element has no class.
    opc::Package asWritten(opc::Limits(), opc::ReadOptions{true, false});
    ASSERT_TRUE(Open(asWritten, Workbook(), &error));
    EXPECT_FALSE(opc::ReadPart(asWritten, "/customXml/item2.xml", &root, &error));
    EXPECT_EQ(Utf8(error.message),
              "no root class for root element Sources of http://purl.oclc.org/ooxml/officeDocument/bibliography");
}

TEST(ReadPart, PartsWithoutRootClass)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, Workbook(), &error));
    opc::PartRoot root;
    EXPECT_FALSE(opc::ReadPart(package, "/xl/odd.bin", &root, &error));
    EXPECT_EQ(Utf8(error.ToString()), "test.docx: /xl/odd.bin: no root class for content type "
                                      "application/vnd.example.unknown+xml");
    EXPECT_FALSE(opc::ReadPart(package, "/customXml/item3.xml", &root, &error));
    EXPECT_EQ(Utf8(error.message), "no root class for root element invoice of (no namespace)");
    // No content type at all: tried as XML, which it is not.
    EXPECT_FALSE(opc::ReadPart(package, "/media/image1.png", &root, &error));
    EXPECT_EQ(Utf8(error.message).rfind("XML does not parse", 0), 0u) << Utf8(error.message);
    EXPECT_FALSE(opc::ReadPart(package, "/nope.xml", &root, nullptr)); // no error wanted: no crash
    EXPECT_TRUE(root.IsEmpty());
}

TEST(ReadPart, XmlPartsOfAPackage)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, Workbook(), &error));
    std::vector<wxString> xml;
    for (const opc::Part& part : package.GetParts())
        if (opc::IsXmlPart(package, part))
            xml.push_back(part.name);
    EXPECT_EQ(xml.size(), 7u); // everything but the image
    EXPECT_EQ(std::count(xml.begin(), xml.end(), wxString("/media/image1.png")), 0);
    EXPECT_NE(opc::FindRootClass(package, "/[Content_Types].xml"), nullptr);
}

TEST(ReadPart, MarkupCompatibilityBeforeReadXmlAndItsSwitch)
{
    const Entries entries = {
        {"[Content_Types].xml", Types({{"/xl/worksheets/sheet1.xml", kWorksheetType}})},
        {"xl/worksheets/sheet1.xml",
         "<worksheet xmlns='" + kSml + "' xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006' "
         "xmlns:x14ac='http://schemas.microsoft.com/office/spreadsheetml/2009/9/ac' mc:Ignorable='x14ac'>"
         "<mc:AlternateContent><mc:Choice Requires='x14ac'><dimension ref='Z9'/></mc:Choice>"
         "<mc:Fallback><dimension ref='A1:C3'/></mc:Fallback></mc:AlternateContent>"
         "<sheetFormatPr defaultRowHeight='15' x14ac:dyDescent='0.25'/></worksheet>"}};
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, entries, &error));
    opc::PartRoot root;
    opc::PrepareStats stats;
    ASSERT_TRUE(opc::ReadPart(package, "/xl/worksheets/sheet1.xml", &root, &error, &stats));
    ASSERT_NE(root.Get<ooxml::sml::CT_Worksheet>()->GetDimension(), nullptr);
    EXPECT_EQ(root.Get<ooxml::sml::CT_Worksheet>()->GetDimension()->GetRef(), "A1:C3");
    EXPECT_EQ(stats.fallbacks, 1u);
    EXPECT_EQ(stats.ignoredAttributes, 1u);
    opc::Package raw(opc::Limits(), opc::ReadOptions{false, false});
    ASSERT_TRUE(Open(raw, entries, &error));
    ASSERT_TRUE(opc::ReadPart(raw, "/xl/worksheets/sheet1.xml", &root, &error));
    EXPECT_EQ(root.Get<ooxml::sml::CT_Worksheet>()->GetDimension(), nullptr);
}

TEST(ReadPart, MustUnderstandFailsThePart)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package,
                     {{"[Content_Types].xml", Types({{"/xl/worksheets/sheet1.xml", kWorksheetType}})},
                      {"xl/worksheets/sheet1.xml",
                       "<worksheet xmlns='" + kSml + "' xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006' "
                       "xmlns:q='urn:example:future' mc:MustUnderstand='q'/>"}},
                     &error));
    opc::PartRoot root;
    EXPECT_FALSE(opc::ReadPart(package, "/xl/worksheets/sheet1.xml", &root, &error));
    EXPECT_EQ(Utf8(error.ToString()), "test.docx: /xl/worksheets/sheet1.xml: mc:MustUnderstand names a namespace "
                                      "the library does not understand: urn:example:future");
}

TEST(ReadPart, StrictPartReadsLikeTransitional)
{
    const Entries entries = {
        {"[Content_Types].xml", Types({{"/xl/worksheets/sheet1.xml", kWorksheetType}})},
        {"xl/worksheets/sheet1.xml",
         "<x:worksheet xmlns:x='http://purl.oclc.org/ooxml/spreadsheetml/main'><x:dimension ref='B2'/></x:worksheet>"}};
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, entries, &error));
    opc::PartRoot root;
    opc::PrepareStats stats;
    ASSERT_TRUE(opc::ReadPart(package, "/xl/worksheets/sheet1.xml", &root, &error, &stats));
    EXPECT_TRUE(stats.strict);
    ASSERT_NE(root.Get<ooxml::sml::CT_Worksheet>()->GetDimension(), nullptr);
    EXPECT_EQ(root.Get<ooxml::sml::CT_Worksheet>()->GetDimension()->GetRef(), "B2");
    opc::Package asWritten(opc::Limits(), opc::ReadOptions{true, false});
    ASSERT_TRUE(Open(asWritten, entries, &error));
    ASSERT_TRUE(opc::ReadPart(asWritten, "/xl/worksheets/sheet1.xml", &root, &error));
    EXPECT_EQ(root.Get<ooxml::sml::CT_Worksheet>()->GetDimension(), nullptr);
}
