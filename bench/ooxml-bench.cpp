// Compares the ways of reading the large parts of a package, side by side in
// one run, each with its time and its peak memory:
//
//   Load       wxXmlDocument::Load alone, from the inflated bytes
//   wx path    inflate -> check (CheckXml) -> wxXmlDocument::Load ->
//              preprocessing (markup compatibility, Strict) -> ReadXML of the
//              wxWidgets tree -> the wxWidgets tree freed
//   fast path  inflate -> ParseXmlFast -> preprocessing -> ReadXML of the
//              compact tree -> the compact tree freed
//   streaming  (worksheets) StreamPart<sml::CT_Row>: each row read, then freed
//
// The two paths make the same calls as ReadPartRoot, stage by stage, so that
// each stage is timed on its own; the typed tree they return is freed after
// the clock stops (a caller keeps it).  Every run of every variant is a child
// process of its own (fork), so that its peak memory (the child's maximum
// resident set, from wait4) is its own.  The variants take turns, round after
// round; times are the fastest of the rounds, peaks the largest.  Two more
// rows tell what every peak holds anyway: "baseline", a child that only opens
// the package (the program itself), and "inflate alone", one that only
// inflates the parts (the bytes that all but streaming parse from).
//
//   ooxml-bench [--repeat N] [--only VARIANT,...] FILE [PART...]
//
// Without PART, the parts that grow with the document: its worksheets, its
// main document part, its slides (or every XML part with a root class when it
// has none of those).
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <wx/init.h>
#include <wx/log.h>
#include <wx/mstream.h>
#include <wx/xml/xml.h>

#include "ooxml/aliases.h"
#include "ooxml/dom.h"
#include "ooxml/opc/markup.h"
#include "ooxml/opc/package.h"
#include "ooxml/opc/parts.h"
#include "ooxml/opc/xml.h"
#include "ooxml/spreadsheetml/sml.h"

namespace opc = ooxml::opc;

