// ooxml-dump on the samples and on broken input: exit status and message.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/filename.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

namespace
{

struct Result { int status; std::string out, err; };

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Runs ooxml-dump with the arguments (each passed as it is), capturing both outputs.
Result Dump(const std::vector<std::string>& arguments)
{
    const std::string base = wxFileName::CreateTempFileName("ooxml-dump-test").ToStdString();
    std::string command = OOXML_DUMP_PATH;
    for (const std::string& argument : arguments)
        command += " '" + argument + "'";
    command += " >" + base + ".out 2>" + base + ".err";
    const int raw = std::system(command.c_str());
    Result run{WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw), ReadFile(base + ".out"), ReadFile(base + ".err")};
    for (const char* suffix : {".out", ".err", ""})
        std::remove((base + suffix).c_str());
    return run;
}

std::string Sample(const char* name)
{
    return std::string(OOXML_SAMPLES_DIR) + "/" + name;
}

bool Has(const std::string& text, const std::string& piece)
{
    return text.find(piece) != std::string::npos;
}

typedef std::vector<std::pair<std::string, std::string>> Entries;

// A temporary file of the bytes given, or of a ZIP of (name, content)
// entries; removed at the end.
struct TempFile
{
    explicit TempFile(const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }
    explicit TempFile(const Entries& entries) : TempFile(std::string())
    {
        wxFFileOutputStream file(path);
        wxZipOutputStream zip(file);
        for (const auto& entry : entries)
        {
            zip.PutNextEntry(entry.first);
            zip.Write(entry.second.data(), entry.second.size());
        }
    }
    ~TempFile() { std::remove(path.c_str()); }
    const std::string path = wxFileName::CreateTempFileName("ooxml-dump").ToStdString();
};

// A word-processing package: its main part, reached by the relationship type given.
Entries Document(const char* officeDocumentType, const std::string& document)
{
    return Entries{
        {"[Content_Types].xml",
         "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'>"
         "<Default Extension='rels' ContentType='application/vnd.openxmlformats-package.relationships+xml'/>"
         "<Override PartName='/word/document.xml' "
         "ContentType='application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml'/></Types>"},
        {"_rels/.rels",
         std::string("<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
                     "<Relationship Id='rId1' Type='") +
             officeDocumentType + "' Target='word/document.xml'/></Relationships>"},
        {"word/document.xml", document}};
}

} // namespace

TEST(Dump, OverviewAndAllOfTheSamples)
{
    // (sample, lines of its own besides those every package shows)
    const std::vector<std::pair<const char*, std::vector<std::string>>> samples = {
        {"sample.docx", {"https://example.org/  [External]", "      wml::CT_Document: read\n"}},
        {"sample.xlsx",
         {"  /xl/workbook.xml             rId1     worksheet -> /xl/worksheets/sheet1.xml",
          "      sml::CT_Worksheet: read\n"}},
        {"sample.pptx", {"      pml::CT_Slide: read\n"}}};
    std::string docx;
    for (const auto& sample : samples)
    {
        Result run = Dump({Sample(sample.first)});
        EXPECT_EQ(run.status, 0) << sample.first << ": " << run.err;
        EXPECT_TRUE(run.err.empty()) << run.err;
        EXPECT_TRUE(Has(run.out, "/[Content_Types].xml                     (content types stream)")) << run.out;
        EXPECT_TRUE(Has(run.out, "relationships::CT_Relationships: read")) << sample.first;
        EXPECT_TRUE(Has(run.out, "  /                            rId1     officeDocument -> /")) << run.out;
        EXPECT_FALSE(Has(run.out, "ISO Strict"));
        for (const std::string& line : sample.second)
            EXPECT_TRUE(Has(run.out, line)) << sample.first << ": " << line << "\n" << run.out;
        docx = docx.empty() ? run.out : docx;
    }
    // Without FILE: the sample built into the program, which is sample.docx.
    Result bundled = Dump({});
    EXPECT_EQ(bundled.status, 0) << bundled.err;
    EXPECT_EQ(bundled.out.rfind("sample.docx\n", 0), 0u) << bundled.out;
    EXPECT_EQ(bundled.out.substr(bundled.out.find('\n')), docx.substr(docx.find('\n')));
    // --all: every XML part read, each with its time.
    Result all = Dump({"--all", Sample("sample.docx")});
    EXPECT_EQ(all.status, 0) << all.err;
    EXPECT_TRUE(Has(all.out, " ms  /word/document.xml                       wml::CT_Document                     read\n"))
        << all.out;
    EXPECT_TRUE(Has(all.out, " ms  8 XML parts\n")) << all.out;
}

