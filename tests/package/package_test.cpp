// The package reader: ZIP faults, limits, content types, relationships.
#include <cstdint>

#include <wx/filename.h>

#include "package_support.h"

using namespace package_test;

namespace
{
// Overwrites a 32-bit field of one entry in its local header (at `local`) and its central directory record.
void PatchEntry(std::string& zip, const std::string& name, std::size_t local, std::size_t central, std::uint32_t value)
{
    const std::size_t at[2] = {zip.find(name) - 30, zip.rfind(name) - 46};
    ASSERT_EQ(zip.substr(at[0], 4) + zip.substr(at[1], 4), std::string("PK\3\4PK\1\2"));
    for (int i = 0; i < 4; ++i)
        zip[at[0] + local + i] = zip[at[1] + central + i] = char((value >> (8 * i)) & 0xFF);
}

// "ok", or the error as one line.
std::string Result(bool ok, const opc::Error& error) { return ok ? "ok" : Utf8(error.ToString()); }
} // namespace

TEST(Package, FilesThatAreNoPackage)
{
    opc::Package package;
    opc::Error e;
    EXPECT_EQ(Result(package.Open("/no/such/file.xlsx", &e), e), "/no/such/file.xlsx: no such file");
    EXPECT_FALSE(package.Open(wxFileName::GetTempDir(), &e));
    EXPECT_EQ(Utf8(e.message), "is a folder, not a file");
    EXPECT_EQ(Result(package.OpenMemory("hello", 5, "x.docx", &e), e), "x.docx: not a ZIP archive");
    const std::string bytes = Zip({{"[Content_Types].xml", Types()}});
    EXPECT_FALSE(package.OpenMemory(bytes.data(), 12, "cut.docx", &e)); // a signature, then nothing
    EXPECT_EQ(Utf8(e.package), "cut.docx");
    EXPECT_EQ(Result(Open(package, {{"word/document.xml", "<w:document/>"}}, &e), e),
              "test.docx: no [Content_Types].xml part: not an Office Open XML package");
    EXPECT_FALSE(Open(package, {{"[Content_Types].xml", "<Types><Default></Types>"}}, &e));
    EXPECT_EQ(Utf8(e.part + ": " + e.message).rfind("/[Content_Types].xml: XML does not parse", 0), 0u);
}

TEST(Package, BrokenEntriesAndPartsThatAreNotXml)
{
    const std::string filler = "<a>" + std::string(500, 'x') + "</a>";
    std::string zip = Zip({{"[Content_Types].xml", Types()}, {"crc.xml", filler}, {"data.xml", filler},
                           {"a/b.xml", "<one/>"}, {"A/B.xml", "<two/>"}, {"bad.xml", "<a><b></a>"}, {"empty.xml", ""}});
    PatchEntry(zip, "crc.xml", 14, 16, 0x12345678);
    const std::size_t header = zip.find("data.xml") - 30; // the deflated data follows the name and the extra field
    const std::size_t data = header + 38 + (unsigned char)zip[header + 28] + 256 * (unsigned char)zip[header + 29];
    zip[data + 2] ^= 0x5A;
    zip[data + 3] ^= 0x5A;
    opc::Package package;
    opc::Error e;
    ASSERT_TRUE(OpenBytes(package, zip, &e)) << Utf8(e.ToString());
    std::string bytes;
    wxXmlDocument document;
    EXPECT_EQ(Result(package.ReadPart("/crc.xml", &bytes, &e), e),
              "test.docx: /crc.xml: broken ZIP entry (bad compressed data or CRC)");
    EXPECT_EQ(Result(package.ReadPart("/data.xml", &bytes, &e), e).rfind("test.docx: /data.xml: broken ZIP", 0), 0u);
    EXPECT_EQ(Result(package.ReadPart("/A/B.xml", &bytes, &e), e), // names compare without case: neither entry is read
              "test.docx: /a/b.xml: two ZIP entries of this part name");
    EXPECT_NE(Result(package.ReadPart("/missing.xml", &bytes, &e), e).find("/missing.xml"), std::string::npos);
    EXPECT_EQ(Result(package.LoadXml("/empty.xml", &document, &e), e), "test.docx: /empty.xml: empty part, not XML");
    EXPECT_FALSE(package.LoadXml("/bad.xml", &document, &e));
    EXPECT_EQ(Utf8(e.part + ": " + e.message).rfind("/bad.xml: XML does not parse", 0), 0u) << Utf8(e.message);
}

