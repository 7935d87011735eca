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
    EXPECT_NE(run.out.find("Override  /word/document.xml"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Relationships (/_rels/.rels):"), std::string::npos);
    EXPECT_TRUE(run.err.empty()) << run.err;
}

TEST(Dump, PrintsContentTypesAndRelationshipsOfEachSample)
{
    for (const char* name : {"sample.docx", "sample.xlsx", "sample.pptx"})
    {
        Result run = Dump(Quote(Sample(name)));
        EXPECT_EQ(run.status, 0) << name << ": " << run.err;
        EXPECT_NE(run.out.find("Default   .rels"), std::string::npos) << name;
        EXPECT_NE(run.out.find("rId1"), std::string::npos) << name;
        EXPECT_NE(run.out.find("officeDocument"), std::string::npos) << name;
    }
    Result docx = Dump(Quote(Sample("sample.docx")));
    EXPECT_NE(docx.out.find("https://example.org/  [External]"), std::string::npos) << docx.out;
    Result xlsx = Dump(Quote(Sample("sample.xlsx")));
    EXPECT_NE(xlsx.out.find("Relationships (/xl/_rels/workbook.xml.rels):"), std::string::npos) << xlsx.out;
    EXPECT_NE(xlsx.out.find("-> worksheets/sheet1.xml"), std::string::npos);
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

TEST(Dump, TooManyArgumentsIsAUsageError)
{
    Result run = Dump("a b");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("usage: ooxml-dump"), std::string::npos);
}
