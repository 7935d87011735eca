// ooxml-dump: what the library reads from an Office Open XML package.
//
//   ooxml-dump [options] [FILE]          the package overview
//   ooxml-dump [options] FILE PART       the typed tree of one part
//   ooxml-dump --all [options] FILE      one line per XML part, with its read time
//
// Without FILE it dumps the sample document built into the program.  Exit
// status 0 only if every part it was asked to read was read (loaded, and
// ReadXML returned true); 1 otherwise; 2 for a usage error.  The overview and
// --all list XML parts that have no root class (an SVG image, a custom XML item
// of an unknown root element) as skipped: they do not change the status.
// Names from the package (part names, content types, relationships) and the
// messages naming them are printed with control characters as \xNN (opc::Printable).
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <unistd.h>

#include <wx/init.h>
#include <wx/log.h>

#include "ooxml/opc/package.h"
#include "ooxml/opc/parts.h"
#include "ooxml/traversal/traversal.h"

#include "bundled_sample.h"

namespace opc = ooxml::opc;
namespace traversal = ooxml::traversal;
using opc::Printable;

namespace
{

const char* const kUsage =
    "usage: ooxml-dump [options] [FILE [PART]]\n"
    "\n"
    "  FILE           print the package overview: parts, content types, the root class\n"
    "                 that reads each XML part and whether it read, relationships\n"
    "  FILE PART      print the typed tree of one part (\"/xl/workbook.xml\", or as a ZIP\n"
    "                 listing names it, \"xl/workbook.xml\")\n"
    "  (no FILE)      the same for the sample document built into the program\n"
    "\n"
    "options:\n"
    "  --all           read every XML part; one line each with its read time\n"
    "  --json          print the tree of PART as JSON\n"
    "  --all-members   print every member of the tree, present or not\n"
    "  --no-mce        do not process markup compatibility (mc:AlternateContent ...)\n"
    "  --no-strict     do not read ISO Strict namespaces as transitional ones\n"
    "  --wx            parse parts with wxXmlDocument instead of the fast parser (same\n"
    "                  result, several times slower: for comparison)\n"
    "  --max-part-size BYTES, --max-package-size BYTES, --max-depth ELEMENTS,\n"
    "  --max-elements N (per part), --max-attributes N (per part)\n"
    "                  limits against hostile input (defaults 512 MiB, 2 GiB, 256,\n"
    "                  8388608, 16777216)\n"
    "  -h, --help      this text\n";

struct Options
{
    wxString file;
    bool hasPart = false;   // even an empty PART is a part asked for, not the overview
    wxString part;
    bool all = false;
    bool json = false;
    bool allMembers = false;
    opc::Limits limits;
    opc::ReadOptions read;
};

void Out(const wxString& text)
{
    std::fputs(text.utf8_str(), stdout);
}

void Line(const wxString& text)
{
    Out(text);
    std::fputc('\n', stdout);
}

int Fail(const wxString& message)
{
    std::fflush(stdout);
    std::fprintf(stderr, "ooxml-dump: %s\n", static_cast<const char*>(Printable(message).utf8_str()));
    return 1;
}

// Progress on stderr when it is a terminal: "[12/345] /xl/worksheets/sheet3.xml".
class Progress
{
public:
    explicit Progress(std::size_t total) : m_total(total), m_shown(isatty(STDERR_FILENO) && total > 20) {}
    ~Progress()
    {
        if (m_shown)
            std::fprintf(stderr, "\r\033[K");
    }
    void Step(std::size_t done, const wxString& part)
    {
        if (m_shown)
            std::fprintf(stderr, "\r\033[K[%zu/%zu] %s", done, m_total,
                         static_cast<const char*>(Printable(part).utf8_str()));
    }

private:
    std::size_t m_total;
    bool m_shown;
};

// -- The typed tree as text and as JSON -------------------------------------------

wxString ValueText(const wxAny& value, bool json)
{
    if (value.IsNull())
        return json ? "null" : "(null)";
    if (value.CheckType<bool>())
        return value.As<bool>() ? "true" : "false";
    if (value.CheckType<unsigned long long>())
        return wxString::Format("%llu", value.As<unsigned long long>());
    if (value.CheckType<long long>())
        return wxString::Format("%lld", value.As<long long>());
    if (value.CheckType<double>())
    {
        const double d = value.As<double>();
        if (std::isfinite(d))
            return wxString::FromCDouble(d);
        return json ? wxString::Format("\"%s\"", std::isnan(d) ? "NaN" : (d > 0 ? "INF" : "-INF"))
                    : wxString(std::isnan(d) ? "NaN" : (d > 0 ? "INF" : "-INF"));
    }
    wxString text;
    value.GetAs(&text);
    if (!json)
        return "\"" + Printable(text) + "\"";
    wxString escaped = "\"";
    for (wxUniChar c : text)
    {
        switch (c.GetValue())
        {
        case '"': escaped += "\\\""; break;
        case '\\': escaped += "\\\\"; break;
        case '\n': escaped += "\\n"; break;
        case '\r': escaped += "\\r"; break;
        case '\t': escaped += "\\t"; break;
        default:
            if (c.GetValue() < 0x20 || c.GetValue() == 0x7F)
                escaped += wxString::Format("\\u%04x", static_cast<unsigned>(c.GetValue()));
            else
                escaped += c;
        }
    }
    return escaped + "\"";
}

wxString ClassName(const traversal::Node& node)
{
    return wxString(node.info->fullName);
}

// Whether a value is printed: present, or asked for all, or the element's own
// text: ReadXML leaves its presence bit clear, so it is shown once it is not
// empty (the words of a w:t, the value of a cell).
bool Shown(const traversal::Member& member, const wxAny& value, bool allMembers)
{
    if (member.present || allMembers)
        return true;
    wxString text;
    return member.kind == traversal::MemberKind::Text && value.GetAs(&text) && !text.empty();
}

// Indented text: "name: value", "name[i]: Class" with the members below.
class TextPrinter : public traversal::Visitor
{
public:
    explicit TextPrinter(bool allMembers) : m_allMembers(allMembers) {}

