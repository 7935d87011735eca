// ooxml-dump on the samples and on broken input: exit status and message.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/filename.h>
#include <wx/mstream.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

namespace
{

struct Result
{
    int status;
    std::string out;
    std::string err;
};

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Runs ooxml-dump with the arguments, capturing both outputs.
Result Dump(const std::string& arguments)
{
    const std::string base = wxFileName::CreateTempFileName("ooxml-dump-test").ToStdString();
    const std::string command = std::string(OOXML_DUMP_PATH) + " " + arguments + " >" + base + ".out 2>" + base + ".err";
    const int raw = std::system(command.c_str());
    Result run{WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw), ReadFile(base + ".out"), ReadFile(base + ".err")};
    std::remove((base + ".out").c_str());
    std::remove((base + ".err").c_str());
    std::remove(base.c_str());
    return run;
}

std::string Quote(const std::string& path)
{
    return "'" + path + "'";
}

std::string Sample(const char* name)
{
    return std::string(OOXML_SAMPLES_DIR) + "/" + name;
}

typedef std::vector<std::pair<std::string, std::string>> Entries;

// Writes a ZIP of the given (name, content) entries to a temporary file.
class TempPackage
{
public:
    explicit TempPackage(const Entries& entries)
        : m_path(wxFileName::CreateTempFileName("ooxml-broken").ToStdString() + ".docx")
    {
        wxFFileOutputStream file(m_path);
        wxZipOutputStream zip(file);
        for (const auto& entry : entries)
        {
            zip.PutNextEntry(entry.first);
            zip.Write(entry.second.data(), entry.second.size());
        }
    }
    ~TempPackage() { std::remove(m_path.c_str()); }
    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

const char* const kTypes =
    "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'>"
    "<Default Extension='rels' ContentType='application/vnd.openxmlformats-package.relationships+xml'/>"
    "<Default Extension='xml' ContentType='application/xml'/></Types>";

} // namespace

TEST(Dump, WithoutArgumentDumpsTheBundledSample)
{
    Result run = Dump("");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("sample.docx"), std::string::npos);
    EXPECT_NE(run.out.find("  /word/document.xml"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("      wml::CT_Document: read\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\nRelationships:\n"), std::string::npos);
    EXPECT_TRUE(run.err.empty()) << run.err;
}

TEST(Dump, OverviewNamesPartsTypesRootClassesAndRelationships)
{
    for (const char* name : {"sample.docx", "sample.xlsx", "sample.pptx"})
    {
        Result run = Dump(Quote(Sample(name)));
        EXPECT_EQ(run.status, 0) << name << ": " << run.err;
        EXPECT_NE(run.out.find("/[Content_Types].xml                     (content types stream)"), std::string::npos)
            << name << run.out;
        EXPECT_NE(run.out.find("application/vnd.openxmlformats-package.relationships+xml"), std::string::npos);
        EXPECT_NE(run.out.find("relationships::CT_Relationships: read"), std::string::npos) << name;
        EXPECT_NE(run.out.find("  /                            rId1     officeDocument -> /"), std::string::npos)
            << name << run.out;
        EXPECT_EQ(run.out.find("ISO Strict"), std::string::npos);
    }
    Result docx = Dump(Quote(Sample("sample.docx")));
    EXPECT_NE(docx.out.find("https://example.org/  [External]"), std::string::npos) << docx.out;
    Result xlsx = Dump(Quote(Sample("sample.xlsx")));
    EXPECT_NE(xlsx.out.find("  /xl/workbook.xml             rId1     worksheet -> /xl/worksheets/sheet1.xml"),
              std::string::npos)
        << xlsx.out;
    EXPECT_NE(xlsx.out.find("      sml::CT_Worksheet: read\n"), std::string::npos);
    Result pptx = Dump(Quote(Sample("sample.pptx")));
    EXPECT_NE(pptx.out.find("      pml::CT_Slide: read\n"), std::string::npos) << pptx.out;
}

