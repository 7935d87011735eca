// Every document of ../shared/corpus and every XML part of each, read through
// the package layer (under the sanitizers too): no crash, no leak, and every
// part that does not read, or has no root class, explained in allowlist.tsv.
// Writes a summary (documents, parts, parts per root class, ReadXML results,
// unknown content types, markup compatibility and Strict figures, time).
#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <fnmatch.h>

#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filename.h>
#include <wx/log.h>

#include "ooxml/opc/markup.h"
#include "ooxml/opc/package.h"
#include "ooxml/opc/parts.h"
#include "ooxml/traversal/traversal.h"

namespace opc = ooxml::opc;

namespace
{

struct AllowRule
{
    std::string kind;     // open, load, read, unknown-type
    std::string pattern;  // glob on "document:part" (open, load, read) or on the content type
    std::string reason;
    int uses = 0;
};

std::vector<AllowRule> LoadAllowList(const std::string& path)
{
    std::vector<AllowRule> rules;
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line))
    {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream fields(line);
        AllowRule rule;
        std::getline(fields, rule.kind, '\t');
        std::getline(fields, rule.pattern, '\t');
        std::getline(fields, rule.reason);
        rules.push_back(rule);
    }
    return rules;
}

AllowRule* Allowed(std::vector<AllowRule>& rules, const std::string& kind, const std::string& subject)
{
    for (AllowRule& rule : rules)
        if (rule.kind == kind && fnmatch(rule.pattern.c_str(), subject.c_str(), 0) == 0)
        {
            ++rule.uses;
            return &rule;
        }
    return nullptr;
}

// The parts that MANIFEST.tsv says are not well-formed XML, by document file
// name: the globs of its "not-well-formed-xml:a+b*.xml(8)+c" feature.
std::map<std::string, std::vector<std::string>> LoadNotWellFormed(const std::string& path)
{
    std::map<std::string, std::vector<std::string>> parts;
    std::ifstream in(path);
    std::string line;
    std::getline(in, line); // header
    const std::string marker = "not-well-formed-xml:";
    while (std::getline(in, line))
    {
        const std::size_t at = line.find(marker);
        if (at == std::string::npos)
            continue;
        const std::string document = line.substr(0, line.find('\t'));
        const std::string list = line.substr(at + marker.size(), line.find_first_of(",;\t", at) - at - marker.size());
        std::istringstream items(list);
        std::string item;
        while (std::getline(items, item, '+'))
        {
            const std::size_t count = item.find('(');
            parts[document.substr(document.rfind('/') + 1)].push_back("/" + item.substr(0, count));
        }
    }
    return parts;
}

bool ListedNotWellFormed(const std::map<std::string, std::vector<std::string>>& manifest, const std::string& document,
                         const std::string& part)
{
    const auto entry = manifest.find(document);
    if (entry == manifest.end())
        return false;
    for (const std::string& glob : entry->second)
        if (fnmatch(glob.c_str(), part.c_str(), FNM_CASEFOLD) == 0)
            return true;
    return false;
}

// Counts the present members of a tree.
class Counter : public ooxml::traversal::Visitor
{
public:
    std::size_t count = 0;
    void OnValue(const ooxml::traversal::Member& member, const wxAny&) override { count += member.present; }
    void OnObject(const ooxml::traversal::Member& member, const ooxml::traversal::Node& child) override
    {
        count += member.present;
        ooxml::traversal::Visit(child, *this);
    }
};

std::size_t TreeSize(const opc::PartRoot& root)
{
    Counter counter;
    ooxml::traversal::Visit(root.GetNode(), counter);
    return counter.count;
}

std::string Utf8(const wxString& text)
{
    return std::string(text.utf8_str());
}

} // namespace

