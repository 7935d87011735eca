// Times the stages of reading the XML parts of a package, each on its own:
//   inflate (ZIP) -> depth check -> wxXmlDocument::Load -> preprocessing
//   (markup compatibility, Strict) -> ReadXML -> destruction of the tree,
// and prints per-part and total times, MB/s of Load and ReadXML, the ratio
// ReadXML / Load, and the peak memory of the process.
//
//   ooxml-bench [--repeat N] FILE [PART...]     (all XML parts when none is given)
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <wx/init.h>
#include <wx/log.h>
#include <wx/mstream.h>
#include <wx/xml/xml.h>

#include "ooxml/opc/markup.h"
#include "ooxml/opc/package.h"
#include "ooxml/opc/parts.h"

namespace opc = ooxml::opc;

namespace
{

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

struct Stages
{
    double bytes = 0;
    double inflate = 0, depth = 0, load = 0, prepare = 0, read = 0, destroy = 0;

    void Add(const Stages& other)
    {
        bytes += other.bytes;
        inflate += other.inflate;
        depth += other.depth;
        load += other.load;
        prepare += other.prepare;
        read += other.read;
        destroy += other.destroy;
    }
};

// The fastest of `repeat` runs of each stage of one part.
bool TimePart(const opc::Package& package, const wxString& name, int repeat, Stages* best)
{
    for (int run = 0; run < repeat; ++run)
    {
        Stages s;
        opc::Error error;
        auto start = Clock::now();
        std::string bytes;
        if (!package.ReadPartBytes(name, &bytes, &error))
        {
            std::fprintf(stderr, "ooxml-bench: %s\n", static_cast<const char*>(error.ToString().utf8_str()));
            return false;
        }
        s.inflate = Since(start);
        s.bytes = bytes.size();
        start = Clock::now();
        opc::XmlNestingDepth(bytes.data(), bytes.size(), package.GetLimits().maxDepth);
        s.depth = Since(start);
        start = Clock::now();
        wxXmlDocument document;
        {
            wxMemoryInputStream input(bytes.data(), bytes.size());
            wxLogNull quiet;
            if (!document.Load(input) || !document.GetRoot())
                return false;
        }
        s.load = Since(start);
        const opc::RootClass* cls = opc::FindRootClass(package, name);
        if (!cls)
            return false;
        start = Clock::now();
        wxString problem;
        opc::PrepareDocument(document, package.GetOptions(), &problem);
        s.prepare = Since(start);
        start = Clock::now();
        opc::PartRoot root;
        opc::ReadPartXml(*cls, document, &root);
        s.read = Since(start);
        start = Clock::now();
        root = opc::PartRoot();
        s.destroy = Since(start);
        if (run == 0)
            *best = s;
        else
        {
            best->inflate = std::min(best->inflate, s.inflate);
            best->depth = std::min(best->depth, s.depth);
            best->load = std::min(best->load, s.load);
            best->prepare = std::min(best->prepare, s.prepare);
            best->read = std::min(best->read, s.read);
            best->destroy = std::min(best->destroy, s.destroy);
        }
    }
    return true;
}

void Row(const char* label, const Stages& s)
{
    std::printf("%-44s %9.1f %8.1f %7.1f %8.1f %8.1f %8.1f %8.1f\n", label, s.bytes / 1e6, s.inflate * 1e3,
                s.depth * 1e3, s.load * 1e3, s.prepare * 1e3, s.read * 1e3, s.destroy * 1e3);
}

int Usage()
{
    std::fprintf(stderr, "usage: ooxml-bench [--repeat N] FILE [PART...]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    wxInitializer initializer;
    if (!initializer.IsOk())
        return 1;
    wxLogNull quiet; // names of unknown namespaces are ordinary in real documents
    int repeat = 1;
    std::vector<wxString> arguments;
    for (int i = 1; i < argc; ++i)
    {
        const std::string arg = argv[i];
        if (arg == "--repeat" && i + 1 < argc)
        {
            repeat = std::atoi(argv[++i]);
            if (repeat < 1)
                return Usage();
        }
        else if (!arg.empty() && arg[0] == '-')
            return Usage();
        else
            arguments.push_back(wxString::FromUTF8(argv[i]));
    }
    if (arguments.empty())
        return Usage();

    opc::Package package;
    opc::Error error;
    if (!package.Open(arguments[0], &error))
    {
        std::fprintf(stderr, "ooxml-bench: %s\n", static_cast<const char*>(error.ToString().utf8_str()));
        return 1;
    }
    std::vector<wxString> parts(arguments.begin() + 1, arguments.end());
    if (parts.empty())
        for (const opc::Part& part : package.GetParts())
            if (opc::IsXmlPart(package, part) && opc::FindRootClass(package, part.name))
                parts.push_back(part.name);

    std::printf("%-44s %9s %8s %7s %8s %8s %8s %8s\n", "part (fastest of runs; ms)", "MB", "inflate", "depth",
                "Load", "prepare", "ReadXML", "delete");
    Stages total;
    for (const wxString& name : parts)
    {
        Stages s;
        if (!TimePart(package, name, repeat, &s))
        {
            std::fprintf(stderr, "ooxml-bench: %s: %s: not read\n", static_cast<const char*>(package.GetPath().utf8_str()),
                         static_cast<const char*>(name.utf8_str()));
            return 1;
        }
        Row(name.utf8_str(), s);
        total.Add(s);
    }
    Row("total", total);
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    std::printf("\nLoad %.1f MB/s, ReadXML %.1f MB/s, ReadXML / Load %.2f, peak memory %.0f MB\n",
                total.bytes / 1e6 / total.load, total.bytes / 1e6 / total.read, total.read / total.load,
                usage.ru_maxrss / 1024.0);
    return 0;
}
