// The package reader: opening, content types, relationships, limits, errors.
#include <gtest/gtest.h>
#include <wx/filename.h>

#include "ooxml/opc/package.h"
#include "package_support.h"

using namespace package_test;
namespace opc = ooxml::opc;

TEST(Package, MissingFileAndFolderAreErrorsNamingThePath)
{
    opc::Package package;
    opc::Error error;
    EXPECT_FALSE(package.Open("/no/such/file.xlsx", &error));
    EXPECT_EQ(Utf8(error.ToString()), "/no/such/file.xlsx: no such file");
    EXPECT_FALSE(package.Open(wxFileName::GetTempDir(), &error));
    EXPECT_EQ(Utf8(error.message), "is a folder, not a file");
}

TEST(Package, BytesThatAreNotAZipArchive)
{
    opc::Package package;
    opc::Error error;
    EXPECT_FALSE(package.OpenMemory("hello", 5, "x.docx", &error));
    EXPECT_EQ(Utf8(error.ToString()), "x.docx: not a ZIP archive");
    EXPECT_FALSE(package.OpenMemory("", 0, "empty.docx", &error));
    EXPECT_EQ(Utf8(error.message), "not a ZIP archive");
    // A truncated archive: the ZIP signature, then garbage.
    const std::string bytes = Zip({{"[Content_Types].xml", Types()}});
    EXPECT_FALSE(package.OpenMemory(bytes.data(), 12, "cut.docx", &error));
    EXPECT_EQ(Utf8(error.package), "cut.docx");
    EXPECT_FALSE(error.message.empty());
}

TEST(Package, NoContentTypesPart)
{
    opc::Package package;
    opc::Error error;
    EXPECT_FALSE(Open(package, {{"word/document.xml", "<w:document/>"}}, &error));
    EXPECT_EQ(Utf8(error.message), "no [Content_Types].xml part: not an Office Open XML package");
}

TEST(Package, ContentTypesThatDoNotParse)
{
    opc::Package package;
    opc::Error error;
    EXPECT_FALSE(Open(package, {{"[Content_Types].xml", "<Types><Default></Types>"}}, &error));
    EXPECT_EQ(Utf8(error.part), "/[Content_Types].xml");
    EXPECT_EQ(Utf8(error.message).rfind("XML does not parse", 0), 0u) << Utf8(error.message);
}

TEST(Package, PartsInDirectoryOrderWithTheirContentTypes)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package,
                     {{"[Content_Types].xml", Types({{"/xl/worksheets/sheet1.xml", kWorksheetType}})},
                      {"xl/worksheets/sheet1.xml", "<worksheet/>"},
                      {"xl/other.XML", "<x/>"},
                      {"media/image.png", "PNG"}},
                     &error))
        << Utf8(error.ToString());
    const std::vector<opc::Part>& parts = package.GetParts();
    ASSERT_EQ(parts.size(), 4u);
    EXPECT_EQ(Utf8(parts[1].name), "/xl/worksheets/sheet1.xml");
    // Override before Default; Default by extension without case; none is empty.
    EXPECT_EQ(Utf8(parts[1].contentType), kWorksheetType);
    EXPECT_EQ(Utf8(parts[2].contentType), "application/xml");
    EXPECT_EQ(Utf8(parts[3].contentType), "");
    EXPECT_EQ(parts[1].size, 12u);
    // Part names compare without case.
    EXPECT_EQ(package.FindPart("/XL/Worksheets/Sheet1.xml"), &parts[1]);
    EXPECT_EQ(package.FindPart("xl/worksheets/sheet1.xml"), &parts[1]);
    EXPECT_EQ(package.FindPart("/nope.xml"), nullptr);
    EXPECT_EQ(Utf8(package.GetContentType("/XL/WORKSHEETS/SHEET1.XML")), kWorksheetType);
    EXPECT_FALSE(package.IsStrict());
}

TEST(Package, TwoEntriesOfOnePartNameAreNeitherRead)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package,
                     {{"[Content_Types].xml", Types()}, {"a/b.xml", "<one/>"}, {"A/B.xml", "<two/>"}}, &error));
    std::string bytes;
    EXPECT_FALSE(package.ReadPart("/a/b.xml", &bytes, &error));
    EXPECT_EQ(Utf8(error.ToString()), "test.docx: /a/b.xml: two ZIP entries of this part name");
}

