// ooxml-dump: prints what the library reads from an Office Open XML package.
//
//   ooxml-dump [FILE]
//
// Prints the package's content types (defaults and overrides) and every
// relationships part with its relationships.  Without FILE it dumps the
// sample document built into the program.  Exit status 0 on success, 1 with
// a one-line message naming the file and the problem otherwise.
#include <cstdio>
#include <vector>

#include <wx/init.h>
#include <wx/log.h>
#include <wx/xml/xml.h>

#include "ooxml/aliases.h"
#include "ooxml/opc/package.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/relationships.h"

#include "bundled_sample.h"

namespace ct = ooxml::content_types;
namespace rel = ooxml::relationships;

namespace
{

void Print(const wxString& text)
{
    std::fputs(text.utf8_str(), stdout);
    std::fputc('\n', stdout);
}

int Fail(const ooxml::opc::Error& error)
{
    std::fflush(stdout);
    std::fprintf(stderr, "ooxml-dump: %s\n", static_cast<const char*>(error.ToString().utf8_str()));
    return 1;
}

bool DumpContentTypes(const ooxml::opc::Package& package, ooxml::opc::Error* error)
{
    const wxString part = "/[Content_Types].xml";
    wxXmlDocument document;
    if (!package.LoadXml(part, &document, error))
        return false;
    XMLNSContext context(&document);
    ct::CT_Types types;
    if (!types.ReadXML(document.GetRoot(), &context))
    {
        *error = ooxml::opc::Error{package.GetPath(), part, "CT_Types::ReadXML failed"};
        return false;
    }
    Print("Content types (" + part + "):");
    for (ct::CT_TypesData__* entry : types.GetData__())
    {
        if (ct::CT_Default* d = entry->GetDefault())
            Print(wxString::Format("  Default   %-24s %s", "." + d->GetExtension(), d->GetContentType()));
        if (ct::CT_Override* o = entry->GetOverride())
            Print(wxString::Format("  Override  %-24s %s", o->GetPartName(), o->GetContentType()));
    }
    return true;
}

bool DumpRelationships(const ooxml::opc::Package& package, const wxString& part, ooxml::opc::Error* error)
{
    wxXmlDocument document;
    if (!package.LoadXml(part, &document, error))
        return false;
    XMLNSContext context(&document);
    rel::CT_Relationships relationships;
    if (!relationships.ReadXML(document.GetRoot(), &context))
    {
        *error = ooxml::opc::Error{package.GetPath(), part, "CT_Relationships::ReadXML failed"};
        return false;
    }
    Print("");
    Print("Relationships (" + part + "):");
    for (rel::CT_Relationship* r : relationships.GetRelationship())
    {
        wxString line = wxString::Format("  %-8s %s -> %s", r->GetId(), r->GetType(), r->GetTarget());
        if (r->CheckTargetMode())
            line << "  [" << r->GetTargetMode() << "]";
        Print(line);
    }
    return true;
}

int Dump(ooxml::opc::Package& package)
{
    ooxml::opc::Error error;
    Print(package.GetPath());
    Print("");
    if (!DumpContentTypes(package, &error))
        return Fail(error);
    for (const ooxml::opc::Part& part : package.GetParts())
        if (ooxml::opc::Package::IsRelationshipsPart(part.name) && !DumpRelationships(package, part.name, &error))
            return Fail(error);
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
    if (argc > 2 || (argc == 2 && (std::string(argv[1]) == "-h" || std::string(argv[1]) == "--help")))
    {
        std::fprintf(argc > 2 ? stderr : stdout, "usage: ooxml-dump [FILE]\n"
                                                 "Prints the content types and relationships of an Office Open XML "
                                                 "package;\nwithout FILE, of the sample document built into the "
                                                 "program.\n");
        return argc > 2 ? 2 : 0;
    }
    // Names of unknown namespaces are expected in real documents; the
    // library logs them at message level, which this program does not show.
    wxLog::SetLogLevel(wxLOG_Warning);

    ooxml::opc::Package package;
    ooxml::opc::Error error;
    const bool opened = argc == 2 ? package.Open(wxString::FromUTF8(argv[1]), &error)
                                  : package.OpenMemory(kBundledSample, kBundledSampleSize, kBundledSampleName, &error);
    if (!opened)
        return Fail(error);
    return Dump(package);
}
