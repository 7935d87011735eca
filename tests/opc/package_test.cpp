// The package reader: ZIP faults, limits, content types, relationships. (No such file, a file that is no ZIP archive,
// no content types or content types that do not parse: see the ooxml-dump tests.)
#include <cstdint>
#include <functional>
#include <wx/filename.h>

#include "package_support.h"

using namespace package_test;

namespace
{
// Overwrites a field of one entry in its local header (at `local`, unless npos) and its central directory record.
void PatchEntry(std::string& zip, const std::string& name, std::size_t local, std::size_t central, std::uint32_t value,
                int width = 4)
{
    const std::size_t at[2] = {zip.find(name) - 30, zip.rfind(name) - 46};
    ASSERT_EQ(zip.substr(at[0], 4) + zip.substr(at[1], 4), std::string("PK\3\4PK\1\2"));
    if (local != std::string::npos)
        Poke(zip, at[0] + local, value, width);
    Poke(zip, at[1] + central, value, width);
}
} // namespace

TEST(Package, BrokenFilesAndEntriesLimitsPartsContentTypesRelationshipsAndStrictTypes)
{
    opc::Package package;
    opc::Error e;
    std::string bytes;
    wxXmlDocument document;
    auto readPart = [&](const opc::Package& p, const char* name) {
        return Result(p.ReadPartBytes(name, &bytes, &e), e);
    };
    auto loadXml = [&](const opc::Package& p, const char* name) { return Result(p.LoadXml(name, &document, &e), e); };
    // The fast path inflates as it parses: the checks of a whole read apply to it alike.
    auto parsePart = [&](const opc::Package& p, const char* name) {
        ooxml::dom::Document tree;
        return Result(p.ParsePart(name, &tree, &e), e);
    };
    typedef std::function<std::string(const opc::Package&, const char*)> Reader;
    const Reader bothPaths[] = {readPart, parsePart};
    EXPECT_TRUE(!package.Open(wxFileName::GetTempDir(), &e) && e.message == "is a folder, not a file");
    EXPECT_EQ(Result(package.OpenMemory("hello", 5, "x.docx", &e), e), "x.docx: not a ZIP archive");
    const std::string filler = "<a>" + std::string(500, 'x') + "</a>";
    std::string zip = Zip({{"[Content_Types].xml", Types()}, {"crc.xml", filler}, {"data.xml", filler},
                           {"a/b.xml", "<one/>"}, {"A/B.xml", "<two/>"}, {"bad.xml", "<a><b></a>"}, {"empty.xml", ""}});
    EXPECT_TRUE(!package.OpenMemory(zip.data(), 12, "cut.docx", &e) && e.package == "cut.docx"); // a signature only
    PatchEntry(zip, "crc.xml", 14, 16, 0x12345678);
    const std::size_t header = zip.find("data.xml") - 30; // the deflated data follows the name and the extra field
    const std::size_t data = header + 38 + (unsigned char)zip[header + 28] + 256 * (unsigned char)zip[header + 29];
    zip[data + 2] ^= 0x5A;
    zip[data + 3] ^= 0x5A;
    ASSERT_TRUE(OpenBytes(package, zip, &e)) << Result(false, e);
    for (const Reader& read : bothPaths)
    {
        EXPECT_EQ(read(package, "/crc.xml"), "test.docx: /crc.xml: broken ZIP entry (bad compressed data or CRC)");
        EXPECT_EQ(read(package, "/data.xml").rfind("test.docx: /data.xml: broken ZIP", 0), 0u);
        EXPECT_EQ(read(package, "/A/B.xml"), "test.docx: /a/b.xml: two ZIP entries of this part name"); // no case
    }
    EXPECT_EQ(loadXml(package, "/empty.xml") + " | " + parsePart(package, "/empty.xml"),
              "test.docx: /empty.xml: empty part, not XML | test.docx: /empty.xml: empty part, not XML");
    EXPECT_EQ(loadXml(package, "/bad.xml").rfind("test.docx: /bad.xml: XML does not parse", 0), 0u);

    // Limits of a part, of the package, of its entries and of the nesting.
    const std::string big = "<a>" + std::string(2000, 'x') + "</a>", part = "<a>" + std::string(300, 'x') + "</a>";
    zip = Zip({{"[Content_Types].xml", Types()}, {"big.xml", big}, {"liar.xml", big}, {"small.xml", "<a/>"},
               {"ok.xml", "<a><b><c/></b></a>"}, {"deep.xml", "<a><b><c><d/></c></b></a>"}});
    PatchEntry(zip, "liar.xml", 22, 24, 10); // the directory claims 10 bytes; they are counted while inflating
    opc::Package limited(opc::Limits{1000, 2048ull << 20, 65536, 3}); // parts of 1000 bytes, depth 3
    ASSERT_TRUE(OpenBytes(limited, zip, &e)) << Result(false, e);
    EXPECT_EQ(limited.FindPart("/liar.xml")->size, 10u);
    for (const char* name : {"/big.xml", "/liar.xml"})
        for (const Reader& read : bothPaths)
            EXPECT_EQ(read(limited, name), "test.docx: " + std::string(name) + ": larger than the limit of 1000 bytes");
    EXPECT_EQ(readPart(limited, "/small.xml") + " " + loadXml(limited, "/ok.xml"), "ok ok");
    EXPECT_EQ(loadXml(limited, "/deep.xml"), "test.docx: /deep.xml: XML nested deeper than 3 elements");
    opc::Package total(opc::Limits{512ull << 20, 800}); // the content types stream (238 bytes) counts too
    ASSERT_TRUE(Open(total, {{"[Content_Types].xml", Types()}, {"a.xml", part}, {"b.xml", part}}, &e));
    EXPECT_EQ(readPart(total, "/a.xml"), "ok");
    EXPECT_EQ(parsePart(total, "/b.xml"), "test.docx: /b.xml: the package's parts exceed the limit of 800 bytes");
    EXPECT_EQ(readPart(total, "/b.xml"), "test.docx: /b.xml: the package's parts exceed the limit of 800 bytes");
    opc::Package few(opc::Limits{512ull << 20, 2048ull << 20, 2});
    EXPECT_EQ(Result(Open(few, {{"[Content_Types].xml", Types()}, {"a.xml", "<a/>"}, {"b.xml", "<b/>"}}, &e), e),
              "test.docx: more than 2 ZIP entries");

    // Parts in directory order, content types, relationships.
    ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types({{"/XL/Worksheets/Sheet1.xml", kWorksheetType}})},
                               {"xl/worksheets/sheet1.xml", "<worksheet/>"}, {"xl/other.XML", "<x/>"},
                               {"media/image.png", "PNG"}}, &e)) << Result(false, e);
    const std::vector<opc::Part>& parts = package.GetParts();
    ASSERT_TRUE(parts.size() == 4 && !package.IsStrict());
    EXPECT_EQ(Utf8(parts[1].name) + " " + std::to_string(parts[1].size), "/xl/worksheets/sheet1.xml 12");
    // The Override wins over the Default "xml"; a Default by extension, without case; none.
    EXPECT_EQ(Utf8(parts[1].contentType + " " + parts[2].contentType + " " + parts[3].contentType),
              std::string(kWorksheetType) + " application/xml ");
    const char* const targets[][3] = {
        {"/xl/workbook.xml", "worksheets/sheet1.xml", "/xl/worksheets/sheet1.xml"},
        {"/xl/workbook.xml", "/xl/styles.xml", "/xl/styles.xml"}, {"/", "word/document.xml", "/word/document.xml"},
        {"/a/b.xml", "./c/../d.xml", "/a/d.xml"}, {"/a/b.xml", "../../../x.xml", "/x.xml"},
        {"/a/b.xml", "c.xml#f", "/a/c.xml"}};
    for (const auto& row : targets)
        EXPECT_EQ(Utf8(opc::Package::ResolveTarget(row[0], row[1])), row[2]) << row[0] << " + " << row[1];
    for (const auto& name : {std::make_pair("/_rels/.rels", true), std::make_pair("/x/_RELS/a.rels", true),
                             std::make_pair("/xl/workbook.xml", false), std::make_pair("/x/a_rels/b.rels", false)})
        EXPECT_EQ(opc::Package::IsRelationshipsPart(name.first), name.second) << name.first;

    // Strict relationship types read as transitional ones (unless switched off); the package is Strict.
    const std::string strict = "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument";
    const Entries entries = {
        {"[Content_Types].xml", Types()}, {"_rels/.rels", Rels({{"rId1", strict, "word/document.xml"}})},
        {"word/document.xml", "<w:document/>"}, {"x/_rels/bad.xml.rels", "not xml"},
        {"word/_rels/document.xml.rels", Rels({{"rId1", "http://x/styles", "styles.xml"},
                                               {"rId2", "http://x/link", "https://e.org/a", "External"},
                                               {"rId3", "http://x/image", "../media/i.png", "Internal"}})}};
    opc::Package asWritten(opc::Limits(), opc::ReadOptions{true, false});
    std::vector<opc::Relationship> rels;
    ASSERT_TRUE(Open(asWritten, entries, &e) && asWritten.GetRelationships("/", &rels, &e));
    EXPECT_TRUE(asWritten.IsStrict() && Utf8(rels[0].type) == strict);
    ASSERT_TRUE(Open(package, entries, &e) && package.GetRelationships("/", &rels, &e) && rels.size() == 1);
    EXPECT_TRUE(package.IsStrict() && rels[0].resolved == "/word/document.xml");
    EXPECT_EQ(Utf8(rels[0].type), "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument");
    ASSERT_TRUE(package.GetRelationships("/word/document.xml", &rels, &e) && rels.size() == 3);
    EXPECT_TRUE(!rels[0].external && rels[1].external && !rels[2].external && rels[0].resolved == "/word/styles.xml");
    EXPECT_EQ(Utf8(rels[1].resolved + " " + rels[2].resolved + " " + rels[2].targetMode), // external: as written
              "https://e.org/a /media/i.png Internal");
    EXPECT_TRUE(package.GetRelationships("/word/styles.xml", &rels, &e) && rels.empty()); // no relationships part
    EXPECT_TRUE(!package.GetRelationships("/x/bad.xml", &rels, &e) && e.part == "/x/_rels/bad.xml.rels");
}