TEST(Package, ReadPartAndLoadXml)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package,
                     {{"[Content_Types].xml", Types()}, {"ok.xml", "<a><b/></a>"}, {"bad.xml", "<a><b></a>"},
                      {"empty.xml", ""}},
                     &error));
    std::string bytes;
    ASSERT_TRUE(package.ReadPart("/ok.xml", &bytes, &error));
    EXPECT_EQ(bytes, "<a><b/></a>");
    wxXmlDocument document;
    ASSERT_TRUE(package.LoadXml("/ok.xml", &document, &error));
    EXPECT_EQ(document.GetRoot()->GetName(), "a");
    EXPECT_FALSE(package.LoadXml("/bad.xml", &document, &error));
    EXPECT_EQ(Utf8(error.part), "/bad.xml");
    EXPECT_EQ(Utf8(error.message).rfind("XML does not parse", 0), 0u);
    EXPECT_FALSE(package.LoadXml("/empty.xml", &document, &error));
    EXPECT_EQ(Utf8(error.message), "empty part, not XML");
    EXPECT_FALSE(package.ReadPart("/missing.xml", &bytes, &error));
    EXPECT_EQ(Utf8(error.ToString()), "test.docx: /missing.xml: no such part in the package");
}

TEST(Package, PartSizeLimit)
{
    opc::Limits limits;
    limits.maxPartSize = 1000;
    opc::Package package(limits);
    opc::Error error;
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types()}, {"big.xml", "<a>" + std::string(2000, 'x') + "</a>"}},
                     &error))
        << Utf8(error.ToString());
    std::string bytes;
    EXPECT_FALSE(package.ReadPart("/big.xml", &bytes, &error));
    EXPECT_EQ(Utf8(error.message), "larger than the limit of 1000 bytes");
}

TEST(Package, PackageSizeLimitCountsEveryPartRead)
{
    opc::Limits limits;
    limits.maxPackageSize = 800; // the content types stream counts too
    opc::Package package(limits);
    opc::Error error;
    const std::string part = "<a>" + std::string(300, 'x') + "</a>"; // 307 bytes; the content types 238
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types()}, {"a.xml", part}, {"b.xml", part}}, &error));
    std::string bytes;
    EXPECT_TRUE(package.ReadPart("/a.xml", &bytes, &error)) << Utf8(error.ToString());
    EXPECT_FALSE(package.ReadPart("/b.xml", &bytes, &error));
    EXPECT_EQ(Utf8(error.message), "the package's parts exceed the limit of 800 bytes");
}

TEST(Package, EntryCountLimit)
{
    opc::Limits limits;
    limits.maxParts = 2;
    opc::Package package(limits);
    opc::Error error;
    EXPECT_FALSE(Open(package, {{"[Content_Types].xml", Types()}, {"a.xml", "<a/>"}, {"b.xml", "<b/>"}}, &error));
    EXPECT_EQ(Utf8(error.message), "more than 2 ZIP entries");
}

TEST(Package, NestingDepthIsCheckedBeforeParsing)
{
    opc::Limits limits;
    limits.maxDepth = 3;
    opc::Package package(limits);
    opc::Error error;
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'/>"},
                               {"ok.xml", "<a><b><c/></b></a>"}, {"deep.xml", "<a><b><c><d/></c></b></a>"}},
                     &error))
        << Utf8(error.ToString());
    wxXmlDocument document;
    EXPECT_TRUE(package.LoadXml("/ok.xml", &document, &error));
    EXPECT_FALSE(package.LoadXml("/deep.xml", &document, &error));
    EXPECT_EQ(Utf8(error.message), "XML nested deeper than 3 elements");
}

TEST(XmlNestingDepth, CountsElementsNotMarkup)
{
    const std::string text = "<?xml version='1.0'?><!-- <x><y> --><a><![CDATA[<q><r>]]><b x='>'/><c><d>t</d></c></a>";
    EXPECT_EQ(opc::XmlNestingDepth(text.data(), text.size(), 100), 3u);
    const std::string unclosed = "<a>";
    EXPECT_EQ(opc::XmlNestingDepth(unclosed.data(), unclosed.size(), 10), 1u);
    // Stops counting past the limit: hostile depth costs nothing more.
    std::string nested;
    for (int i = 0; i < 1000; ++i)
        nested += "<e>";
    EXPECT_EQ(opc::XmlNestingDepth(nested.data(), nested.size(), 256), 257u);
}