    void Print(const traversal::Node& root)
    {
        Line(ClassName(root));
        m_depth = 1;
        traversal::Visit(root, *this);
    }

    void OnValue(const traversal::Member& member, const wxAny& value) override
    {
        if (!Shown(member, value, m_allMembers))
            return;
        Line(Indent() + Label(member) + " = " + ValueText(value, false) +
             (member.present || member.kind == traversal::MemberKind::Text ? "" : "  (absent)"));
    }

    void OnObject(const traversal::Member& member, const traversal::Node& child) override
    {
        if (!member.present && !m_allMembers)
            return;
        Line(Indent() + Label(member) + ": " + ClassName(child));
        ++m_depth;
        traversal::Visit(child, *this);
        --m_depth;
    }

    void OnAbsentObject(const traversal::Member& member) override
    {
        if (m_allMembers)
            Line(Indent() + Label(member) + ": (none)");
    }

private:
    wxString Indent() const { return wxString(' ', 2 * m_depth); }
    static wxString Label(const traversal::Member& member)
    {
        wxString label = *member.xml ? wxString(member.xml) : wxString(member.name);
        if (member.repeated)
            label << "[" << member.index << "]";
        return label;
    }

    bool m_allMembers;
    int m_depth = 0;
};

// JSON: {"class": "sml::CT_Row", "R": 1, "C": [{...}, ...]}, members in
// declaration order under their C++ names (unique in a class).
class JsonPrinter : public traversal::Visitor
{
public:
    explicit JsonPrinter(bool allMembers) : m_allMembers(allMembers) {}

    void Print(const traversal::Node& root)
    {
        Object(root);
        Out("\n");
    }

    void OnValue(const traversal::Member& member, const wxAny& value) override
    {
        if (!Shown(member, value, m_allMembers))
            return;
        Key(member);
        Out(ValueText(value, true));
    }

    void OnObject(const traversal::Member& member, const traversal::Node& child) override
    {
        if (!member.present && !m_allMembers)
            return;
        Key(member);
        Object(child);
    }

    void OnAbsentObject(const traversal::Member& member) override
    {
        if (!m_allMembers)
            return;
        Key(member);
        Out("null");
    }

private:
    struct Frame
    {
        wxString openArray;  // the member whose array is open
        const traversal::ClassInfo* arrayOwner = nullptr;
    };

    void Object(const traversal::Node& node)
    {
        Out("{\"class\": " + ValueText(wxAny(ClassName(node)), true));
        m_frames.emplace_back();
        traversal::Visit(node, *this);
        CloseArray();
        m_frames.pop_back();
        Out("}");
    }

    void CloseArray()
    {
        if (!m_frames.back().openArray.empty())
        {
            Out("]");
            m_frames.back().openArray.clear();
        }
    }

    // Writes the key of a member (once for an array, then a separator per item).
    void Key(const traversal::Member& member)
    {
        Frame& frame = m_frames.back();
        if (member.repeated && frame.openArray == member.name && frame.arrayOwner == member.owner)
        {
            Out(", ");
            return;
        }
        CloseArray();
        Out(", " + ValueText(wxAny(wxString(member.name)), true) + ": ");
        if (member.repeated)
        {
            Out("[");
            frame.openArray = member.name;
            frame.arrayOwner = member.owner;
        }
    }

