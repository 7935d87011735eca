// Every XML part of every document of ../shared/corpus, read through ooxml::opc (under the sanitizers too):
// no crash, no leak, every part that does not read or has no root class explained in allowlist.tsv; and a summary.
#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <fnmatch.h>
#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filename.h>
#include <wx/log.h>

#include "ooxml/opc/parts.h" // with the package, markup compatibility and traversal

using namespace ooxml;

namespace
{
// A line of the allow-list: kind (open, load, read, unknown-type, unknown-element), glob on "document:part" (on the
// content type or the root element for the unknown kinds), reason; and how many results it explained.
struct AllowRule { std::string kind, pattern, reason; int uses = 0; };

// The parts that MANIFEST.tsv says are not well-formed XML, by document file name: the globs of its
// "not-well-formed-xml:a+b*.xml(8)+c" feature.
std::map<std::string, std::vector<std::string>> LoadNotWellFormed(const std::string& path)
{
    std::map<std::string, std::vector<std::string>> parts;
    std::ifstream in(path);
    std::string line, item, marker = "not-well-formed-xml:";
    for (std::getline(in, line) /* header */; std::getline(in, line);)
    {
        const std::size_t at = line.find(marker);
        if (at == std::string::npos)
            continue;
        std::string document = line.substr(0, line.find('\t'));
        document = document.substr(document.rfind('/') + 1);
        std::istringstream items(line.substr(at + marker.size(), line.find_first_of(",;\t", at) - at - marker.size()));
        while (std::getline(items, item, '+'))
            parts[document].push_back("/" + item.substr(0, item.find('(')));
    }
    return parts;
}

// Counts the present members of a tree.
struct Counter : traversal::Visitor
{
    std::size_t count = 0;
    explicit Counter(const traversal::Node& node) { traversal::Visit(node, *this); }
    void OnValue(const traversal::Member& member, const wxAny&) override { count += member.present; }
    void OnObject(const traversal::Member& member, const traversal::Node& child) override
    {
        count += member.present;
        traversal::Visit(child, *this);
    }
};
std::size_t TreeSize(const opc::PartRoot& root) { return Counter(root.GetNode()).count; }
std::string Utf8(const wxString& text) { return std::string(text.utf8_str()); }
} // namespace