TEST(Package, TargetsResolveAgainstTheSourcePart)
{
    EXPECT_EQ(Utf8(opc::Package::ResolveTarget("/xl/workbook.xml", "worksheets/sheet1.xml")), "/xl/worksheets/sheet1.xml");
    EXPECT_EQ(Utf8(opc::Package::ResolveTarget("/xl/worksheets/sheet1.xml", "../drawings/d1.xml")), "/xl/drawings/d1.xml");
    EXPECT_EQ(Utf8(opc::Package::ResolveTarget("/xl/workbook.xml", "/xl/styles.xml")), "/xl/styles.xml");
    EXPECT_EQ(Utf8(opc::Package::ResolveTarget("/", "word/document.xml")), "/word/document.xml");
    EXPECT_EQ(Utf8(opc::Package::ResolveTarget("/a/b.xml", "./c/../d.xml")), "/a/d.xml");
    EXPECT_EQ(Utf8(opc::Package::ResolveTarget("/a/b.xml", "../../../x.xml")), "/x.xml");
    EXPECT_EQ(Utf8(opc::Package::RelationshipsPartName("/xl/workbook.xml")), "/xl/_rels/workbook.xml.rels");
    EXPECT_EQ(Utf8(opc::Package::RelationshipsPartName("/")), "/_rels/.rels");
    EXPECT_TRUE(opc::Package::IsRelationshipsPart("/_rels/.rels"));
    EXPECT_TRUE(opc::Package::IsRelationshipsPart("/xl/_rels/workbook.xml.rels"));
    EXPECT_FALSE(opc::Package::IsRelationshipsPart("/xl/workbook.xml"));
}

TEST(Package, RelationshipsOfThePackageAndOfParts)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package,
                     {{"[Content_Types].xml", Types({{"/word/document.xml", kDocumentType}})},
                      {"_rels/.rels", Rels({{"rId1", kOfficeDocument, "word/document.xml"}})},
                      {"word/document.xml", "<w:document/>"},
                      {"word/_rels/document.xml.rels",
                       Rels({{"rId1", "http://x/styles", "styles.xml"},
                             {"rId2", "http://x/hyperlink", "https://example.org/a", "External"},
                             {"rId3", "http://x/image", "../media/i.png", "Internal"}})}},
                     &error));
    std::vector<opc::Relationship> relationships;
    ASSERT_TRUE(package.GetRelationships("/", &relationships, &error));
    ASSERT_EQ(relationships.size(), 1u);
    EXPECT_EQ(Utf8(relationships[0].resolved), "/word/document.xml");
    ASSERT_TRUE(package.GetRelationships("/word/document.xml", &relationships, &error));
    ASSERT_EQ(relationships.size(), 3u);
    EXPECT_EQ(Utf8(relationships[0].resolved), "/word/styles.xml");
    EXPECT_FALSE(relationships[0].external);
    EXPECT_TRUE(relationships[1].external);
    EXPECT_EQ(Utf8(relationships[1].resolved), "https://example.org/a");
    EXPECT_EQ(Utf8(relationships[1].targetMode), "External");
    EXPECT_EQ(Utf8(relationships[2].resolved), "/media/i.png");
    // A source without a relationships part has none.
    ASSERT_TRUE(package.GetRelationships("/word/styles.xml", &relationships, &error));
    EXPECT_TRUE(relationships.empty());
}

TEST(Package, RelationshipsThatDoNotParse)
{
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types()}, {"_rels/.rels", "not xml"}}, &error));
    std::vector<opc::Relationship> relationships;
    EXPECT_FALSE(package.GetRelationships("/", &relationships, &error));
    EXPECT_EQ(Utf8(error.part), "/_rels/.rels");
}

TEST(Package, StrictRelationshipTypesReadAsTransitional)
{
    const Entries entries = {
        {"[Content_Types].xml", Types({{"/word/document.xml", kDocumentType}})},
        {"_rels/.rels", Rels({{"rId1", "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument",
                               "word/document.xml"},
                              {"rId2", "http://purl.oclc.org/ooxml/officeDocument/relationships/extendedProperties",
                               "docProps/app.xml"}})},
        {"word/document.xml", "<w:document xmlns:w='http://purl.oclc.org/ooxml/wordprocessingml/main'/>"}};
    opc::Package package;
    opc::Error error;
    ASSERT_TRUE(Open(package, entries, &error));
    EXPECT_TRUE(package.IsStrict());
    std::vector<opc::Relationship> relationships;
    ASSERT_TRUE(package.GetRelationships("/", &relationships, &error));
    EXPECT_EQ(Utf8(relationships[0].type), kOfficeDocument);
    EXPECT_EQ(Utf8(relationships[1].type),
              "http://schemas.openxmlformats.org/officeDocument/2006/relationships/extended-properties");
    // Switched off, the types stay as written; the package is Strict all the same.
    opc::Package asWritten(opc::Limits(), opc::ReadOptions{true, false});
    ASSERT_TRUE(Open(asWritten, entries, &error));
    EXPECT_TRUE(asWritten.IsStrict());
    ASSERT_TRUE(asWritten.GetRelationships("/", &relationships, &error));
    EXPECT_EQ(Utf8(relationships[0].type), "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument");
}
