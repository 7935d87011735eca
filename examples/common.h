// Helpers shared by the examples: open a package, find the target of a
// relationship, read a part into its root class, report errors.
#ifndef OOXML_EXAMPLES_COMMON_H
#define OOXML_EXAMPLES_COMMON_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <ooxml/opc/package.h>
#include <ooxml/opc/parts.h>
#include <wx/log.h>
#include <wx/string.h>

namespace example
{

inline void Print(const wxString& text)
{
    std::fputs(text.utf8_str(), stdout);
}

[[noreturn]] inline void Die(const wxString& program, const wxString& message)
{
    std::fprintf(stderr, "%s: %s\n", static_cast<const char*>(program.utf8_str()),
                 static_cast<const char*>(message.utf8_str()));
    std::exit(1);
}

// The relationships of `source`; dies with a message if they do not read.
inline std::vector<ooxml::opc::Relationship> Relationships(const ooxml::opc::Package& package, const wxString& source,
                                                           const wxString& program)
{
    std::vector<ooxml::opc::Relationship> relationships;
    ooxml::opc::Error error;
    if (!package.GetRelationships(source, &relationships, &error))
        Die(program, error.ToString());
    return relationships;
}

// The first relationship of `source` whose type ends with "/<kind>"
// ("officeDocument", "sharedStrings"), resolved to a part name; empty if none.
inline wxString Target(const ooxml::opc::Package& package, const wxString& source, const wxString& kind,
                       const wxString& program)
{
    for (const ooxml::opc::Relationship& r : Relationships(package, source, program))
        if (r.type.EndsWith("/" + kind) && !r.external)
            return r.resolved;
    return wxString();
}

// The target of relationship `id` of `source`, resolved; empty if none.
inline wxString TargetById(const ooxml::opc::Package& package, const wxString& source, const wxString& id,
                           const wxString& program)
{
    for (const ooxml::opc::Relationship& r : Relationships(package, source, program))
        if (r.id == id)
            return r.resolved;
    return wxString();
}

// Reads a part into its root class T; dies with a message if it cannot.
template <class T>
T* ReadRoot(const ooxml::opc::Package& package, const wxString& part, ooxml::opc::PartRoot* root,
            const wxString& program)
{
    ooxml::opc::Error error;
    if (!ooxml::opc::ReadPart(package, part, root, &error))
        Die(program, error.ToString());
    T* object = root->Get<T>();
    if (!object)
        Die(program, package.GetPath() + ": " + part + ": not the expected kind of part");
    return object;
}

// Opens the package named on the command line.
inline void Open(ooxml::opc::Package& package, const char* path, const wxString& program)
{
    wxLog::SetLogLevel(wxLOG_Warning); // unknown namespaces are ordinary in real documents
    ooxml::opc::Error error;
    if (!package.Open(wxString::FromUTF8(path), &error))
        Die(program, error.ToString());
}

} // namespace example

#endif
