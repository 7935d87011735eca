// ooxml-dump on the samples and on broken input: exit status, output and message.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <sys/wait.h>
#include <gtest/gtest.h>
#include <wx/filename.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

namespace
{
typedef std::vector<std::string> Arguments;
typedef std::vector<std::pair<std::string, std::string>> Entries;
struct Result { int status; std::string out, err; };

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A temporary file of the bytes given, or of a ZIP of (name, content) entries; removed at the end.
struct TempFile
{
    explicit TempFile(const std::string& bytes = "") { std::ofstream(path, std::ios::binary) << bytes; }
    explicit TempFile(const Entries& entries)
    {
        wxFFileOutputStream file(path);
        wxZipOutputStream zip(file);
        for (const auto& entry : entries)
            if (zip.PutNextEntry(entry.first))
                zip.Write(entry.second.data(), entry.second.size());
    }
    ~TempFile() { std::remove(path.c_str()); }
    const std::string path = wxFileName::CreateTempFileName("ooxml-dump").ToStdString();
};

// Runs ooxml-dump with the arguments (each passed as it is), capturing both outputs.
Result Dump(const Arguments& arguments)
{
    TempFile out, err;
    std::string command = OOXML_DUMP_PATH;
    for (const std::string& argument : arguments)
        command += " '" + argument + "'";
    const int raw = std::system((command + " >" + out.path + " 2>" + err.path).c_str());
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw), ReadFile(out.path), ReadFile(err.path)};
}
std::string Sample(const char* name) { return std::string(OOXML_SAMPLES_DIR) + "/" + name; }
bool Has(const std::string& text, const std::string& piece) { return text.find(piece) != std::string::npos; }

// A word-processing package: its main part, reached by the relationship type given.
Entries Document(const std::string& officeDocumentType, const std::string& document)
{
    return {{"[Content_Types].xml", "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'>"
             "<Default Extension='rels' ContentType='application/vnd.openxmlformats-package.relationships+xml'/>"
             "<Override PartName='/word/document.xml' ContentType='application/vnd.openxmlformats-officedocument."
             "wordprocessingml.document.main+xml'/></Types>"},
            {"_rels/.rels", "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
                            "<Relationship Id='rId1' Type='" + officeDocumentType + "' Target='word/document.xml'/>"
                            "</Relationships>"},
            {"word/document.xml", document}};
}
} // namespace

