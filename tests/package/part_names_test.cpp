// Part names as users type them: the package's own spelling
// ("/xl/worksheets/sheet1.xml"), a ZIP listing's ("xl/worksheets/sheet1.xml"),
// another case, Windows separators.  Every function taking a part name reaches
// the same part, and a part that is not there is named in the message.
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/xml/xml.h>

#include "ooxml/opc/package.h"
#include "ooxml/opc/parts.h"
#include "package_support.h"

namespace
{

using package_test::Entries;
using package_test::Open;
using package_test::Rels;
using package_test::Types;
using package_test::Utf8;

const char* const kSheet =
    "<worksheet xmlns='http://schemas.openxmlformats.org/spreadsheetml/2006/main'>"
    "<dimension ref='A1:B2'/><sheetData/></worksheet>";

// A worksheet with relationships, a part that does not parse, and images
// declared by extension (none is there).
Entries Workbook()
{
    std::string types = Types({{"/xl/worksheets/sheet1.xml", package_test::kWorksheetType}});
    types.insert(types.rfind("</Types>"), "<Default Extension='png' ContentType='image/png'/>");
    return Entries{
        {"[Content_Types].xml", types},
        {"_rels/.rels", Rels({{"rId1", "http://example.org/sheet", "xl/worksheets/sheet1.xml"}})},
        {"xl/worksheets/sheet1.xml", kSheet},
        {"xl/worksheets/_rels/sheet1.xml.rels", Rels({{"rId1", "http://example.org/drawing", "../drawings/d1.xml"}})},
        {"xl/broken.xml", "<unclosed>"}};
}

} // namespace

TEST(PartName, EverySpellingReachesTheSameBytesRelationshipsAndRootClass)
{
    ooxml::opc::Package package;
    ooxml::opc::Error error;
    ASSERT_TRUE(Open(package, Workbook(), &error)) << Utf8(error.ToString());
    const ooxml::opc::Part* sheet = package.FindPart("/xl/worksheets/sheet1.xml");
    ASSERT_NE(sheet, nullptr);
    for (const char* name : {"/xl/worksheets/sheet1.xml", "xl/worksheets/sheet1.xml", "/XL/Worksheets/Sheet1.XML",
                             "xl\\worksheets\\sheet1.xml"})
    {
        SCOPED_TRACE(name);
        EXPECT_EQ(package.FindPart(name), sheet);
        EXPECT_EQ(Utf8(package.GetContentType(name)), package_test::kWorksheetType); // by its Override
        std::string bytes;
        ASSERT_TRUE(package.ReadPart(name, &bytes, &error)) << Utf8(error.ToString());
        EXPECT_EQ(bytes, kSheet);

        // Relationships: found beside the part, targets resolved against its
        // name as the package spells it.
        EXPECT_EQ(Utf8(ooxml::opc::Package::RelationshipsPartName(name).Lower()),
                  "/xl/worksheets/_rels/sheet1.xml.rels");
        std::vector<ooxml::opc::Relationship> relationships;
        ASSERT_TRUE(package.GetRelationships(name, &relationships, &error)) << Utf8(error.ToString());
        ASSERT_EQ(relationships.size(), 1u);
        EXPECT_EQ(Utf8(relationships[0].resolved), "/xl/drawings/d1.xml");

        const ooxml::opc::RootClass* cls = ooxml::opc::FindRootClass(package, name);
        ASSERT_NE(cls, nullptr);
        EXPECT_STREQ(cls->name, "sml::CT_Worksheet");
        ooxml::opc::PartRoot root;
        ASSERT_TRUE(ooxml::opc::ReadPart(package, name, &root, &error)) << Utf8(error.ToString());
        ASSERT_NE(root.GetClass(), nullptr);
        EXPECT_STREQ(root.GetClass()->name, "sml::CT_Worksheet");
        EXPECT_TRUE(root.ReadOk());
    }
    // The content types stream and the package's own relationships, too.
    for (const char* name : {"/[Content_Types].xml", "[Content_Types].xml"})
    {
        const ooxml::opc::RootClass* cls = ooxml::opc::FindRootClass(package, name);
        ASSERT_NE(cls, nullptr) << name;
        EXPECT_STREQ(cls->name, "content_types::CT_Types");
    }
    for (const char* source : {"", "/"})
    {
        std::vector<ooxml::opc::Relationship> relationships;
        ASSERT_TRUE(package.GetRelationships(source, &relationships, &error)) << Utf8(error.ToString());
        ASSERT_EQ(relationships.size(), 1u) << source;
        EXPECT_EQ(Utf8(relationships[0].resolved), "/xl/worksheets/sheet1.xml");
    }
    // A part that fails is reported under the package's spelling, however it was asked for.
    for (const char* name : {"/xl/broken.xml", "xl/BROKEN.xml"})
    {
        ooxml::opc::PartRoot root;
        EXPECT_FALSE(ooxml::opc::ReadPart(package, name, &root, &error));
        EXPECT_EQ(Utf8(error.part), "/xl/broken.xml");
        EXPECT_EQ(Utf8(error.message).rfind("XML does not parse", 0), 0u) << Utf8(error.message);
    }
}

// A part the package does not have is named in the message, in the package's
// form, whichever function is asked and whatever its extension; not judged by
// the content type its extension would have.
TEST(PartName, MissingPartIsNamedInTheMessage)
{
    ooxml::opc::Package package;
    ooxml::opc::Error error;
    ASSERT_TRUE(Open(package, Workbook(), &error)) << Utf8(error.ToString());
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"/x/y.xml", "/x/y.xml"},
        {"x/y.xml", "/x/y.xml"},
        {"x\\y.bin", "/x/y.bin"},
        {"xl/media/a.png", "/xl/media/a.png"}, // its extension's type is not XML: still a missing part
        {"xl/worksheets", "/xl/worksheets"}};  // a folder is not a part
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.first);
        const std::string expected = "test.docx: no part named " + c.second;
        EXPECT_EQ(package.FindPart(c.first), nullptr);
        std::string bytes;
        error = ooxml::opc::Error();
        EXPECT_FALSE(package.ReadPart(c.first, &bytes, &error));
        EXPECT_EQ(Utf8(error.ToString()), expected);
        EXPECT_TRUE(error.part.empty()); // the message names it; there is no such part to point at
        wxXmlDocument document;
        error = ooxml::opc::Error();
        EXPECT_FALSE(package.LoadXml(c.first, &document, &error));
        EXPECT_EQ(Utf8(error.ToString()), expected);
        ooxml::opc::PartRoot root;
        error = ooxml::opc::Error();
        EXPECT_FALSE(ooxml::opc::ReadPart(package, c.first, &root, &error));
        EXPECT_EQ(Utf8(error.ToString()), expected);
        EXPECT_TRUE(root.IsEmpty());
    }
}
