// The two reading paths must agree: every XML part of every document of ../shared/corpus is read on the fast path
// (libexpat into ooxml::dom) and on the wxWidgets path, each with markup compatibility on and off, and for each
// setting the two results must be the same: ReadPartRoot's result and message, the preprocessing's counts, ReadOk(),
// the root class and the whole tree as the traversal reports it, member by member, value by value.  The generated
// readers are one body compiled for both node types, so a difference points at the parser, the dom tree, a converter
// of UTF-8 text or the preprocessing of one tree.  A difference that wxWidgets gets wrong is explained in
// differential_allowlist.tsv; an unused line there fails the test.  A second test checks that the limits refuse a
// part with the same message on both paths.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <fnmatch.h>
#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filename.h>
#include <wx/log.h>

#include "../opc/package_support.h" // packages made in memory; the package, parts and traversal
#include "tree_text.h"

using namespace ooxml;
using package_test::Utf8;

namespace
{
// One read of a part: ReadPartRoot's result and message, the preprocessing's counts, ReadOk(), the root class.
std::string Outcome(bool read, const opc::Error& error, const opc::PrepareStats& s, const opc::PartRoot& root)
{
    if (!read)
        return "fails: " + Utf8(error.part) + ": " + Utf8(error.message) + (error.noRootClass ? " (no class)" : "");
    return std::string("reads ") + root.GetClass()->fullName + " ReadOk " + std::to_string(root.ReadOk()) + "; " +
           tree_text::StatsText(s);
}

struct AllowRule { std::string document, part, reason; int uses = 0; };
} // namespace