TEST(Dump, OverviewOfEverySampleTheBuiltInSampleAllTreeJsonAndPartNamesAsUsersTypeThem)
{
    // (sample, lines of its own besides those every package shows)
    const std::vector<std::pair<const char*, Arguments>> samples = {
        {"sample.docx", {"https://example.org/  [External]", "      wml::CT_Document: read\n"}},
        {"sample.xlsx", {"  /xl/workbook.xml             rId1     worksheet -> /xl/worksheets/sheet1.xml",
                         "      sml::CT_Worksheet: read\n"}},
        {"sample.pptx", {"      pml::CT_Slide: read\n"}}};
    for (auto sample : samples)
    {
        Result run = Dump({Sample(sample.first)});
        EXPECT_TRUE(run.status == 0 && run.err.empty() && !Has(run.out, "ISO Strict")) << sample.first << run.err;
        sample.second.insert(sample.second.end(), {"/[Content_Types].xml                     (content types stream)",
                                                   "relationships::CT_Relationships: read",
                                                   "  /                            rId1     officeDocument -> /"});
        for (const std::string& line : sample.second)
            EXPECT_TRUE(Has(run.out, line)) << sample.first << ": " << line << "\n" << run.out;
    }
    // Without FILE: the sample built into the program, which is sample.docx.
    Result bundled = Dump({}), docx = Dump({Sample("sample.docx")});
    EXPECT_TRUE(bundled.status == 0 && bundled.out.rfind("sample.docx\n", 0) == 0) << bundled.err << bundled.out;
    EXPECT_EQ(bundled.out.substr(bundled.out.find('\n')), docx.out.substr(docx.out.find('\n')));
    // --all: every XML part read, each with its time.
    Result parts = Dump({"--all", Sample("sample.docx")});
    EXPECT_TRUE(parts.status == 0 && Has(parts.out, " ms  8 XML parts\n") &&
                Has(parts.out, " ms  /word/document.xml                       wml::CT_Document                     "
                               "read\n")) << parts.err << parts.out;
    // The tree of one part, as text and as JSON.
    std::string file = Sample("sample.xlsx"), part = "/xl/worksheets/sheet1.xml";
    Result run = Dump({file, part}), all = Dump({"--all-members", file, part}), json = Dump({"--json", file, part});
    EXPECT_TRUE(run.status == 0 && all.status == 0 && json.status == 0) << run.err << all.err << json.err;
    EXPECT_EQ(run.out.rfind("sml::CT_Worksheet\n  dimension: sml::CT_SheetDimension\n    ref = \"A1:D5\"\n", 0), 0u)
        << run.out;
    EXPECT_TRUE(Has(run.out, "    sheetView[0]: sml::CT_SheetView\n"));
    // Only present members, unless asked for all.
    EXPECT_TRUE(!Has(run.out, "showGridLines") && Has(all.out, "showGridLines") && all.out.size() > run.out.size());
    EXPECT_EQ(json.out.rfind("{\"class\": \"sml::CT_Worksheet\", \"Dimension\": {\"class\": "
                             "\"sml::CT_SheetDimension\", \"Ref\": \"A1:D5\"}", 0), 0u) << json.out.substr(0, 200);
    // Strings closed, braces and brackets balanced outside them: well-formed enough to parse.
    const std::string bare = std::regex_replace(json.out, std::regex(R"("(\\.|[^"\\])*")"), "s");
    int depth = 0;
    for (std::size_t i = 0; i < bare.size() && depth >= 0; ++i)
        depth += (bare[i] == '{' || bare[i] == '[') - (bare[i] == '}' || bare[i] == ']');
    EXPECT_TRUE(depth == 0 && bare.find('"') == std::string::npos && bare.back() == '\n') << bare;
    // A part named as a ZIP listing shows it, in another case or with Windows separators, prints exactly what its
    // name in the package prints. A part the package does not have: one line naming the file and the part as the
    // package would spell it, whatever its extension; nothing on stdout.
    file = Sample("sample.docx");
    for (Arguments arguments : {Arguments{file, "/word/document.xml"}, Arguments{"--json", file, "/word/document.xml"}})
    {
        const Result reference = Dump(arguments);
        ASSERT_TRUE(reference.status == 0 && Has(reference.out, "CT_Document")) << reference.err << reference.out;
        for (const char* typed : {"word/document.xml", "/WORD/Document.XML", "word\\document.xml"})
        {
            arguments.back() = typed;
            Result run = Dump(arguments);
            EXPECT_TRUE(run.status == 0 && run.out == reference.out && run.err.empty()) << typed << ": " << run.err;
        }
    }
    const std::vector<std::pair<Arguments, std::string>> missing = { // (arguments, the part named)
        {{file, "/nope.xml"}, "/nope.xml"}, {{file, "nope.xml"}, "/nope.xml"}, {{file, "word"}, "/word"},
        {{"--json", file, "nope.xml"}, "/nope.xml"}, {{file, "word/x.bin"}, "/word/x.bin"}, {{file, ""}, "/"}};
    for (const auto& m : missing)
    {
        Result run = Dump(m.first);
        EXPECT_TRUE(run.status == 1 && run.out.empty()) << m.second << ": " << run.out;
        EXPECT_EQ(run.err, "ooxml-dump: " + file + ": no part named " + m.second + "\n");
    }
}

// Markup compatibility and Strict with their switches; usage errors: status 2; whatever is wrong with the file:
// status 1 and one line on stderr naming it (the whole line where the message is known); a limit fails the part.
TEST(Dump, MarkupCompatibilityStrictUsageErrorsBrokenPackagesAndLimits)
{
    TempFile mce(Document("http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument",
                          "<w:document xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main' "
                          "xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006'><w:body>"
                          "<mc:AlternateContent><mc:Choice Requires='w'><w:p><w:r><w:t>chosen</w:t></w:r></w:p>"
                          "</mc:Choice><mc:Fallback><w:p><w:r><w:t>fallback</w:t></w:r></w:p></mc:Fallback>"
                          "</mc:AlternateContent></w:body></w:document>"));
    TempFile strict(Document("http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument",
                             "<w:document xmlns:w='http://purl.oclc.org/ooxml/wordprocessingml/main'><w:body>"
                             "<w:p><w:r><w:t>strict text</w:t></w:r></w:p></w:body></w:document>"));
    Result with = Dump({mce.path, "/word/document.xml"}), overview = Dump({strict.path});
    Result read = Dump({strict.path, "/word/document.xml"});
    EXPECT_TRUE(with.status == 0 && Has(with.out, "\"chosen\"") && !Has(with.out, "fallback")) << with.err << with.out;
    EXPECT_FALSE(Has(Dump({"--no-mce", mce.path, "/word/document.xml"}).out, "chosen"));
    EXPECT_TRUE(overview.status == 0 && Has(overview.out, "(ISO Strict, read as transitional)") &&
                Has(overview.out, "rId1     officeDocument -> /word/document.xml")) << overview.err << overview.out;
    EXPECT_TRUE(read.status == 0 && Has(read.out, "\"strict text\"")) << read.err << read.out;
    EXPECT_FALSE(Has(Dump({"--no-strict", strict.path, "/word/document.xml"}).out, "strict text"));
    for (const Arguments& arguments : std::vector<Arguments>{
             {"--bogus"}, {"--max-depth"}, {"--max-depth", "x", "a.docx"}, {"a", "b", "c"}, {"--all", "a.docx", "b"}})
    {
        Result run = Dump(arguments);
        EXPECT_TRUE(run.status == 2 && Has(run.err, "usage: ooxml-dump")) << arguments[0] << ": " << run.err;
    }
    Result help = Dump({"--help"});
    EXPECT_TRUE(help.status == 0 && Has(help.out, "--no-mce") && Has(help.out, "--no-strict")) << help.out;
    Result deep = Dump({"--max-depth", "3", Sample("sample.docx"), "/word/document.xml"});
    EXPECT_TRUE(deep.status == 1 && Has(deep.err, "/word/document.xml: ") && Has(deep.err, "nest")) << deep.err;
    Result many = Dump({"--wx", "--max-elements", "20", Sample("sample.docx"), "/word/document.xml"});
    EXPECT_TRUE(many.status == 1 && Has(many.err, "/word/document.xml: XML has more than 20 elements")) << many.err;
    // The wxWidgets parser gives the same trees.
    for (const char* part : {"/word/document.xml", "/word/styles.xml"})
        EXPECT_EQ(Dump({"--wx", "--json", Sample("sample.docx"), part}).out, Dump({"--json", Sample("sample.docx"), part}).out);
    const std::string docx = ReadFile(Sample("sample.docx"));
    TempFile truncated(docx.substr(0, docx.size() / 2)), empty;
    TempFile noTypes(Entries{{"word/document.xml", "<w:document/>"}});
    TempFile badTypes(Entries{{"[Content_Types].xml", "<Types><Default></Types>"}});
    TempFile badRels(Entries{{"[Content_Types].xml", Document("x", "")[0].second}, {"_rels/.rels", "not xml"}});
    const std::pair<std::string, std::string> cases[] = {
        {"/no/such/file.docx", "no such file\n"}, {Sample("make_samples.py"), "not a ZIP archive\n"},
        {empty.path, "not a ZIP archive\n"}, {truncated.path, ""},
        {noTypes.path, "no [Content_Types].xml part: not an Office Open XML package\n"},
        {badTypes.path, "/[Content_Types].xml: XML does not parse"},
        {badRels.path, "/_rels/.rels: XML does not parse"}};
    for (const auto& c : cases)
    {
        Result run = Dump({c.first});
        EXPECT_TRUE(run.status == 1 && run.err.rfind("ooxml-dump: " + c.first + ": " + c.second, 0) == 0 &&
                    std::count(run.err.begin(), run.err.end(), '\n') == 1) << c.first << ": " << run.err;
    }
}

// XML parts with no root class (an SVG image, a custom XML item of an unknown root element) are listed as skipped and
// leave the status 0; a part with a class that does not read still fails. Names from the package are printed with
// their control characters escaped: no raw ESC, BEL or CR, and no forged line, on stdout or stderr.
TEST(Dump, PartsWithoutAClassAreSkippedAndControlCharactersOfNamesAreEscaped)
{
    const std::string wml = "<w:document xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main'>";
    Entries entries = Document("http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument",
                               wml + "<w:body/></w:document>");
    entries[0].second.insert(entries[0].second.find("<Override"), "<Default Extension='svg' ContentType="
                             "'image/svg+xml'/><Default Extension='xml' ContentType='application/xml'/>");
    entries.push_back({"word/media/image1.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>"});
    entries.push_back({"customXml/item1.xml", "<r:data xmlns:r='urn:example:data'/>"});
    const std::string svg = "skipped (no class for content type image/svg+xml)";
    const std::string item = "skipped (no class for root element data of urn:example:data)";
    TempFile skipping(entries);
    entries[2].second = wml + "<w:body>"; // has a class, does not parse
    TempFile broken(entries);
    for (const char* mode : {"", "--all"})
    {
        Result good = Dump(*mode ? Arguments{mode, skipping.path} : Arguments{skipping.path});
        EXPECT_TRUE(good.status == 0 && good.err.empty() && Has(good.out, svg) && Has(good.out, item)) << good.out;
        Result bad = Dump(*mode ? Arguments{mode, broken.path} : Arguments{broken.path});
        EXPECT_TRUE(bad.status == 1 && Has(bad.out, svg) && Has(bad.out, item)) << bad.out;
        EXPECT_EQ(bad.err.rfind("ooxml-dump: " + broken.path + ": /word/document.xml: XML does not parse", 0), 0u)
            << bad.err;
        EXPECT_EQ(std::count(bad.err.begin(), bad.err.end(), '\n'), 1) << bad.err;
    }
    EXPECT_TRUE(Has(Dump({"--all", skipping.path}).out, " ms  3 XML parts, 2 skipped (no class)\n"));
    EXPECT_EQ(Dump({skipping.path, "customXml/item1.xml"}).status, 1); // asked for: fails as before
    // A relationships part (it has a class) whose name hides an escape sequence, a bell and a forged line.
    TempFile hostile(Entries{entries[0], entries[1], {"x\x1b[2J\x07\r\nforged.rels", "not xml"}});
    Result run = Dump({hostile.path}), all = Dump({"--all", hostile.path});
    const std::string escaped = "/x\\x1B[2J\\x07\\x0D\\x0Aforged.rels";
    for (const Result& r : {run, all})
    {
        EXPECT_TRUE(r.status == 1 && Has(r.out, escaped) && Has(r.err, escaped + ": XML does not parse")) << r.out;
        for (const std::string& text : {r.out, r.err})
            EXPECT_TRUE(std::none_of(text.begin(), text.end(), [](char c) { return (c >= 0 && c < 0x20 && c != '\n')
                                                                                  || c == 0x7F; }) &&
                        !Has(text, "\nforged")) << text;
    }
}
