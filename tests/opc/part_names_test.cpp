// Part names as users type them: the package's spelling, a ZIP listing's (no leading slash), another case, Windows
// separators. Every function taking a part name reaches the same part; a part that is not there is named.
#include "package_support.h"

using namespace package_test;

TEST(PartName, EverySpellingReachesTheSamePartAndAMissingPartIsNamedInTheMessage)
{
    // A worksheet with relationships, a part that does not parse, and images declared by extension (none is there).
    const char* const sheet = "<worksheet xmlns='http://schemas.openxmlformats.org/spreadsheetml/2006/main'>"
                              "<dimension ref='A1:B2'/><sheetData/></worksheet>";
    std::string types = Types({{"/xl/worksheets/sheet1.xml", kWorksheetType}});
    types.insert(types.rfind("</Types>"), "<Default Extension='png' ContentType='image/png'/>");
    const std::string sheetRels = Rels({{"rId1", "http://example.org/drawing", "../drawings/d1.xml"}});
    opc::Package package;
    opc::Error e;
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", types}, {"xl/broken.xml", "<unclosed>"},
                               {"_rels/.rels", Rels({{"rId1", "http://e.org/sheet", "xl/worksheets/sheet1.xml"}})},
                               {"xl/worksheets/sheet1.xml", sheet}, {"xl/worksheets/_rels/sheet1.xml.rels", sheetRels}},
                     &e)) << Result(false, e);
    const opc::Part* part = package.FindPart("/xl/worksheets/sheet1.xml");
    auto className = [&package](const char* name) {
        const opc::RootClass* cls = opc::FindRootClass(package, name);
        return std::string(cls ? cls->fullName : "none");
    };
    opc::PartRoot root;
    std::string bytes;
    std::vector<opc::Relationship> rels;
    for (const char* name : {"/xl/worksheets/sheet1.xml", "xl/worksheets/sheet1.xml", "/XL/Worksheets/Sheet1.XML",
                             "xl\\worksheets\\sheet1.xml"})
    {
        SCOPED_TRACE(name);
        EXPECT_TRUE(part && package.FindPart(name) == part && className(name) == "sml::CT_Worksheet");
        EXPECT_EQ(Utf8(package.GetContentType(name)), kWorksheetType); // by its Override
        EXPECT_EQ(Result(package.ReadPartBytes(name, &bytes, &e), e) + " " + bytes, std::string("ok ") + sheet);
        // Relationships: found beside the part, targets resolved against its name as the package spells it.
        EXPECT_EQ(Utf8(opc::Package::RelationshipsPartName(name).Lower()), "/xl/worksheets/_rels/sheet1.xml.rels");
        EXPECT_TRUE(package.GetRelationships(name, &rels, &e) && rels.size() == 1 &&
                    rels[0].resolved == "/xl/drawings/d1.xml");
        EXPECT_TRUE(opc::ReadPartRoot(package, name, &root, &e) && root.GetClass() == opc::FindRootClass(package, name) &&
                    root.ReadOk());
    }
    // The content types stream and the package's own relationships, too.
    for (const char* name : {"/[Content_Types].xml", "[Content_Types].xml"})
        EXPECT_EQ(className(name), "content_types::CT_Types") << name;
    for (const char* source : {"", "/"})
        EXPECT_TRUE(package.GetRelationships(source, &rels, &e) && rels.size() == 1 &&
                    rels[0].resolved == "/xl/worksheets/sheet1.xml") << source;
    // A part that fails is reported under the package's spelling, however it was asked for.
    for (const char* name : {"/xl/broken.xml", "xl/BROKEN.xml"})
        EXPECT_EQ(Result(opc::ReadPartRoot(package, name, &root, &e), e).rfind("test.docx: /xl/broken.xml: XML does not "
                                                                          "parse", 0), 0u) << Utf8(e.ToString());
    // A part the package does not have is named in the message, in the package's form, whichever function is asked
    // and whatever its extension: not judged by the content type its extension would have.
    const std::pair<const char*, const char*> missing[] = {
        {"/x/y.xml", "/x/y.xml"}, {"x/y.xml", "/x/y.xml"}, {"x\\y.bin", "/x/y.bin"},
        {"xl/media/a.png", "/xl/media/a.png"}, // its extension's type is not XML: still a missing part
        {"xl/worksheets", "/xl/worksheets"}};  // a folder is not a part
    for (const auto& m : missing)
    {
        wxXmlDocument document;
        opc::PartRoot none;
        opc::Error errors[3];
        for (const std::string& result : {Result(package.ReadPartBytes(m.first, &bytes, &errors[0]), errors[0]),
                                          Result(package.LoadXml(m.first, &document, &errors[1]), errors[1]),
                                          Result(opc::ReadPartRoot(package, m.first, &none, &errors[2]), errors[2])})
            EXPECT_EQ(result, std::string("test.docx: no part named ") + m.second) << m.first;
        // The message names it; there is no such part to point at.
        EXPECT_TRUE(!package.FindPart(m.first) && errors[0].part.empty() && none.IsEmpty()) << m.first;
    }
}
