// Fuzzes the fast reading path against the wxWidgets one: the input is one part, parsed by ParseXmlFast (libexpat
// into ooxml::dom) and by ParseXml (wxWidgets) with the default limits.  Both must succeed or both fail with the same
// problem; when they succeed, the markup compatibility processing and the read of the root element (into the root
// class its name selects, else a class of the registry chosen by the name) must give the same result and the same
// tree, member by member.  A difference aborts with both sides printed.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz_part.h"
#include "ooxml/opc/parts.h"

namespace
{
// The tree as text: one line per member, values with their type (doubles exactly).
struct Flatten : ooxml::traversal::Visitor
{
    std::string text;
    void Line(const ooxml::traversal::Member& m, const std::string& what)
    {
        text += std::string(m.name) + "[" + std::to_string(m.index) + "]" + (m.present ? "+" : "-") + what + "\n";
    }
    void OnValue(const ooxml::traversal::Member& m, const wxAny& value) override
    {
        char buffer[40] = "?";
        std::string what;
        if (value.CheckType<bool>())
            what = value.As<bool>() ? "b1" : "b0";
        else if (value.CheckType<long long>())
            std::snprintf(buffer, sizeof buffer, "i%lld", value.As<long long>()), what = buffer;
        else if (value.CheckType<unsigned long long>())
            std::snprintf(buffer, sizeof buffer, "u%llu", value.As<unsigned long long>()), what = buffer;
        else if (value.CheckType<double>())
            std::snprintf(buffer, sizeof buffer, "d%.17g", value.As<double>()), what = buffer;
        else if (value.CheckType<wxString>())
            for (wxUniChar c : value.As<wxString>())
                what += std::to_string(c.GetValue()) + ",";
        else
            what = "?";
        Line(m, "=" + what);
    }
    void OnObject(const ooxml::traversal::Member& m, const ooxml::traversal::Node& child) override
    {
        Line(m, std::string(":") + child.info->fullName + " {");
        Visit(child, *this);
        text += "}\n";
    }
    void OnAbsentObject(const ooxml::traversal::Member& m) override { Line(m, " absent"); }
};

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
    auto stats = [](const ooxml::opc::PrepareStats& s) {
        return std::to_string(s.strict) + " " + std::to_string(s.alternateContent) + " " + std::to_string(s.choices) +
               " " + std::to_string(s.fallbacks) + " " + std::to_string(s.recovered) + " " +
               std::to_string(s.ignoredElements) + " " + std::to_string(s.ignoredAttributes) + " " +
               std::to_string(s.unwrapped);
    };
    if (fastPrepared != wxPrepared || fastProblem != wxProblem || stats(fastStats) != stats(wxStats))
        Differ("markup compatibility", stats(fastStats) + " " + Utf8(fastProblem), stats(wxStats) + " " + Utf8(wxProblem));
    if (!fastPrepared)
        return 0;
    ooxml::opc::PartRoot fastRoot, wxRoot;
    ooxml::opc::ReadPartXml(cls, fast, &fastRoot);
    ooxml::opc::ReadPartXml(cls, wx, &wxRoot);
    Flatten fastTree, wxTree;
    Visit(fastRoot.GetNode(), fastTree);
    Visit(wxRoot.GetNode(), wxTree);
    if (fastRoot.ReadOk() != wxRoot.ReadOk() || fastTree.text != wxTree.text)
        Differ(cls.fullName, std::to_string(fastRoot.ReadOk()) + "\n" + fastTree.text,
               std::to_string(wxRoot.ReadOk()) + "\n" + wxTree.text);
    return 0;
}