TEST(Dump, TreeOfOnePartAsTextAndJson)
{
    const std::string xlsx = Sample("sample.xlsx");
    Result run = Dump({xlsx, "/xl/worksheets/sheet1.xml"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.rfind("sml::CT_Worksheet\n  dimension: sml::CT_SheetDimension\n    ref = \"A1:D5\"\n", 0), 0u)
        << run.out;
    EXPECT_TRUE(Has(run.out, "    sheetView[0]: sml::CT_SheetView\n"));
    // Only present members, unless asked for all.
    EXPECT_FALSE(Has(run.out, "showGridLines"));
    Result all = Dump({"--all-members", xlsx, "/xl/worksheets/sheet1.xml"});
    EXPECT_EQ(all.status, 0) << all.err;
    EXPECT_TRUE(Has(all.out, "showGridLines"));
    EXPECT_GT(all.out.size(), run.out.size());

    Result json = Dump({"--json", xlsx, "/xl/worksheets/sheet1.xml"});
    EXPECT_EQ(json.status, 0) << json.err;
    const std::string start = "{\"class\": \"sml::CT_Worksheet\", \"Dimension\": "
                              "{\"class\": \"sml::CT_SheetDimension\", \"Ref\": \"A1:D5\"}";
    EXPECT_EQ(json.out.rfind(start, 0), 0u) << json.out.substr(0, 200);
    EXPECT_EQ(json.out.back(), '\n');
    // Balanced braces and brackets outside strings: well-formed enough to parse.
    int depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < json.out.size(); ++i)
    {
        const char c = json.out[i];
        if (inString)
            inString = c == '\\' ? (++i, true) : c != '"';
        else
        {
            inString = c == '"';
            depth += (c == '{' || c == '[') - (c == '}' || c == ']');
            ASSERT_GE(depth, 0);
        }
    }
    EXPECT_TRUE(depth == 0 && !inString);
}

// A part named as a ZIP listing shows it, in another case or with Windows
// separators, prints exactly what its name in the package prints.
TEST(Dump, PartNamesAsUsersTypeThemAndMissingParts)
{
    for (const bool json : {false, true})
    {
        std::vector<std::string> arguments = {Sample("sample.docx"), "/word/document.xml"};
        if (json)
            arguments.insert(arguments.begin(), "--json");
        const Result reference = Dump(arguments);
        ASSERT_EQ(reference.status, 0) << reference.err;
        ASSERT_TRUE(Has(reference.out, "CT_Document")) << reference.out;
        for (const char* typed : {"word/document.xml", "/WORD/Document.XML", "word\\document.xml"})
        {
            arguments.back() = typed;
            Result run = Dump(arguments);
            EXPECT_EQ(run.status, 0) << typed << ": " << run.err;
            EXPECT_EQ(run.out, reference.out) << typed;
            EXPECT_TRUE(run.err.empty()) << typed << ": " << run.err;
        }
    }
    // A part the package does not have: one line naming the file and the part
    // as the package would spell it, whatever its extension; nothing on stdout.
    const std::string file = Sample("sample.docx");
    // (arguments, the part named)
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{file, "/nope.xml"}, "/nope.xml"},     {{file, "nope.xml"}, "/nope.xml"},
        {{"--json", file, "nope.xml"}, "/nope.xml"}, {{file, "word/x.bin"}, "/word/x.bin"},
        {{file, "word"}, "/word"},               {{file, ""}, "/"}};
    for (const auto& c : cases)
    {
        Result run = Dump(c.first);
        EXPECT_EQ(run.status, 1) << c.second;
        EXPECT_TRUE(run.out.empty()) << c.second << ": " << run.out;
        EXPECT_EQ(run.err, "ooxml-dump: " + file + ": no part named " + c.second + "\n");
    }
}