TEST(Corpus, EveryDocumentAndEveryXmlPart)
{
    const std::string root = OOXML_CORPUS_DIR;
    if (!wxFileName::DirExists(root))
        GTEST_SKIP() << "no corpus at " << root;
    std::vector<AllowRule> rules;
    std::ifstream allowList(OOXML_CORPUS_ALLOWLIST);
    for (std::string line; std::getline(allowList, line);)
    {
        AllowRule rule;
        std::istringstream fields(line);
        std::getline(std::getline(std::getline(fields, rule.kind, '\t'), rule.pattern, '\t'), rule.reason);
        if (!line.empty() && line[0] != '#')
            rules.push_back(rule);
    }
    const auto notWellFormed = LoadNotWellFormed(root + "/MANIFEST.tsv");
    wxLogNull quiet; // the library logs names of unknown namespaces; real documents have many
    wxArrayString files;
    for (const char* folder : {"xlsx", "docx", "pptx"})
        wxDir::GetAllFiles(root + "/" + folder, &files, wxEmptyString, wxDIR_FILES);
    files.Sort();
    ASSERT_GT(files.size(), 0u);
    std::size_t documents{}, parts{}, readTrue{}, readFalse{}, notLoaded{}, listedBroken{}, strictDocuments{};
    std::size_t alternateParts{}, changedByMce{}, strictParts{}, strictTrees{}, strictEmptyWithout{};
    opc::PrepareStats mce, ignored; // totals: of the parts compared with a raw read, of every part read
    std::map<std::string, std::size_t> perClass, unknownTypes;
    std::string explained, unexplained, skippedLarge; // the summary's lines, and " document:part" of each
    std::vector<std::pair<double, std::string>> slowest;
    // A result is explained by the first allow-list rule of its kind whose glob matches the subject.
    auto explain = [&](const std::string& kind, const std::string& subject, const std::string& line) {
        for (AllowRule& rule : rules)
            if (rule.kind == kind && fnmatch(rule.pattern.c_str(), subject.c_str(), 0) == 0)
            {
                ++rule.uses;
                return void(explained += "  " + line + "  -- " + rule.reason + "\n");
            }
        unexplained += "  " + line + "\n";
    };
    auto readDocument = [&](const wxString& file, const std::string& document) {
        opc::Package package;
        opc::Error error;
        if (!package.Open(file, &error))
            return explain("open", document + ":", "open " + document + ": " + Utf8(error.message));
        ++documents;
        strictDocuments += package.IsStrict();
        // The same package read without preprocessing, opened only for the few documents that need the comparison.
        opc::Package raw(opc::Limits(), opc::ReadOptions{false, false});
        enum { kNotTried, kOpen, kFailed } rawState = kNotTried;
        for (const opc::Part& part : package.GetParts())
        {
            const std::string name = Utf8(part.name), subject = document + ":" + name;
            if (!opc::IsXmlPart(package, part))
                continue;
            // The sanitizer build leaves the few largest parts to the plain build (most of CI's time at -O0 with ASan).
            const bool tooLarge = OOXML_CORPUS_MAX_PART_BYTES && part.size > OOXML_CORPUS_MAX_PART_BYTES;
            skippedLarge += tooLarge ? " " + subject : "";
            if (tooLarge)
                continue;
            ++parts;
            const opc::RootClass* cls = opc::FindRootClass(package, part.name);
            opc::PartRoot partRoot;
            opc::PrepareStats stats;
            if (!opc::ReadPartRoot(package, part.name, &partRoot, &error, &stats))
            {
                ++notLoaded;
                // The corpus's own manifest lists the parts that are not well-formed.
                const auto globs = notWellFormed.find(document);
                const bool listed = error.message.StartsWith("XML does not parse") && globs != notWellFormed.end() &&
                    std::any_of(globs->second.begin(), globs->second.end(), [&](const std::string& glob) {
                        return fnmatch(glob.c_str(), name.c_str(), FNM_CASEFOLD) == 0; });
                listedBroken += listed;
                if (listed)
                    continue;
                const wxString elementPrefix = "no root class for root element ";
                const bool byElement = error.message.StartsWith(elementPrefix);
                const bool unknown = !cls && error.message.StartsWith("no root class");
                // Unknown content types, and generic XML parts by their root element ("Sources of <uri>").
                const std::string type = Utf8(byElement ? error.message.Mid(elementPrefix.size()) : part.contentType);
                if (unknown)
                    ++unknownTypes[byElement ? "application/xml, root element " + type
                                             : type.empty() ? "(none)" : type];
                const std::string kind = byElement ? "unknown-element" : unknown ? "unknown-type" : "load";
                explain(kind, unknown ? type : subject, kind + " " + subject + " " + Utf8(error.message));
                continue;
            }
            ++perClass[partRoot.GetClass()->fullName];
            // A Strict document's main part, sheets, slides and body read into non-empty trees.
            static const std::set<std::string> kMain = {"sml::CT_Workbook", "sml::CT_Worksheet", "wml::CT_Document",
                                                        "pml::CT_Presentation", "pml::CT_Slide"};
            if (package.IsStrict() && kMain.count(partRoot.GetClass()->fullName) && TreeSize(partRoot) == 0)
                unexplained += "  strict-empty " + subject + " read into an empty tree\n";
            partRoot.ReadOk() ? ++readTrue : ++readFalse;
            if (!partRoot.ReadOk())
                explain("read", subject, "read " + subject + " ReadXML returned false");
            ignored.ignoredElements += stats.ignoredElements;
            ignored.ignoredAttributes += stats.ignoredAttributes;
            // Markup compatibility and Strict: what the read gains over a raw one (plain build only).
            if (!OOXML_CORPUS_COMPARE_RAW || !(stats.alternateContent || stats.strict))
                continue;
            if (rawState == kNotTried)
                rawState = raw.Open(file, &error) ? kOpen : kFailed;
            if (rawState != kOpen)
                continue;
            opc::PartRoot rawRoot;
            const std::size_t with = TreeSize(partRoot);
            const std::size_t without = opc::ReadPartRoot(raw, part.name, &rawRoot, &error) ? TreeSize(rawRoot) : 0;
            const bool alternate = stats.alternateContent > 0; // Choices and Fallbacks are counted among them
            alternateParts += alternate;
            changedByMce += alternate && with != without;
            mce.recovered += alternate ? stats.recovered : 0; // ProcessContent recovers elements too
            mce.alternateContent += stats.alternateContent;
            mce.choices += stats.choices;
            mce.fallbacks += stats.fallbacks;
            strictParts += stats.strict;
            strictTrees += stats.strict && with > 1;
            strictEmptyWithout += stats.strict && without <= 1;
        }
    };
    typedef std::chrono::steady_clock Clock;
    auto secondsSince = [](Clock::time_point t) { return std::chrono::duration<double>(Clock::now() - t).count(); };
    const auto start = Clock::now();
    for (const wxString& file : files)
    {
        const auto documentStart = Clock::now();
        const std::string document = Utf8(wxFileName(file).GetFullName());
        readDocument(file, document);
        slowest.emplace_back(secondsSince(documentStart), document);
    }

    std::ostringstream summary;
    summary << "corpus: " << root << "\ndocuments: " << documents << " opened of " << files.size() << " ("
            << strictDocuments << " ISO Strict)\nXML parts: " << parts << "; ReadXML true " << readTrue << ", false "
            << readFalse << "; not read " << notLoaded << " (no root class or not loadable; " << listedBroken
            << " of them not well-formed as MANIFEST.tsv lists)\nmarkup compatibility: " << mce.alternateContent
            << " mc:AlternateContent in " << alternateParts << " parts (" << mce.choices << " by Choice, "
            << mce.fallbacks << " by Fallback), " << mce.recovered << " elements recovered, " << changedByMce
            << " parts read differently; " << ignored.ignoredElements << " ignorable elements and "
            << ignored.ignoredAttributes << " ignorable attributes dropped\nISO Strict: " << strictParts
            << " parts with Strict namespaces, " << strictTrees << " read into non-empty trees ("
            << strictEmptyWithout << " of them empty without the rewrite)\n"
            << (OOXML_CORPUS_COMPARE_RAW ? "" : "(markup compatibility and Strict figures: plain build only)\n")
            << "time: " << secondsSince(start) << " s\n";
    if (!skippedLarge.empty())
        summary << "not read in this build (larger than " << OOXML_CORPUS_MAX_PART_BYTES << " bytes):" << skippedLarge
                << "\n";
    std::sort(slowest.rbegin(), slowest.rend());
    summary << "\nslowest documents:\n";
    for (std::size_t i = 0; i < slowest.size() && i < 10; ++i)
        summary << "  " << slowest[i].first << " s  " << slowest[i].second << "\n";
    std::set<std::pair<std::size_t, std::string>, std::greater<>> classes; // by count, then name, descending
    for (const auto& entry : perClass)
        classes.emplace(entry.second, entry.first);
    summary << "\nparts per root class:\n";
    for (const auto& entry : classes)
        summary << "  " << entry.first << "  " << entry.second << "\n";
    summary << "\ncontent types without a root class:\n";
    for (const auto& entry : unknownTypes)
        summary << "  " << entry.second << "  " << entry.first << "\n";
    summary << "\nexplained (allowlist.tsv):\n" << explained << "\nunexplained:\n" << unexplained;
    std::ofstream(OOXML_CORPUS_SUMMARY) << summary.str();
    std::cout << summary.str();

    EXPECT_TRUE(unexplained.empty()) << std::count(unexplained.begin(), unexplained.end(), '\n')
                                     << " results not explained in allowlist.tsv";
    for (const AllowRule& rule : rules)
        EXPECT_GT(rule.uses, 0) << "allowlist rule never used: " << rule.kind << " " << rule.pattern;
    EXPECT_GT(strictDocuments, 0u);
}
