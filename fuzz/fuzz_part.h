// A libFuzzer target that parses the input as one XML part and reads it into
// a root class: bytes -> wxXmlDocument -> XMLNSContext -> ReadXML.
#ifndef OOXML_FUZZ_PART_H
#define OOXML_FUZZ_PART_H

#include <cstddef>
#include <cstdint>

#include <wx/init.h>
#include <wx/log.h>
#include <wx/xml/xml.h>

#include "ooxml/aliases.h"
#include "ooxml/ooxml.h"
#include "ooxml/opc/xml.h"

namespace ooxml_fuzz
{

inline void Initialise()
{
    static wxInitializer initializer;
    static wxLogNull quiet;
}

template <class Root>
int ReadInputAs(const std::uint8_t* data, std::size_t size)
{
    Initialise();
    // Loaded as the package reader loads a part (the limits checked before the
    // tree is built), so that the target exercises the readers, not the stack.
    wxXmlDocument document;
    wxString problem;
    if (!ooxml::opc::ParseXml(reinterpret_cast<const char*>(data), size, ooxml::opc::Limits(), &document, &problem))
        return 0;
    XMLNSContext context(&document);
    Root root;
    root.ReadXML(document.GetRoot(), &context);
    return 0;
}

} // namespace ooxml_fuzz

#define OOXML_FUZZ_PART(RootClass)                                                     \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) \
    {                                                                                  \
        return ooxml_fuzz::ReadInputAs<RootClass>(data, size);                            \
    }

#endif