TEST(Package, LimitsOfPartPackageEntriesAndDepth)
{
    const std::string big = "<a>" + std::string(2000, 'x') + "</a>", part = "<a>" + std::string(300, 'x') + "</a>";
    std::string zip = Zip({{"[Content_Types].xml", Types()}, {"big.xml", big}, {"liar.xml", big}, {"small.xml", "<a/>"},
                           {"ok.xml", "<a><b><c/></b></a>"}, {"deep.xml", "<a><b><c><d/></c></b></a>"}});
    PatchEntry(zip, "liar.xml", 22, 24, 10); // the directory claims 10 bytes
    opc::Limits limits;
    limits.maxPartSize = 1000;
    limits.maxDepth = 3;
    opc::Package package(limits);
    opc::Error e;
    std::string bytes;
    wxXmlDocument document;
    ASSERT_TRUE(OpenBytes(package, zip, &e)) << Utf8(e.ToString());
    EXPECT_EQ(Result(package.ReadPart("/big.xml", &bytes, &e), e),
              "test.docx: /big.xml: larger than the limit of 1000 bytes");
    EXPECT_EQ(package.FindPart("/liar.xml")->size, 10u);
    EXPECT_EQ(Result(package.ReadPart("/liar.xml", &bytes, &e), e), // counted while inflating
              "test.docx: /liar.xml: larger than the limit of 1000 bytes");
    EXPECT_TRUE(package.ReadPart("/small.xml", &bytes, &e) && bytes == "<a/>");
    EXPECT_TRUE(package.LoadXml("/ok.xml", &document, &e));
    EXPECT_EQ(Result(package.LoadXml("/deep.xml", &document, &e), e),
              "test.docx: /deep.xml: XML nested deeper than 3 elements");

    limits = opc::Limits();
    limits.maxPackageSize = 800; // the content types stream (238 bytes) counts too
    opc::Package total(limits);
    ASSERT_TRUE(Open(total, {{"[Content_Types].xml", Types()}, {"a.xml", part}, {"b.xml", part}}, &e));
    EXPECT_EQ(Result(total.ReadPart("/a.xml", &bytes, &e), e), "ok");
    EXPECT_EQ(Result(total.ReadPart("/b.xml", &bytes, &e), e),
              "test.docx: /b.xml: the package's parts exceed the limit of 800 bytes");
    limits = opc::Limits();
    limits.maxParts = 2;
    opc::Package entries(limits);
    EXPECT_EQ(Result(Open(entries, {{"[Content_Types].xml", Types()}, {"a.xml", "<a/>"}, {"b.xml", "<b/>"}}, &e), e),
              "test.docx: more than 2 ZIP entries");
    // The depth is counted on the bytes, before parsing: elements only, and no further than the limit.
    const std::string text = "<?xml version='1.0'?><!-- <x><y> --><a><![CDATA[<q><r>]]><b x='>'/><c><d>t</d></c></a>";
    EXPECT_EQ(opc::XmlNestingDepth(text.data(), text.size(), 100), 3u);
    EXPECT_EQ(opc::XmlNestingDepth("<a>", 3, 10), 1u);
    std::string nested;
    for (int i = 0; i < 1000; ++i)
        nested += "<e>";
    EXPECT_EQ(opc::XmlNestingDepth(nested.data(), nested.size(), 256), 257u);
}

TEST(Package, PartsAndContentTypes)
{
    opc::Package package;
    opc::Error e;
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types({{"/XL/Worksheets/Sheet1.xml", kWorksheetType}})},
                               {"xl/worksheets/sheet1.xml", "<worksheet/>"}, {"xl/other.XML", "<x/>"},
                               {"media/image.png", "PNG"}}, &e)) << Utf8(e.ToString());
    const std::vector<opc::Part>& parts = package.GetParts();
    ASSERT_EQ(parts.size(), 4u); // in directory order
    EXPECT_EQ(Utf8(parts[1].name), "/xl/worksheets/sheet1.xml");
    EXPECT_EQ(parts[1].size, 12u);
    EXPECT_EQ(Utf8(parts[1].contentType), kWorksheetType);   // the Override wins over the Default "xml"
    EXPECT_EQ(Utf8(parts[2].contentType), "application/xml"); // a Default by extension, without case
    EXPECT_EQ(Utf8(parts[3].contentType), "");
    EXPECT_EQ(package.FindPart("/XL/Worksheets/SHEET1.xml"), &parts[1]);
    EXPECT_EQ(package.FindPart("/nope.xml"), nullptr);
    EXPECT_FALSE(package.IsStrict());
}