TEST(Dump, TreeOfOnePart)
{
    Result run = Dump(Quote(Sample("sample.xlsx")) + " /xl/worksheets/sheet1.xml");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.rfind("sml::CT_Worksheet\n  dimension: sml::CT_SheetDimension\n    ref = \"A1:D5\"\n", 0), 0u)
        << run.out;
    EXPECT_NE(run.out.find("    sheetView[0]: sml::CT_SheetView\n"), std::string::npos);
    // Only present members, unless asked for all.
    EXPECT_EQ(run.out.find("showGridLines"), std::string::npos);
    Result all = Dump("--all-members " + Quote(Sample("sample.xlsx")) + " /xl/worksheets/sheet1.xml");
    EXPECT_EQ(all.status, 0) << all.err;
    EXPECT_NE(all.out.find("showGridLines"), std::string::npos);
    EXPECT_GT(all.out.size(), run.out.size());
}

TEST(Dump, PartNamesAreCaseInsensitive)
{
    Result run = Dump(Quote(Sample("sample.xlsx")) + " /XL/Workbook.XML");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.rfind("sml::CT_Workbook\n", 0), 0u) << run.out;
}

TEST(Dump, JsonOfOnePart)
{
    Result run = Dump("--json " + Quote(Sample("sample.xlsx")) + " /xl/worksheets/sheet1.xml");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.rfind("{\"class\": \"sml::CT_Worksheet\", \"Dimension\": {\"class\": \"sml::CT_SheetDimension\", "
                            "\"Ref\": \"A1:D5\"}",
                            0),
              0u)
        << run.out.substr(0, 200);
    EXPECT_EQ(run.out.back(), '\n');
    // Balanced braces and brackets outside strings: well-formed enough to parse.
    int depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < run.out.size(); ++i)
    {
        const char c = run.out[i];
        if (inString)
        {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
            continue;
        }
        if (c == '"')
            inString = true;
        depth += (c == '{' || c == '[') - (c == '}' || c == ']');
        ASSERT_GE(depth, 0);
    }
    EXPECT_EQ(depth, 0);
    EXPECT_FALSE(inString);
}

TEST(Dump, AllReadsEveryXmlPartWithItsTime)
{
    Result run = Dump("--all " + Quote(Sample("sample.docx")));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(" ms  /word/document.xml                       wml::CT_Document                     read\n"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find(" ms  8 XML parts\n"), std::string::npos) << run.out;
}

TEST(Dump, MissingPart)
{
    Result run = Dump(Quote(Sample("sample.docx")) + " /nope.xml");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "ooxml-dump: " + Sample("sample.docx") + ": /nope.xml: no such part in the package\n");
    EXPECT_TRUE(run.out.empty());
}

TEST(Dump, UsageErrors)
{
    for (const char* arguments : {"--bogus", "--max-depth", "--max-depth x a.docx", "a b c"})
    {
        Result run = Dump(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_NE(run.err.find("usage: ooxml-dump"), std::string::npos) << arguments << ": " << run.err;
    }
    Result help = Dump("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--no-mce"), std::string::npos);
    EXPECT_NE(help.out.find("--no-strict"), std::string::npos);
}

TEST(Dump, DepthLimitFailsThePartNotTheProgram)
{
    Result run = Dump("--max-depth 3 " + Quote(Sample("sample.docx")) + " /word/document.xml");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("/word/document.xml: "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("nest"), std::string::npos) << run.err;
}

namespace
{

const char* const kDocumentTypes =
    "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'>"
    "<Default Extension='rels' ContentType='application/vnd.openxmlformats-package.relationships+xml'/>"
    "<Override PartName='/word/document.xml' "
    "ContentType='application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml'/></Types>";

std::string PackageRels(const char* type)
{
    return std::string("<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
                       "<Relationship Id='rId1' Type='") +
           type + "' Target='word/document.xml'/></Relationships>";
}

} // namespace