namespace
{

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

enum Variant
{
    baseline,
    inflateOnly,
    load,
    wxPath,
    fastPath,
    streaming,
    variantCount
};

const char* const variantNames[variantCount] = {"baseline", "inflate", "load", "wx", "fast", "stream"};
const char* const variantLabels[variantCount] = {"baseline (package open)", "inflate alone", "Load alone", "wx path",
                                                 "fast path", "streaming rows"};

// What one run of one variant measured, sent from the child to the parent.
struct Result
{
    bool ok = false;
    double bytes = 0;         // XML bytes of the parts
    double inflate = 0;       // ReadPartBytes
    double check = 0;         // CheckXml (wx path)
    double parse = 0;         // wxXmlDocument::Load or ParseXmlFast
    double prepare = 0;       // PrepareDocument
    double read = 0;          // ReadXML into the typed tree
    double freeTree = 0;      // the parse tree freed
    double total = 0;         // all of the above (for Load alone: Load)
    double deleteTyped = 0;   // the typed tree freed (not in the total)
    double arena = 0;         // bytes of the compact trees' arenas
    double rows = 0;          // rows streamed
    double readFailures = 0;  // parts or rows whose ReadXML returned false
    long peakKb = 0;          // filled in by the parent
};

void Fail(const opc::Error& error)
{
    std::fprintf(stderr, "ooxml-bench: %s\n", static_cast<const char*>(error.ToString().utf8_str()));
}

void Fail(const wxString& name, const wxString& problem)
{
    std::fprintf(stderr, "ooxml-bench: %s: %s\n", static_cast<const char*>(name.utf8_str()),
                 static_cast<const char*>(problem.utf8_str()));
}

bool LoadWx(const std::string& bytes, wxXmlDocument* document)
{
    wxMemoryInputStream input(bytes.data(), bytes.size());
    wxLogNull quiet;
    return document->Load(input) && document->GetRoot();
}

bool IsWorksheet(const opc::RootClass* cls)
{
    return cls && std::strcmp(cls->fullName, "sml::CT_Worksheet") == 0;
}

// One part, one variant; adds to `r`.
bool RunPart(Variant variant, const opc::Package& package, const wxString& name, Result* r)
{
    const opc::RootClass* cls = opc::FindRootClass(package, name);
    if (!cls)
        return false;
    opc::Error error;
    opc::PartRoot root;
    if (variant == streaming && IsWorksheet(cls))
    {
        double rows = 0, failures = 0;
        const auto start = Clock::now();
        const bool ok = opc::StreamPart<ooxml::sml::CT_Row>(
            package, name, {"worksheet", "sheetData", "row"},
            [&](ooxml::sml::CT_Row&, bool readOk) {
                ++rows;
                failures += readOk ? 0 : 1;
                return true;
            },
            &root, &error);
        r->total += Since(start);
        if (!ok)
            return Fail(error), false;
        r->rows += rows;
        r->readFailures += failures + (root.ReadOk() ? 0 : 1);
        const auto before = Clock::now();
        root = opc::PartRoot();
        r->deleteTyped += Since(before);
        return true;
    }

    auto start = Clock::now();
    std::string bytes;
    if (!package.ReadPartBytes(name, &bytes, &error))
        return Fail(error), false;
    const double inflate = Since(start);
    r->bytes += bytes.size();
    wxString problem;
    if (variant == inflateOnly)
    {
        r->inflate += inflate;
        r->total += inflate;
        return true;
    }
    if (variant == load)
    {
        wxXmlDocument document;
        start = Clock::now();
        const bool ok = LoadWx(bytes, &document);
        const double parse = Since(start);
        r->parse += parse;
        r->total += parse;
        return ok || (Fail(name, "wxXmlDocument::Load failed"), false);
    }
    r->inflate += inflate;
    r->total += inflate;
    const std::uint64_t budget = package.GetLimits().maxAttributes;
    auto stage = [&](double* slot) {
        const double t = Since(start);
        *slot += t;
        r->total += t;
        start = Clock::now();
    };
    if (variant == wxPath)
    {
        start = Clock::now();
        if (!opc::CheckXml(bytes.data(), bytes.size(), package.GetLimits(), &problem))
            return Fail(name, problem), false;
        stage(&r->check);
        auto* document = new wxXmlDocument;
        if (!LoadWx(bytes, document))
            return Fail(name, "wxXmlDocument::Load failed"), false;
        std::string().swap(bytes);
        stage(&r->parse);
        if (!opc::PrepareDocument(*document, package.GetOptions(), &problem, nullptr, budget))
            return Fail(name, problem), false;
        stage(&r->prepare);
        opc::ReadPartXml(*cls, *document, &root);
        stage(&r->read);
        delete document;
        stage(&r->freeTree);
    }
    else // fast path, and the parts of the streaming variant that are not worksheets
    {
        start = Clock::now();
        auto* document = new ooxml::dom::Document;
        if (!opc::ParseXmlFast(bytes.data(), bytes.size(), package.GetLimits(), document, &problem))
            return Fail(name, problem), false;
        std::string().swap(bytes);
        stage(&r->parse);
        r->arena += document->ArenaBytes();
        if (!opc::PrepareDocument(*document, package.GetOptions(), &problem, nullptr, budget))
            return Fail(name, problem), false;
        stage(&r->prepare);
        opc::ReadPartXml(*cls, *document, &root);
        stage(&r->read);
        delete document;
        stage(&r->freeTree);
    }
    r->readFailures += root.ReadOk() ? 0 : 1;
    start = Clock::now();
    root = opc::PartRoot();
    r->deleteTyped += Since(start);
    return true;
}

// One run of a variant over all the parts, in this process.
Result RunVariant(Variant variant, const wxString& path, const std::vector<wxString>& parts)
{
    Result r;
    opc::Package package;
    opc::Error error;
    if (!package.Open(path, &error))
        return Fail(error), r;
    if (variant != baseline)
        for (const wxString& name : parts)
            if (!RunPart(variant, package, name, &r))
                return r;
    r.ok = true;
    return r;
}

// One run of a variant in a child process; its peak memory from wait4.
bool RunChild(Variant variant, const wxString& path, const std::vector<wxString>& parts, Result* result)
{
    int channel[2];
    if (pipe(channel) != 0)
        return false;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0)
    {
        close(channel[0]);
        const Result r = RunVariant(variant, path, parts);
        const ssize_t written = write(channel[1], &r, sizeof r);
        _exit(written == static_cast<ssize_t>(sizeof r) ? 0 : 1);
    }
    close(channel[1]);
    Result r;
    std::size_t got = 0;
    while (got < sizeof r)
    {
        const ssize_t n = read(channel[0], reinterpret_cast<char*>(&r) + got, sizeof r - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    close(channel[0]);
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR)
    {
    }
    if (got != sizeof r || !WIFEXITED(status) || WEXITSTATUS(status) != 0 || !r.ok)
        return false;
    r.peakKb = usage.ru_maxrss; // kilobytes on Linux
    *result = r;
    return true;
}

// The fastest of the runs, stage by stage (the total is the fastest run's
// total, not the sum of the fastest stages); the largest peak.
void Keep(const Result& run, bool first, Result* best)
{
    if (first)
    {
        *best = run;
        return;
    }
    for (double Result::*stage : {&Result::inflate, &Result::check, &Result::parse, &Result::prepare, &Result::read,
                                  &Result::freeTree, &Result::total, &Result::deleteTyped})
        best->*stage = std::min(best->*stage, run.*stage);
    best->peakKb = std::max(best->peakKb, run.peakKb);
}

// The parts that grow with the document.
std::vector<wxString> LargeParts(const opc::Package& package)
{
    std::vector<wxString> large, all;
    for (const opc::Part& part : package.GetParts())
    {
        if (!opc::IsXmlPart(package, part))
            continue;
        const opc::RootClass* cls = opc::FindRootClass(package, part.name);
        if (!cls)
            continue;
        all.push_back(part.name);
        for (const char* name : {"sml::CT_Worksheet", "wml::CT_Document", "pml::CT_Slide"})
            if (std::strcmp(cls->fullName, name) == 0)
                large.push_back(part.name);
    }
    return large.empty() ? all : large;
}

double Ms(double seconds)
{
    return seconds * 1e3;
}

int Usage()
{
    std::fprintf(stderr, "usage: ooxml-bench [--repeat N] [--only VARIANT,...] FILE [PART...]\n"
                         "       variants: inflate, load, wx, fast, stream (all by default)\n");
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
    bool wanted[variantCount] = {true, true, true, true, true, true};
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
        else if (arg == "--only" && i + 1 < argc)
        {
            std::fill(wanted + inflateOnly, wanted + variantCount, false);
            const std::string list = std::string(",") + argv[++i] + ",";
            for (int v = inflateOnly; v < variantCount; ++v)
                if (list.find(std::string(",") + variantNames[v] + ",") != std::string::npos)
                    wanted[v] = true;
        }
        else if (!arg.empty() && arg[0] == '-')
            return Usage();
        else
            arguments.push_back(wxString::FromUTF8(argv[i]));
    }
    if (arguments.empty())
        return Usage();
    const wxString path = arguments[0];