TEST(Package, RelationshipsTargetsAndStrictTypes)
{
    const char* const targets[][3] = {
        {"/xl/workbook.xml", "worksheets/sheet1.xml", "/xl/worksheets/sheet1.xml"},
        {"/xl/worksheets/sheet1.xml", "../drawings/d1.xml", "/xl/drawings/d1.xml"},
        {"/xl/workbook.xml", "/xl/styles.xml", "/xl/styles.xml"}, {"/", "word/document.xml", "/word/document.xml"},
        {"/a/b.xml", "./c/../d.xml", "/a/d.xml"}, {"/a/b.xml", "../../../x.xml", "/x.xml"},
        {"/a/b.xml", "c.xml#f", "/a/c.xml"}};
    for (const auto& row : targets)
        EXPECT_EQ(Utf8(opc::Package::ResolveTarget(row[0], row[1])), row[2]) << row[0] << " + " << row[1];
    EXPECT_EQ(Utf8(opc::Package::RelationshipsPartName("/xl/workbook.xml")), "/xl/_rels/workbook.xml.rels");
    EXPECT_EQ(Utf8(opc::Package::RelationshipsPartName("/")), "/_rels/.rels");
    const std::pair<const char*, bool> names[] = {
        {"/_rels/.rels", true}, {"/x/_RELS/a.rels", true}, {"/xl/workbook.xml", false}, {"/x/a_rels/b.rels", false}};
    for (const auto& name : names)
        EXPECT_EQ(opc::Package::IsRelationshipsPart(name.first), name.second) << name.first;

    // Strict relationship types read as transitional ones (unless switched off); the package is Strict.
    const std::string strict = "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument";
    const Entries entries = {
        {"[Content_Types].xml", Types()}, {"_rels/.rels", Rels({{"rId1", strict, "word/document.xml"}})},
        {"word/document.xml", "<w:document/>"}, {"x/_rels/bad.xml.rels", "not xml"},
        {"word/_rels/document.xml.rels", Rels({{"rId1", "http://x/styles", "styles.xml"},
                                               {"rId2", "http://x/link", "https://e.org/a", "External"},
                                               {"rId3", "http://x/image", "../media/i.png", "Internal"}})}};
    opc::Package package, asWritten(opc::Limits(), opc::ReadOptions{true, false});
    opc::Error e;
    std::vector<opc::Relationship> rels;
    ASSERT_TRUE(Open(asWritten, entries, &e) && asWritten.GetRelationships("/", &rels, &e));
    EXPECT_TRUE(asWritten.IsStrict() && Utf8(rels[0].type) == strict);
    ASSERT_TRUE(Open(package, entries, &e) && package.GetRelationships("/", &rels, &e));
    ASSERT_EQ(rels.size(), 1u);
    EXPECT_TRUE(package.IsStrict() && Utf8(rels[0].type) == kOfficeDocument);
    EXPECT_EQ(Utf8(rels[0].resolved), "/word/document.xml");
    ASSERT_TRUE(package.GetRelationships("/word/document.xml", &rels, &e));
    ASSERT_EQ(rels.size(), 3u);
    EXPECT_EQ(Utf8(rels[0].resolved), "/word/styles.xml");
    EXPECT_TRUE(!rels[0].external && rels[1].external && !rels[2].external);
    EXPECT_EQ(Utf8(rels[1].resolved), "https://e.org/a"); // external targets are not resolved
    EXPECT_EQ(Utf8(rels[2].resolved + " " + rels[2].targetMode), "/media/i.png Internal");
    ASSERT_TRUE(package.GetRelationships("/word/styles.xml", &rels, &e)); // no relationships part: none
    EXPECT_TRUE(rels.empty());
    EXPECT_FALSE(package.GetRelationships("/x/bad.xml", &rels, &e));
    EXPECT_EQ(Utf8(e.part), "/x/_rels/bad.xml.rels");
}
