// Fuzzes the package reader: the input is a ZIP package; every XML part is
// read into its root class, with small limits so that a run stays bounded.
#include <cstddef>
#include <cstdint>

#include <wx/init.h>
#include <wx/log.h>

#include "ooxml/opc/package.h"
#include "ooxml/opc/parts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static wxInitializer initializer;
    static wxLogNull quiet;
    ooxml::opc::Limits limits;
    limits.maxPartSize = 4u << 20;
    limits.maxPackageSize = 16u << 20;
    limits.maxParts = 256;
    ooxml::opc::Package package(limits);
    ooxml::opc::Error error;
    if (!package.OpenMemory(data, size, "fuzz.zip", &error))
        return 0;
    for (const ooxml::opc::Part& part : package.GetParts())
    {
        std::vector<ooxml::opc::Relationship> relationships;
        package.GetRelationships(part.name, &relationships, &error);
        if (!ooxml::opc::IsXmlPart(package, part))
            continue;
        ooxml::opc::PartRoot root;
        ooxml::opc::ReadPartRoot(package, part.name, &root, &error);
    }
    return 0;
}