TEST(Dump, UsageErrorsAndDepthLimit)
{
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"--bogus"}, {"--max-depth"}, {"--max-depth", "x", "a.docx"}, {"a", "b", "c"}, {"--all", "a.docx", "b"}})
    {
        Result run = Dump(arguments);
        EXPECT_EQ(run.status, 2) << arguments[0];
        EXPECT_TRUE(Has(run.err, "usage: ooxml-dump")) << arguments[0] << ": " << run.err;
    }
    Result help = Dump({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(Has(help.out, "--no-mce") && Has(help.out, "--no-strict")) << help.out;
    // A limit fails the part, not the program.
    Result deep = Dump({"--max-depth", "3", Sample("sample.docx"), "/word/document.xml"});
    EXPECT_EQ(deep.status, 1);
    EXPECT_TRUE(Has(deep.err, "/word/document.xml: ") && Has(deep.err, "nest")) << deep.err;
}

TEST(Dump, MarkupCompatibilityAndStrictWithTheirSwitches)
{
    TempFile mce(Document("http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument",
                          "<w:document xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main' "
                          "xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006'><w:body>"
                          "<mc:AlternateContent><mc:Choice Requires='w'><w:p><w:r><w:t>chosen</w:t></w:r></w:p>"
                          "</mc:Choice><mc:Fallback><w:p><w:r><w:t>fallback</w:t></w:r></w:p></mc:Fallback>"
                          "</mc:AlternateContent></w:body></w:document>"));
    Result with = Dump({mce.path, "/word/document.xml"});
    EXPECT_EQ(with.status, 0) << with.err;
    EXPECT_TRUE(Has(with.out, "\"chosen\"") && !Has(with.out, "fallback")) << with.out;
    EXPECT_FALSE(Has(Dump({"--no-mce", mce.path, "/word/document.xml"}).out, "chosen"));

    TempFile strict(Document("http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument",
                             "<w:document xmlns:w='http://purl.oclc.org/ooxml/wordprocessingml/main'><w:body>"
                             "<w:p><w:r><w:t>strict text</w:t></w:r></w:p></w:body></w:document>"));
    Result overview = Dump({strict.path});
    EXPECT_EQ(overview.status, 0) << overview.err;
    EXPECT_TRUE(Has(overview.out, "(ISO Strict, read as transitional)")) << overview.out;
    EXPECT_TRUE(Has(overview.out, "rId1     officeDocument -> /word/document.xml")) << overview.out;
    Result read = Dump({strict.path, "/word/document.xml"});
    EXPECT_EQ(read.status, 0) << read.err;
    EXPECT_TRUE(Has(read.out, "\"strict text\"")) << read.out;
    EXPECT_FALSE(Has(Dump({"--no-strict", strict.path, "/word/document.xml"}).out, "strict text"));
}

// Whatever is wrong with the file: status 1 and one line on stderr naming it
// (the whole line where the message is known).
TEST(Dump, BrokenPackagesFailWithOneLineNamingTheFile)
{
    const std::string docx = ReadFile(Sample("sample.docx"));
    TempFile truncated(docx.substr(0, docx.size() / 2));
    TempFile empty(std::string{});
    TempFile noTypes(Entries{{"word/document.xml", "<w:document/>"}});
    TempFile badTypes(Entries{{"[Content_Types].xml", "<Types><Default></Types>"}});
    TempFile badRels(Entries{{"[Content_Types].xml", Document("x", "")[0].second}, {"_rels/.rels", "not xml"}});
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"/no/such/file.docx", "no such file\n"},
        {Sample("make_samples.py"), "not a ZIP archive\n"},
        {empty.path, "not a ZIP archive\n"},
        {truncated.path, ""},
        {noTypes.path, "no [Content_Types].xml part: not an Office Open XML package\n"},
        {badTypes.path, "/[Content_Types].xml: XML does not parse"},
        {badRels.path, "/_rels/.rels: XML does not parse"},
    };
    for (const auto& c : cases)
    {
        Result run = Dump({c.first});
        EXPECT_EQ(run.status, 1) << c.first;
        EXPECT_EQ(run.err.rfind("ooxml-dump: " + c.first + ": " + c.second, 0), 0u) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
}