    bool m_allMembers;
    std::vector<Frame> m_frames;
};

// -- The three modes ---------------------------------------------------------------

struct PartResult
{
    const opc::RootClass* root = nullptr;
    bool loaded = false;
    bool readOk = false;
    wxString noClass;       // for a part not ours to read: "content type ..." or "root element ..."
    wxString problem;       // what went wrong, for the part's line
    opc::Error error;       // the same naming package and part, for stderr
    double milliseconds = 0;
};

PartResult ReadOne(const opc::Package& package, const wxString& name, opc::PartRoot* root)
{
    PartResult result;
    opc::Error error;
    const auto start = std::chrono::steady_clock::now();
    result.loaded = opc::ReadPartRoot(package, name, root, &error);
    result.milliseconds =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    result.root = result.loaded ? root->GetClass() : opc::FindRootClass(package, name);
    result.readOk = result.loaded && root->ReadOk();
    if (result.loaded && !result.readOk)
        error = opc::Error{package.GetPath(), package.FindPart(name)->name, "ReadXML returned false"};
    result.problem = error.message;
    result.error = error;
    // No root class (by content type, or for plain XML by the root element):
    // "no root class for content type ..." -> "content type ...".
    if (!result.loaded && error.noRootClass)
        error.message.StartsWith("no root class for ", &result.noClass);
    return result;
}

wxString Status(const PartResult& result)
{
    if (result.readOk)
        return "read";
    return result.noClass.empty() ? "FAILED: " + Printable(result.problem)
                                  : "skipped (no class for " + Printable(result.noClass) + ")";
}

int Overview(const opc::Package& package)
{
    Line(Printable(package.GetPath()) + (package.IsStrict() ? "  (ISO Strict, read as transitional)" : ""));
    Line("");
    Line(wxString::Format("Parts (%zu):", package.GetParts().size()));
    bool allRead = true;
    Progress progress(package.GetParts().size());
    std::size_t done = 0;
    for (const opc::Part& part : package.GetParts())
    {
        progress.Step(++done, part.name);
        // The content types stream is not a part of its own (OPC) and has no content type.
        const wxString type = part.name.CmpNoCase("/[Content_Types].xml") == 0 ? wxString("(content types stream)")
                              : part.contentType.empty()                        ? wxString("(no content type)")
                                                                                : part.contentType;
        wxString line = wxString::Format("  %-40s %s", Printable(part.name), Printable(type));
        if (opc::IsXmlPart(package, part))
        {
            opc::PartRoot root;
            const PartResult result = ReadOne(package, part.name, &root);
            if (result.noClass.empty())
                line << "\n      " << (result.root ? wxString(result.root->fullName) : wxString("no root class"))
                     << ": " << Status(result);
            else
                line << "\n      " << Status(result);
            if (!result.readOk && result.noClass.empty())
            {
                Fail(result.error.ToString());
                allRead = false;
            }
        }
        Line(line);
    }
    Line("");
    Line("Relationships:");
    std::vector<wxString> sources{"/"};
    for (const opc::Part& part : package.GetParts())
        if (!opc::Package::IsRelationshipsPart(part.name))
            sources.push_back(part.name);
    for (const wxString& source : sources)
    {
        std::vector<opc::Relationship> relationships;
        opc::Error error;
        if (!package.GetRelationships(source, &relationships, &error))
        {
            Line("  " + Printable(source) + ": FAILED: " + Printable(error.message)); // on stderr already, as its part
            allRead = false;
            continue;
        }
        for (const opc::Relationship& r : relationships)
            Line(wxString::Format("  %-28s %-8s %s -> %s", Printable(source), Printable(r.id),
                                  Printable(r.type.AfterLast('/')),
                                  r.external ? Printable(r.target) + "  [External]" : Printable(r.resolved)));
    }
    return allRead ? 0 : 1;
}

int All(const opc::Package& package)
{
    bool allRead = true;
    std::size_t count = 0, skipped = 0;
    double total = 0;
    Progress progress(package.GetParts().size());
    std::size_t done = 0;
    for (const opc::Part& part : package.GetParts())
    {
        progress.Step(++done, part.name);
        if (!opc::IsXmlPart(package, part))
            continue;
        opc::PartRoot root;
        const PartResult result = ReadOne(package, part.name, &root);
        Line(wxString::Format("%9.2f ms  %-40s %-36s %s", result.milliseconds, Printable(part.name),
                              result.root ? result.root->fullName : "-", Status(result)));
        total += result.milliseconds;
        if (!result.noClass.empty())
        {
            ++skipped;
            continue;
        }
        if (!result.readOk)
            Fail(result.error.ToString());
        allRead = allRead && result.readOk;
        ++count;
    }
    Line(wxString::Format("%9.2f ms  %zu XML parts", total, count) +
         (skipped ? wxString::Format(", %zu skipped (no class)", skipped) : wxString()));
    return allRead ? 0 : 1;
}

int Tree(const opc::Package& package, const Options& options)
{
    opc::PartRoot root;
    const PartResult result = ReadOne(package, options.part, &root);
    if (!result.loaded)
        return Fail(result.error.ToString()); // a part that is not there too: one line, no output
    if (options.json)
        JsonPrinter(options.allMembers).Print(root.GetNode());
    else
        TextPrinter(options.allMembers).Print(root.GetNode());
    if (!result.readOk)
        return Fail(result.error.ToString() + " (the tree above is partial)");
    return 0;
}

bool ParseSize(const char* text, unsigned long long* value)
{
    char* end = nullptr;
    *value = std::strtoull(text, &end, 10);
    return end && *end == '\0' && *text != '\0' && *text != '-';
}

// The options that set a limit, and how.
const std::map<std::string, void (*)(opc::Limits&, unsigned long long)> kLimitOptions = {
    {"--max-part-size", [](opc::Limits& l, unsigned long long n) { l.maxPartSize = n; }},
    {"--max-package-size", [](opc::Limits& l, unsigned long long n) { l.maxPackageSize = n; }},
    {"--max-depth", [](opc::Limits& l, unsigned long long n) { l.maxDepth = n; }},
    {"--max-elements", [](opc::Limits& l, unsigned long long n) { l.maxElements = n; }},
    {"--max-attributes", [](opc::Limits& l, unsigned long long n) { l.maxAttributes = n; }},
};

// Returns 0 to go on, else the exit status.
int ParseArguments(int argc, char** argv, Options* options)
{
    std::vector<wxString> positional;
    for (int i = 1; i < argc; ++i)
    {
        const std::string arg = argv[i];
        unsigned long long number = 0;
        auto needsValue = [&](const char* name) {
            if (i + 1 >= argc || !ParseSize(argv[i + 1], &number))
            {
                std::fprintf(stderr, "ooxml-dump: %s needs a number\n%s", name, kUsage);
                return false;
            }
            ++i;
            return true;
        };
        if (arg == "-h" || arg == "--help")
        {
            std::fputs(kUsage, stdout);
            return -1;
        }
        else if (arg == "--all")
            options->all = true;
        else if (arg == "--json")
            options->json = true;
        else if (arg == "--all-members")
            options->allMembers = true;
        else if (arg == "--no-mce")
            options->read.markupCompatibility = false;
        else if (arg == "--no-strict")
            options->read.strict = false;
        else if (arg == "--wx")
            options->read.wxWidgetsParser = true;
        else if (const auto limit = kLimitOptions.find(arg); limit != kLimitOptions.end())
        {
            if (!needsValue(arg.c_str()))
                return 2;
            limit->second(options->limits, number);
        }
        else if (arg.size() > 1 && arg[0] == '-')
        {
            std::fprintf(stderr, "ooxml-dump: unknown option %s\n%s", arg.c_str(), kUsage);
            return 2;
        }
        else
            positional.push_back(wxString::FromUTF8(argv[i]));
    }
    if (positional.size() > 2 || (options->all && positional.size() > 1) ||
        ((options->json || options->allMembers) && positional.size() < 2))
    {
        std::fputs(positional.size() > 2 ? "ooxml-dump: too many arguments\n"
                                         : options->all ? "ooxml-dump: --all takes no PART\n"
                                                        : "ooxml-dump: --json and --all-members need a PART\n",
                   stderr);
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (!positional.empty())
        options->file = positional[0];
    options->hasPart = positional.size() == 2;
    if (options->hasPart)
        options->part = positional[1];
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    wxInitializer initializer;
    if (!initializer.IsOk())
    {
        std::fprintf(stderr, "ooxml-dump: cannot initialise wxWidgets\n");
        return 1;
    }
    Options options;
    const int status = ParseArguments(argc, argv, &options);
    if (status)
        return status < 0 ? 0 : status;
    // Names of unknown namespaces are ordinary in real documents; the library
    // logs each at message level, which this program does not show.
    wxLog::SetLogLevel(wxLOG_Warning);

    opc::Package package(options.limits, options.read);
    opc::Error error;
    const bool opened = options.file.empty()
                            ? package.OpenMemory(kBundledSample, kBundledSampleSize, kBundledSampleName, &error)
                            : package.Open(options.file, &error);
    if (!opened)
        return Fail(error.ToString());
    if (options.hasPart)
        return Tree(package, options);
    return options.all ? All(package) : Overview(package);
}
