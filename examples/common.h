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

// The part that `source` points to by its first relationship of `type`
// ("officeDocument", "sharedStrings"); empty if none.
inline wxString Target(const ooxml::opc::Package& package, const wxString& source, const wxString& type,
                       const wxString& program)
{
    wxString part;
    ooxml::opc::Error error;
    if (!package.FindRelatedPart(source, type, &part, &error))
        Die(program, error.ToString());
    return part;
}

// The target of relationship `id` of `source`; empty if none.
inline wxString TargetById(const ooxml::opc::Package& package, const wxString& source, const wxString& id,
                           const wxString& program)
{
    wxString part;
    ooxml::opc::Error error;
    if (!package.FindRelatedPartById(source, id, &part, &error))
        Die(program, error.ToString());
    return part;
}

// Reads a part into its root class T; dies with a message if it cannot.
template <class T>
T* ReadRoot(const ooxml::opc::Package& package, const wxString& part, ooxml::opc::PartRoot* root,
            const wxString& program)
{
    ooxml::opc::Error error;
    if (!ooxml::opc::ReadPartRoot(package, part, root, &error))
        Die(program, error.ToString());
    T* object = root->Get<T>();
    if (!object)
        Die(program, package.GetPath() + ": " + part + ": not the expected kind of part");
    return object;
}

// Streams the elements at `path` of a part, each read into a T and handed to
// `each`; dies with a message if the part cannot be read.
template <class T, class Each>
void Stream(const ooxml::opc::Package& package, const wxString& part, const std::vector<wxString>& path,
            const wxString& program, Each each)
{
    ooxml::opc::Error error;
    ooxml::opc::PartRoot rest;
    const bool read = ooxml::opc::StreamPart<T>(
        package, part, path,
        [&](T& object, bool) {
            each(object);
            return true;
        },
        &rest, &error);
    if (!read)
        Die(program, error.ToString());
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