TEST(Corpus, EveryDocumentAndEveryXmlPart)
{
    const std::string root = OOXML_CORPUS_DIR;
    if (!wxFileName::DirExists(root))
        GTEST_SKIP() << "no corpus at " << root;
    std::vector<AllowRule> rules = LoadAllowList(OOXML_CORPUS_ALLOWLIST);
    const auto notWellFormed = LoadNotWellFormed(root + "/MANIFEST.tsv");
    std::size_t listedBroken = 0;
    std::vector<std::string> skippedLarge;
    wxLogNull quiet; // the library logs names of unknown namespaces; real documents have many

    wxArrayString files;
    for (const char* folder : {"xlsx", "docx", "pptx"})
        wxDir::GetAllFiles(root + "/" + folder, &files, wxEmptyString, wxDIR_FILES);
    files.Sort();
    ASSERT_GT(files.size(), 0u);

    std::size_t documents = 0, parts = 0, readTrue = 0, readFalse = 0, notLoaded = 0, strictDocuments = 0;
    std::size_t alternateParts = 0, alternateElements = 0, recovered = 0, changedByMce = 0, choices = 0, fallbacks = 0;
    std::size_t strictParts = 0, strictTrees = 0, strictEmptyWithout = 0, ignoredElements = 0, ignoredAttributes = 0;
    std::map<std::string, std::size_t> perClass, unknownTypes;
    std::vector<std::string> unexplained, explained;
    const auto start = std::chrono::steady_clock::now();

    std::vector<std::pair<double, std::string>> slowest;
    for (const wxString& file : files)
    {
        const std::string document = Utf8(wxFileName(file).GetFullName());
        const auto documentStart = std::chrono::steady_clock::now();
        struct Timer
        {
            std::chrono::steady_clock::time_point start;
            std::string document;
            std::vector<std::pair<double, std::string>>& slowest;
            ~Timer()
            {
                slowest.emplace_back(
                    std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), document);
            }
        } timer{documentStart, document, slowest};
        opc::Package package;
        opc::Error error;
        if (!package.Open(file, &error))
        {
            const std::string subject = document + ":";
            AllowRule* rule = Allowed(rules, "open", subject);
            (rule ? explained : unexplained).push_back("open " + subject + " " + Utf8(error.message) +
                                                       (rule ? "  -- " + rule->reason : ""));
            continue;
        }
        ++documents;
        strictDocuments += package.IsStrict();
        // The same package read without preprocessing, opened only for the
        // few documents that need the comparison.
        opc::Package raw(opc::Limits(), opc::ReadOptions{false, false});
        enum { kNotTried, kOpen, kFailed } rawState = kNotTried;
        for (const opc::Part& part : package.GetParts())
        {
            if (!opc::IsXmlPart(package, part))
                continue;
            // The sanitizer build leaves the few largest parts to the plain
            // build: at -O0 under ASan they alone would take most of CI's time.
            if (OOXML_CORPUS_MAX_PART_BYTES && part.size > OOXML_CORPUS_MAX_PART_BYTES)
            {
                skippedLarge.push_back(document + ":" + Utf8(part.name));
                continue;
            }
            ++parts;
            const std::string subject = document + ":" + Utf8(part.name);
            const opc::RootClass* cls = opc::FindRootClass(package, part.name);
            opc::PartRoot partRoot;
            opc::PrepareStats stats;
            if (!opc::ReadPart(package, part.name, &partRoot, &error, &stats))
            {
                ++notLoaded;
                const std::string partName = Utf8(part.name);
                // The corpus's own manifest lists the parts that are not well-formed.
                if (error.message.StartsWith("XML does not parse") &&
                    ListedNotWellFormed(notWellFormed, document, partName))
                {
                    ++listedBroken;
                    continue;
                }
                const wxString elementPrefix = "no root class for root element ";
                const bool unknownElement = error.message.StartsWith(elementPrefix);
                const bool unknown = !cls && (unknownElement || error.message.StartsWith("no root class"));
                // Unknown content types, and generic XML parts by their root element ("Sources of <uri>").
                const std::string unknownSubject =
                    unknownElement ? Utf8(error.message.Mid(elementPrefix.size())) : Utf8(part.contentType);
                if (unknown)
                    ++unknownTypes[unknownElement ? "application/xml, root element " + unknownSubject
                                                  : unknownSubject.empty() ? std::string("(none)") : unknownSubject];
                const std::string kind = unknownElement ? "unknown-element" : unknown ? "unknown-type" : "load";
                AllowRule* rule = Allowed(rules, kind, unknown ? unknownSubject : subject);
                (rule ? explained : unexplained).push_back(kind + " " + subject + " " + Utf8(error.message) +
                                                           (rule ? "  -- " + rule->reason : ""));
                continue;
            }
            ++perClass[partRoot.GetClass()->name];
            // A Strict document's main part, sheets, slides and body read into non-empty trees.
            static const std::set<std::string> kMain = {"sml::CT_Workbook", "sml::CT_Worksheet", "wml::CT_Document",
                                                        "pml::CT_Presentation", "pml::CT_Slide"};
            if (package.IsStrict() && kMain.count(partRoot.GetClass()->name) && TreeSize(partRoot) == 0)
                unexplained.push_back("strict-empty " + subject + " read into an empty tree");
            if (partRoot.ReadOk())
                ++readTrue;
            else
            {
                ++readFalse;
                AllowRule* rule = Allowed(rules, "read", subject);
                (rule ? explained : unexplained).push_back("read " + subject + " ReadXML returned false" +
                                                           (rule ? "  -- " + rule->reason : ""));
            }
            ignoredElements += stats.ignoredElements;
            ignoredAttributes += stats.ignoredAttributes;
            // Markup compatibility and Strict: what the read gains over a raw one
            // (measured by the plain build only: a second read of the same parts
            // adds nothing to what the sanitizers check).
            if (!OOXML_CORPUS_COMPARE_RAW)
                continue;
            if ((stats.alternateContent || stats.strict) && rawState == kNotTried)
                rawState = raw.Open(file, &error) ? kOpen : kFailed;
            if ((stats.alternateContent || stats.strict) && rawState == kOpen)
            {
                opc::PartRoot rawRoot;
                const bool rawLoaded = opc::ReadPart(raw, part.name, &rawRoot, &error);
                const std::size_t with = TreeSize(partRoot);
                const std::size_t without = rawLoaded ? TreeSize(rawRoot) : 0;
                if (stats.alternateContent)
                {
                    ++alternateParts;
                    alternateElements += stats.alternateContent;
                    choices += stats.choices;
                    fallbacks += stats.fallbacks;
                    recovered += stats.recovered;
                    changedByMce += with != without;
                }
                if (stats.strict)
                {
                    ++strictParts;
                    strictTrees += with > 1;
                    strictEmptyWithout += without <= 1;
                }
            }
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    std::ostringstream summary;
    summary << "corpus: " << root << "\n"
            << "documents: " << documents << " opened of " << files.size() << " (" << strictDocuments
            << " ISO Strict)\n"
            << "XML parts: " << parts << "; ReadXML true " << readTrue << ", false " << readFalse
            << "; not read " << notLoaded << " (no root class or not loadable; " << listedBroken
            << " of them not well-formed as MANIFEST.tsv lists)\n"
            << "markup compatibility: " << alternateElements << " mc:AlternateContent in " << alternateParts
            << " parts (" << choices << " by Choice, " << fallbacks << " by Fallback), " << recovered
            << " elements recovered, " << changedByMce << " parts read differently; " << ignoredElements
            << " ignorable elements and " << ignoredAttributes << " ignorable attributes dropped\n"
            << "ISO Strict: " << strictParts << " parts with Strict namespaces, " << strictTrees
            << " read into non-empty trees (" << strictEmptyWithout << " of them empty without the rewrite)\n"
            << (OOXML_CORPUS_COMPARE_RAW ? "" : "(markup compatibility and Strict figures: plain build only)\n")
            << "time: " << seconds << " s\n";
    if (!skippedLarge.empty())
    {
        summary << "not read in this build (larger than " << OOXML_CORPUS_MAX_PART_BYTES << " bytes):";
        for (const std::string& name : skippedLarge)
            summary << " " << name;
        summary << "\n";
    }
    summary << "\nslowest documents:\n";
    std::sort(slowest.rbegin(), slowest.rend());
    for (std::size_t i = 0; i < slowest.size() && i < 10; ++i)
        summary << "  " << slowest[i].first << " s  " << slowest[i].second << "\n";
    summary << "\nparts per root class:\n";
    std::vector<std::pair<std::size_t, std::string>> classes;
    for (const auto& entry : perClass)
        classes.emplace_back(entry.second, entry.first);
    std::sort(classes.rbegin(), classes.rend());
    for (const auto& entry : classes)
        summary << "  " << entry.first << "  " << entry.second << "\n";
    summary << "\ncontent types without a root class:\n";
    for (const auto& entry : unknownTypes)
        summary << "  " << entry.second << "  " << entry.first << "\n";
    summary << "\nexplained (allowlist.tsv):\n";
    for (const std::string& line : explained)
        summary << "  " << line << "\n";
    summary << "\nunexplained:\n";
    for (const std::string& line : unexplained)
        summary << "  " << line << "\n";
    std::ofstream(OOXML_CORPUS_SUMMARY) << summary.str();
    std::cout << summary.str();

    EXPECT_TRUE(unexplained.empty()) << unexplained.size() << " results not explained in allowlist.tsv";
    for (const AllowRule& rule : rules)
        EXPECT_GT(rule.uses, 0) << "allowlist rule never used: " << rule.kind << " " << rule.pattern;
    EXPECT_GT(strictDocuments, 0u);
}