    std::vector<wxString> parts(arguments.begin() + 1, arguments.end());
    bool worksheets = false;
    {
        // Closed again before the children start: each opens its own.
        opc::Package package;
        opc::Error error;
        if (!package.Open(path, &error))
            return Fail(error), 1;
        if (parts.empty())
            parts = LargeParts(package);
        for (const wxString& name : parts)
            worksheets = worksheets || IsWorksheet(opc::FindRootClass(package, name));
    }
    if (!worksheets)
        wanted[streaming] = false;

    // Round after round of every variant, so that a change in the machine's
    // load between rounds weighs on all of them alike.
    Result best[variantCount];
    for (int run = 0; run < repeat; ++run)
        for (int v = baseline; v < variantCount; ++v)
        {
            if (!wanted[v] || (v == baseline && run > 0))
                continue;
            Result r;
            if (!RunChild(static_cast<Variant>(v), path, parts, &r))
            {
                std::fprintf(stderr, "ooxml-bench: %s: the %s variant failed\n",
                             static_cast<const char*>(path.utf8_str()), variantNames[v]);
                return 1;
            }
            Keep(r, run == 0, &best[v]);
        }

    const double bytes = std::max({best[inflateOnly].bytes, best[load].bytes, best[wxPath].bytes, best[fastPath].bytes});
    std::printf("%zu part(s), %.1f MB of XML%s; fastest of %d run(s), each in a process of its own\n\n", parts.size(),
                bytes / 1e6, parts.size() == 1 ? (" (" + std::string(parts[0].utf8_str()) + ")").c_str() : "",
                repeat);
    std::printf("%-24s %10s %8s %9s %8s\n", "variant", "time ms", "x Load", "peak MB", "x Load");
    const Result& reference = best[load];
    for (int v = baseline; v < variantCount; ++v)
    {
        if (!wanted[v])
            continue;
        const Result& r = best[v];
        if (v == baseline)
        {
            std::printf("%-24s %10s %8s %9.1f %8s\n", variantLabels[v], "-", "-", r.peakKb / 1024.0, "-");
            continue;
        }
        const bool ratios = wanted[load] && reference.total > 0 && reference.peakKb > 0;
        std::printf("%-24s %10.1f %8.2f %9.1f %8.2f\n", variantLabels[v], Ms(r.total),
                    ratios ? r.total / reference.total : 0.0, r.peakKb / 1024.0,
                    ratios ? static_cast<double>(r.peakKb) / reference.peakKb : 0.0);
    }

    std::printf("\n%-24s %8s %8s %8s %8s %8s %8s %8s\n", "stages (ms)", "inflate", "check", "parse", "prepare",
                "ReadXML", "free", "delete");
    for (int v : {wxPath, fastPath})
        if (wanted[v])
        {
            const Result& r = best[v];
            std::printf("%-24s %8.1f %8.1f %8.1f %8.1f %8.1f %8.1f %8.1f\n", variantLabels[v], Ms(r.inflate),
                        Ms(r.check), Ms(r.parse), Ms(r.prepare), Ms(r.read), Ms(r.freeTree), Ms(r.deleteTyped));
        }
    std::printf("(parse: wxXmlDocument::Load or ParseXmlFast; free: the parse tree, in the path's time; delete: the\n"
                " typed tree, not in it)\n");
    if (wanted[fastPath])
    {
        const Result& r = best[fastPath];
        std::printf("fast path: parse %.1f MB/s, compact tree %.1f MB (%.2f x the XML)", bytes / 1e6 / r.parse,
                    r.arena / 1e6, r.arena / bytes);
        if (wanted[load])
            std::printf(", Load %.1f MB/s", bytes / 1e6 / reference.parse);
        std::printf("\n");
    }
    if (wanted[streaming])
        std::printf("streaming: %.0f rows\n", best[streaming].rows);
    double failures = 0;
    for (int v = load; v < variantCount; ++v)
        failures += wanted[v] ? best[v].readFailures : 0;
    if (failures > 0)
        std::printf("note: ReadXML returned false %.0f time(s)\n", failures);
    return 0;
}