TEST(Differential, FastAndWxWidgetsPathsReadEveryCorpusPartAlike)
{
    const std::string root = OOXML_CORPUS_DIR;
    if (!wxFileName::DirExists(root))
        GTEST_SKIP() << "no corpus at " << root;
    std::vector<AllowRule> rules;
    std::ifstream allowList(OOXML_DIFFERENTIAL_ALLOWLIST);
    for (std::string line; std::getline(allowList, line);)
    {
        AllowRule rule;
        std::istringstream fields(line);
        std::getline(std::getline(std::getline(fields, rule.document, '\t'), rule.part, '\t'), rule.reason);
        if (!line.empty() && line[0] != '#')
            rules.push_back(rule);
    }
    wxLogNull quiet;
    wxArrayString files;
    for (const char* folder : {"xlsx", "docx", "pptx"})
        wxDir::GetAllFiles(root + "/" + folder, &files, wxEmptyString, wxDIR_FILES);
    // Our own samples too (they hold constructs the corpus may lack).
    wxDir::GetAllFiles(OOXML_SAMPLES_DIR, &files, "sample.*", wxDIR_FILES);
    files.Sort();
    ASSERT_GT(files.size(), 0u);
    std::size_t compared{}, differences{}, skipped{};
    std::string unexplained, explained;
    auto report = [&](const std::string& document, const std::string& part, const std::string& what) {
        ++differences;
        for (AllowRule& rule : rules)
            if (fnmatch(rule.document.c_str(), document.c_str(), 0) == 0 && fnmatch(rule.part.c_str(), part.c_str(), 0) == 0)
            {
                ++rule.uses;
                return void(explained += "  " + document + ":" + part + "  -- " + rule.reason + "\n");
            }
        unexplained += "  " + document + ":" + part + " " + what + "\n";
    };
    const auto start = std::chrono::steady_clock::now();
    for (const wxString& file : files)
    {
        const std::string document = Utf8(wxFileName(file).GetFullName());
        for (bool mc : {true, false})
        {
            const std::string setting = mc ? "(markup compatibility on)" : "(markup compatibility off)";
            opc::Package fast(opc::Limits(), opc::ReadOptions{mc, true, false});
            opc::Package wx(opc::Limits(), opc::ReadOptions{mc, true, true});
            opc::Error fastError, wxError;
            const bool fastOpen = fast.Open(file, &fastError), wxOpen = wx.Open(file, &wxError);
            if (fastOpen != wxOpen || fastError.message != wxError.message)
                report(document, "", setting + " open: fast " + Utf8(fastError.message) + ", wx " + Utf8(wxError.message));
            if (!fastOpen || !wxOpen)
                continue;
            for (const opc::Part& part : fast.GetParts())
            {
                if (!opc::IsXmlPart(fast, part))
                    continue;
                // As in the corpus test, the sanitizer build leaves the largest parts to the plain build.
                if (OOXML_CORPUS_MAX_PART_BYTES && part.size > OOXML_CORPUS_MAX_PART_BYTES)
                {
                    skipped += mc;
                    continue;
                }
                compared += mc;
                const std::string name = Utf8(part.name);
                tree_text::Flattener fastTree, wxTree;
                opc::PrepareStats fastStats, wxStats;
                std::string fastOutcome, wxOutcome;
                {
                    opc::PartRoot partRoot;
                    const bool read = opc::ReadPartRoot(fast, part.name, &partRoot, &fastError, &fastStats);
                    fastOutcome = Outcome(read, fastError, fastStats, partRoot);
                    fastTree.Run(partRoot.GetNode());
                }
                {
                    opc::PartRoot partRoot;
                    const bool read = opc::ReadPartRoot(wx, part.name, &partRoot, &wxError, &wxStats);
                    wxOutcome = Outcome(read, wxError, wxStats, partRoot);
                    wxTree.expected = &fastTree.text;
                    wxTree.Run(partRoot.GetNode());
                }
                if (fastOutcome != wxOutcome)
                    report(document, name, setting + "\n  fast: " + fastOutcome + "\n  wx:   " + wxOutcome);
                else if (!wxTree.difference.empty())
                    report(document, name, setting + "\n  " + wxTree.difference);
            }
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::ostringstream summary;
    summary << "differential: " << compared << " XML parts of " << files.size()
            << " documents read 4 times (fast and wxWidgets, markup compatibility on and off), " << differences
            << " differences (" << std::count(explained.begin(), explained.end(), '\n')
            << " explained in differential_allowlist.tsv), " << seconds << " s";
    if (skipped)
        summary << "; " << skipped << " parts over " << OOXML_CORPUS_MAX_PART_BYTES << " bytes left to the plain build";
    summary << "\n";
    if (!explained.empty())
        summary << "\nexplained (differential_allowlist.tsv):\n" << explained;
    if (!unexplained.empty())
        summary << "\nunexplained:\n" << unexplained;
    std::ofstream(OOXML_DIFFERENTIAL_SUMMARY) << summary.str();
    std::cout << summary.str();

    EXPECT_TRUE(unexplained.empty()) << "differences between the fast and the wxWidgets path, see above";
    for (const AllowRule& rule : rules)
        EXPECT_GT(rule.uses, 0) << "allowlist rule never used: " << rule.document << " " << rule.part;
    EXPECT_GT(compared, 1000u);
}

// The limits are checked on the parser's events on both paths: a part over one is refused with the same message by
// both, and a part exactly at it is read by both.  Each case reads one part (or two, for the package-wide count).
TEST(Differential, LimitsRefuseAlikeOnBothPaths)
{
    using namespace package_test;
    const std::string sheet = "<worksheet xmlns='" + kSml + "'>";
    auto nested = [](int depth) {
        std::string text;
        for (int i = 1; i < depth; ++i)
            text += "<x>";
        for (int i = 1; i < depth; ++i)
            text += "</x>";
        return text;
    };
    auto elements = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += "<row/>";
        return "<sheetData>" + text + "</sheetData>";
    };
    auto attributes = [](int count) {
        std::string text = "<sheetPr";
        for (int i = 0; i < count; ++i)
            text += " a" + std::to_string(i) + "='1'";
        return text + "/>";
    };
    opc::Limits small;
    small.maxDepth = 8;
    small.maxElements = 20;
    small.maxAttributes = 30;
    small.maxAttributesPerElement = 10;
    small.maxPackageElements = 35;
    small.maxCopiedDeclarations = 30;
    struct Case { std::string xml; bool reads; };
    const std::vector<Case> cases = {
        {sheet + nested(8) + "</worksheet>", true},       // 8 deep with the root: at maxDepth
        {sheet + nested(9) + "</worksheet>", false},      // one deeper
        {sheet + elements(18) + "</worksheet>", true},    // 20 elements
        {sheet + elements(19) + "</worksheet>", false},   // 21
        {sheet + attributes(10) + "</worksheet>", true},  // 10 attributes on one element (the xmlns not among them)
        {sheet + attributes(11) + "</worksheet>", false}, // 11
        {sheet + attributes(10) + attributes(10) + attributes(9) + "</worksheet>", true},                   // 30 with the xmlns
        {sheet + attributes(10) + attributes(10) + attributes(9) + attributes(1) + "</worksheet>", false},  // 31
        {"<!DOCTYPE worksheet [<!ENTITY e 'x'>]>" + sheet + "</worksheet>", false}, // no DTD
        {sheet + "<sheetData></sheetDat></worksheet>", false},                      // not well-formed
        {sheet + "<sheetPr a='1' a='2'/></worksheet>", false},                      // an attribute twice
        {sheet + "<sheetPr xmlns:a='u' xmlns:b='u' a:x='1' b:x='2'/></worksheet>", false}, // ... by two prefixes
        {"<?xml version='1.0' encoding='x-unknown'?>" + sheet + "</worksheet>", false}, // an unknown encoding
        {"", false},                                                                // empty
        // Markup compatibility copies the wrapper's 9 declarations onto each of the 4 elements it keeps: 36, over 30.
        {"<worksheet xmlns='" + kSml + "' xmlns:mc='" + kMcUri + "' xmlns:z='urn:z'><mc:AlternateContent" + [] {
             std::string d;
             for (int i = 0; i < 9; ++i)
                 d += " xmlns:p" + std::to_string(i) + "='urn:p" + std::to_string(i) + "'";
             return d;
         }() + "><mc:Choice Requires='z'/><mc:Fallback><sheetPr/><dimension/><sheetViews/><sheetFormatPr/></mc:Fallback>"
               "</mc:AlternateContent></worksheet>", false},
    };
    const std::string type = kWorksheetType;
    for (const Case& c : cases)
    {
        std::string results[2];
        for (bool wx : {false, true})
        {
            opc::Package package(small, opc::ReadOptions{true, true, wx});
            opc::Error error;
            opc::PartRoot root;
            const bool ok = Open(package, {{"[Content_Types].xml", Types({{"/s.xml", type}})}, {"s.xml", c.xml}}, &error) &&
                            opc::ReadPartRoot(package, "/s.xml", &root, &error);
            results[wx] = Result(ok, error);
        }
        EXPECT_EQ(results[0], results[1]) << c.xml;
        EXPECT_EQ(results[0] == "ok", c.reads) << results[0] << "\n" << c.xml;
    }
    // The package-wide element count: the second part of 18 elements is over 35 on both paths.
    std::string second[2];
    for (bool wx : {false, true})
    {
        opc::Package package(small, opc::ReadOptions{true, true, wx});
        opc::Error error;
        opc::PartRoot a, b;
        const std::string part = sheet + elements(16) + "</worksheet>";
        ASSERT_TRUE(Open(package, {{"[Content_Types].xml", Types({{"/a.xml", type}, {"/b.xml", type}})},
                                   {"a.xml", part}, {"b.xml", part}}, &error));
        EXPECT_TRUE(opc::ReadPartRoot(package, "/a.xml", &a, &error)) << Result(false, error);
        second[wx] = Result(opc::ReadPartRoot(package, "/b.xml", &b, &error), error);
    }
    EXPECT_EQ(second[0], second[1]);
    EXPECT_NE(second[0], "ok");
}