TEST(Dump, MarkupCompatibilityAndItsSwitch)
{
    TempPackage package(Entries{
        {"[Content_Types].xml", kDocumentTypes},
        {"_rels/.rels", PackageRels("http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument")},
        {"word/document.xml",
         "<w:document xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main' "
         "xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006'><w:body>"
         "<mc:AlternateContent><mc:Choice Requires='w'><w:p><w:r><w:t>chosen</w:t></w:r></w:p></mc:Choice>"
         "<mc:Fallback><w:p><w:r><w:t>fallback</w:t></w:r></w:p></mc:Fallback></mc:AlternateContent>"
         "</w:body></w:document>"}});
    Result with = Dump(Quote(package.Path()) + " /word/document.xml");
    EXPECT_EQ(with.status, 0) << with.err;
    EXPECT_NE(with.out.find("\"chosen\""), std::string::npos) << with.out;
    EXPECT_EQ(with.out.find("fallback"), std::string::npos);
    Result without = Dump("--no-mce " + Quote(package.Path()) + " /word/document.xml");
    EXPECT_EQ(without.status, 0) << without.err;
    EXPECT_EQ(without.out.find("chosen"), std::string::npos) << without.out;
}

TEST(Dump, StrictPackageAndItsSwitch)
{
    TempPackage package(Entries{
        {"[Content_Types].xml", kDocumentTypes},
        {"_rels/.rels", PackageRels("http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument")},
        {"word/document.xml", "<w:document xmlns:w='http://purl.oclc.org/ooxml/wordprocessingml/main'><w:body>"
                              "<w:p><w:r><w:t>strict text</w:t></w:r></w:p></w:body></w:document>"}});
    Result overview = Dump(Quote(package.Path()));
    EXPECT_EQ(overview.status, 0) << overview.err;
    EXPECT_NE(overview.out.find("(ISO Strict, read as transitional)"), std::string::npos) << overview.out;
    EXPECT_NE(overview.out.find("rId1     officeDocument -> /word/document.xml"), std::string::npos) << overview.out;
    Result with = Dump(Quote(package.Path()) + " /word/document.xml");
    EXPECT_EQ(with.status, 0) << with.err;
    EXPECT_NE(with.out.find("\"strict text\""), std::string::npos) << with.out;
    Result without = Dump("--no-strict " + Quote(package.Path()) + " /word/document.xml");
    EXPECT_EQ(without.out.find("strict text"), std::string::npos) << without.out;
}

TEST(Dump, MissingFile)
{
    Result run = Dump("/no/such/file.docx");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "ooxml-dump: /no/such/file.docx: no such file\n");
}

TEST(Dump, NotAZipArchive)
{
    const std::string path = Sample("make_samples.py");
    Result run = Dump(Quote(path));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "ooxml-dump: " + path + ": not a ZIP archive\n");
}

TEST(Dump, TruncatedZipArchive)
{
    const std::string bytes = ReadFile(Sample("sample.docx"));
    const std::string path = wxFileName::CreateTempFileName("ooxml-truncated").ToStdString();
    std::ofstream(path, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
    Result run = Dump(Quote(path));
    std::remove(path.c_str());
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("ooxml-dump: " + path + ": "), std::string::npos) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
}

TEST(Dump, NoContentTypesPart)
{
    TempPackage package(Entries{{"word/document.xml", "<w:document/>"}});
    Result run = Dump(Quote(package.Path()));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "ooxml-dump: " + package.Path() +
                           ": no [Content_Types].xml part: not an Office Open XML package\n");
}

TEST(Dump, ContentTypesThatDoNotParse)
{
    TempPackage package(Entries{{"[Content_Types].xml", "<Types><Default></Types>"}});
    Result run = Dump(Quote(package.Path()));
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find(package.Path() + ": /[Content_Types].xml: XML does not parse"), std::string::npos)
        << run.err;
}

TEST(Dump, RelationshipsThatDoNotParse)
{
    TempPackage package(Entries{{"[Content_Types].xml", kTypes}, {"_rels/.rels", "not xml at all"}});
    Result run = Dump(Quote(package.Path()));
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find(package.Path() + ": /_rels/.rels: XML does not parse"), std::string::npos) << run.err;
}

TEST(Dump, EmptyFile)
{
    const std::string path = wxFileName::CreateTempFileName("ooxml-empty").ToStdString();
    Result run = Dump(Quote(path));
    std::remove(path.c_str());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "ooxml-dump: " + path + ": not a ZIP archive\n");
}

