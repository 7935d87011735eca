// Fuzzes the fast reading path against the wxWidgets one: the input is one part, parsed by ParseXmlFast (libexpat
// into ooxml::dom) and by ParseXml (wxWidgets) with the default limits.  Both must succeed or both fail with the same
// problem; when they succeed, the markup compatibility processing and the read of the root element (into the root
// class its name selects, else a class of the registry chosen by the name) must give the same result and the same
// tree, member by member.  A difference aborts with both sides printed.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz_part.h"
#include "tree_text.h"
#include "ooxml/opc/parts.h"

namespace
{
[[noreturn]] void Differ(const char* what, const std::string& fast, const std::string& wx)
{
    std::fprintf(stderr, "fast and wxWidgets paths differ: %s\nfast:\n%s\nwx:\n%s\n", what, fast.c_str(), wx.c_str());
    std::abort();
}

std::string Utf8(const wxString& text) { return std::string(text.utf8_str()); }

// The class that reads the root: the root class whose parts have that root element (namespace and local name), else
// one of the registry chosen by the name.
const ooxml::traversal::ClassInfo& ClassOf(const ooxml::dom::Node& root)
{
    const wxString name = root.GetName();
    const wxString uri = root.GetAttribute(name.Contains(":") ? "xmlns:" + name.BeforeFirst(':') : wxString("xmlns"));
    const std::string element = "{" + Utf8(ooxml::opc::TransitionalUri(uri)) + "}" + Utf8(name.AfterLast(':'));
    const ooxml::traversal::ClassList classes = ooxml::traversal::AllClasses();
    for (const ooxml::traversal::ClassInfo* cls : classes)
        for (const char* const* e = cls->partElements; e && *e; ++e)
            if (element == *e)
                return *cls;
    return *classes.items[std::hash<std::string>()(Utf8(name)) % classes.count];
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ooxml_fuzz::Initialise();
    const char* bytes = reinterpret_cast<const char*>(data);
    const ooxml::opc::Limits limits;
    ooxml::dom::Document fast;
    wxXmlDocument wx;
    wxString fastProblem, wxProblem;
    const bool fastParsed = ooxml::opc::ParseXmlFast(bytes, size, limits, &fast, &fastProblem);
    const bool wxParsed = ooxml::opc::ParseXml(bytes, size, limits, &wx, &wxProblem);
    if (fastParsed != wxParsed || fastProblem != wxProblem)
        Differ("parse", fastParsed ? "ok" : Utf8(fastProblem), wxParsed ? "ok" : Utf8(wxProblem));
    if (!fastParsed)
        return 0;
    const ooxml::traversal::ClassInfo& cls = ClassOf(*fast.GetRoot());
    ooxml::opc::PrepareStats fastStats, wxStats;
    const ooxml::opc::ReadOptions options;
    const bool fastPrepared = ooxml::opc::PrepareDocument(fast, options, &fastProblem, &fastStats);
    const bool wxPrepared = ooxml::opc::PrepareDocument(wx, options, &wxProblem, &wxStats);
    using tree_text::StatsText;
    if (fastPrepared != wxPrepared || fastProblem != wxProblem || StatsText(fastStats) != StatsText(wxStats))
        Differ("markup compatibility", StatsText(fastStats) + " " + Utf8(fastProblem), StatsText(wxStats) + " " + Utf8(wxProblem));
    if (!fastPrepared)
        return 0;
    ooxml::opc::PartRoot fastRoot, wxRoot;
    ooxml::opc::ReadPartXml(cls, fast, &fastRoot);
    ooxml::opc::ReadPartXml(cls, wx, &wxRoot);
    tree_text::Flattener fastTree, wxTree;
    fastTree.Run(fastRoot.GetNode());
    wxTree.Run(wxRoot.GetNode());
    if (fastRoot.ReadOk() != wxRoot.ReadOk() || fastTree.text != wxTree.text)
        Differ(cls.fullName, std::to_string(fastRoot.ReadOk()) + "\n" + fastTree.text,
               std::to_string(wxRoot.ReadOk()) + "\n" + wxTree.text);
    return 0;
}