TEST(Package, ForgedZipDirectoriesFailAndNamesPrintAsText)
{
    opc::Package package;
    opc::Error e;
    std::string bytes;
    const std::string filler = "<a>" + std::string(500, 'x') + "</a>";
    const std::string zip = Zip({{"[Content_Types].xml", Types()}, {"one.xml", filler}, {"two.xml", filler}});
    const std::size_t one = zip.find("one.xml") - 30, two = zip.find("two.xml") - 30, npos = std::string::npos;
    // Central records: aliased or overlapping local headers and data, encryption, local names that differ.
    std::string aliased = zip, overlapping = zip, encrypted = zip, renamed = zip;
    PatchEntry(aliased, "two.xml", npos, 42, std::uint32_t(one));
    PatchEntry(overlapping, "two.xml", npos, 42, std::uint32_t(two - 1)); // the last byte of one.xml's data
    PatchEntry(encrypted, "two.xml", 6, 8, 1, 2);
    renamed[two + 30] = 'X';
    const std::pair<std::string, std::string> faults[] = {
        {aliased, "test.docx: ZIP entries overlap: /one.xml and /two.xml"},
        {overlapping, "test.docx: ZIP entries overlap: /one.xml and /two.xml"},
        {RepeatRecord(zip, "one.xml", 60000), "test.docx: ZIP entries overlap: /one.xml and /one.xml"},
        {encrypted, "test.docx: /two.xml: encrypted ZIP entry, not supported"}};
    for (const auto& fault : faults)
        EXPECT_EQ(Result(OpenBytes(package, fault.first, &e), e), fault.second);
    ASSERT_TRUE(OpenBytes(package, renamed, &e)) << Result(false, e);
    EXPECT_EQ(Result(package.ReadPartBytes("/one.xml", &bytes, &e), e), "ok");
    EXPECT_EQ(Result(package.ReadPartBytes("/two.xml", &bytes, &e), e),
              "test.docx: /two.xml: ZIP local header names another entry (/Xwo.xml)");
    ooxml::dom::Document tree;
    EXPECT_EQ(Result(package.ParsePart("/two.xml", &tree, &e), e),
              "test.docx: /two.xml: ZIP local header names another entry (/Xwo.xml)");
    // The entry limit counts directory records, duplicates included.
    opc::Package four(opc::Limits{512ull << 20, 2048ull << 20, 4}); // 3 part names
    EXPECT_EQ(Result(OpenBytes(four, RepeatRecord(zip, "one.xml", 1), &e), e),
              "test.docx: ZIP entries overlap: /one.xml and /one.xml"); // 4 records: within the limit
    EXPECT_EQ(Result(OpenBytes(four, RepeatRecord(zip, "one.xml", 2), &e), e), "test.docx: more than 4 ZIP entries");
    // Control characters of names print as text, on one line.
    e = opc::Error{"a\x1B[2J.docx", "/x\ay.xml", "no part named /\r\n\x7F.xml"};
    EXPECT_EQ(Utf8(e.ToString()), "a\\x1B[2J.docx: /x\\x07y.xml: no part named /\\x0D\\x0A\\x7F.xml");
}
